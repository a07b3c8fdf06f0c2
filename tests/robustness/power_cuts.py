#!/usr/bin/python3
"""power_cuts.py SAVER [COUNT [SEED]]: COUNT times (500) an ext4 file system is cut off in the middle of a program that
saves without end, as by a power cut, and mounted again. The file must then be whole, and the last one that the program
called saved or the one after it; its kept copy must be whole, and the next save must leave nothing beside them.

Needs root and the right to mount a loop device; without them it says so and ends with 77, "skipped". Nothing stays
mounted, however it ends: it mounts in a namespace of its own."""
import fcntl
import os
import random
import struct
import subprocess
import sys
import tempfile

from saved_file import FILE, beside, number, save

INSIDE = "--in-namespace"
SHUTDOWN = 0x8004587D  # ioctl EXT4_IOC_SHUTDOWN
WITH_JOURNAL, WITHOUT_JOURNAL = 1, 2  # whether what the journal holds in memory still reaches the disk
IMAGE_BYTES = 32 << 20
MOST_SAVES = 3  # that are awaited before a cut
LONGEST_LIFE = 0.02  # seconds after them: a save or two


def skip(why):
    print(f"skipped: {why}")
    sys.exit(77)


def enter_namespace():
    if os.geteuid() != 0:
        skip("mounting takes root")
    alone = ["unshare", "--mount", "--propagation", "private"]
    if subprocess.run([*alone, "true"], check=False, capture_output=True).returncode != 0:
        skip("this machine gives no mount namespace")
    os.execvp(alone[0], [*alone, sys.executable, *sys.argv, INSIDE])


class Disk:
    """An ext4 file system in a file."""

    def __init__(self, directory):
        self.image = os.path.join(directory, "image")
        self.root = os.path.join(directory, "root")
        os.mkdir(self.root)
        with open(self.image, "wb") as image:
            image.truncate(IMAGE_BYTES)
        subprocess.run(["mkfs.ext4", "-q", self.image], check=True)
        self.directory = os.path.join(self.root, "installation")
        self.file = os.path.join(self.directory, FILE)

    def mount(self):
        return subprocess.run(["mount", "-o", "loop", self.image, self.root], check=False, capture_output=True, text=True)

    def cut(self, manner):
        """From now on nothing reaches the disk."""
        root = os.open(self.root, os.O_RDONLY)
        try:
            fcntl.ioctl(root, SHUTDOWN, struct.pack("I", manner))
        finally:
            os.close(root)

    def unmount(self):
        subprocess.run(["umount", self.root], check=True)

    def restart(self):
        self.unmount()
        mounted = self.mount()
        if mounted.returncode != 0:
            sys.exit(f"the file system did not come back: {mounted.stderr}")


def prepared(directory):
    disk = Disk(directory)
    mounted = disk.mount()
    if mounted.returncode != 0:
        skip(f"this machine mounts no loop device: {mounted.stderr.strip()}")
    try:
        disk.cut(WITHOUT_JOURNAL)
    except OSError as error:
        disk.unmount()
        skip(f"ext4 cannot be cut off here: {error.strerror}")
    disk.restart()
    os.mkdir(disk.directory)
    os.sync()
    return disk


def last_saved(lines, otherwise):
    return int(lines.split()[-1]) if lines else otherwise


def cut_one(saver, disk, first, moments):
    """Cuts the disk off at a random moment. The last number that was called saved before the cut, and the last one at
    all: a program that a power cut leaves running can say more than it should."""
    saves = moments.randint(0, MOST_SAVES)
    with subprocess.Popen([saver, disk.file, "-1", str(first)], stdout=subprocess.PIPE, bufsize=0) as process:
        lines = [process.stdout.readline() for _ in range(1 + saves)]
        os.set_blocking(process.stdout.fileno(), False)
        try:
            process.wait(moments.uniform(0, LONGEST_LIFE))
            sys.exit("the saver ended before the cut")
        except subprocess.TimeoutExpired:
            before = process.stdout.read()
            disk.cut(moments.choice((WITH_JOURNAL, WITHOUT_JOURNAL)))
        process.kill()
        process.wait()
        after = process.stdout.read()
    disk.restart()
    last = last_saved(before, last_saved(lines[-1] if saves else b"", first - 1))
    return last, last_saved(after, last)


def run(saver, count, moments, disk):
    seen = dict.fromkeys(("during", "saved", "broken", "broken_copies", "lost", "left_beside"), 0)
    save(saver, disk.file, 2)  # the first found no file to keep a copy of
    save(saver, disk.file, 2)
    first = 2
    for _ in range(count):
        last, said = cut_one(saver, disk, first, moments)
        stands = number(disk.file)
        seen["during"] += bool(beside(disk.directory)) or stands == said + 1
        seen["saved"] += last >= first
        seen["broken"] += stands is None or stands > said + 1
        seen["lost"] += stands is not None and stands < last
        seen["broken_copies"] += number(disk.file + ".bak") is None
        first = said + 3
        save(saver, disk.file, 1, first - 1)
        seen["left_beside"] += bool(beside(disk.directory))
    return seen


def main():
    arguments = sys.argv[1:]
    if INSIDE not in arguments:
        enter_namespace()
    arguments.remove(INSIDE)
    saver = arguments[0]
    count = int(arguments[1]) if len(arguments) > 1 else 500
    seed = int(arguments[2]) if len(arguments) > 2 else random.randrange(1 << 32)
    with tempfile.TemporaryDirectory() as directory:
        disk = prepared(directory)
        try:
            seen = run(saver, count, random.Random(seed), disk)
        finally:
            disk.unmount()
    print(f"{count} power cuts (seed {seed}), {seen['during']} in the middle of a save, {seen['saved']} after a save: "
          f"{seen['lost']} saves lost, {seen['broken']} files broken, {seen['broken_copies']} kept copies broken, "
          f"{seen['left_beside']} times something left beside them after the next save")
    faulty = any(seen[what] for what in ("lost", "broken", "broken_copies", "left_beside"))
    # A run in which no cut came after a save would prove nothing.
    sys.exit(0 if not faulty and seen["saved"] else 1)


if __name__ == "__main__":
    main()
