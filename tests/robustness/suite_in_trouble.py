#!/usr/bin/python3
"""suite_in_trouble.py USER SIMULATOR [SECONDS [SEED]]: for SECONDS (1800) a program (suite_user.cpp) logs and restarts the
services, while the log service and the bus hang, are stopped or killed, and come back at random. Every restart must end
with a result, every record must have arrived or have been given up as the log's rules say, and once the suite is well
again everything must work."""
import os
import queue
import random
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time
from collections import Counter, defaultdict

from simulated_suite import LIMIT, TIED, Suite, await_condition, expect, free_port

LONGEST_TROUBLE = 6  # seconds: longer than any single wait of the program
BURST = 4000  # records: more than two sockets hold
RECORD = re.compile(rb"log record from (\d+): .*record (\d+) (x*) end$")
RESTARTED = ["progress 0", "progress 1", "Quillon services restarted.|", "progress 2"]
NOT_RESTARTED = re.compile(
    r"progress 0;progress 1;(Stop|Start) (QLX Service|Log Service|MZP Service) GetLastError = \d+;"
    r"Quillon (Framework|Logging) Service failed to stop.\|Restart Quillon services manually.;progress 2")


class Arrivals:
    """The numbers of the records that arrived, in their order, by the suite's start and its client."""

    def __init__(self):
        self.records = defaultdict(list)

    def hear(self, start, line):
        record = RECORD.search(line.rstrip())
        if record:
            self.records[start, int(record[1])].append(int(record[2]))

    def count(self):
        return sum(map(len, self.records.values()))


class User:
    """The program that logs and restarts."""

    def __init__(self, program, account, environment):
        self.process = subprocess.Popen([*TIED, program, account], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True,
                                        env={**os.environ, **environment})
        self.lines = queue.Queue()
        self.listener = threading.Thread(target=lambda: [self.lines.put(line.rstrip()) for line in self.process.stdout])
        self.listener.start()
        self.results = Counter()
        self.restarting = False

    def tell(self, line):
        expect(self.process.poll() is None, f"the program ended with {self.process.poll()}")
        self.process.stdin.write(line + "\n")
        self.process.stdin.flush()

    def restart(self):
        if not self.restarting:
            self.tell("restart")
        self.restarting = True

    def await_result(self):
        """Until a restart that is under way has ended; whether it ended well."""
        said = []
        while self.restarting:
            try:
                said.append(self.lines.get(timeout=LIMIT))
            except queue.Empty:
                raise AssertionError(f"a restart hangs after {said}") from None
            self.restarting = said[-1] != "progress 2"
        if not said:
            return True
        expect(said == RESTARTED or NOT_RESTARTED.fullmatch(";".join(said)), f"a restart ended with {said}")
        self.results["well" if said == RESTARTED else said[2]] += 1
        return said == RESTARTED

    def end(self):
        self.process.stdin.close()
        code = self.process.wait(LIMIT)
        self.listener.join()
        self.process.stdout.close()
        expect(code == 0, f"the program ended with {code}")


class Trouble:
    """What befalls the suite."""

    def __init__(self, suite, user, moments, longest):
        self.suite, self.user, self.moments, self.longest = suite, user, moments, longest
        self.seen = Counter()
        self.kinds = [self.hang, self.stop, self.kill, self.nothing]
        moments.shuffle(self.kinds)

    def wait(self):
        time.sleep(self.moments.uniform(0, self.longest))

    def work(self):
        """The user does something, sooner or later after the trouble has begun."""
        if self.moments.random() < 0.5:
            self.wait()
        if self.moments.random() < 0.3:
            self.user.tell(f"burst {BURST}")
        if self.moments.random() < 0.7:
            self.user.restart()

    def hang(self):
        part = self.moments.choice(self.suite.parts())
        os.kill(part, signal.SIGSTOP)
        self.work()
        self.wait()
        os.kill(part, signal.SIGCONT)

    def stop(self):
        self._away(signal.SIGTERM)

    def kill(self):
        self._away(signal.SIGKILL)

    def _away(self, how):
        if self.moments.random() < 0.5:
            self.user.restart()
        self.suite.end(how)
        self.work()
        self.wait()
        self.suite.start()

    def nothing(self):
        self.work()
        self.wait()

    def has_seen_all(self):
        return len(self.seen) == len(self.kinds)

    def one(self):
        """Each kind once, then any."""
        kind = self.moments.choice(self.kinds) if self.has_seen_all() else self.kinds[len(self.seen)]
        self.seen[kind.__name__] += 1
        kind()
        self.user.await_result()


