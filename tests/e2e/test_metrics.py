# SPDX-FileCopyrightText: The Lumenboard developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""What Prometheus gets from a kiosk, and its rules, judged by Prometheus' own tool.

Usage: test_metrics.py KIOSK SIMULATOR [TEST...]  Ends with 77 if the tool is not there, but not in CI.
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from program import Program, wait_until

ROOT = Path(__file__).resolve().parents[2]
RULES = (ROOT / "packaging/prometheus/lumenboard.rules.yml").read_text(encoding="utf-8")


class Metrics(unittest.TestCase):
    def promtool(self, *arguments, text=None):
        done = subprocess.run(("promtool", *arguments), text=True, input=text, stdout=subprocess.PIPE, cwd=ROOT,
                              stderr=subprocess.STDOUT, check=False)
        self.assertEqual(done.returncode, 0, done.stdout)

    def test_rules(self):
        self.promtool("check", "rules", "packaging/prometheus/lumenboard.rules.yml")
        self.promtool("test", "rules", "packaging/prometheus/lumenboard.rules.test.yml")

    def test_every_name_is_known(self):
        documented = (ROOT / "docs/monitoring.md").read_text(encoding="utf-8")
        dashboard = (ROOT / "packaging/grafana/lumenboard.json").read_text(encoding="utf-8")
        used = set(re.findall(r"lumenboard_\w+", re.sub("#.*", "", RULES) + dashboard))
        self.assertEqual(used - set(re.findall(r"`(lumenboard_\w+)`", documented)), set())
        alerts = re.findall(r"alert: (\w+)", RULES)
        self.assertEqual(alerts, re.findall(r"^\| `(Lumenboard\w+)`", documented, re.M))
        tests = (ROOT / "packaging/prometheus/lumenboard.rules.test.yml").read_text(encoding="utf-8")
        self.assertEqual(set(alerts), set(re.findall(r'alertname="(\w+)"', tests)))

    def test_collector(self):
        home = self.enterContext(tempfile.TemporaryDirectory())
        file = Path(home, "lumenboard.prom")

        def collect(*command):
            return subprocess.run((ROOT / "packaging/kiosk/metrics", file, *command), check=False,
                                  env={**os.environ, "RUNTIME_DIRECTORY": f"{home}/run/lumenboard"}).returncode

        def tells(text):
            self.assertEqual(collect(KIOSK, "--status", "--format=prometheus"), 0)
            return text in file.read_text()

        self.assertTrue(tells("\nlumenboard_up 0\n"))
        self.promtool("check", "metrics", text=file.read_text())
        Program(self.addCleanup, SIMULATOR, "--home", home, "--run", KIOSK, QT_QPA_PLATFORM="offscreen",
                QT_QUICK_BACKEND="software")
        self.assertTrue(wait_until(lambda: tells("\nlumenboard_info{"), 40))
        self.promtool("check", "metrics", text=file.read_text())
        before = file.read_bytes()
        self.assertEqual(collect("sh", "-c", "echo half; exit 1"), 1)
        self.assertEqual((file.read_bytes(), os.listdir(home).count("lumenboard.prom.new")), (before, 0))


if __name__ == "__main__":
    if not shutil.which("promtool"):
        print("promtool is not installed: NOTHING OF THE METRICS AND ALERTS IS TESTED; install Debian's prometheus,"
              " or run scripts/bootstrap ci", file=sys.stderr)
        sys.exit(1 if os.environ.get("CI") else 77)
    KIOSK, SIMULATOR = sys.argv[1:3]
    unittest.main(argv=sys.argv[:1] + sys.argv[3:], verbosity=2)
