#!/usr/bin/python3
"""kill_during_save.py SAVER [COUNT [SEED]]: COUNT times (1000) a program that saves without end is killed at a random
moment; each time the file and its kept copy must be whole, and the next save must leave nothing beside them."""
import os
import random
import signal
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree

LONGEST_LIFE = 0.03  # seconds: a few saves
FILE = "QLXConfig.xml"
NAMES = {FILE, FILE + ".bak"}


def whole(path):
    """The number that the save wrote first and last; None when they differ or the file does not parse."""
    try:
        root = ElementTree.parse(path).getroot()
    except ElementTree.ParseError:
        return None
    first = root.findtext("Ports_Configuration/Number")
    return first if first == root.findtext("Printer_Configuration/Number") else None


def kill_one(saver, path, moment):
    """Kills the saver `moment` seconds after its first save began; false when it ended by itself."""
    with subprocess.Popen([saver, path], stdout=subprocess.PIPE) as process:
        process.stdout.readline()
        try:
            process.wait(moment)
        except subprocess.TimeoutExpired:
            process.send_signal(signal.SIGKILL)
        return process.wait() == -signal.SIGKILL


def save(saver, path):
    subprocess.run([saver, path, "2"], check=True, stdout=subprocess.DEVNULL)


def run(saver, count, moments, directory):
    path = os.path.join(directory, FILE)
    seen = dict.fromkeys(("during", "saved", "broken", "broken_copies", "left_beside"), 0)
    save(saver, path)
    save(saver, path)  # the first found no file to keep a copy of
    for _ in range(count):
        if not kill_one(saver, path, moments.uniform(0, LONGEST_LIFE)):
            sys.exit("the saver ended by itself")
        seen["during"] += bool(set(os.listdir(directory)) - NAMES)
        number = whole(path)
        seen["broken"] += number is None
        seen["saved"] += number not in (None, "1")
        seen["broken_copies"] += whole(path + ".bak") is None
        save(saver, path)
        seen["left_beside"] += set(os.listdir(directory)) != NAMES
    return seen


def main():
    saver = sys.argv[1]
    count = int(sys.argv[2]) if len(sys.argv) > 2 else 1000
    seed = int(sys.argv[3]) if len(sys.argv) > 3 else random.randrange(1 << 32)
    with tempfile.TemporaryDirectory() as directory:
        seen = run(saver, count, random.Random(seed), directory)
    print(f"{count} kills (seed {seed}), {seen['during']} in the middle of a write, {seen['saved']} after a save: "
          f"{seen['broken']} files broken, {seen['broken_copies']} kept copies broken, "
          f"{seen['left_beside']} times something left beside them after the next save")
    faulty = seen["broken"] or seen["broken_copies"] or seen["left_beside"]
    # A run in which no kill met a save would prove nothing.
    sys.exit(0 if not faulty and seen["during"] and seen["saved"] else 1)


if __name__ == "__main__":
    main()
