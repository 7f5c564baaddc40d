#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Lumenboard developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""See scripts/monitoring. Usage: monitoring.py KIOSK SIMULATOR"""

import contextlib
import json
import os
import re
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import threading
import time
import urllib.parse
import urllib.request
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
sys.path.insert(0, str(ROOT / "tests/e2e"))
from program import Program, wait_until  # noqa: E402

PICTURES = ROOT / "build/monitoring"
RULES = ROOT / "packaging/prometheus/lumenboard.rules.yml"
DASHBOARD = ROOT / "packaging/grafana/lumenboard.json"
OFFSCREEN = {"QT_QPA_PLATFORM": "offscreen", "QT_QUICK_BACKEND": "software"}
# An hour becomes 40 s, which a schedule that is read every 30 s never reaches, and 10 s for a record, which is sent
# again after 60 s.
HASTE = ((r"(oldest_record.*) > 3600\b", r"\1 > 10"), (r"> 3600\b", "> 40"), (r"for: \w+", "for: 3s"))
SUPERVISOR = 'while :; do "$0" & pid=$!; echo "kiosk is $pid"; wait $pid; done'


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


class Screen:
    """A kiosk with its simulator and its node exporter; the timer's work is done every two seconds."""

    def __init__(self, cleanup, kiosk, simulator, folder, name, room):
        self.name, self.room, self.folder, self.kiosk = name, room, Path(folder, name), kiosk
        (self.folder / "metrics").mkdir(parents=True)
        configuration = {"plenarLocationId": 1, "locationName": room, "settings": {"attendanceEnabled": True}}
        self.program = Program(cleanup, simulator, "--home", str(self.folder), "--set", "refreshInterval=30",
                               "--configuration", json.dumps(configuration), "--run", "sh", "--", "-c", SUPERVISOR,
                               kiosk, **OFFSCREEN)
        self.port = free_port()
        self.exporter = Program(cleanup, "prometheus-node-exporter", f"--web.listen-address=127.0.0.1:{self.port}",
                                "--collector.disable-defaults", "--collector.time", "--collector.textfile",
                                f"--collector.textfile.directory={self.folder}/metrics")
        self.ended = threading.Event()
        self.collector = threading.Thread(target=self.collect)
        self.collector.start()
        cleanup(self.stop)

    def collect(self):
        while not self.ended.wait(2):
            subprocess.run((ROOT / "packaging/kiosk/metrics", self.folder / "metrics/lumenboard.prom", self.kiosk,
                            "--status", "--format=prometheus"), check=False,
                           env={**os.environ, "RUNTIME_DIRECTORY": f"{self.folder}/run/lumenboard"})

    def stop(self):
        self.ended.set()
        self.collector.join()

    def send(self, signal_number):
        os.kill(int(self.program.find(r"kiosk is (\d+)")[-1][1]), signal_number)


class Prometheus:
    def __init__(self, cleanup, folder, screens):
        rules = RULES.read_text(encoding="utf-8")
        for long, short in HASTE:
            rules = re.sub(long, short, rules)
        Path(folder, "rules.yml").write_text(rules, encoding="utf-8")
        targets = [{"targets": [f"127.0.0.1:{each.port}"], "labels": {"instance": each.name}} for each in screens]
        Path(folder, "prometheus.yml").write_text(json.dumps({  # JSON is YAML
            "global": {"scrape_interval": "2s", "evaluation_interval": "2s"}, "rule_files": ["rules.yml"],
            "scrape_configs": [{"job_name": "lumenboard", "static_configs": targets}]}))
        self.address = f"127.0.0.1:{free_port()}"
        self.program = Program(cleanup, "prometheus", f"--config.file={folder}/prometheus.yml",
                               f"--storage.tsdb.path={folder}/prometheus", f"--web.listen-address={self.address}")
        self.program.wait_for("Server is ready")

    def ask(self, path, **parameters):
        """The data of an answer; a query that Prometheus refuses ends the script."""
        url = f"http://{self.address}/api/v1/{path}?{urllib.parse.urlencode(parameters)}"
        with urllib.request.urlopen(url, timeout=10) as response:
            return json.load(response)["data"]

    def query(self, expression):
        return self.ask("query", query=expression)["result"]

    def firing(self, alert, screen):
        """The annotations of this alert if it fires, else nothing."""
        for each in self.ask("alerts")["alerts"]:
            labels = (each["labels"]["alertname"], each["labels"]["instance"])
            if labels == (f"Lumenboard{alert}", screen.name) and each["state"] == "firing":
                return each["annotations"]
        return None

    def wait_for(self, alert, screen, fires=True, seconds=200):
        start = time.monotonic()
        if not wait_until(lambda: bool(self.firing(alert, screen)) == fires, seconds):
            states = "\n".join(str(each["labels"]) for each in self.ask("alerts")["alerts"])
            raise SystemExit(f"{alert} of {screen.name} should {'fire' if fires else 'clear'}; there are\n{states}")
        took = f"{time.monotonic() - start:.0f} s"
        if not fires:
            print(f"   {alert} clears after {took}", flush=True)
            return
        told = self.firing(alert, screen) or {}
        if told.get("room") != screen.room:
            raise SystemExit(f"{alert} names the room {told.get('room')} instead of {screen.room}")
        print(f"   {alert} fires after {took}: {told['room']}: {told['summary']}", flush=True)

    def take_picture(self, name, page, **parameters):
        """Of one of Prometheus' own pages, in a real browser."""
        url = f"http://{self.address}/classic/{page}?{urllib.parse.urlencode(parameters)}"
        urllib.request.urlopen(url, timeout=10).close()  # the browser would show an error as a page
        with tempfile.TemporaryDirectory() as profile:
            subprocess.run(("chromium", "--headless=new", "--no-sandbox", "--disable-gpu", "--hide-scrollbars",
                            f"--user-data-dir={profile}", "--window-size=1400,1000", "--virtual-time-budget=15000",
                            f"--screenshot={PICTURES / name}", url),
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=120, check=True)
        print(f"   build/monitoring/{name}")


