# SPDX-FileCopyrightText: The Lumenboard developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""What an operator does from a terminal, without a display, and how the program ends.

Usage: test_commandline.py KIOSK SIMULATOR HANGING_LOOKUP [TEST...]
"""

import base64
import os
import re
import signal
import subprocess
import sys
import tempfile
import time
import unittest

SECRET = "Geheimnis: 42 & mehr"
WITHOUT_RECORDS = ("--set", "attendanceEnabled=false", "--set", "tallyxMode=0")
HEADLESS = {"QT_QPA_PLATFORM": "offscreen", "QT_QUICK_BACKEND": "software"}


def run(*command, **variables):
    """Status and output of a program without a display."""
    environment = {k: v for k, v in os.environ.items() if k not in ("DISPLAY", "WAYLAND_DISPLAY")}
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          timeout=60, check=False, env={**environment, **variables})
    return done.returncode, done.stdout


def check(*options):
    return run(SIMULATOR, "--no-stdin", *options, "--run", KIOSK, "--", "--check")


class CommandLine(unittest.TestCase):
    def test_describes_itself(self):
        status, text = run(KIOSK, "--help")
        self.assertEqual(status, 0)
        self.assertIn("--check", text)
        self.assertEqual(run(KIOSK, "--version"), (0, "Lumenboard 0.8.0\n"))

    def test_refuses_what_it_does_not_know(self):
        status, text = run(KIOSK, "--frobnicate", **HEADLESS)
        self.assertEqual(status, 1)
        self.assertIn("frobnicate", text)

    def test_check_finds_all_well(self):
        status, text = check(*WITHOUT_RECORDS)
        self.assertEqual(status, 0, text)
        for line in (r"Keycloak/clientSecret = \*{8} +\[user\]", r"fontBaseSize = 12 +\[default\]",
                     "ok +TLS", "ok +token", "ok +configuration", 'ok +schedule .* in "Hörsaal 1"'):
            self.assertRegex(text, line)
        self.assertNotIn(SECRET, text)

    def test_check_finds_what_is_in_the_way(self):
        for option, line in (("token=wrong-credentials", "FAILED +token"),
                             ("configuration=empty-list", "FAILED +configuration"),
                             ("schedule=captive-portal", "FAILED +schedule")):
            with self.subTest(option):
                status, text = check(*WITHOUT_RECORDS, "--fault", option)
                self.assertEqual(status, 1, text)
                self.assertRegex(text, line)
        # Nobody listens there, and nothing but a connection is tried.
        status, text = check("--set", "attendanceLogUrl=http://127.0.0.1:9/", "--set", "tallyxMode=0")
        self.assertEqual(status, 1)
        self.assertRegex(text, "FAILED +attendance")

    def run_until(self, text, *options, preload=""):
        """Runs the kiosk until it has said the text; its status, its seconds to end, its log."""
        with tempfile.NamedTemporaryFile(mode="r") as log:
            services = subprocess.Popen([SIMULATOR, "--no-stdin", *options, "--run", "/usr/bin/env",
                                         "--", f"LD_PRELOAD={preload}", KIOSK],
                                        stdout=log.fileno(), stderr=subprocess.STDOUT,
                                        env={**os.environ, **HEADLESS})
            self.addCleanup(services.kill)
            end = time.monotonic() + 20
            while text not in open(log.name, errors="replace").read():
                self.assertLess(time.monotonic(), end, open(log.name, errors="replace").read())
                self.assertIsNone(services.poll())
                time.sleep(0.05)
            asked = time.monotonic()
            services.send_signal(signal.SIGTERM)
            status = services.wait(timeout=20)
            return status, time.monotonic() - asked, open(log.name, errors="replace").read()

    def test_takes_its_room_from_the_service_and_tells_no_secret(self):
        status, _, log = self.run_until("Done reading event data")
        self.assertEqual(status, 0)
        self.assertIn("Applying configuration", log)
        credentials = base64.b64encode(f"lumenboard-simulated:{SECRET}".encode()).decode()
        for secret in (SECRET, credentials, "Basic ", "Bearer ", "refresh+", "refresh%2B"):
            self.assertNotIn(secret, log)
        self.assertIsNone(re.search(r"access\.[0-9a-f]{8}", log))

    def test_ends_in_time_while_everything_hangs(self):
        for preload in ("", HANGING_LOOKUP):
            with self.subTest(preload):
                hosts = ("--set", "quirlUrl=https://hangs.example", "--set",
                         "Keycloak/url=https://hangs.example/token") if preload else ()
                status, seconds, log = self.run_until(
                    "Worker thread started", "--fault", "token=hang", "--fault", "schedule=hang",
                    *hosts, preload=preload)
                self.assertEqual(status, 0, log)
                self.assertLess(seconds, 3)
                self.assertIn("Worker thread stopped.", log)


if __name__ == "__main__":
    KIOSK, SIMULATOR, HANGING_LOOKUP = sys.argv[1:4]
    unittest.main(argv=sys.argv[:1] + sys.argv[4:], verbosity=2)
