#!/usr/bin/python3
"""random_use.py PROGRAM SIMULATOR [SECONDS [SEED]]: for SECONDS (1800) clicks and types at random in the real window while
the simulated devices are used, unplugged and flooding and their suite is stopped and started. PROGRAM is best built with
the address sanitizer. It must never crash or hang, no report of a sanitizer may be left, its memory may not go on growing,
and the file must in the end be one that the program loads. To be run on a screen and a network of its own, as root of a
user namespace:
unshare --map-root-user scripts/private-display scripts/private-network tests/robustness/random_use.py ..."""
import glob
import os
import random
import shutil
import sys
import tempfile
import time
import xml.etree.ElementTree as ElementTree
from collections import Counter

from random_hand import RandomHand
from simulated_suite import Suite, expect
from surroundings import SECTIONS, TREE, Surroundings, UsbDevices, configuration
from watched_program import TITLE, WatchedProgram

REPORT_EVERY = 60  # seconds
MOST_GROWTH = 128 << 10  # KiB: the caches of the toolkit and the shadow of the sanitizer take their share
PICTURES = 20


def check_file(program):
    """The file is whole, nothing lies beside it that should not, and a new start of the program takes it as it is."""
    path = os.path.join(program.directory, "QLXConfig.xml")
    root = ElementTree.parse(path).getroot()
    expect([child.tag for child in root] == [f"{name}_Configuration" for name in SECTIONS], "the file lost a section")
    program.start()
    program.end()
    beside = {os.path.basename(found) for found in glob.glob(path + "*")}
    expect(beside <= {"QLXConfig.xml", "QLXConfig.xml.bak"}, f"beside the file lie {beside}")


def use(program, surroundings, hand, seconds):
    end = time.monotonic() + seconds
    next_report = time.monotonic() + REPORT_EVERY
    seen = Counter()
    while time.monotonic() < end:
        program.revive()
        surroundings.go()
        hand.go()
        seen.update(set(hand.titles) - {"", TITLE})
        program.watch_memory()
        if time.monotonic() > next_report:
            next_report += REPORT_EVERY
            print(f"{end - time.monotonic():.0f} seconds left, {hand.steps} steps, {program.resident()} KiB", flush=True)
    return seen


def furnish(directory, program):
    """The program, its file, and pictures for logos. The path of the file."""
    shutil.copy(program, os.path.join(directory, "QLXConfig"))
    for picture in sorted(glob.glob(os.path.join(TREE, "fuzz", "corpus", "image", "*")))[:PICTURES]:
        shutil.copy(picture, os.path.join(directory, os.path.basename(picture)[:8] + ".bmp"))
    file = os.path.join(directory, "QLXConfig.xml")
    with open(file, "w", encoding="ascii") as opened:
        opened.write(configuration())
    return file


def run(program_file, simulator, seconds, choice, directory):
    usb = UsbDevices()
    suite = Suite(simulator, directory, furnish(directory, program_file))
    try:
        program = WatchedProgram(directory, {**usb.environment, **suite.environment, "HOME": directory})
        surroundings = Surroundings(suite, choice)
        hand = RandomHand(program, choice)
        try:
            seen = use(program, surroundings, hand, seconds)
            surroundings.settle()
            program.revive()
            hand.await_answer()
        finally:
            program.end()
        check_file(program)
    finally:
        suite.process.kill()
    expect(not program.reports(), program.reports())
    expect(program.growth <= MOST_GROWTH, f"the memory grew by {program.growth} KiB")
    return program, surroundings, hand, seen


def main():
    seconds = float(sys.argv[3]) if len(sys.argv) > 3 else 1800
    seed = int(sys.argv[4]) if len(sys.argv) > 4 else random.randrange(1 << 32)
    # A short name: the path of a socket in it has room for 107 bytes only.
    with tempfile.TemporaryDirectory(prefix="qlx-") as directory:
        program, surroundings, hand, seen = run(*sys.argv[1:3], seconds, random.Random(seed), directory)
    print(f"{seconds:g} seconds (seed {seed}), {hand.steps} clicks and keys, {len(seen)} kinds of window opened, the suite away "
          f"{surroundings.absences} times, ended by the user {program.ends[0]} times and with a word {program.ends[1]} times; "
          f"memory grew by at most {program.growth} KiB: no crash, no report, a good file")
    sys.exit(0 if hand.steps else 1)


if __name__ == "__main__":
    main()
