"""The module for the desktop's address books, as a build or an installation has it."""

import pathlib

MODULE = "dunmora-eds.so"


def module_of(program):
    """Returns the path of the module that belongs to this program, or None if there is none."""
    prefix = pathlib.Path(program).parents[1]
    return next(prefix.glob(f"lib*/**/dunmora/{MODULE}"), None)
