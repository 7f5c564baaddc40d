# SPDX-FileCopyrightText: The Lumenboard developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""No record is lost: the real program with a reader, killed amid its work.

Usage: test_records.py KIOSK SIMULATOR [TEST...]
"""

import collections
import contextlib
import os
import re
import signal
import subprocess
import sys
import tempfile
import threading
import unittest

HEADLESS = {"QT_QPA_PLATFORM": "offscreen", "QT_QUICK_BACKEND": "software"}
# Starts the kiosk again whenever it ends, as a service manager does.
SUPERVISOR = """trap 'kill $pid; wait $pid; exit 0' TERM
while :; do "$0" & pid=$!; echo "kiosk is $pid"; wait $pid; echo "status $?"; done"""

# For root nothing is read-only otherwise; everybody else is without these capabilities as it is.
UNPRIVILEGED = [] if os.geteuid() else ["setpriv", "--", "--bounding-set=-dac_override,-dac_read_search"]


class Screen:
    """The simulator with a kiosk, and what both say."""

    def __init__(self, home, *options):
        self.lines = []
        self.changed = threading.Condition()
        self.process = subprocess.Popen(
            [SIMULATOR, "--home", home, *options], text=True, errors="replace", bufsize=1,
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
            env={**os.environ, **HEADLESS}, start_new_session=True)
        self.listener = threading.Thread(target=self.listen)
        self.listener.start()

    def listen(self):
        for line in self.process.stdout:
            with self.changed:
                self.lines.append(line)
                self.changed.notify_all()

    def command(self, text):
        self.process.stdin.write(text + "\n")

    def find(self, pattern, since=0):
        """Matches in the lines since that one."""
        return [match for line in self.lines[since:] if (match := re.search(pattern, line))]

    def wait_for(self, pattern, count=1, since=0, seconds=60):
        with self.changed:
            if not self.changed.wait_for(lambda: len(self.find(pattern, since)) >= count, seconds):
                raise AssertionError(f"waited in vain for {count} {pattern!r} in\n" + "".join(self.lines[since:]))
            return self.find(pattern, since)

    def close(self):
        with contextlib.suppress(ProcessLookupError):
            os.killpg(self.process.pid, signal.SIGKILL)  # the kiosk as well
        self.process.wait()
        self.listener.join()
        self.process.stdout.close()
        self.process.stdin.close()


class Records(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.home = folder.name
        self.spool = f"{self.home}/spool"

    def test_none_is_lost_or_sent_again_over_kills(self):
        screen = Screen(self.home, "--set", f"attendanceSpoolDir={self.spool}", "--set", "tallyxMode=0",
                        "--run", "sh", "--", "-c", SUPERVISOR, KIOSK)
        self.addCleanup(screen.close)
        taken = set()
        card = 0x10000000
        post = r"POST /rs/\S+log: "
        since = 0  # of the lines of the kiosk that runs
        # Six connections, each with a request: what follows on one that was dropped may not arrive.
        for fault, moment, count in (("none", "Logging", 20), ("hang", "Logging", 40), ("slow", post, 6),
                                     ("drop", post, 6), ("none", "Attendance logged:", 10)):
            screen.wait_for("Waiting for cards", since=since)
            screen.command(f"fault attendance {fault}")
            for _ in range(40):
                card += 1
                screen.command(f"tap {card:08X}")
            screen.wait_for(moment, count, since)
            os.kill(int(screen.find(r"kiosk is (\d+)", since)[-1][1]), signal.SIGKILL)
            screen.wait_for("status 137", since=since)
            # Cards are handled one by one: each but the last was on disk before the next was read.
            taken |= {int(match[1]) for match in screen.find(r"Logging (\d+)", since)[:-1]}
            since = 1 + next(i for i in range(len(screen.lines) - 1, -1, -1) if "status 137" in screen.lines[i])
        screen.command("fault attendance none")
        self.assertGreater(len(taken), 100)

        logged = "Attendance logged:"
        seen = 0
        while os.listdir(self.spool):
            seen += 1  # what is logged has been removed
            screen.wait_for(logged, seen)
        screen.command("records")
        screen.command("quit")
        self.assertEqual(screen.process.wait(timeout=20), 0)
        screen.listener.join()
        accepted = {int(match[1]) for match in screen.find(r"record: card (\d+) ")}
        self.assertEqual(taken - accepted, set())
        answered = collections.Counter(match[1] for match in screen.find(r"Attendance logged: .* Karte (\d+) "))
        self.assertEqual([card for card, times in answered.items() if times > 1], [])

    def test_presence_is_booked_over_kills(self):
        screen = Screen(self.home, "--set", f"tallyxSpoolDir={self.spool}", "--set", "tallyxConfirmTimeout=3000",
                        "--configuration", '{"plenarLocationId": 1, "settings": {"attendanceEnabled": false}}',
                        "--run", "sh", "--", "-c", SUPERVISOR, KIOSK)
        self.addCleanup(screen.close)
        since = 0
        for card, route, fault, moment in (
                (1, "presence-status", "hang", "GET /rs/log.*(hangs|waits)"), (2, "presence-status", "none", "onGetStatusFinished"),
                (3, "presence-booking", "hang", "POST /rs/log.*(hangs|waits)"), (4, "presence-booking", "drop", "fault drop")):
            screen.wait_for("Waiting for cards", since=since)
            screen.wait_for("Access token", since=since)
            screen.command(f"fault {route} {fault}")
            screen.command(f"tap 0000000{card}")
            screen.wait_for(moment, since=since)
            os.kill(int(screen.find(r"kiosk is (\d+)", since)[-1][1]), signal.SIGKILL)
            screen.wait_for("status 137", since=since)
            screen.command(f"fault {route} none")
            since = 1 + next(i for i in range(len(screen.lines) - 1, -1, -1) if "status 137" in screen.lines[i])
        self.assertTrue(os.listdir(self.spool))
        seen = 0
        while os.listdir(self.spool):
            seen += 1  # what is logged has been removed
            screen.wait_for("Presence logged:", seen)
        screen.command("bookings")
        screen.command("quit")
        self.assertEqual(screen.process.wait(timeout=20), 0)
        screen.listener.join()
        booked = collections.Counter(int(match[1]) for match in screen.find(r"booking: card (\d+) "))
        self.assertEqual((booked[1], booked[2], booked[3] > 0, booked[4] > 0), (1, 1, True, True))

    def test_stops_where_nothing_can_be_kept(self):
        with open(f"{self.home}/file", "w", encoding="utf-8"):
            pass  # in the way of the folder
        os.mkdir(f"{self.home}/locked", 0o500)
        for place in ("file/spool", "locked", "locked/spool"):
            with self.subTest(place):
                spool = f"{self.home}/{place}"
                screen = Screen(self.home, "--set", f"attendanceSpoolDir={spool}", "--run", *UNPRIVILEGED, KIOSK)
                self.addCleanup(screen.close)
                screen.wait_for("Waiting for cards")
                screen.command("tap 0A1B2C3D")
                screen.wait_for(f'Spool directory "{spool}" could not be created or is not writable.')
                self.assertEqual(screen.process.wait(timeout=20), 134)


if __name__ == "__main__":
    KIOSK, SIMULATOR = sys.argv[1:3]
    unittest.main(argv=sys.argv[:1] + sys.argv[3:], verbosity=2)
