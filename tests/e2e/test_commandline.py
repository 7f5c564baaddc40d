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
import time
import unittest
from pathlib import Path

from program import Program

SECRET = "Geheimnis: 42 & mehr"
CREDENTIALS = base64.b64encode(f"lumenboard-simulated:{SECRET}".encode()).decode()
WITHOUT_RECORDS = ("--configuration", json.dumps({
    "plenarLocationId": "2", "settings": {"attendanceEnabled": False, "tallyxMode": 0}}))
NO_DISPLAY = {"DISPLAY": "", "WAYLAND_DISPLAY": ""}
HEADLESS = {"QT_QPA_PLATFORM": "offscreen", "QT_QUICK_BACKEND": "software"}
CLOSED = "http://127.0.0.1:9/"  # no service listens there


class CommandLine(unittest.TestCase):
    def run_without_display(self, *command, **variables):
        """Return status and output of a program that ends by itself."""
        program = Program(self.addCleanup, *command, **NO_DISPLAY, **variables)
        return program.wait(60), program.output()

    def check(self, *options):
        return self.run_without_display(SIMULATOR, *options, "--run", KIOSK, "--", "--check")

    def make_home(self):
        """Return a folder for "--home" and the path of the settings in it."""
        home = self.enterContext(tempfile.TemporaryDirectory())
        return home, Path(home, "config/Kettlewood/Lumenboard2.conf")

    def check_settings(self, text, **variables):
        """Check these settings without a service. Return status, output and the settings file."""
        home, path = self.make_home()
        path.parent.mkdir(parents=True)
        path.write_text(text, encoding="utf-8")
        path.chmod(0o644)
        return *self.run_without_display(KIOSK, "--check", XDG_CONFIG_HOME=f"{home}/config",
                                         XDG_CONFIG_DIRS=f"{home}/none", **variables), path

    def test_describes_itself(self):
        status, text = self.run_without_display(KIOSK, "--help")
        self.assertEqual(status, 0)
        page = Path(__file__).parents[2].joinpath("docs/man/lumenboard.md").read_text(encoding="utf-8")
        options = r"(?<![\w-])--?[a-z][a-z-]*"
        self.assertEqual({*re.findall(options, text)}, {*re.findall(options, page)})
        self.assertEqual(self.run_without_display(KIOSK, "--help-all"), (0, text))
        self.assertEqual(self.run_without_display(KIOSK, "--version"), (0, "Lumenboard 0.8.0\n"))

    def test_refuses_what_it_does_not_know(self):
        for named, *options in (("frobnicate", "--frobnicate"), ("chekc", "--chekc", "-platform", "offscreen"),
                                ("now", "--check", "now")):
            status, text = self.run_without_display(KIOSK, *options)
            self.assertEqual(status, 1, text)
            self.assertIn(named, text)

    def test_check_judges_by_what_the_service_sets(self):
        """A new screen only knows the addresses of schedule, tokens and configuration."""
        home, path = self.make_home()
        status, text = self.check("--home", home, "--set", f"attendanceLogUrl={CLOSED}",
                                  "--set", f"tallyxLogUrl={CLOSED}", *WITHOUT_RECORDS)
        self.assertEqual(status, 0, text)
        for line in (r"Keycloak/clientSecret = \*{8} +\[user\]", r"fontBaseSize = 12 +\[default\]",
                     r"tallyxMode = 0 +\[configuration service\]", f"ok +settings {path}: read\n",
                     "ok +TLS", "ok +token", "ok +configuration", 'ok +schedule .* in "Großer Saal"'):
            self.assertRegex(text, line)
        self.assertNotIn(SECRET, text)
        self.assertNotIn("tallyxMode", path.read_text(encoding="utf-8"))

    def test_check_finds_what_is_in_the_way(self):
        for service, *options in (("token", *WITHOUT_RECORDS, "--fault", "token=wrong-credentials"),
                                  ("configuration", *WITHOUT_RECORDS, "--fault", "configuration=empty-list"),
                                  ("schedule", *WITHOUT_RECORDS, "--fault", "schedule=captive-portal"),
                                  ("attendance", "--set", f"attendanceLogUrl={CLOSED}")):
            with self.subTest(service):
                status, text = self.check(*options)
                self.assertEqual(status, 1, text)
                self.assertRegex(text, f"FAILED +{service}")
        _, text, _ = self.check_settings("clientId=a\nclientSecret=b\n", LD_PRELOAD=HANGING_LOOKUP)
        self.assertRegex(text, "FAILED +token")

    def test_check_trusts_no_value_and_changes_none(self):
        status, text, path = self.check_settings(
            "locationName=\"a\\x1b[31m\\nok      token: b\"\nquirlUrl=\"http://me:p@s/s@127.0.0.1:9\"\n"
            "tallyxMode=1.5\nattendanceEnabled=maybe\n")
        self.assertEqual(status, 1)
        self.assertNotRegex(text, r"\x1b|^ok +token")
        self.assertNotRegex(text, "p@s|s/s@")
        self.assertRegex(text, r"(?m)^tallyxMode = 2 \(stored: 1.5\)")
        self.assertIn('note    setting tallyxMode: "1.5" is no whole number, using 2', text)
        self.assertRegex(text, r"(?m)^attendanceEnabled = true \(stored: maybe\)")
        self.assertEqual(path.stat().st_mode & 0o777, 0o644)

    def serve_tls(self, folder, issuer="-CA ca -CAkey ca", days=1, bits=2048, host="IP:127.0.0.1"):
        """Serve a page with a new certificate. Return the address."""
        return "https://" + Program(self.addCleanup, "sh", "-ec", f"""
            cd {folder}
            openssl req -new -nodes -newkey rsa:{bits} -keyout key -out asked -subj /CN=x -addext subjectAltName={host}
            openssl x509 -req -in asked -out cert -days {days} -copy_extensions copy {issuer}
            exec openssl s_server -www -accept 127.0.0.1:0 -cert cert -key key -cipher ALL:@SECLEVEL=0
        """).wait_for(r"ACCEPT (127.0.0.1:\d+)")[0][1]

    def test_names_what_is_wrong_with_a_certificate(self):
        folder = self.enterContext(tempfile.TemporaryDirectory())
        subprocess.run(("openssl", "req", "-x509", "-nodes", "-newkey", "rsa:2048", "-subj", "/CN=CA",
                        "-keyout", "ca", "-out", "ca"), cwd=folder, check=True, capture_output=True)
        for fault, options in (("", {}), ("self-signed", {"issuer": "-signkey key"}),
                               (r"has expired \(on .*, is the clock right\?\)", {"days": -1}),
                               ("host name did not match", {"host": "DNS:other.example"}),
                               ("key of 1024 bits or its signature is too weak", {"bits": 1024})):
            with self.subTest(fault):
                address = self.serve_tls(folder, **options)
                _, text, _ = self.check_settings(
                    f"quirlUrl={address}\neventDataUrlTemplate=\"'{address}'\"\nattendanceEnabled=0\n"
                    "tallyxMode=0\n", LD_PRELOAD=HANGING_LOOKUP, TRUSTED_CA=f"{folder}/ca")
                self.assertRegex(text, f"FAILED +schedule .*{fault}")  # it is no schedule
                self.assertRegex(text, f"FAILED +configuration .*{fault}" if fault else "ok +configuration")
                self.assertEqual(len(re.findall(f"Network error .*SslHandshakeFailed.*{fault}", text)), 1 if fault else 0)

    def run_until(self, text, *options, how=signal.SIGTERM, preload=""):
        """Run the kiosk until it logs the text, then end it. Return seconds to the end and log."""
        services = Program(self.addCleanup, SIMULATOR, *options, "--run", "/usr/bin/env", "--",
                           f"LD_PRELOAD={preload}", "sh", "-c", 'echo "pid $$"; exec "$0"', KIOSK, **HEADLESS)
        kiosk = int(services.wait_for(r"^pid (\d+)")[0][1])
        services.wait_for(re.escape(text), seconds=30)
        asked = time.monotonic()
        os.kill(kiosk, how)
        self.assertEqual(services.wait(), 0, services.output())
        return time.monotonic() - asked, services.output()

    def test_tells_no_secret(self):
        password = f"http://me:{SECRET[:9]}@127.0.0.1:9/token"
        for text, *options in (("Applying configuration",),
                               ("Grant failed", "--fault", "token=wrong-credentials"),
                               ("Grant failed", "--fault", "token=broken-json"),
                               ("Grant failed", "--set", f"Keycloak/url={password}"),
                               ("config", "--fault", "configuration=server-error"),
                               ("config", "--fault", "configuration=redirect")):
            with self.subTest(text, options=options):
                _, log = self.run_until(text, *options, how=signal.SIGINT)
                for secret in (SECRET[:9], CREDENTIALS, "Basic ", "Bearer ", "refresh+", "refresh%2B"):
                    self.assertNotIn(secret, log)
                self.assertNotRegex(log, r"access\.[0-9a-f]{8}")

    def test_ends_in_time_while_everything_hangs(self):
        names = ("--set", "quirlUrl=https://hangs.example",
                 "--set", "Keycloak/url=https://hangs.example/token")
        for begun, options, preload in (
                ("POST", ("--fault", "token=hang", "--fault", "schedule=hang"), ""),
                ("POST", ("--fault", "token=drip", "--fault", "schedule=drip"), ""),
                ("GET /lumenboards", ("--fault", "configuration=drip"), ""),
                ("Worker thread started", names, HANGING_LOOKUP)):
            with self.subTest(begun, options=options):
                seconds, log = self.run_until(begun, *options, preload=preload)
                self.assertLess(seconds, 3)
                self.assertIn("Worker thread stopped.", log)
                self.assertNotIn("terminating", log)


if __name__ == "__main__":
    KIOSK, SIMULATOR, HANGING_LOOKUP = sys.argv[1:4]
    unittest.main(argv=sys.argv[:1] + sys.argv[4:], verbosity=2)
