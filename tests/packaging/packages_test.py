#!/usr/bin/python3
"""Installs the packages on a fresh Debian, uses them there and removes them. It changes the system that it runs on.

    packages_test.py FOLDER APP-ID [UNITTEST-OPTION]...

FOLDER has the packages. Pictures of the windows go into its folder `windows`.
"""

import os
import pathlib
import pwd
import re
import subprocess
import sys
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
SAMPLE = ROOT / "samples/address-book.vcf"
PERSON = "person"
# The C and C++ libraries and xxHash.
LIBRARIES = {"libc6", "libgcc-s1", "libstdc++6", "libxxhash0"}
SONAMES = {"libc.so.6", "libm.so.6", "libgcc_s.so.1", "libstdc++.so.6", "libxxhash.so.0"}
SMALL = 3_000_000
FIRST_MATCH = re.compile(r"^\s*(\S+)", re.M)

# These hold no files of a package: they are the kernel's, a person's, this test's, or empty at every start.
ELSEWHERE = {"/proc", "/sys", "/dev", "/home", "/root", "/mnt", "/opt", "/run", "/tmp"}
# apt's and dpkg's own files, among them the records of what they have done.
RECORDS = ("/var/lib/apt/", "/var/lib/dpkg/", "/var/cache/apt/", "/var/log/")
# dpkg's triggers write these caches again for all packages together: what opens which files, and the icons.
CACHES = ("/usr/share/applications/mimeinfo.cache", "/usr/share/icons/hicolor/icon-theme.cache")


def run(*command, **options):
    """Returns what a command prints; fails if the command does."""
    options = {"check": True, "capture_output": True, "text": True, "stdin": subprocess.DEVNULL, **options}
    try:
        return subprocess.run([str(word) for word in command], **options).stdout
    except subprocess.CalledProcessError as error:
        error.add_note(f"{error.stdout}{error.stderr}")
        raise


def as_person(*command, **options):
    """Runs a command as an ordinary user, without a desktop."""
    environment = {"PATH": "/usr/local/bin:/usr/bin:/bin", "HOME": pwd.getpwnam(PERSON).pw_dir, "LANG": "C.UTF-8",
                   "DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent", "MANWIDTH": "80"}
    return run("/usr/sbin/runuser", "-u", PERSON, "--", *command, env=environment, **options)


def failure_of(*command):
    """Returns the message of a command of an ordinary user that fails."""
    try:
        as_person(*command)
    except subprocess.CalledProcessError as error:
        return error.stderr
    raise AssertionError(f"{command} does not fail")


def apt(*arguments):
    return run("apt-get", "--yes", "-qq", "-o", "Dpkg::Use-Pty=0", *arguments,
               env={**os.environ, "DEBIAN_FRONTEND": "noninteractive"})


def installed_packages():
    listing = run("dpkg-query", "--show", "--showformat", "${db:Status-Abbrev} ${Package}\n")
    return {line.split()[1] for line in listing.splitlines() if line.startswith("ii")}


def files_of_system():
    """Returns the paths of everything on this system, without records."""
    found = set()
    for folder, folders, files in os.walk("/"):
        folders[:] = [name for name in folders if os.path.join(folder, name) not in ELSEWHERE]
        found.update(os.path.join(folder, name) for name in [*files, *folders])
    return {path for path in found if not path.startswith(RECORDS)}


class PackagesCase(unittest.TestCase):
    """Installs packages for all of its tests and removes them when these are over."""

    folder: pathlib.Path
    app_id: str
    packages = ()

    @classmethod
    def setUpClass(cls):
        cls.packages_before = installed_packages()
        cls.addClassCleanup(cls.remove)
        apt("install", *(next(cls.folder.glob(f"{package}_*.deb")) for package in cls.packages))
        cls.files_after_install = files_of_system()

    @classmethod
    def remove(cls):
        """Removes the packages and fails if a trace of them is left, then what they have brought with them."""
        apt("purge", *cls.packages)
        left = files_of_system()
        traces = [path for path in left if "dunmora" in path]
        traces += left - cls.files_after_install
        traces += [cache for cache in CACHES if os.path.exists(cache) and b"dunmora" in pathlib.Path(cache).read_bytes()]
        traces += pathlib.Path("/var/lib/dpkg/info").glob("dunmora*")
        if traces or "dunmora" in pathlib.Path("/var/lib/dpkg/status").read_text(encoding="utf-8"):
            raise AssertionError(f"after the removal there are: {traces or 'records in the status of packages'}")
        # Otherwise apt keeps what another package only recommends or suggests.
        apt("autoremove", "--purge", "-o", "APT::AutoRemove::RecommendsImportant=false",
            "-o", "APT::AutoRemove::SuggestsImportant=false")
        if installed_packages() != cls.packages_before:
            raise AssertionError(f"packages are left: {installed_packages() ^ cls.packages_before}")

    def files_of(self, package):
        return [pathlib.Path(path) for path in run("dpkg", "--listfiles", package).splitlines()]

    def field(self, package, name):
        return run("dpkg-query", "--show", "--showformat", f"${{{name}}}", package)


