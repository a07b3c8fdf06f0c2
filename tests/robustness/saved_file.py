"""What a saver (saver.cpp) leaves behind."""
import os
import shlex
import subprocess
import xml.etree.ElementTree as ElementTree

FILE = "QLXConfig.xml"
NAMES = {FILE, FILE + ".bak"}


# What starts a program of another system.
EMULATOR = shlex.split(os.environ.get("QLX_EMULATOR", ""))


def command(saver, path, *numbers):
    """What to run: see saver.cpp for its numbers."""
    return [*EMULATOR, saver, path, *map(str, numbers)]


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
    subprocess.run(command(saver, path, *numbers), check=True, stdout=subprocess.DEVNULL)
