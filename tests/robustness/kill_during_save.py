#!/usr/bin/python3
"""kill_during_save.py SAVER [COUNT [SEED]]: COUNT times (1000) a program that saves without end is killed at a random
moment; each time the file and its kept copy must be whole, and the next save must leave nothing beside them."""
import os
import random
import signal
import subprocess
import sys
import tempfile

from saved_file import FILE, begin, beside, number, save

LONGEST_LIFE = 0.03  # seconds: a few saves


def kill_one(saver, path, moment):
    """Kills the saver `moment` seconds after its first save began."""
    process, said = begin(saver, path)
    with process:
        try:
            process.wait(moment)
        except subprocess.TimeoutExpired:
            process.send_signal(signal.SIGKILL)
        result = process.wait()
        said += process.stdout.read()
    if result != -signal.SIGKILL:
        sys.exit(f"the saver ended by itself with {result}, having said: {said}")


def run(saver, count, moments, directory):
    path = os.path.join(directory, FILE)
    seen = dict.fromkeys(("during", "saved", "broken", "broken_copies", "left_beside"), 0)
    save(saver, path, 2)  # the first found no file to keep a copy of
    save(saver, path, 2)
    for _ in range(count):
        kill_one(saver, path, moments.uniform(0, LONGEST_LIFE))
        seen["during"] += bool(beside(directory))
        stands = number(path)
        seen["broken"] += stands is None
        seen["saved"] += stands not in (None, 1)
        seen["broken_copies"] += number(path + ".bak") is None
        save(saver, path, 2)
        seen["left_beside"] += bool(beside(directory))
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
