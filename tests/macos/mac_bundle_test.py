#!/usr/bin/env python3
"""Checks the Mac bundle's Info.plist and entitlements.

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

    def test_has_the_version_of_the_project(self):
        self.assertEqual(self.info["CFBundleVersion"], self.version)
        self.assertEqual(self.info["CFBundleShortVersionString"], self.version)

    def test_explains_why_it_needs_the_contacts(self):
        self.assertIn("contacts", self.info["NSContactsUsageDescription"])

    def test_is_an_application_with_its_own_identifier(self):
        self.assertEqual(self.info["CFBundlePackageType"], "APPL")
        self.assertEqual(self.info["CFBundleExecutable"], "Dunmora")
        self.assertRegex(self.info["CFBundleIdentifier"], r"^[A-Za-z0-9-]+(\.[A-Za-z0-9-]+)+$")
        self.assertRegex(self.info["LSMinimumSystemVersion"], r"^\d+\.\d+$")

    def test_allows_plain_http_only_to_its_update_service(self):
        security = self.info.get("NSAppTransportSecurity")
        if not self.host:
            self.assertIsNone(security)
            return
        name = self.host.rsplit(":", 1)[0]
        self.assertEqual(security, {"NSExceptionDomains": {name: {"NSExceptionAllowsInsecureHTTPLoads": True}}})

    def test_is_entitled_only_to_the_contacts(self):
        self.assertEqual(self.entitlements, {"com.apple.security.personal-information.addressbook": True})


if __name__ == "__main__":
    info, entitlements, MacBundle.version, MacBundle.host = (sys.argv[1:] + [""])[:4]
    MacBundle.info, MacBundle.entitlements = plist(info), plist(entitlements)
    unittest.main(argv=sys.argv[:1])
