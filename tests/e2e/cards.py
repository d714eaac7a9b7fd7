"""vCards for tests."""


def card(uid, first, last="Lee", *lines):
    """Returns a vCard with these property lines, byte for byte."""
    text = ["BEGIN:VCARD", "VERSION:3.0", f"UID:{uid}", f"N:{last};{first};;;", "REV:2024-05-01T10:00:00Z", *lines,
            "END:VCARD", ""]
    return "\r\n".join(text).encode()
