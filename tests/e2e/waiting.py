"""Waits for conditions by polling with a deadline."""

import time

# Long enough for two busy cores. Only a failing test waits this long.
DEADLINE_SECONDS = 40
POLL_SECONDS = 0.004


class Timeout(AssertionError):
    """Something did not become true in time."""


def wait_for(condition, what, seconds=DEADLINE_SECONDS):
    """Polls until the condition returns something true and returns that."""
    deadline = time.monotonic() + seconds
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() >= deadline:
            raise Timeout(f"after {seconds} seconds still no {what}")
        time.sleep(POLL_SECONDS)
