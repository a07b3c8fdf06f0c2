#!/usr/bin/python3
"""kill_during_save.py SAVER [COUNT]: COUNT times (1000) a program that saves without end is killed at a random moment;
each time the file must be whole, and the next save must leave nothing beside it but the kept copy."""
import os
import random
import signal
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree

LONGEST_LIFE = 0.03  # seconds: a few saves
NAMES = {"QLXConfig.xml", "QLXConfig.xml.bak"}


def whole(path):
    """The number that the save wrote first and last; None when they differ or the file does not parse."""
    try:
        root = ElementTree.parse(path).getroot()
    except ElementTree.ParseError:
        return None
    first = root.findtext("Ports_Configuration/Number")
    return first if first == root.findtext("Printer_Configuration/Number") else None


def kill_one(saver, path, moment):
    with subprocess.Popen([saver, path], stdout=subprocess.PIPE) as process:
        process.stdout.readline()
        try:
            process.wait(moment)
        except subprocess.TimeoutExpired:
            process.send_signal(signal.SIGKILL)
        return process.wait()


def main():
    saver, count = sys.argv[1], int(sys.argv[2]) if len(sys.argv) > 2 else 1000
    seed = random.randrange(1 << 32)
    moments = random.Random(seed)
    during = broken = left_beside = numbers = 0
    with tempfile.TemporaryDirectory() as directory:
        path = os.path.join(directory, "QLXConfig.xml")
        subprocess.run([saver, path, "1"], check=True, stdout=subprocess.DEVNULL)
        for _ in range(count):
            if kill_one(saver, path, moments.uniform(0, LONGEST_LIFE)) != -signal.SIGKILL:
                sys.exit("the saver ended by itself")
            during += bool(set(os.listdir(directory)) - NAMES)
            number = whole(path)
            broken += number is None
            numbers += number not in (None, "0")
            subprocess.run([saver, path, "1"], check=True, stdout=subprocess.DEVNULL)
            left_beside += bool(set(os.listdir(directory)) - NAMES)
    print(f"{count} kills (seed {seed}), {during} in the middle of a write, {numbers} after a save of their own: "
          f"{broken} files broken, {left_beside} times something left beside the file after the next save")
    # A run in which no kill met a save would prove nothing.
    sys.exit(0 if broken == left_beside == 0 and during and numbers else 1)


if __name__ == "__main__":
    main()
