"""The shells, with the completions that they would be installed with."""

import os
import pathlib
import pty
import re
import select
import subprocess
import time

COMPLETIONS = pathlib.Path(__file__).resolve().parents[2] / "packaging/completions"
SECONDS = 20
INSERT_ALL = "\x18a"
LEFT = "\x02"
# The programs only report the words that the shell would run them with.
REPORT = """
report() { printf '%s\\n' "$@" >"$HOME/words"; echo reported; }
dunmora() { report "$@"; }
dunmora-cli() { report "$@"; }
"""
BASH_SETUP = REPORT + f"""
PS1='ready> '
bind 'set bell-style none'
bind 'set enable-bracketed-paste off'
bind '"\\C-xa": insert-completions'
source '{COMPLETIONS}/dunmora.bash'
source '{COMPLETIONS}/dunmora-cli.bash'
"""
ZSH_SETUP = REPORT + f"""
PS1='ready> '
unset zle_bracketed_paste
unsetopt beep
fpath=('{COMPLETIONS}' $fpath)
autoload -Uz compinit
compinit -u -D
insert_all() {{ _main_complete; compstate[insert]=all }}
zle -C insert-all complete-word insert_all
bindkey '^Xa' insert-all
"""


class InteractiveShell:
    """A shell on a terminal of its own, in which a key inserts everything that it offers for the last word."""

    def __init__(self, command, environment, folder):
        self.words = folder / "words"
        self.terminal, end = pty.openpty()
        self.process = subprocess.Popen(command, env={**environment, "TERM": "xterm"}, cwd=folder, stdin=end,
                                        stdout=end, stderr=end, start_new_session=True)
        os.close(end)
        self.output = ""
        self.wait_for("ready> ")

    def close(self):
        self.process.kill()
        self.process.wait()
        os.close(self.terminal)

    def wait_for(self, pattern):
        """Waits until this is in the output, from now on."""
        self.output = ""
        deadline = time.monotonic() + SECONDS
        while not re.search(pattern, self.output, re.DOTALL):
            if not select.select([self.terminal], [], [], max(0, deadline - time.monotonic()))[0]:
                raise AssertionError(f"no {pattern} in {self.output!r}")
            self.output += os.read(self.terminal, 65536).decode(errors="replace")

    def words_after(self, line, key):
        """Returns the program's arguments after this line was typed and the key pressed."""
        os.write(self.terminal, (line + key + "\r").encode())
        self.wait_for("reported.*ready> ")
        return self.words.read_text().splitlines()

    def offers(self, line):
        """Returns what the shell offers for the last word of the line, each as a whole word."""
        *before, word = line.split(" ")[1:]
        words = self.words_after(line, INSERT_ALL)[len(before):]
        return set() if words in ([word], []) else {candidate.rstrip("/") for candidate in self.whole(word, words)}

    def whole(self, _word, words):
        return words

    def completed(self, line):
        """Returns the last word of the line after Tab."""
        return self.words_after(line, "\t")[-1]


class Bash(InteractiveShell):
    program = "bash"

    def __init__(self, environment, folder):
        setup = folder / ".bashrc"
        setup.write_text(BASH_SETUP)
        super().__init__(["bash", "--noprofile", "--rcfile", setup, "-i"], environment, folder)

    def whole(self, word, words):
        # What is before a colon or an equals sign is not repeated.
        head = re.match(r"(.*[:=])?", word).group()
        return [words[0], *(head + rest for rest in words[1:])]


class Zsh(InteractiveShell):
    program = "zsh"

    def __init__(self, environment, folder):
        (folder / ".zshrc").write_text(ZSH_SETUP)
        super().__init__(["zsh", "-d", "-i"], {**environment, "ZDOTDIR": str(folder)}, folder)


class Fish:
    program = "fish"

    def __init__(self, environment, folder):
        self.environment, self.folder = environment, folder
        self.sources = "; ".join(f"source '{COMPLETIONS}/{name}.fish'" for name in ("dunmora", "dunmora-cli"))
        self.output = ""

    def close(self):
        pass

    def lines(self, line):
        run = subprocess.run(["fish", "--no-config", "--command", self.sources + '; complete -C "$argv[1]"', line],
                             env=self.environment, cwd=self.folder, capture_output=True, text=True, timeout=SECONDS,
                             stdin=subprocess.DEVNULL, check=False)
        self.output = run.stderr
        return [entry.split("\t") for entry in run.stdout.splitlines()]

    def offers(self, line):
        return {word.rstrip("/") for word, *_ in self.lines(line)}

    def completed(self, line):
        words = self.offers(line) or {line.rpartition(" ")[2]}
        word, = words
        return word