def recover(user, arrivals):
    """The suite is well: a restart succeeds and records arrive again."""
    user.restart()
    expect(user.await_result(), "the restart of a healthy suite failed")
    before = arrivals.count()
    await_condition(lambda: arrivals.count() > before + 100, "records from the healthy suite")


def fates(account):
    """(number, connection, word) of each record, in order."""
    with open(account, encoding="ascii") as lines:
        records = [line.split() for line in lines]
    return [(int(number), int(connection), word) for number, connection, word in records]


def check_given_up(records):
    """A record that its connection refused is given up with it; the next one asks for a new connection."""
    given_up = 0
    for number, connection, word in records:
        expect(word == "unconnected" or connection > given_up, f"record {number} went to connection {given_up} again")
        given_up = connection if word in ("refused", "unconnected") else given_up


def check_arrived(records, received):
    """What arrived from each connection is what it took, from the first record on without a gap; all of it from the last
    one. How many records went down with their connection."""
    taken = defaultdict(list)
    for number, connection, word in records:
        if word == "sent":
            taken[connection].append(number)
    connection_of = {number: connection for connection, numbers in taken.items() for number in numbers}
    arrived = Counter()
    for numbers in received:
        connection = connection_of.get(numbers[0])
        expect(connection is not None, f"record {numbers[0]} arrived and was never sent")
        expect(numbers == taken[connection][:len(numbers)], f"connection {connection} lost a record in its middle")
        expect(connection not in arrived, f"connection {connection} arrived twice")
        arrived[connection] = len(numbers)
    last = max(taken)
    expect(arrived[last] == len(taken[last]), f"{len(taken[last]) - arrived[last]} records of a whole connection are lost")
    return sum(len(numbers) - arrived[connection] for connection, numbers in taken.items())


def run(program, simulator, seconds, moments, directory):
    program = shutil.copy(program, directory)
    configuration = os.path.join(directory, "QLXConfig.xml")
    with open(configuration, "w", encoding="ascii") as file:
        file.write(f"<MZP><Logging_Configuration><TCP_Port>{free_port()}</TCP_Port></Logging_Configuration></MZP>")
    account = os.path.join(directory, "account")
    arrivals = Arrivals()
    suite = Suite(simulator, directory, configuration, arrivals.hear)
    try:
        user = User(program, account, suite.environment)
        trouble = Trouble(suite, user, moments, min(LONGEST_TROUBLE, seconds / 16))
        end = time.monotonic() + seconds
        try:
            while time.monotonic() < end or not trouble.has_seen_all():
                trouble.one()
            recover(user, arrivals)
            user.end()
        finally:
            user.process.kill()
        suite.end()
    finally:
        suite.process.kill()
    records = fates(account)
    expect([number for number, _, _ in records] == list(range(1, len(records) + 1)), "the account has gaps")
    check_given_up(records)
    lost = check_arrived(records, arrivals.records.values())
    return trouble.seen, user.results, records, lost


def main():
    program, simulator = sys.argv[1:3]
    seconds = float(sys.argv[3]) if len(sys.argv) > 3 else 1800
    seed = int(sys.argv[4]) if len(sys.argv) > 4 else random.randrange(1 << 32)
    with tempfile.TemporaryDirectory(prefix="qlx-") as directory:
        troubles, results, records, lost = run(program, simulator, seconds, random.Random(seed), directory)
    words = Counter(word for _, _, word in records)
    print(f"{seconds:g} seconds (seed {seed}), {dict(troubles)}; restarts: {dict(results)}; {len(records)} records: "
          f"{words['sent'] - lost} arrived, {lost} went down with their connection, {words['refused']} were refused, "
          f"{words['unconnected']} found no service; {records[-1][1]} connections")


if __name__ == "__main__":
    main()
