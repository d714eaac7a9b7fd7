#!/usr/bin/env python3
"""Deletes the copies in hostile books: hostile_books_test.py DUNMORA-CLI small|large

Each one costs about as much processor time and memory for each byte as an ordinary book. The ordinary one is measured
in the same run.
"""

import dataclasses
import pathlib
import random
import subprocess
import sys
import tempfile
from collections.abc import Callable

from costs import TOLERANCE, run
from shared import card

MEBIBYTE = 1 << 20
# So large that it does not matter what the process had before the program's start, of which the memory counts as well:
# in a book of 8 MiB, that hides half of what the people take.
ORDINARY_SIZE = 32 * MEBIBYTE


def write_ordinary(file, size):
    """The copies have other notes, so that they must be compared line by line, as those of hostile books."""
    for number in range(size // 310):
        person = number * 9 // 10
        file.write(card(f"{number:032x}", f"First {person}", f"Last {person}", f"TEL;TYPE=CELL:+1 555 {person:07}",
                        f"EMAIL:first.{person}@example.com", "ADR;TYPE=HOME:;;1 Example Street;Example;;12345;Example",
                        f"NOTE:an ordinary note\\, the {number:06}th of its kind", "ORG:Example"))


# The GNU C++ library's std::hash<std::string>: 64 bits, from blocks of eight bytes.
FACTOR, SEED = 0xC6A4A7935BD1E995, 0xC70F6907
INVERSE = pow(FACTOR, -1, 1 << 64)
ALL = (1 << 64) - 1
# Characters that are the same in a file and in a text.
PLAIN = bytes(set(range(33, 127)) - set(b'",:;\\'))
MADE_PLAIN = bytes(PLAIN[byte % len(PLAIN)] for byte in range(256))


def mixed(block):
    product = int.from_bytes(block, "little") * FACTOR & ALL
    return (product ^ product >> 47) * FACTOR & ALL


def unmixed(value):
    product = value * INVERSE & ALL
    return ((product ^ product >> 47) * INVERSE & ALL).to_bytes(8, "little")


def next_state(state, block):
    return (state ^ mixed(block)) * FACTOR & ALL


def colliding_pairs(count, prefix, suffix_size, chance):
    """Returns pairs of texts of 16 bytes. Behind the prefix, of whole blocks, it makes no difference to the hash which
    one of each pair follows."""
    state = SEED ^ (len(prefix) + 16 * count + suffix_size) * FACTOR & ALL
    for begin in range(0, len(prefix), 8):
        state = next_state(state, prefix[begin:begin + 8])

    def block():
        return chance.randbytes(8).translate(MADE_PLAIN)

    pairs = []
    while len(pairs) < count:
        one, other, second = block(), block(), block()
        difference = next_state(state, one) ^ next_state(state, other)
        other_second = unmixed(mixed(second) ^ difference)
        if set(other_second) <= set(PLAIN):
            pairs.append((one + second, other + other_second))
            state = next_state(next_state(state, one), second)
    return pairs


def write_flood(file, bits):
    """All people have different UIDs and names, which a hash without a key does not tell apart."""
    chance = random.Random(1)
    uids = colliding_pairs(bits, b"", 0, chance)
    # The name by which people are compared is "Firstly-NAME-".
    names = colliding_pairs(bits, b"Firstly-", 1, chance)
    for number in range(1 << bits):
        uid, name = (b"".join(pair[number >> bit & 1] for bit, pair in enumerate(pairs)) for pairs in (uids, names))
        file.write(card(uid.decode(), "Firstly", name.decode()))


def write_same_shape(file, bits):
    """As `write_flood`, with UIDs and names that nobody has crafted."""
    chance = random.Random(1)
    for _ in range(1 << bits):
        text = chance.randbytes(8 * bits).hex()
        file.write(card(text, "Firstly", text))


def write_zeros(file, size):
    file.truncate(size)


def write_lines(file, size, name):
    """A long line in one of two cards."""
    file.write(f"BEGIN:VCARD\r\nUID:2\r\n{name}:".encode())
    for _ in range(size // MEBIBYTE):
        file.write(b"x" * MEBIBYTE)
    file.write(b"\r\nN:Lee;Ann;;;\r\nEND:VCARD\r\n" + card("1", "Ann", "Lee"))


def write_phones(file, count):
    file.write(b"BEGIN:VCARD\r\nUID:2\r\nN:Lee;Ann;;;\r\n")
    for number in range(count):
        file.write(b"TEL;TYPE=HOME:+1 555 %07d\r\n" % number)
    file.write(b"END:VCARD\r\n" + card("1", "Ann", "Lee"))


def write_nested(file, count, line, last_lines):
    """Cards in cards, which all end, or none does."""
    for _ in range(count):
        file.write(line)
    for _ in range(count if last_lines else 0):
        file.write(b"END:VCARD\r\n")
    file.write(card("1", "Ann", "Lee"))


def write_names(file, count):
    """Copies of one card, each with properties that no other one has."""
    for number in range(count):
        file.write(card(number, "Ann", "Lee", *(f"X-{kind}{number}:1" for kind in "ABC")))


def write_charsets(file, count):
    names = subprocess.run(["iconv", "--list"], capture_output=True, check=True).stdout.decode().replace("/", "").split()
    for number in range(count):
        file.write(f"BEGIN:VCARD\r\nUID:{number}\r\nN;CHARSET={names[number % len(names)]}:Lee {number};Ann;;;\r\n"
                   "END:VCARD\r\n".encode())


@dataclasses.dataclass(frozen=True)
class Hostile:
    """A book, and how much more than an ordinary book of its size it may cost."""

    name: str
    write: Callable
    seconds: float = TOLERANCE
    kilobytes: float = TOLERANCE


def hostile_books(is_large):
    million = 10 ** 6 if is_large else 10 ** 5
    line = 500 * MEBIBYTE if is_large else 16 * MEBIBYTE
    yield Hostile("zeros", lambda file: write_zeros(file, 2048 * MEBIBYTE if is_large else 64 * MEBIBYTE))
    for name in ("NOTE", "N", "NICKNAME", "UID", "TEL"):
        yield Hostile(f"long lines of {name}", lambda file, name=name: write_lines(file, line, name))
    # All of their properties are read, and of ordinary copies only those that differ.
    yield Hostile("many TELs in a card", lambda file: write_phones(file, million))
    yield Hostile("property names of each copy's own", lambda file: write_names(file, million // 10))
    for line_name, text in (("BEGIN", b"BEGIN:VCARD\r\n"), ("AGENT", b"AGENT:\r\nBEGIN:VCARD\r\n"),
                            ("AGENT and BEGIN", b"BEGIN:VCARD\r\nAGENT:BEGIN:VCARD\r\n")):
        for ends in (False, True):
            yield Hostile(f"nested {line_name}s, {'closed' if ends else 'open'}",
                          lambda file, text=text, ends=ends: write_nested(file, million, text, ends))
    # Every charset costs a converter, which the C library loads from a file.
    yield Hostile("all charsets in turn", lambda file: write_charsets(file, 10 * 1180), seconds=20)


def measured(program, home, name, write):
    path = home / "book.vcf"
    with path.open("wb") as file:
        write(file)
    size = path.stat().st_size
    cost = run(program, home, ["delete", "book.vcf", "--yes", "--keep-one", "--quiet"])
    print(f"{name}: {size / MEBIBYTE:.1f} MiB, {cost}", flush=True)
    return cost, size


def check_flood(program, home, bits):
    flood, _ = measured(program, home, f"flood of {1 << bits} texts", lambda file: write_flood(file, bits))
    same, _ = measured(program, home, "texts of the same shape", lambda file: write_same_shape(file, bits))
    factor = flood.seconds / same.seconds
    print(f"    {factor:.1f} times the processor time")
    return flood.code == same.code == 0 and factor <= TOLERANCE


def check_hostile(program, home, hostile, start, ordinary, ordinary_size):
    cost, size = measured(program, home, hostile.name, hostile.write)
    # In a smaller book the start of the program and the parts that every run has would count for too much.
    scale = max(size, MEBIBYTE) / ordinary_size
    seconds = (cost.seconds - start.seconds) / ((ordinary.seconds - start.seconds) * scale)
    kilobytes = (cost.kilobytes - start.kilobytes) / ((ordinary.kilobytes - start.kilobytes) * scale)
    print(f"    {seconds:.2f} times the processor time, {kilobytes:.2f} times the memory of an ordinary book")
    # Refusing a book that is too large for the computer, or that holds no cards, is fine as well.
    refusals = ("is too large", "not enough memory", "is not a vCard file")
    is_said = cost.code == 0 or (cost.code == 1 and any(refusal in cost.err for refusal in refusals))
    if not is_said:
        print(cost.err[:1000])
    return is_said and seconds <= hostile.seconds and kilobytes <= hostile.kilobytes


def main():
    program, is_large = sys.argv[1], sys.argv[2] == "large"
    failed = []
    with tempfile.TemporaryDirectory(prefix="dunmora-hostile-") as folder:
        home = pathlib.Path(folder)
        if not check_flood(program, home, 15 if is_large else 13):
            failed.append("flood")
        start, _ = measured(program, home, "empty book", lambda file: None)
        ordinary, size = measured(program, home, "ordinary book", lambda file: write_ordinary(file, ORDINARY_SIZE))
        if start.code != 0 or ordinary.code != 0 or ordinary.seconds <= start.seconds:
            failed.append("ordinary book, so there is nothing to compare with")
        for hostile in hostile_books(is_large) if not failed else ():
            if not check_hostile(program, home, hostile, start, ordinary, size):
                failed.append(hostile.name)
    print(f"out of bounds: {', '.join(failed)}" if failed else "all within bounds")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
