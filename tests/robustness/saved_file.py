"""What a saver (saver.cpp) leaves behind."""
import os
import shlex
import subprocess
import sys
import xml.etree.ElementTree as ElementTree

FILE = "QLXConfig.xml"
NAMES = {FILE, FILE + ".bak"}


# What starts a program of another system.
EMULATOR = shlex.split(os.environ.get("QLX_EMULATOR", ""))


def start(saver, path, *numbers):
    """A saver, whose standard output is read here; see saver.cpp for its numbers."""
    return subprocess.Popen([*EMULATOR, saver, path, *map(str, numbers)], stdout=subprocess.PIPE, text=True)


def begin(saver, path, *numbers):
    """A saver that begins its first save, and the line by which it says so. About once in two thousand times Wine ends
    before a program has begun: it is then started once more."""
    for _ in range(2):
        process = start(saver, path, *numbers)
        line = process.stdout.readline()
        if line:
            return process, line
        process.communicate()
    raise SystemExit(f"the saver ended with {process.returncode} before it began, twice")


def number(path):
    """The number that the save wrote first and last; None when they differ or there is no file that parses."""
    try:
        root = ElementTree.parse(path).getroot()
    except (ElementTree.ParseError, FileNotFoundError):
        return None
    first = root.findtext("Ports_Configuration/Number")
    return int(first) if first and first == root.findtext("Printer_Configuration/Number") else None


def beside(directory):
    """What lies in the directory that should not be there once no save is under way."""
    return set(os.listdir(directory)) - NAMES


def save(saver, path, *numbers):
    """Runs the saver to its end."""
    process, _ = begin(saver, path, *numbers)
    with process:
        process.communicate()
    if process.returncode != 0:
        sys.exit(f"the saver ended with {process.returncode}")
