# SPDX-FileCopyrightText: The Lumenboard developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""A week of the real program in an hour: everything fails at times, nothing may grow or get lost.

Usage: week.py KIOSK SIMULATOR WEEK_LIBRARY HOME [--quick]

A round is a day of bursts of cards, of services that hang, lie or are gone, of a reader that is pulled out.
Between rounds all is well, and what the kiosk holds then is compared over the rounds.
"""

import contextlib
import os
import random
import re
import shutil
import signal
import sys
import time
from collections import Counter
from pathlib import Path
from statistics import median

sys.path.append(str(Path(__file__).parents[1] / "tests/e2e"))
from program import Program, wait_until  # noqa: E402: found through the line above

FACTOR = 20  # of the kiosk's monotonic clock
CONNECTION_LIFE = 125  # s; Qt keeps an idle one for two minutes
FIRST_CARD = 0x10000000  # nobody's
MAX_BURST = 8

# Restarts the kiosk whenever it ends, as a service manager does.
SUPERVISOR = """trap 'kill $pid; wait $pid; exit 0' TERM
while :; do
    LD_PRELOAD="$LD_PRELOAD:$1" "$0" 2>>"$2" & pid=$!; echo "kiosk is $pid"; wait $pid; echo "status $?"
done"""

SPOILED = ("hang slow drip drop refuse not-found server-error wrong-credentials empty truncated broken-json "
           "empty-list oversize gzip").split()
LYING = "wrong-root invalid-value hostile-values".split()
FOREIGN = "error-object captive-portal redirect redirect-away".split()
FAULTS = {
    "schedule": [*SPOILED, *LYING, *FOREIGN, "entity-bomb", "huge"],
    "token": [*SPOILED, *LYING, *FOREIGN, "tiny-expiry", "no-refresh-token", "expired-refresh-token"],
    "configuration": SPOILED + FOREIGN,  # none that changes the room or the modes
    "attendance": SPOILED + LYING,  # foreign answers refuse a card for good, and the person is told
    "presence-status": SPOILED + LYING + FOREIGN,
    "presence-booking": SPOILED + LYING + FOREIGN,
}
GARBAGE = ("5A5A5A5A5A5A5A5A0D0A", "31320D0A", "0D0A" * 20, "00" * 5000 + "0D0A")

# What may be more in the last quarter than in the second one. A new card costs 60 bytes in the cache of names;
# a schedule of many megabytes leaves gaps in the heap.
TOLERANCES = {"dirty MB": 3, "descriptors": 1, "threads": 0.5, "heap MB in use": 1, "objects": 10, "notices": 0.5,
              "log bytes per card": 50}


class Week:
    def __init__(self, add_cleanup, kiosk, simulator, library, home):
        self.log, self.counts = Path(home, "kiosk.log"), Path(home, "counts")
        self.log.touch()
        self.spools = {"attendance": Path(home, "attendance"), "presence": Path(home, "presence")}
        settings = (f"attendanceSpoolDir={self.spools['attendance']}", f"tallyxSpoolDir={self.spools['presence']}",
                    "tallyxMode=1", "tallyxConfirmTimeout=3000")
        self.screen = Program(
            add_cleanup, simulator, "--home", home, *(f"--set={each}" for each in settings),
            "--run", "sh", "--", "-c", SUPERVISOR, kiosk, library, str(self.log),
            QT_QPA_PLATFORM="offscreen", QT_QUICK_BACKEND="software",
            LUMENBOARD_WEEK_FACTOR=str(FACTOR), LUMENBOARD_WEEK_COUNTS=str(self.counts))
        self.faults = {}  # of the routes: the number of bursts that each lasts
        self.periods = [[]]  # the cards between two openings of the reader
        self.cards = self.sampled_cards = self.sampled_bytes = 0
        self.wait_for_kiosk(1, 0)

    def wait_for_kiosk(self, number, since):
        """Waits for the kiosk with this number, whose log begins behind `since`."""
        self.pid = int(self.screen.wait_for(r"kiosk is (\d+)", number)[-1][1])
        self.wait_for_reader(since)

    def wait_for_reader(self, since):
        def is_open():
            with self.log.open("rb") as log:
                log.seek(since)
                return b"Waiting for cards" in log.read()
        assert wait_until(is_open), "the reader is not opened"

    def play(self, seed, cards, pause):
        day = random.Random(seed)
        end = self.cards + cards
        while self.cards < end:
            self.change_faults(day)
            for _ in range(min(day.randint(1, MAX_BURST), end - self.cards)):
                self.periods[-1].append(FIRST_CARD + self.cards)
                self.screen.command(f"tap {FIRST_CARD + self.cards:08X}")
                self.cards += 1
            if day.random() < 0.03:
                self.replug(day.uniform(0, 2))
            time.sleep(day.uniform(0, 2 * pause))
        for route in self.faults:
            self.screen.command(f"fault {route} none")
        self.faults = {}

    def change_faults(self, day):
        event = day.random()
        routes = FAULTS if event < 0.03 else [day.choice(list(FAULTS))] if event < 0.4 else []
        for route in routes:
            kind = "refuse" if routes is FAULTS else day.choice(FAULTS[route])  # no network, or one service
            self.screen.command(f"fault {route} {kind}")
            self.faults[route] = day.randint(1, MAX_BURST)
        if event > 0.97:
            self.screen.command(f"send {day.choice(GARBAGE)}")
        for route in list(self.faults):
            self.faults[route] -= 1
            if self.faults[route] < 0:
                self.screen.command(f"fault {route} none")
                del self.faults[route]

    def replug(self, seconds):
        since = self.log.stat().st_size
        self.screen.command("unplug")
        time.sleep(seconds)
        self.screen.command("plug")
        self.wait_for_reader(since)
        self.periods.append([])

    def sample(self):
        """What the kiosk holds once the notices have ended and no request is under way."""
        lines = [-1] * 8

        def is_idle():
            lines.append(len(self.screen.lines))
            return self.counts.read_text().endswith(" 0") and lines[-8] == lines[-1]
        wait_until(is_idle)  # in vain if a notice stays, which the sample tells
        time.sleep(CONNECTION_LIFE / FACTOR)
        readings = []
        for _ in range(4):
            time.sleep(0.5)
            dirty = re.search(r"Private_Dirty: +(\d+)", Path(f"/proc/{self.pid}/smaps_rollup").read_text())
            entries = [len(os.listdir(f"/proc/{self.pid}/{each}")) for each in ("fd", "task")]
            heap, *counts = map(int, self.counts.read_text().split())
            readings.append((int(dirty[1]) / 1024, *entries, heap / 2**20, *counts))
        size = self.log.stat().st_size
        per_card = (size - self.sampled_bytes) / (self.cards - self.sampled_cards)
        self.sampled_cards, self.sampled_bytes = self.cards, size
        return [*map(min, zip(*readings)), per_card]

    def waiting(self, kind):
        """Cards whose records are on disk."""
        numbers = set()
        for path in self.spools[kind].glob("*"):
            with contextlib.suppress(FileNotFoundError):  # sent meanwhile
                numbers |= set(map(int, re.findall(r'(?:transponderId>|"tid": )(\d+)', path.read_text())))
        return numbers

    def drain(self):
        """Restarts the kiosk, which then tries each record at once."""
        for restart in range(1, 4):
            since = self.log.stat().st_size  # the next one can be there before this one's status is read
            os.kill(self.pid, signal.SIGTERM)
            self.screen.wait_for("status 0", restart)
            self.wait_for_kiosk(restart + 1, since)
            if wait_until(lambda: not any(map(self.waiting, self.spools))):
                return

    def judge_records(self, kind, entry, path):
        """A reader delivers in order: each card before one that was taken has been read as well."""
        accepted = Counter(int(match[1]) for match in self.screen.find(rf"^{entry}: card (\d+) "))
        waiting = self.waiting(kind)
        known = accepted.keys() | waiting
        lost, unread = [], 0
        for period in self.periods:
            taken = max((i + 1 for i, card in enumerate(period) if card in known), default=0)
            lost += sorted(set(period[:taken]) - known)
            unread += len(period) - taken
        again = accepted.total() - len(accepted)
        spoiled = len(self.screen.find(rf"POST {path}: (hangs|waits|.*fault)"))
        print(f"{kind}: {len(accepted)} of {self.cards} cards accepted, {len(waiting)} on disk, {len(lost)} lost, "
              f"{unread} pulled out unread, {again} accepted again after {spoiled} spoiled answers")
        if lost or again > spoiled or unread > MAX_BURST * (len(self.periods) - 1):
            yield f"{kind}: lost or doubled, {lost[:20]}"


def judge_samples(samples):
    quarter = len(samples) // 4
    for (name, tolerance), column in zip(TOLERANCES.items(), zip(*samples)):
        before, after = median(column[quarter:2 * quarter]), median(column[-quarter:])
        print(f"{name:19} second quarter {before:6.1f}, last {after:6.1f}: {after - before:+6.1f} of {tolerance}")
        if after - before > tolerance:
            yield f"{name}: grown by {after - before:.1f}"


def run(add_cleanup, arguments, is_quick):
    rounds, cards, pause = (8, 125, 0.3) if is_quick else (40, 500, 0.6)
    if is_quick:
        TOLERANCES["dirty MB"] = 15  # the first large schedule takes its share whenever it comes
    week = Week(add_cleanup, *arguments)
    samples = []
    for number in range(rounds):
        week.play(number % (rounds // 4), cards, pause)  # the same days in each quarter
        samples.append(week.sample())
        print(f"round {number + 1}:", *(f"{value:.1f}" for value in samples[-1]),
              "on disk", *(len(week.waiting(kind)) for kind in week.spools), flush=True)
    problems = list(judge_samples(samples))
    week.drain()
    week.screen.command("records\nbookings\nquit")
    week.screen.wait(60)
    problems += week.judge_records("attendance", "record", r"\S+attendancelog")
    problems += week.judge_records("presence", "booking", r"/rs/log\S*")
    return problems


def main():
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))  # through the clean-up
    arguments = [each for each in sys.argv[1:] if each != "--quick"]
    shutil.rmtree(arguments[-1], ignore_errors=True)
    os.makedirs(arguments[-1])
    with contextlib.ExitStack() as stack:
        problems = run(stack.callback, arguments, "--quick" in sys.argv)
    print("\n".join(problems) or "nothing has grown or got lost")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
