#!/usr/bin/python3
"""two_savers.py SAVER [COUNT [SEED]]: COUNT times (1000) two programs save the same file at once, a few times each. While
they do, every look at the file must find it whole; afterwards it must be the last save of one of the two, and nothing may
lie beside it."""
import os
import random
import sys
import tempfile
import time

from saved_file import FILE, beside, number, save, start

MOST_SAVES = 6  # of one program
LONGEST_LEAD = 0.01  # seconds that one may begin before the other


def run_round(saver, path, moments, first, seen):
    """Two savers, whose numbers begin at first[0] and first[1]. False when one has not begun: see saved_file.begin."""
    saves = [moments.randint(1, MOST_SAVES), moments.randint(1, MOST_SAVES)]
    one = start(saver, path, saves[0], first[0])
    time.sleep(moments.uniform(0, LONGEST_LEAD))
    other = start(saver, path, saves[1], first[1])
    while one.poll() is None or other.poll() is None:
        seen["looks"] += 1
        seen["broken"] += number(path) is None
    if "" in (one.communicate()[0], other.communicate()[0]):
        return False
    seen["failed"] += bool(one.returncode) + bool(other.returncode)
    last = [first[0] + saves[0] - 1, first[1] + saves[1] - 1]
    stands = number(path)
    seen["broken"] += stands is None
    seen["second_won"] += stands == last[1]
    seen["neither"] += stands is not None and stands not in last
    seen["broken_copies"] += number(path + ".bak") is None
    return True


def run(saver, count, moments, directory):
    path = os.path.join(directory, FILE)
    seen = dict.fromkeys(
        ("looks", "broken", "broken_copies", "neither", "second_won", "failed", "left_beside"), 0)
    save(saver, path, 2)
    for index in range(count):
        first = 1000 * (2 * index + 1)
        numbers = (first, first + 1000)
        if not (run_round(saver, path, moments, numbers, seen) or run_round(saver, path, moments, numbers, seen)):
            sys.exit("a saver ended before it began, twice")
        seen["left_beside"] += bool(beside(directory))
    return seen


def main():
    saver = sys.argv[1]
    count = int(sys.argv[2]) if len(sys.argv) > 2 else 1000
    seed = int(sys.argv[3]) if len(sys.argv) > 3 else random.randrange(1 << 32)
    with tempfile.TemporaryDirectory() as directory:
        seen = run(saver, count, random.Random(seed), directory)
    print(f"{count} times two savers (seed {seed}), the second was last {seen['second_won']} times, {seen['looks']} looks: "
          f"{seen['broken']} files broken, {seen['broken_copies']} kept copies broken, {seen['neither']} that neither had "
          f"saved last, {seen['failed']} savers failed, {seen['left_beside']} times something left beside them")
    sys.exit(any(seen[what] for what in ("broken", "broken_copies", "neither", "failed", "left_beside")))


if __name__ == "__main__":
    main()
