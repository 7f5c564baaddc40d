# SPDX-FileCopyrightText: The Lumenboard developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""No record is lost: the real program with a reader, killed in the middle of its work.

Usage: test_records.py KIOSK SIMULATOR SLOW_DISK [TEST...]
"""

import collections
import os
import select
import signal
import socket
import sys
import tempfile
import time
import unittest
from pathlib import Path

from program import Program

# Restarts the kiosk whenever it ends, as a service manager does.
SUPERVISOR = """trap 'kill $pid; wait $pid; exit 0' TERM
while :; do "$0" & pid=$!; echo "kiosk is $pid"; wait $pid; echo "status $?"; done"""

# Root ignores access rights unless it lacks these capabilities.
UNPRIVILEGED = ["env", "--"] if os.geteuid() else ["setpriv", "--", "--bounding-set=-dac_override,-dac_read_search"]


class Records(unittest.TestCase):
    def setUp(self):
        self.home = self.enterContext(tempfile.TemporaryDirectory())
        self.spool = f"{self.home}/spool"
        self.since = 0  # first line of the running kiosk

    def start(self, *arguments, **variables):
        self.screen = Program(self.addCleanup, SIMULATOR, "--home", self.home, *arguments, **{
            "QT_QPA_PLATFORM": "offscreen", "QT_QUICK_BACKEND": "software", "LUMENBOARD_LOG_LINES": "0", **variables})

    def wait_for(self, pattern, count=1):
        return self.screen.wait_for(pattern, count, self.since)

    def kill(self):
        """Kills the kiosk. The supervisor starts the next one."""
        os.kill(int(self.wait_for(r"kiosk is (\d+)")[-1][1]), signal.SIGKILL)
        self.wait_for("status 137")
        self.since += 1 + next(i for i, line in enumerate(self.screen.lines[self.since:]) if "status 137" in line)

    def count(self, pattern):
        return collections.Counter(int(match[1]) for match in self.screen.find(pattern))

    def test_none_is_lost_or_sent_again_over_kills(self):
        self.start("--set", f"attendanceSpoolDir={self.spool}", "--set", "tallyxMode=0",
                   "--run", "sh", "--", "-c", SUPERVISOR, KIOSK)
        taken = set()
        card = 0x10000000
        post = r"POST /rs/\S+log: "
        # A request that follows on one of six dropped connections may not arrive.
        for fault, moment, count in (("none", "Logging", 20), ("hang", "Logging", 40), ("slow", post, 6),
                                     ("drop", post, 6), ("none", "Attendance logged:", 10)):
            self.wait_for("Waiting for cards")
            self.screen.command(f"fault attendance {fault}")
            for _ in range(40):
                card += 1
                self.screen.command(f"tap {card:08X}")
            self.wait_for(moment, count)
            start = self.since
            self.kill()
            # Cards are handled one by one: each but the last was on disk before the next was read.
            taken |= {int(match[1]) for match in self.screen.find(r"Logging (\d+)", start)[:-1]}
        self.screen.command("fault attendance none")
        self.assertGreater(len(taken), 70)

        seen = 0
        while os.listdir(self.spool):
            seen += 1  # a record is removed before it is logged
            self.screen.wait_for("Attendance logged:", seen)
        self.screen.command("records")
        self.screen.command("quit")
        self.assertEqual(self.screen.wait(), 0)
        self.assertEqual(taken - self.count(r"record: card (\d+) ").keys(), set())
        responses = self.count(r"Attendance logged: .* Karte (\d+) ")
        self.assertEqual([card for card, times in responses.items() if times > 1], [])

    def test_ends_in_time_on_a_slow_disk(self):
        ready = [("", "Waiting for cards")]
        burst = [*ready, *(("tap %08X" % card, "") for card in range(1, 456)), ("", "Logging")]
        behind_an_invalid_line = (*ready, ("send 7A7A7A7A7A7A7A", "ready to be read"),
                                  ("send 7A0D30413142324333440D", "Error logging attendance"))
        for sync_ms, data_sync_ms, commands, limit, end in (
                ("0", "60000", [("", "GET /lumenboards")], 8, "Leaving behind: GUI thread"),
                ("80", "0", burst, 6, "Attendance worker thread stopped."),
                ("60000", "0", behind_an_invalid_line, 8, "Attendance worker thread cannot be ended")):
            with self.subTest(end):
                self.spool = f"{self.home}/spool {limit}/{end[:1]}"  # a new one: a start syncs what is there
                self.start("--set", f"attendanceSpoolDir={self.spool}", "--set", "tallyxMode=0",
                           "--fault", "attendance=hang", "--run", "sh", "--", "-c",
                           'echo kiosk is $$; LD_PRELOAD="$LD_PRELOAD $1" exec "$0"', KIOSK, SLOW_DISK,
                           SYNC_MS=sync_ms, DATA_SYNC_MS=data_sync_ms)
                for command, said in commands:
                    self.screen.command(command)
                    self.wait_for(said)
                kiosk = int(self.wait_for(r"kiosk is (\d+)")[0][1])
                asked = time.monotonic()
                os.kill(kiosk, signal.SIGTERM)
                self.screen.wait()
                self.assertLess(time.monotonic() - asked, limit)
                self.assertIn(end, self.screen.output())
                if commands is burst:
                    self.assertEqual(len(os.listdir(self.spool)), sum(self.count(r"Logging (\d+)").values()))

    def test_tells_the_service_manager_whether_it_lives(self):
        manager = self.enterContext(socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM))
        manager.bind(f"{self.home}/manager")
        manager.settimeout(30)

        def read_until(text):
            states = [manager.recv(4096).decode()]
            while text not in states[-1]:
                states.append(manager.recv(4096).decode())
            return states

        self.start("--run", "sh", "--", "-c", """export JOURNAL_STREAM=$(stat -Lc %d:%i /proc/self/fd/2) WATCHDOG_PID=$$
                   echo kiosk is $$; LD_PRELOAD="$LD_PRELOAD $1" exec "$0" """, KIOSK, SLOW_DISK,
                   NOTIFY_SOCKET=f"{self.home}/manager", WATCHDOG_USEC="1000000", SYNC_MS="800", DATA_SYNC_MS="0")
        self.assertEqual(read_until("WATCHDOG=1")[0], "READY=1")
        read_until(', all well.')
        read_until("WATCHDOG=1")
        self.screen.command("tap 0A1B2C3D")
        self.wait_for(r"^<3>No sign of life: .*attendance worker")
        while select.select([manager], [], [], 0)[0]:
            manager.recv(4096)
        read_until("WATCHDOG=1")  # the line below comes first, while the worker hangs it cannot
        self.screen.wait_for("^<4>All parts answer again", seconds=2)
        os.kill(int(self.wait_for(r"kiosk is (\d+)")[0][1]), signal.SIGTERM)
        read_until("STOPPING=1")
        self.assertEqual(self.screen.wait(), 0)
        self.assertEqual(self.screen.find("^<7>"), [])

    def test_bounds_what_a_reader_writes_to_the_log(self):
        self.start("--configuration", '{"%s": 1}' % ("ä" * 999), "--run", KIOSK, LUMENBOARD_LOG_LINES="")
        self.wait_for("Waiting for cards")
        self.wait_for("Applying configuration.* …$")
        self.screen.command("send " + 30000 * "0D")
        said = "Ignoring transponder ID with unusual length"
        while self.screen.said(said) + sum(int(match[1].replace(" ", "")) - 1 for match in self.screen.find(
                rf"^… and (\d{{1,3}}(?: \d{{3}})*) more: {said}")) < 30000:
            self.wait_for("^… and .* more", self.screen.said("… and ") + 1)
        self.assertLess(self.screen.said(said), 200)
        self.assertLessEqual(max(len(line.encode()) for line in self.screen.lines), 257)

    def test_a_second_kiosk_waits_for_the_end_of_the_first(self):
        self.start("--set", "tallyxMode=0", "--run", "sh", "--", "-c", '"$0" & "$0" & wait', KIOSK)
        first = int(self.wait_for(r"Another kiosk of this user runs as process ([1-9]\d*),")[0][1])
        for count in (1, 2):
            self.wait_for("Waiting for cards", count)
            self.screen.command("tap 0A1B2C3D")
            self.wait_for("Attendance logged:", count)
            os.kill(first, signal.SIGKILL) if count == 1 else None

    def test_stops_where_nothing_can_be_kept(self):
        """A card ends a kiosk that cannot keep it. The next one knows, tells each card and recovers."""
        obstacle = Path(self.home, "file")
        obstacle.touch()  # in the way of the folder
        for name in ("locked", "shut"):
            os.mkdir(f"{self.home}/{name}", 0o500)
        for place, repair in (("file/spool", obstacle.unlink), ("shut/spool", None), ("locked", None)):
            with self.subTest(place):
                spool = f"{self.home}/{place}"
                self.start("--set", f"attendanceSpoolDir={spool}", "--set", "tallyxMode=0",
                           "--run", *UNPRIVILEGED, "sh", "-c", SUPERVISOR, KIOSK)
                self.wait_for("Waiting for cards")
                if place != "locked":  # a folder that is there is looked at before any card
                    self.screen.command("tap 0A1B2C3D")
                    self.wait_for(f'Spool directory "{spool}" could not be created or is not writable.')
                    self.wait_for("status 134")
                    self.wait_for("Waiting for cards", 2)
                self.wait_for(f'Spool directory "{spool}" is not writable')
                self.screen.command("tap 0A1B2C3D")
                self.wait_for("Error logging attendance: false .* is not writable")
                repair() if repair else os.chmod(f"{self.home}/{place.split('/')[0]}", 0o700)
                self.screen.command("tap 0A1B2C3D")
                self.wait_for("Attendance logged:")
                self.screen.close()


if __name__ == "__main__":
    KIOSK, SIMULATOR, SLOW_DISK = sys.argv[1:4]
    unittest.main(argv=sys.argv[:1] + sys.argv[4:], verbosity=2)
