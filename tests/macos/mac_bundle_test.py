#!/usr/bin/env python3
"""Checks what a Mac is told about the program.

    python3 tests/macos/mac_bundle_test.py INFO-PLIST ENTITLEMENTS VERSION [UPDATE-HOST]
"""

import plistlib
import sys
import unittest


def plist(path):
    with open(path, "rb") as file:
        return plistlib.load(file)


class MacBundle(unittest.TestCase):
    info: dict
    entitlements: dict
    version: str
    host: str

    def test_has_the_one_version_of_the_project(self):
        self.assertEqual(self.info["CFBundleVersion"], self.version)
        self.assertEqual(self.info["CFBundleShortVersionString"], self.version)

    def test_says_what_it_wants_the_contacts_for(self):
        self.assertIn("contacts", self.info["NSContactsUsageDescription"])

    def test_is_an_application_with_an_identity_of_its_own(self):
        self.assertEqual(self.info["CFBundlePackageType"], "APPL")
        self.assertEqual(self.info["CFBundleExecutable"], "Dunmora")
        self.assertRegex(self.info["CFBundleIdentifier"], r"^[A-Za-z0-9-]+(\.[A-Za-z0-9-]+)+$")
        self.assertRegex(self.info["LSMinimumSystemVersion"], r"^\d+\.\d+$")

    def test_may_ask_its_update_service_over_plain_http_and_nobody_else(self):
        security = self.info.get("NSAppTransportSecurity")
        if not self.host:
            self.assertIsNone(security)
            return
        name = self.host.rsplit(":", 1)[0]
        self.assertEqual(security, {"NSExceptionDomains": {name: {"NSExceptionAllowsInsecureHTTPLoads": True}}})

    def test_is_entitled_to_the_contacts_and_to_nothing_else(self):
        self.assertEqual(self.entitlements, {"com.apple.security.personal-information.addressbook": True})


if __name__ == "__main__":
    info, entitlements, MacBundle.version, MacBundle.host = (sys.argv[1:] + [""])[:4]
    MacBundle.info, MacBundle.entitlements = plist(info), plist(entitlements)
    unittest.main(argv=sys.argv[:1])
