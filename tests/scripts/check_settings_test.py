#!/usr/bin/env python3
"""Tests which versions, ids and update services the build accepts, and what it writes into the Mac's Info.plist.

    check_settings_test.py PATH-OF-CMAKE PATH-OF-THE-COMPILER [UNITTEST-OPTION]...
"""

import pathlib
import plistlib
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
SERVICE = "update.example.com:8080"
APP_ID = "com.example.dunmora"


def words_of(message):
    """Returns a message of CMake, which breaks its lines, in one line."""
    return " ".join(message.split())


class CheckSettings(unittest.TestCase):
    """Runs the check alone."""

    cmake: str

    def check(self, version="0.1", host=SERVICE, app_id=APP_ID, **settings):
        """Returns the message of the check; empty if it accepts all of them."""
        settings |= {"PROJECT_VERSION": version, "DUNMORA_UPDATE_HOST": host, "DUNMORA_APP_ID": app_id}
        run = subprocess.run([self.cmake, *(f"-D{name}={value}" for name, value in settings.items()), "-P",
                              ROOT / "cmake/CheckSettings.cmake"], capture_output=True, text=True, check=False)
        self.assertEqual(run.returncode != 0, bool(run.stderr))
        return words_of(run.stderr)

    def test_accepts_a_number_with_one_digit_after_the_point_as_the_version(self):
        for version in ("0.1", "1.0", "12.9"):
            self.assertEqual(self.check(version=version), "", version)

    def test_refuses_every_other_version(self):
        for version in ("", "1", "1.", ".1", "1.10", "1.2.3", "1.2.3.4", "v1.2", "1.2b", "1,2"):
            self.assertIn(f'The version "{version}" must be a number', self.check(version=version))

    def test_accepts_a_domain_in_reverse_and_a_name_as_the_id(self):
        for app_id in (APP_ID, "io.github.some_user.Dunmora", "org.my-domain.dunmora2", "org._7_zip.app"):
            self.assertEqual(self.check(app_id=app_id), "", app_id)

    def test_refuses_every_other_id(self):
        for app_id in ("", "dunmora", "example.dunmora", "com.example.", ".com.example", "com..example.dunmora",
                       "com.example.2dunmora", "com.example.-dunmora", "com.example.dun mora", "com.exämple.dunmora",
                       "com.example/dunmora", "com.example.dunmora.desktop;x", "com.example.dunmora\n",
                       "com.example." + "x" * 200):
            self.assertIn("must be a domain in reverse and a name", self.check(app_id=app_id), app_id)

    def test_accepts_licences_as_spdx_expressions_and_none(self):
        for name in ("DUNMORA_LICENSE", "DUNMORA_METADATA_LICENSE"):
            for value in ("", "CC0-1.0", "GPL-3.0-or-later", "(MIT OR Apache-2.0) AND BSD-3-Clause", "LGPL-2.1+"):
                self.assertEqual(self.check(**{name: value}), "", value)

    def test_refuses_what_is_no_spdx_expression(self):
        for name in ("DUNMORA_LICENSE", "DUNMORA_METADATA_LICENSE"):
            for value in ("<MIT>", "MIT & BSD", " ", "MIT;BSD", "https://example.com/licence", "frei für alle"):
                self.assertIn(f"{name} \"{value}\" must be an SPDX", self.check(**{name: value}), value)

    def test_accepts_a_name_and_an_address_as_the_maintainer_and_none(self):
        for value in ("", "Dunmora <support@dunmora.example.com>", "Zoë O'Neill-Ek <zoe+deb@example.com>"):
            self.assertEqual(self.check(DUNMORA_MAINTAINER=value), "", value)

    def test_refuses_every_other_maintainer(self):
        for value in ("ann@example.com", "Ann Lee", "<ann@example.com>", "Ann <ann>", "Ann <a@example.com> x", " Ann <a@b.c>",
                      "Ann, Ben <a@example.com>", "Ann <a@example.com>\nDepends: x", "Ann\nLee <a@example.com>",
                      "Ann;Lee <a@example.com>", '"Ann" <a@example.com>', "Ann (her) <a@example.com>"):
            self.assertIn("must be a name and an e-mail address", self.check(DUNMORA_MAINTAINER=value), value)

    def test_accepts_an_address_with_https_for_the_screenshots_and_none(self):
        for address in ("", "https://example.com", "https://example.com/a/b?c=d&e=f"):
            self.assertEqual(self.check(DUNMORA_SCREENSHOTS=address), "", address)

    def test_refuses_every_other_address_for_the_screenshots(self):
        for address in ("http://example.com/a", "https://", "https://example.com/", "example.com/a",
                        "https://example.com/a b", "file:///a"):
            self.assertIn("must be an address that begins with https://", self.check(DUNMORA_SCREENSHOTS=address),
                          address)

    def test_accepts_addresses_of_the_maker_and_none(self):
        for site in ("", "http://dunmora.example.com/", "https://example.com/~ann/?a=1&b=%20#top"):
            self.assertEqual(self.check(DUNMORA_WEBSITE=site), "", site)
        for support in ("", "support@dunmora.example.com", "ann+help@mail-1.example.com"):
            self.assertEqual(self.check(DUNMORA_SUPPORT=support), "", support)

    def test_refuses_addresses_that_cannot_be_opened_or_written_into_a_source(self):
        for site in ("example.com", "file:///a", "https://", "https://example.com/a b", "https://example.com/a;b",
                     'https://example.com/"', "https://example.com/\\n", "https://example.com/\n"):
            self.assertIn("must be an address that begins with http:// or https://", self.check(DUNMORA_WEBSITE=site),
                          site)
        for support in ("support", "@example.com", "mailto:ann@example.com", "Ann <ann@example.com>", "ann@b.c;d",
                        'ann@example.com?subject="', "ann@example.com\\n"):
            self.assertIn("must be an e-mail address", self.check(DUNMORA_SUPPORT=support), support)

    def test_accepts_a_host_a_host_with_a_port_and_none(self):
        for host in ("", "localhost", "update.example.com", SERVICE, "127.0.0.1:65535", "xn--bcher-kva.example"):
            self.assertEqual(self.check(host=host), "", host)

    def test_refuses_every_other_update_service(self):
        for host in ("https://update.example.com", "http://update.example.com:80", "//update.example.com",
                     "update.example.com/", "update.example.com/path", "update.example.com?app", "update.example.com#a",
                     "user@update.example.com", "update.example.com:", "update.example.com:0",
                     "update.example.com:65536", "update.example.com:123456", "update.example.com:http",
                     "update..example.com", ".example.com", "example.com.", "-", "a b", "bücher.example", "a;b", "a\nb"):
            self.assertIn("must be host or host:port", self.check(host=host), host)