def dashboard_queries():
    """Title and expression of each query."""
    dashboard = json.loads(DASHBOARD.read_text(encoding="utf-8"))
    for panel in dashboard["panels"]:
        for target in panel["targets"]:
            yield panel["title"], target["expr"]
    for annotation in dashboard["annotations"]["list"]:
        yield annotation["name"], annotation["expr"]


def try_dashboard(prometheus, rooms):
    count = 0
    for title, expression in dashboard_queries():
        count += 1
        result = prometheus.query(expression.replace("$room", ".*"))
        if not result:
            raise SystemExit(f"Nothing in \"{title}\": {expression}")
        chosen = prometheus.query(expression.replace("$room", rooms[0]))
        others = [each for each in chosen if each["metric"].get("room", rooms[0]) != rooms[0]]
        if others:
            raise SystemExit(f"Other rooms in \"{title}\": {others}")
    known = prometheus.ask("label/room/values", **{"match[]": "lumenboard_info"})
    if known != sorted(rooms):
        raise SystemExit(f"The filter has the rooms {known}")
    print(f"   {count} queries, rooms {', '.join(known)}")


def is_quiet(prometheus):
    """No alert but for the clock: that of the machine that runs this may follow no time server."""
    return not [each for each in prometheus.ask("alerts")["alerts"]
                if each["labels"]["alertname"] != "LumenboardClockOff"]


def main(kiosk, simulator):
    for tool in ("prometheus", "prometheus-node-exporter", "chromium"):
        if not shutil.which(tool):
            raise SystemExit(f"{tool} is not installed; scripts/bootstrap monitoring installs it")
    PICTURES.mkdir(parents=True, exist_ok=True)
    rooms = ["Hörsaal 1", "Studio 3"]
    with contextlib.ExitStack() as stack:
        folder = stack.enter_context(tempfile.TemporaryDirectory())
        one, two = (Screen(stack.callback, kiosk, simulator, folder, name, room)
                    for name, room in zip(("screen-1", "screen-2"), rooms))
        for each in (one, two):
            each.program.wait_for("Waiting for cards")
        prometheus = Prometheus(stack.callback, folder, (one, two))
        print("== Two healthy screens", flush=True)
        # Both queues of both have been looked through: a record that fails from now on is sent again after 60 s.
        if not wait_until(lambda: len(prometheus.query("lumenboard_records_waiting")) == 4, 60):
            raise SystemExit("Prometheus does not see both screens")
        if not wait_until(lambda: is_quiet(prometheus), 60):
            raise SystemExit(f"Alerts without a fault: {prometheus.ask('alerts')}")

        print("== Attendance fails for some seconds", flush=True)
        for command in ("fault attendance server-error", "tap 0A1B2C3D"):
            one.program.command(command)
        prometheus.wait_for("RecordsOld", one)
        one.program.command("fault attendance none")

        print("== Schedule service fails, reader unplugged, second kiosk stopped", flush=True)
        for command in ("fault schedule server-error", "unplug"):
            one.program.command(command)
        two.send(signal.SIGSTOP)
        for alert, screen in (("ReaderGone", one), ("ScheduleOld", one), ("Silent", two)):
            prometheus.wait_for(alert, screen)
        print("== The dashboard", flush=True)
        try_dashboard(prometheus, rooms)
        print("== Pictures", flush=True)
        problems = next(query for title, query in dashboard_queries() if title == "Problems")
        prometheus.take_picture("alerts.png", "alerts")
        prometheus.take_picture("firing.png", "graph", **{"g0.expr": 'ALERTS{alertstate="firing"}', "g0.tab": 1})
        prometheus.take_picture("problems.png", "graph", **{"g0.expr": problems.replace("$room", ".*"), "g0.tab": 0,
                                                            "g0.range_input": "5m"})

        print("== The faults end; the second kiosk is killed", flush=True)
        for command in ("fault schedule none", "plug"):
            one.program.command(command)
        two.send(signal.SIGCONT)
        for alert, screen in (("Silent", two), ("ScheduleOld", one), ("ReaderGone", one), ("RecordsOld", one)):
            prometheus.wait_for(alert, screen, fires=False)
        two.send(signal.SIGKILL)
        prometheus.wait_for("Restarted", two)
        print("== Done")


if __name__ == "__main__":
    main(*map(os.path.abspath, sys.argv[1:3]))
