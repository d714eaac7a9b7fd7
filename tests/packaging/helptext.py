"""The options, arguments and commands of a program, as its help lists them."""

import re
import subprocess


class Help:
    """The help of a program or of one of its commands.

    options holds every spelling of every option; arguments the names of the other arguments, in order; commands the
    names of the commands, and choices, by the option, the values among which it chooses.
    """

    def __init__(self, program, *command):
        run = subprocess.run([program, *command, "--help"], stdin=subprocess.DEVNULL, capture_output=True, text=True,
                             timeout=30, check=True)
        self.text = run.stdout
        self.options, self.arguments, self.commands, self.choices = set(), [], [], {}
        # The title of a list ends in a colon; its entries are indented, and so are the further lines of an entry, deeper.
        title = ""
        for line in self.text.splitlines():
            entry = re.match(r"  (\S+)", line)
            if not entry:
                title = line if line.endswith(":") else title
            elif title == "Options:":
                names = entry.group(1).split(",")
                self.options.update(names)
                values = re.match(r"  \S+ [A-Z]+:{(.*?)}", line)
                if values:
                    self.choices[names[-1]] = values.group(1).split(",")
            elif title == "Positionals:":
                self.arguments.append(entry.group(1))
            elif title == "Subcommands:":
                self.commands.append(entry.group(1))

    @property
    def fields(self):
        """The match fields, in order."""
        return re.search(r"separated by commas: ([a-z,]+)", self.text).group(1).split(",")

    @property
    def exit_statuses(self):
        return re.findall(r"(\d) ", re.search(r"(?m)^Exit status: .*", self.text).group())