class Configure(unittest.TestCase):
    """Configures the whole project."""

    cmake: str
    compiler: str

    def setUp(self):
        self.build = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))

    def configure(self, *settings):
        return subprocess.run([self.cmake, "-S", ROOT, "-B", self.build, f"-DCMAKE_CXX_COMPILER={self.compiler}",
                               "-DDUNMORA_QT=OFF", "-DDUNMORA_EDS=OFF", "-DDUNMORA_TESTS=OFF", *settings],
                              capture_output=True, text=True, check=False)

    def info(self):
        with open(self.build / "Info.plist", "rb") as file:
            return plistlib.load(file)

    def transport_security(self):
        return self.info().get("NSAppTransportSecurity")

    def test_has_no_update_service_by_default(self):
        run = self.configure()

        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertIn("DUNMORA_UPDATE_HOST:STRING=", (self.build / "CMakeCache.txt").read_text().splitlines())
        self.assertIsNone(self.transport_security())

    def test_allows_plain_http_to_the_update_service_on_a_mac(self):
        run = self.configure(f"-DDUNMORA_UPDATE_HOST={SERVICE}")

        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertEqual(self.transport_security(), {
            "NSExceptionDomains": {"update.example.com": {"NSExceptionAllowsInsecureHTTPLoads": True}}})

    def test_identifies_the_mac_bundle_by_the_id_with_hyphens_for_underscores(self):
        run = self.configure("-DDUNMORA_APP_ID=org.some_user.app")

        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertEqual(self.info()["CFBundleIdentifier"], "org.some-user.app")

    def copyright(self):
        return (self.build / "deb/copyright").read_text(encoding="utf-8")

    def test_claims_no_licence_in_a_package_unless_there_is_one(self):
        self.assertEqual(self.configure().returncode, 0)
        self.assertIn("No licence has been chosen", self.copyright())
        self.assertNotIn("License:", self.copyright())

        self.assertEqual(self.configure("-DDUNMORA_LICENSE=MIT OR Apache-2.0").returncode, 0)

        self.assertNotIn("No licence has been chosen", self.copyright())
        self.assertIn("\nLicense: MIT OR Apache-2.0\n", self.copyright())

    def test_names_the_support_address_as_the_maintainer_unless_there_is_another_one(self):
        self.assertEqual(self.configure("-DDUNMORA_SUPPORT=help@example.com").returncode, 0)
        self.assertIn("Maintainer of this package: Dunmora <help@example.com>\n", self.copyright())

        self.assertEqual(self.configure("-DDUNMORA_MAINTAINER=Ann Lee <ann@example.com>").returncode, 0)

        self.assertIn("Maintainer of this package: Ann Lee <ann@example.com>\n", self.copyright())

    def test_stops_at_an_address_in_place_of_a_host(self):
        run = self.configure("-DDUNMORA_UPDATE_HOST=https://update.example.com/")

        self.assertNotEqual(run.returncode, 0)
        self.assertIn("must be host or host:port", words_of(run.stderr))

    def test_stops_at_folders_that_the_build_folder_cannot_have(self):
        # Both, because the cache keeps those of the turn before.
        for programs, libraries in (("/a/bin", "/b/lib"), ("games/bin", "lib"), ("bin", "bin")):
            folders = [f"-DCMAKE_INSTALL_BINDIR={programs}", f"-DCMAKE_INSTALL_LIBDIR={libraries}"]
            run = self.configure(*folders)

            self.assertNotEqual(run.returncode, 0, folders)
            self.assertIn("must be a folder directly in the prefix", words_of(run.stderr), folders)

    def test_stops_at_a_version_that_is_not_a_decimal_number(self):
        project = self.build / "version.cmake"
        project.write_text("set(PROJECT_VERSION 1.10)\n")

        run = self.configure(f"-DCMAKE_PROJECT_Dunmora_INCLUDE={project}")

        self.assertNotEqual(run.returncode, 0)
        self.assertIn('The version "1.10" must be a number', words_of(run.stderr))


if __name__ == "__main__":
    CheckSettings.cmake = Configure.cmake = sys.argv.pop(1)
    Configure.compiler = sys.argv.pop(1)
    unittest.main()
