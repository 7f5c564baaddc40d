# SPDX-FileCopyrightText: The Lumenboard developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""The command line, which needs no display, and the end of the program.

Usage: test_commandline.py KIOSK SIMULATOR HANGING_LOOKUP [TEST...]
"""

import base64
import json
import os
import re
import signal
import subprocess
import sys
import tempfile
import threading
import time
import unittest

SECRET = "Geheimnis: 42 & mehr"
WITHOUT_RECORDS = ("--configuration", json.dumps({
    "plenarLocationId": "2", "settings": {"attendanceEnabled": False, "tallyxMode": 0}}))
HEADLESS = {"QT_QPA_PLATFORM": "offscreen", "QT_QUICK_BACKEND": "software"}


def run(*command, **variables):
    """Return status and output of a program that has no display."""
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
        self.assertEqual(run(KIOSK, "--help-all"), (0, text))
        self.assertEqual(run(KIOSK, "--version"), (0, "Lumenboard 0.8.0\n"))

    def test_refuses_what_it_does_not_know(self):
        for wrong in (("--frobnicate",), ("--chekc", "-platform", "offscreen"), ("--check", "now")):
            status, text = run(KIOSK, *wrong)
            self.assertEqual(status, 1, text)
            self.assertIn(wrong[-1 if wrong[-1] == "now" else 0].lstrip("-"), text)

    def test_check_finds_all_well(self):
        status, text = check(*WITHOUT_RECORDS)
        self.assertEqual(status, 0, text)
        for line in (r"Keycloak/clientSecret = \*{8} +\[user\]", r"fontBaseSize = 12 +\[default\]",
                     "ok +TLS", "ok +token", "ok +configuration", 'ok +schedule .* in "Großer Saal"'):
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
        status, text = run(KIOSK, "--check", LD_PRELOAD=HANGING_LOOKUP, **self.settings(
            "clientId=a\nclientSecret=b\n"))
        self.assertRegex(text, "FAILED +token")
        # No service listens there; the check only tries to connect.
        status, text = check("--set", "attendanceLogUrl=http://127.0.0.1:9/")
        self.assertEqual(status, 1)
        self.assertRegex(text, "FAILED +attendance")

    def settings(self, text, mode=0o600):
        """Return the environment of a program that reads its settings from this text."""
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        os.mkdir(f"{folder.name}/Kettlewood")
        path = f"{folder.name}/Kettlewood/Lumenboard2.conf"
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        os.chmod(path, mode)
        return {"XDG_CONFIG_HOME": folder.name, "XDG_CONFIG_DIRS": folder.name + "/none"}

    def test_check_trusts_no_value_and_changes_none(self):
        variables = self.settings(
            "locationName=\"a\\x1b[31m\\nok      token: b\"\nquirlUrl=\"http://me:p@s/s@127.0.0.1:9\"\n"
            "tallyxMode=1.5\nattendanceEnabled=maybe\n", mode=0o644)
        status, text = run(KIOSK, "--check", **variables)
        self.assertEqual(status, 1)
        self.assertNotRegex(text, r"\x1b|^ok +token")
        self.assertNotRegex(text, "p@s|s/s@")
        self.assertRegex(text, r"(?m)^tallyxMode = \d \(stored: 1.5\)")
        self.assertRegex(text, r"(?m)^attendanceEnabled = true \(stored: maybe\)")
        path = variables["XDG_CONFIG_HOME"] + "/Kettlewood/Lumenboard2.conf"
        self.assertEqual(os.stat(path).st_mode & 0o777, 0o644)

    def test_check_judges_by_what_the_service_sets(self):
        """A new screen only knows the addresses of schedule, tokens and configuration."""
        with tempfile.TemporaryDirectory() as home:
            status, text = check("--home", home, "--set", "attendanceLogUrl=http://127.0.0.1:9/", "--set",
                                 "tallyxLogUrl=http://127.0.0.1:9/", *WITHOUT_RECORDS)
            self.assertEqual(status, 0, text)
            self.assertRegex(text, r"tallyxMode = 0 +\[configuration service\]")
            self.assertRegex(text, 'ok +schedule .* in "Großer Saal"')
            self.assertIn(f"ok      settings {home}/config/Kettlewood/Lumenboard2.conf: read\n", text)
            with open(f"{home}/config/Kettlewood/Lumenboard2.conf", encoding="utf-8") as file:
                self.assertNotIn("tallyxMode", file.read())

    def run_until(self, text, *options, how=signal.SIGTERM, preload=""):
        """Run the kiosk until it logs the text, then end it. Return status, seconds to the end, and log."""
        kiosk = ["/usr/bin/env", "--", f"LD_PRELOAD={preload}", "sh", "-c", 'echo "pid $$"; exec "$0"', KIOSK]
        services = subprocess.Popen([SIMULATOR, "--no-stdin", *options, "--run", *kiosk],
                                    stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                                    errors="replace", env={**os.environ, **HEADLESS})
        watchdog = threading.Timer(30, services.kill)
        watchdog.start()
        self.addCleanup(watchdog.cancel)
        log = ""
        for line in services.stdout:
            log += line
            if text in line:
                break
        self.assertIn(text, log)
        asked = time.monotonic()
        os.kill(int(re.search(r"^pid (\d+)", log, re.M)[1]), how)
        log += services.stdout.read()
        return services.wait(), time.monotonic() - asked, log

    def assert_tells_no_secret(self, log):
        credentials = base64.b64encode(f"lumenboard-simulated:{SECRET}".encode()).decode()
        for secret in (SECRET, credentials, "Basic ", "Bearer ", "refresh+", "refresh%2B"):
            self.assertNotIn(secret, log)
        self.assertIsNone(re.search(r"access\.[0-9a-f]{8}", log))

    def test_takes_its_room_from_the_service_and_tells_no_secret(self):
        status, _, log = self.run_until("Done reading event data", how=signal.SIGINT)
        self.assertEqual(status, 0)
        self.assertIn("Applying configuration", log)
        self.assert_tells_no_secret(log)

    def test_tells_no_secret_when_a_request_fails(self):
        for route, fault in (("token", "wrong-credentials"), ("token", "server-error"),
                             ("token", "redirect"), ("token", "broken-json"),
                             ("configuration", "server-error"), ("configuration", "redirect")):
            with self.subTest(f"{route} {fault}"):
                said = "Grant failed" if route == "token" else "config"
                _, _, log = self.run_until(said, "--fault", f"{route}={fault}")
                self.assert_tells_no_secret(log)
        with self.subTest("address with a password"):
            _, _, log = self.run_until("Grant failed", "--set",
                                       f"Keycloak/url=http://me:{SECRET[:9]}@127.0.0.1:9/token")
            self.assertNotIn(SECRET[:9], log)

    def test_ends_in_time_while_everything_hangs(self):
        names = ("--set", "quirlUrl=https://hangs.example",
                 "--set", "Keycloak/url=https://hangs.example/token")
        for begun, options, preload in (
                ("POST", ("--fault", "token=hang", "--fault", "schedule=hang"), ""),
                ("POST", ("--fault", "token=drip", "--fault", "schedule=drip"), ""),
                ("GET /lumenboards", ("--fault", "configuration=drip"), ""),
                ("Worker thread started", names, HANGING_LOOKUP)):
            with self.subTest(begun, options=options):
                status, seconds, log = self.run_until(begun, *options, preload=preload)
                self.assertEqual(status, 0, log)
                self.assertLess(seconds, 3)
                self.assertIn("Worker thread stopped.", log)
                self.assertNotIn("terminating", log)


if __name__ == "__main__":
    KIOSK, SIMULATOR, HANGING_LOOKUP = sys.argv[1:4]
    unittest.main(argv=sys.argv[:1] + sys.argv[4:], verbosity=2)