class TerminalProgramAlone(PackagesCase):
    packages = ("dunmora-cli",)

    def test_brings_nothing_but_libraries_of_c_and_xxhash(self):
        self.assertLessEqual(installed_packages() - self.packages_before, LIBRARIES | {"dunmora-cli"})

    def test_depends_on_nothing_but_libraries_of_c_and_xxhash(self):
        depends = {word.split()[0] for word in self.field("dunmora-cli", "Depends").split(", ")}

        self.assertEqual(depends, LIBRARIES)
        self.assertEqual(self.field("dunmora-cli", "Recommends") + self.field("dunmora-cli", "Pre-Depends"), "")

    def test_loads_nothing_but_libraries_of_c_and_xxhash(self):
        loaded = {pathlib.Path(name).name for name in FIRST_MATCH.findall(run("ldd", "/usr/bin/dunmora-cli"))}

        self.assertLessEqual(SONAMES, loaded)
        self.assertEqual({name for name in loaded - SONAMES if not name.startswith(("linux-vdso", "ld-linux"))}, set())

    def test_is_small(self):
        files = [path for path in self.files_of("dunmora-cli") if path.is_file()]
        size = sum(path.stat().st_size for path in files)
        stated = int(self.field("dunmora-cli", "Installed-Size"))

        self.assertLess(size, SMALL)
        self.assertLess(stated * 1024, SMALL)
        self.assertGreater(stated * 1024, size / 2)

    def test_lists_the_duplicates_of_a_book(self):
        self.assertIn("duplicates of", as_person("dunmora-cli", "list", "--quiet", SAMPLE))

    def test_says_that_the_module_is_another_package(self):
        self.assertIn("dunmora-eds.so, is not installed", failure_of("dunmora-cli", "books"))

    def test_has_a_manual_page(self):
        self.assertIn("EXIT STATUS", as_person("man", "dunmora-cli"))
        self.assertIn("dunmora-cli", as_person("whatis", "dunmora-cli"))

    def test_completes_its_commands_in_bash(self):
        script = ("source /usr/share/bash-completion/bash_completion; _completion_loader dunmora-cli;"
                  "complete -p dunmora-cli")

        self.assertIn("dunmora", as_person("bash", "--norc", "-c", script))

    def test_completes_its_commands_in_zsh(self):
        script = "autoload -Uz compinit && compinit -D && print -r -- $_comps[dunmora-cli]"

        self.assertEqual(as_person("zsh", "-f", "-c", script).strip(), "_dunmora-cli")

    def test_completes_its_commands_in_fish(self):
        self.assertRegex(as_person("fish", "-c", "complete --do-complete 'dunmora-cli li'"), r"(?m)^list\b")


class AllPackages(PackagesCase):
    packages = ("dunmora", "dunmora-cli", "dunmora-eds")

    def test_need_no_scripts(self):
        """The caches of menus, icons and file types are brought up to date by dpkg's triggers."""
        scripts = [path.name for path in pathlib.Path("/var/lib/dpkg/info").glob("dunmora*")
                   if path.suffix not in (".list", ".md5sums")]

        self.assertEqual(scripts, [])

    def test_are_as_they_were_built(self):
        self.assertEqual(run("dpkg", "--verify", *self.packages), "")

    def test_have_files_that_only_root_can_change(self):
        for package in self.packages:
            for path in self.files_of(package):
                self.assertEqual((path.lstat().st_uid, path.lstat().st_gid), (0, 0), path)
                self.assertFalse(path.lstat().st_mode & 0o022 and not path.is_symlink(), path)

    def test_say_that_they_are_one_version(self):
        self.assertEqual(len({self.field(package, "Version") for package in self.packages}), 1)
        self.assertEqual(as_person("dunmora-cli", "--version").split()[-1], self.field("dunmora-cli", "Version"))

    def test_find_the_module(self):
        message = failure_of("dunmora-cli", "books")

        self.assertNotIn("module", message)
        self.assertNotIn("not installed", message)

    def test_have_a_manual_page_and_a_guide(self):
        self.assertIn("eds:", as_person("man", "dunmora"))
        guide = pathlib.Path("/usr/share/doc/dunmora/guide")
        for page in guide.glob("*.html"):
            for picture in re.findall(r'(?:src|srcset)="([^"]+)"', page.read_text(encoding="utf-8")):
                self.assertTrue((guide / picture).is_file(), (page, picture))
        self.assertTrue((guide / "index.html").is_file())

    def test_are_in_the_menu_and_open_vcards(self):
        windows = self.folder / "windows"
        windows.mkdir(exist_ok=True)
        os.chown(windows, pwd.getpwnam(PERSON).pw_uid, -1)
        try:
            as_person("env", f"DUNMORA_EVIDENCE={windows}", "/usr/bin/python3", "-B", ROOT / "tests/e2e/menu_test.py",
                      "/usr/bin/dunmora", self.app_id, windows)
        finally:
            os.chown(windows, 0, -1)


def main():
    if installed_packages() & {"dunmora", "dunmora-cli", "dunmora-eds", "libqt6core6"}:
        sys.exit("packages_test: this is no fresh Debian")
    PackagesCase.folder = pathlib.Path(sys.argv.pop(1)).resolve()
    PackagesCase.app_id = sys.argv.pop(1)
    run("useradd", "--create-home", PERSON)
    unittest.main(verbosity=2)


if __name__ == "__main__":
    main()
