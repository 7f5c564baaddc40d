# SPDX-FileCopyrightText: The Lumenboard developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""What the kiosk leaves for "--status" and "--spool", and what these make of it.

Usage: test_status.py KIOSK SIMULATOR [TEST...]
"""

import copy
import datetime
import fcntl
import json
import os
import re
import signal
import struct
import subprocess
import sys
import tempfile
import threading
import unittest
from pathlib import Path

import jsonschema
from program import Program, wait_until

DOCS = Path(__file__).resolve().parents[2] / "docs"
SCHEMA = json.loads((DOCS / "status.schema.json").read_text(encoding="utf-8"))
SUPERVISOR = 'while :; do "$0" & pid=$!; echo "kiosk is $pid"; wait $pid; done'
LOCK, FOREIGN_LOCK = (struct.pack("hhqqi4x", kind, os.SEEK_SET, 0, os.getpid(), 0) for kind in (fcntl.F_WRLCK, fcntl.F_RDLCK))


def ago(**time):
    return (datetime.datetime.now(datetime.timezone.utc) - datetime.timedelta(**time)).strftime("%Y-%m-%dT%H:%M:%SZ")


class Status(unittest.TestCase):
    def setUp(self):
        self.home = self.enterContext(tempfile.TemporaryDirectory())
        self.folder = Path(self.home, "run/lumenboard")

    def run_kiosk(self, *options, **variables):
        """Status and output of a command that needs no display."""
        done = subprocess.run((KIOSK, *options), text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False,
                              env={**os.environ, "DISPLAY": "", "RUNTIME_DIRECTORY": str(self.folder), **variables})
        return done.returncode, done.stdout

    def read(self):
        """The output as JSON, which keeps to the schema."""
        status, text = self.run_kiosk("--status", "--format=json")
        jsonschema.validate(json.loads(text), SCHEMA)
        return {"status": status, **json.loads(text)}

    def until(self, what):
        self.assertTrue(wait_until(lambda: what(self.read()), 40), self.run_kiosk("--status")[1])

    def test_leaves_its_status_and_what_waits(self):
        screen = Program(self.addCleanup, SIMULATOR, "--home", self.home, "--fault", "attendance=server-error",
                         "--run", "sh", "--", "-c", SUPERVISOR, KIOSK, QT_QPA_PLATFORM="offscreen", QT_QUICK_BACKEND="software")
        screen.wait_for("Waiting for cards")
        screen.command("tap 0A1B2C3D")
        self.until(lambda now: now.get("attendance", {}).get("waiting") == 1 and now["presence"]["sent"] == 1)
        now = self.read()
        self.assertEqual((now["attendance"]["lastFailure"]["reason"], now["reader"]["state"]), ("HTTP 500", "connected"))
        self.assertLessEqual(now["schedule"]["received"], now["reader"]["lastCard"])
        self.assertIn("records-failing", [each["name"] for each in now["problems"]])
        stored = (self.folder / "status.json").read_text(encoding="utf-8")
        jsonschema.validate(json.loads(stored), SCHEMA)
        _, metrics = self.run_kiosk("--status", "--format=prometheus")
        documented = re.findall(r"^\| `(lumenboard_\w+)` \*? *\| (\w+)", (DOCS / "monitoring.md").read_text(), re.M)
        self.assertEqual(sorted(re.findall(r"# TYPE (\w+) (\w+)", metrics)), sorted(documented))

        listed = r"attendance (\w+) .* [12]  HTTP 500"
        self.until(lambda now: re.search(listed, self.run_kiosk("--spool")[1]))
        status, waiting = self.run_kiosk("--spool")
        name = re.search(listed, waiting)[1]
        self.assertEqual(status, 0)
        told = (stored, metrics, waiting, (self.folder / "spool.json").read_text(), self.run_kiosk("--status")[1])
        for secret in ("169552957", "0A1B2C3D", "Erika", "Geheimnis", "access.", "127.0.0.1"):
            self.assertNotIn(secret, "".join(told))
        self.assertIn("<transponderId>169552957<", self.run_kiosk("--spool", "show", name)[1])

        os.kill(int(screen.wait_for(r"kiosk is (\d+)")[0][1]), signal.SIGKILL)
        self.until(lambda now: now["crashes"] == now["restarts"] == 1 and now["health"] == "degraded" and "room" in now)

    def test_judges(self):
        self.folder.mkdir(parents=True)
        lock = self.enterContext((self.folder / "kiosk-1.lock").open("w+"))
        queue = {"enabled": True, "waiting": 0, "oldest": None, "sent": 7, "refused": 0, "lastSuccess": ago(hours=3),
                 "lastFailure": None}
        good = {
            "format": 1, "version": "1", "process": os.getpid(), "started": ago(days=1), "restarts": 0, "crashes": 0,
            "room": {"id": 1, "name": "A"}, "view": "LectureRoom", "lastFrame": ago(minutes=6),
            "schedule": {"received": ago(minutes=59), "events": 1, "roomFound": True, "lastFailure": None},
            "token": {"validUntil": ago(minutes=-4), "grant": "client_credentials", "lastFailure": None},
            "configuration": {"received": ago(minutes=6), "lastFailure": None},
            "reader": {"expected": True, "state": "connected", "port": "tty", "lastCard": None, "logging": "works"},
            "attendance": queue, "presence": {**queue, "enabled": False}, "notices": 0, "clockSynchronised": True,
            "watchdog": {"enabled": True, "interval": 20, "missed": 0}}
        jsonschema.validate(good, SCHEMA)
        late = {"time": ago(minutes=1), "reason": "HTTP 500"}
        for status, problem, *changes in (
                (0, ": healthy"), (4, "not running"), (3, "no sign of life for 2 min"), (1, "another version", ("format", 2)),
                (2, "nothing drawn yet", ("process", 1)), (3, "schedule is 1 h 1 min old", ("schedule.received", ago(minutes=61))),
                (3, "no schedule for 1 d", ("schedule.received", None)), (0, ": healthy", ("schedule.received", None), ("started", ago(minutes=59)),
                                                                         ("view", "Default")),
                (2, "refresh .*: HTTP 500", ("schedule.lastFailure", late)), (2, "room 1", ("schedule.roomFound", False)),
                (3, "no card reader", ("reader.state", "missing")),
                (0, ": healthy", ("reader.state", "missing"), ("reader.expected", False)), (0, ": healthy", ("reader.state", "searching")),
                (3, "stopped", ("reader.logging", "stopped")), (3, "disk", ("reader.logging", "no storage")),
                (2, "1 record of presence wait, one for 1 h", ("presence.waiting", 1), ("presence.oldest", ago(minutes=61))),
                (0, ": healthy", ("attendance.waiting", 1), ("attendance.oldest", ago(minutes=58))),
                (2, "attendance was not accepted: HTTP 500", ("attendance.waiting", 1), ("attendance.lastFailure", late)),
                (0, ": healthy", ("attendance.lastFailure", late)),
                (2, "token has expired: HTTP 500", ("token.validUntil", ago(seconds=1)), ("token.lastFailure", late)),
                (2, "configuration is 2 h old", ("configuration.received", ago(hours=2))),
                (2, "picture is 20 min old", ("lastFrame", ago(minutes=20))), (2, "clock", ("clockSynchronised", False)),
                (2, "unexpectedly 2 times", ("crashes", 2), ("started", ago(minutes=9))), (0, ": healthy", ("crashes", 2))):
            with self.subTest(problem, changes=changes):
                now = copy.deepcopy(good)
                for path, value in changes:
                    *parents, key = path.split(".")
                    (now[parents[0]] if parents else now)[key] = value
                path = self.folder / "status.json"
                path.write_text(json.dumps(now))
                if "sign of life" in problem:
                    os.utime(path, (path.stat().st_mtime - 120,) * 2)
                fcntl.fcntl(lock, fcntl.F_OFD_SETLK, FOREIGN_LOCK if status == 4 else LOCK)
                seen, text = self.run_kiosk("--status")
                self.assertEqual(seen, status, text)
                self.assertRegex(text, problem)
                self.assertEqual(len(re.findall("^  (?:FAILING|degraded)", text, re.M)), int(status in (2, 3)), text)

    def test_exports_while_records_come_and_go(self):
        names = [f"{'mwu2zs86'}{i:x}" for i in range(10000)]
        for name in names:
            Path(self.home, name).write_text("<a/>")
        Path(self.home, names[-1]).write_bytes(b"\xff\x00")
        remover = threading.Thread(target=lambda: [os.remove(f"{self.home}/{name}") for name in names[:5000]])
        remover.start()
        export = self.enterContext(tempfile.TemporaryDirectory()) + "/export"
        try:
            status, text = self.run_kiosk("--spool", "export", export, LB_ATTENDANCE_SPOOL_DIR=self.home)
        finally:
            remover.join()
        records = {each["name"]: each for each in json.loads(Path(export).read_text())["records"]}
        self.assertEqual((status, records.keys() & set(names[5000:])), (0, set(names[5000:])), text)
        self.assertEqual((records[names[-2]]["content"], records[names[-1]]["base64"]), ("<a/>", "/wA="))
        self.assertEqual(os.stat(export).st_mode & 0o777, 0o600)
        self.assertEqual(len(os.listdir(self.home)), 5000)
        for again in (export, f"{export}/x"):
            status, text = self.run_kiosk("--spool", "export", again, LB_ATTENDANCE_SPOOL_DIR=self.home)
            self.assertEqual(status, 1, text)
        self.assertEqual(len(json.loads(Path(export).read_text())["records"]), len(records))


if __name__ == "__main__":
    KIOSK, SIMULATOR = sys.argv[1:3]
    unittest.main(argv=sys.argv[:1] + sys.argv[3:], verbosity=2)
