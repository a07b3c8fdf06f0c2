"""Waiting for what the program brings about: never for a length of time."""

import os
import time

LIMIT = int(os.environ.get("QLX_UI_LIMIT", "30"))  # seconds that any single expectation may take


witnesses = []  # called when an expectation is not met, while all is still as it was; what they print is the evidence


class Timeout(AssertionError):
    """An expectation was not met within LIMIT."""


def wait_for(condition, what):
    """Returns the first true value of condition(); a control that vanishes while it is read counts as false."""
    deadline = time.monotonic() + LIMIT
    while True:
        try:
            value = condition()
        except Exception as error:  # pylint: disable=broad-except
            if not vanished(error):
                raise
            value = None
        if value:
            return value
        if time.monotonic() > deadline:
            try:
                for tell in witnesses:
                    tell()
            finally:  # also when a witness fails
                raise Timeout(what)
        time.sleep(0.02)


def vanished(error):
    """True for the errors that tell of a control that is gone."""
    return type(error).__module__.startswith(("gi", "pyatspi")) or isinstance(error, (AttributeError, LookupError))
