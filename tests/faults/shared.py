"""What the tests of this folder share with each other and with tests/e2e."""

import os
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).parents[1] / "e2e"))
from cards import card  # for all scripts of this folder

__all__ = ["card", "environment_at"]


def environment_at(home):
    """Returns an environment in which this folder is the user's."""
    return {"HOME": str(home), "XDG_CONFIG_HOME": str(home / "config"), "PATH": os.environ["PATH"], "LC_ALL": "C.UTF-8"}
