"""What must be true after a deletion with faults, whatever the program did to get there."""

import re

import books

# The kinds of faults by which another program changes the book.
WRITERS = ("append", "replace", "remove", "overwrite", "hold")
# Those that remove what the file held.
DESTROYERS = ("replace", "remove")


class Violation(Exception):
    """A promise was broken."""


def require(condition, what):
    if not condition:
        raise Violation(what)


class State:
    """The files in the book's folder."""

    def __init__(self, folder):
        self.book, self.leftovers = {}, {}
        for path in sorted(folder.iterdir()):
            files = self.leftovers if path.name.startswith(".") else self.book
            files[path.name] = books.texts_of(path.read_bytes())

    @property
    def texts(self):
        """All texts in the book."""
        return {name for texts in self.book.values() for name in texts or ()}

    def texts_named_in(self, messages):
        """All texts in the book and in other files that the messages name."""
        return self.texts | {name for file, texts in self.leftovers.items() if file in messages for name in texts or ()}


class Verdict:
    """The outcome of one run."""

    def __init__(self, trial, home, injector, result):
        self.scenario, self.trial = trial.scenario, trial
        self.home, self.injector, self.result = home, injector, result
        self.state = State(home / "book")
        # Reading a book says nothing about files that are not there.
        self.reading = self.read() if self.state.leftovers else ""
        self.others = [trial.faults[index] for index, is_done in result.happened if is_done
                       if trial.faults[index][2] in WRITERS]
        self.destroyed = {fault[3] for fault in self.others if fault[2] in DESTROYERS}

    def read(self):
        return self.injector.run_plainly(self.home, ["list", self.scenario.book])[2]

    def check(self):
        """Returns the outcome in a few words. Errors: Violation."""
        self.check_files()
        self.check_needed(self.state, self.result.err + self.reading)
        self.check_backup()
        self.check_metadata()
        if self.result.was_killed:
            outcome = self.check_killed()
        else:
            require(self.result.end in ("exit 0", "exit 1"), f"it ended with {self.result.end}")
            outcome = self.check_success() if self.result.end == "exit 0" else self.check_failure()
        self.check_leftovers()
        if self.trial.kind == "interrupted":
            require(self.result.end == "exit 0", "it did not try again")
        return outcome

    # Files

    def check_files(self):
        for file, texts in self.state.book.items():
            require(texts is not None, f"{file} is half written")
            require(len(texts) == len(set(texts)), f"{file} holds a text twice: {texts}")
        for link, _ in self.scenario.symbolic_links:
            require((self.home / link).is_symlink(), f"{link} is no longer a link")
        for link, _ in self.scenario.hard_links:
            if not link.startswith("book/"):
                texts = books.texts_of((self.home / link).read_bytes())
                require(texts is not None, f"{link} is half written")

    def needed(self):
        """Returns the texts that must still be there: those that nobody was asked to remove, and those that other
        programs wrote and did not take away themselves."""
        needed = {name for name in self.scenario.texts if name not in books.REMOVED}
        for index, (_, _, kind, path, *values) in enumerate(self.others):
            later = {fault[2] for fault in self.others[index + 1:] if fault[3] == path}
            held = {name for name in self.scenario.files[path.rpartition("/")[2]] if name not in books.REMOVED}
            if kind == "remove":
                needed -= held
            elif kind == "replace":
                needed |= held
            elif kind == "overwrite":
                needed -= {"kept"}
                needed |= set() if path in self.destroyed else {"edited"}
            if kind in ("append", "replace") and not later.intersection(DESTROYERS):
                needed.add(books.texts_of(values[-1])[-1])
            if kind == "hold" and path not in self.destroyed:
                needed.add(books.texts_of(values[-1])[-1])
        if any(fault[2] == "overwrite" for fault in self.others) and self.destroyed:
            needed -= {"kept", "edited"}
        return needed

    def check_needed(self, state, messages):
        lost = self.needed() - state.texts_named_in(messages)
        require(not lost, f"lost: {', '.join(sorted(lost))}")

    def check_metadata(self):
        for file in self.scenario.files:
            for name in self.scenario.names_of(file):
                path = self.home / "book" / name
                if not path.exists() or f"book/{name}" in self.destroyed:
                    continue
                require(path.stat().st_mode & 0o7777 == books.MODE, f"{name} has other permissions")
                require(books.attribute_of(path) == self.trial.attribute, f"{name} has lost its attribute")

    # Removed people

    @property
    def removable(self):
        """The people to be removed, except those in a file that another program took away."""
        return [name for file, texts in self.scenario.files.items() for name in texts
                if name in books.REMOVED and f"book/{file}" not in self.destroyed]

    def gone(self):
        """Returns those of them who are no longer in the book."""
        return [name for name in self.removable if name not in self.state.texts]

    def check_backup(self):
        if not self.scenario.has_backup:
            return
        path = self.home / "backup.vcf"
        texts = books.texts_of(path.read_bytes()) if path.exists() else None
        is_complete = texts is not None and set(texts) >= set(self.gone())
        require(is_complete or not self.gone(), "people were deleted without their backup")
        if path.exists() and not self.result.was_killed:
            require(texts, "the backup is half written")

    def files_are(self, *allowed):
        """Whether every file has one of the contents that these functions return for it."""
        return all(any(self.state.book.get(name) == contents(file) for contents in allowed)
                   for file in self.scenario.files for name in self.scenario.names_of(file))

    def old(self, file):
        return self.scenario.files[file]

    def check_success(self):
        still_there = set(self.scenario.removed) & self.state.texts
        require(not still_there or self.destroyed or "skipped" in self.result.err,
                f"it reported success, but did not delete {still_there}")
        if not self.others and "skipped" not in self.result.err:
            require(self.files_are(self.scenario.rest), f"the book is not the new one: {self.state.book}")
            count = len(self.scenario.removed)
            require(f"{count} people deleted." in self.result.out, f"it printed {self.result.out!r}")
        return "deleted"

    def check_failure(self):
        error = self.result.err
        require(re.search(r"^dunmora-cli: \S", error, re.MULTILINE), f"no message, but {error!r}")
        if not self.gone():
            require(self.others or self.files_are(self.old), f"it changed the book: {self.state.book}")
            return "error, nothing deleted"
        if not self.others and self.files_are(self.scenario.rest):
            require("deleted" in error, f"it deleted everybody and reported {error!r}")
            return "deleted, and an error"
        if self.has_no_way_back():
            require(re.search("Files changed|deleted|Already done", error),
                    f"it deleted {self.gone()} and reported {error!r}")
            return "error, partly deleted"
        require(self.others and set(self.gone()) == set(self.removable) and "deleted" in error,
                f"it deleted {self.gone()} and reported {error!r}")
        return "deleted, and an error"

    def has_no_way_back(self):
        """Whether files that were replaced before an error could not be put back: an exchange of names does that, and
        either there is none, or it failed after the error."""
        happened = [self.trial.faults[index] for index, is_done in self.result.happened if is_done]
        return (self.scenario.lacks == books.NO_EXCHANGE
                or any(fault[0] == "renameat2-exchange" and fault[2] == "fail" for fault in happened[1:]))

    def check_killed(self):
        if not self.others:
            require(self.files_are(self.old, self.scenario.rest), f"a file is neither old nor new: {self.state.book}")
        gone = self.gone()
        outcome = "killed, old" if not gone else "killed, new"
        if gone and set(gone) != set(self.removable):
            outcome = "killed, part of the folder"
        if self.state.leftovers:
            outcome += ", old file named" if any(file in self.reading for file in self.state.leftovers) else ", leftover"
        return outcome

    def check_leftovers(self):
        """A file under a temporary name is named, unless nothing of it is missing in the book: then the next deletion
        removes it."""
        messages = self.reading if self.result.was_killed else self.result.err
        unnamed = [file for file in self.state.leftovers if file not in messages]
        for file in unnamed:
            only_there = set(self.state.leftovers[file] or ()) & self.needed().union(self.removable)
            only_there -= self.state.texts
            require(not only_there, f"it left {file}, which holds {only_there}, without a word")
        if unnamed or self.result.was_killed:
            self.check_next_deletion()

    def check_next_deletion(self):
        """The next deletion completes what was interrupted, or says why not."""
        arguments = [self.scenario.arguments[0], self.scenario.book, "--yes"]
        result = self.injector.run(self.home, arguments, self.scenario.lacks)
        out, err = result.out, result.err
        state = State(self.home / "book")
        reading = self.read() if state.leftovers else ""
        is_done = result.end == "exit 0"
        require(is_done or result.end == "exit 1", f"the next deletion ended with {result.end}: {err}")
        require(is_done or err, "the next deletion failed without a message")
        self.check_needed(state, err + reading)
        # A copy whose other copy another program has taken away is none.
        if is_done and not self.destroyed:
            require(not set(self.scenario.removed) & state.texts, "the next deletion did not complete this one")
        if " deleted." in out:
            for file in state.leftovers:
                require(file in reading, f"the next deletion left {file} and reading does not name it")
