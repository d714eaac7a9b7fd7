"""An address book large enough to make every job take noticeable time."""


def card(person, copy):
    number = f"{person:07}"
    return (f"BEGIN:VCARD\r\nVERSION:3.0\r\nUID:7c9e6679-7425-40de-944b-{copy:02}{person:010}\r\n"
            f"N:Lastname{number};Firstname{person % 100:02};;;\r\nFN:Firstname{person % 100:02} Lastname{number}\r\n"
            f"TEL;type=CELL;type=VOICE;type=pref:+1 555 {number}\r\nTEL;type=HOME;type=VOICE:+1 556 {number}\r\n"
            f"EMAIL;type=INTERNET;type=HOME:{number}@example.com\r\nADR;type=HOME:;;{person} Main Street;;;;\r\n"
            "REV:2024-05-01T10:00:00Z\r\nEND:VCARD\r\n").encode()


# Reading so many takes longer than a window takes to appear and become active, so that a test sees the program at work.
MANY_PEOPLE = 200_000


def big_book(people, copies):
    """Returns a book with everyone once and then the first `copies` people again, and the book without those copies.

    The copies are the cards that the program proposes for deletion.
    """
    once = b"".join(card(person, 0) for person in range(people))
    return once + b"".join(card(person, 1) for person in range(copies)), once
