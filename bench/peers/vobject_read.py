#!/usr/bin/python3
"""Reads the cards of a file with vobject and groups the people by first and last name: vobject_read.py FILE"""

import collections
import sys

import vobject


def main(path):
    groups = collections.defaultdict(list)
    with open(path, encoding="utf-8", newline="") as file:
        for card in vobject.readComponents(file):
            groups[card.n.value.given, card.n.value.family].append(card)
    print(sum(len(group) > 1 for group in groups.values()))


if __name__ == "__main__":
    main(sys.argv[1])
