# SPDX-FileCopyrightText: The Lumenboard developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs the kiosk against a Keycloak server and tells what it does in each case.

Usage: walk.py FOLDER KEYCLOAK KIOSK SIMULATOR [STEP...]
"""

import contextlib
import json
import os
import re
import secrets
import shutil
import signal
import socket
import subprocess
import sys
import time
import urllib.request
from pathlib import Path

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parents[1] / "tests/e2e"))

from picture import recognise, run  # noqa: E402
from program import Program, wait_until  # noqa: E402

SCREEN = "screen-17"
NOTICE = 400, 180  # width and height of its text
LIFETIME = 26  # seconds, so that a token has expired when a booking follows the renewal, which is due after 24 s
TOKEN = "Access token aquired"
MENDED = 150  # seconds: two attempts, of which the second uses the edited settings


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


class Server:
    """Keycloak on 127.0.0.1 with an empty database."""

    def __init__(self, home, folder, add_cleanup):
        self.home, self.add_cleanup = home, add_cleanup
        self.port = free_port()
        self.url = f"http://127.0.0.1:{self.port}/auth"
        self.password = secrets.token_urlsafe()
        self.environment = {**os.environ, "HOME": str(folder), "KCADM": str(home / "bin/kcadm.sh")}
        shutil.rmtree(home / "data", ignore_errors=True)
        add_cleanup(shutil.rmtree, home / "data", ignore_errors=True)
        self.start()
        self.admin("config", "credentials", "--server", self.url, "--realm", "master", "--user", "admin",
                   "--password", self.password)

    def start(self):
        # Without cache=local it would look for other servers on the network.
        self.program = Program(
            self.add_cleanup, str(self.home / "bin/kc.sh"), "start", "--optimized", "--cache=local", "--http-enabled=true",
            "--http-host=127.0.0.1", f"--http-port={self.port}", f"--hostname={self.url}", JAVA_OPTS_KC_HEAP="-Xms64m -Xmx512m",
            KC_BOOTSTRAP_ADMIN_USERNAME="admin", KC_BOOTSTRAP_ADMIN_PASSWORD=self.password)
        self.program.wait_for(r"started in .* Listening on", seconds=600)

    def stop(self):
        os.killpg(self.program.process.pid, signal.SIGTERM)  # a script and its Java
        self.program.wait(60)

    def run(self, *command):
        result = subprocess.run(command, env=self.environment, text=True, stdout=subprocess.PIPE,
                                stderr=subprocess.PIPE, check=False)
        if result.returncode != 0:
            raise AssertionError(f"{command} failed: {result.stdout}{result.stderr}")
        return result.stdout

    def admin(self, *arguments):
        return self.run(self.environment["KCADM"], *arguments)

    def screen(self, command):
        """Runs the command of packaging/keycloak/screens; the new secret, if there is one."""
        return self.run(HERE / "screens", command, SCREEN).partition(" ")[2].strip()

    def secret_of(self, client):
        found = json.loads(self.admin("get", "clients", "-r", "deskhub", "-q", f"clientId={client}"))
        return found[0]["secret"]

    def set_rotation(self, expiry=None, overlap=None):
        """Puts the policy into force, with other periods in seconds if there are any."""
        policy = json.loads((HERE / "secret-rotation.json").read_text())
        periods = policy["clientProfiles"]["profiles"][0]["executors"][0]["configuration"]
        if expiry:
            periods.update({"expiration-period": expiry, "rotated-expiration-period": overlap,
                            "remaining-rotation-period": overlap})
        self.admin("update", "realms/deskhub", "-b", json.dumps(policy))


class Kiosk:
    """The kiosk with the simulator's services, which ask the server about each token."""

    def __init__(self, server, folder, programs, add_cleanup, secret):
        self.folder, self.home = folder, folder / "home"
        self.cards = 0
        self.clock = folder / "clock"
        self.set_clock(0)
        kiosk, simulator = programs
        library = folder / "clock.so"
        subprocess.run(["g++", "-std=c++17", "-O2", "-shared", "-fPIC", "-o", library, HERE / "clock.cpp"], check=True)
        wrapper = folder / "kiosk"
        wrapper.write_text(f'#!/bin/sh\nexec env LD_PRELOAD="$LD_PRELOAD:{library}" "{kiosk}" "$@"\n')
        wrapper.chmod(0o700)
        screen = Program(add_cleanup, "Xvfb", "-displayfd", "1", "-nolisten", "tcp", "-screen", "0", "1280x800x24")
        os.environ["DISPLAY"] = ":" + screen.wait_for(r"^(\d+)$")[0][1]
        tokens = f"{server.url}/realms/deskhub/protocol/openid-connect/token"
        ask = tokens.replace("://", f"://quirl:{server.secret_of('quirl')}@")
        settings = {"Keycloak/url": tokens, "Keycloak/clientId": SCREEN, "Keycloak/clientSecret": secret,
                    "tallyxConfirmTimeout": 3000}
        arguments = [each for key, value in settings.items() for each in ("--set", f"{key}={value}")]
        self.program = Program(
            add_cleanup, simulator, "--introspect", f"{ask}/introspect", "--home", str(self.home), *arguments, "--run",
            str(wrapper), QT_QPA_PLATFORM="xcb", SHIFTED_CLOCK=str(self.clock))

    def now(self):
        """Waits from here on look at later lines only."""
        return len(self.program.lines)

    def wait_for(self, pattern, since=0, count=1, seconds=90):
        return self.program.wait_for(pattern, count, since, seconds)

    def set_clock(self, seconds):
        with self.clock.open("r+b" if self.clock.exists() else "wb") as file:  # in its place, as it is mapped
            file.write(seconds.to_bytes(4, sys.byteorder, signed=True))

    def set_secret(self, secret):
        """What an operator does: only this line of the settings changes, and the file as a whole."""
        path = self.home / "config/Kettlewood/Lumenboard2.conf"
        text = re.sub(r"(?m)^clientSecret=.*", f"clientSecret={secret}", path.read_text(encoding="utf-8"))
        fresh = path.with_suffix(".new")
        fresh.write_text(text, encoding="utf-8")
        fresh.chmod(0o600)
        fresh.replace(path)

    def book(self, card, outcome="POST /rs/log/v2: 200"):
        """Holds a card to the reader until the presence service has answered the booking."""
        since = self.now()
        self.cards += 1
        self.program.command(f"tap {card}")
        return self.wait_for(outcome, since, seconds=60)

    def read_notice(self, name, *patterns):
        """Waits until the first notice shows the texts, and keeps a picture of the screen."""
        picture = self.folder / f"{name}.png"
        text = ""

        def shows():
            nonlocal text
            run("import", "-window", "root", picture)
            notice = run("convert", picture, "-crop", f"{NOTICE[0]}x{NOTICE[1]}+790+0", "-depth", "8", "ppm:-")
            text = recognise(notice[-NOTICE[0] * NOTICE[1] * 3:], *NOTICE)
            return all(re.search(each, text) for each in patterns)

        if not wait_until(shows, 20):
            raise AssertionError(f"The notice says {text!r}\n{self.program.output()}")


def refusal(lines):
    return re.search(r"\[(.*)\]", lines[0].string)[1]


class Walk:
    STEPS = ("renewal", "secret_with_overlap", "secret_without_overlap", "restart", "clock_off", "disabled", "expired",
             "late_bookings")

    def __init__(self, server, kiosk):
        self.server, self.kiosk = server, kiosk
        self.began = time.monotonic()

    def tell(self, what, seen, began):
        print(f"{what:44} {time.monotonic() - began:6.1f} s  {seen}", flush=True)

    def first_token(self):
        line = self.kiosk.wait_for(TOKEN + ".*Validity: (.*); Timer interval: (.*)")[0]
        self.tell("first token, from the start of the kiosk", f"valid for {line[1]} s, next in {line[2]} ms", self.began)
        self.kiosk.wait_for("GET /lumenboards/api/config/: 200")
        self.tell("configuration with this token", "the service accepts it", self.began)

    def renewal(self):
        began, since = time.monotonic(), self.kiosk.now()
        self.kiosk.wait_for(TOKEN, since)
        self.tell("renewal", "a new grant, as there is no refresh token", began)
        self.kiosk.wait_for(TOKEN, since, 2)
        self.kiosk.book("0A1B2C3D")
        self.tell("booking after the first token has expired", "the service accepts the new one", began)

    def secret_with_overlap(self):
        self.server.set_rotation()
        secret = self.server.screen("rotate")
        began, since = time.monotonic(), self.kiosk.now()
        self.kiosk.wait_for(TOKEN, since)
        self.tell("secret changed, the old one stays valid", "renewed with the old secret", began)
        began, since = time.monotonic(), self.kiosk.now()
        self.kiosk.set_secret(secret)
        self.kiosk.wait_for(TOKEN, since, 2)
        self.server.screen("forget")
        since = self.kiosk.now()
        self.kiosk.wait_for(TOKEN, since, 2)
        self.tell("  the new one in the settings, no restart", "renewed with the new secret, no refusal", began)
        assert not self.kiosk.program.find("Grant failed"), self.kiosk.program.output()

    def secret_without_overlap(self):
        self.server.admin("update", "realms/deskhub", "-b", '{"clientPolicies": {"policies": []}}')
        since = self.kiosk.now()
        secret = self.server.screen("rotate")
        began = time.monotonic()
        reason = refusal(self.kiosk.wait_for("KC: failed to process reply: .*", since))
        self.kiosk.wait_for("Grant failed, retrying in 60s", since)
        self.tell("secret changed, the old one is invalid", f"refused: {reason}", began)
        began = time.monotonic()
        self.kiosk.book("0A1B2C3E", "POST /rs/log/v2: 401")
        self.kiosk.read_notice("refused", "nicht zu", "401")
        self.tell("  a card after the token has expired", "the record waits, the screen says why", began)
        began, since = time.monotonic(), self.kiosk.now()
        self.kiosk.set_secret(secret)
        self.kiosk.wait_for(TOKEN, since, seconds=MENDED)
        self.tell("  the new one in the settings, no restart", "a new token", began)

    def restart(self):
        since = self.kiosk.now()
        self.server.stop()
        began = time.monotonic()
        self.kiosk.wait_for("KC: failed to process reply: .*Connection refused", since)
        self.kiosk.wait_for("Grant failed, retrying in 60s", since)
        self.tell("server stopped", "connection refused, tried again after 60 s", began)
        since = self.kiosk.now()
        self.server.start()
        began = time.monotonic()
        self.kiosk.wait_for(TOKEN, since)
        self.kiosk.book("0A1B2C3F")
        self.tell("server back", "a new token, the service accepts it", began)

    def clock_off(self):
        for seconds in (90, -90):
            self.kiosk.set_clock(seconds)
            began, since = time.monotonic(), self.kiosk.now()
            self.kiosk.wait_for(TOKEN, since, 2)
            self.kiosk.book("0A1B2C40", "POST /rs/lumenboard-legacy/attendancelog: 200")
            self.kiosk.wait_for("POST /rs/log/v2: 200", since)
            self.tell(f"clock {seconds:+} s, set under way", "renewed twice, attendance and presence accepted", began)
        self.kiosk.set_clock(0)

    def disabled(self):
        since = self.kiosk.now()
        self.server.screen("disable")
        began = time.monotonic()
        self.kiosk.book("0A1B2C3D", "POST /rs/log/v2: 401")
        self.tell("client disabled", "the service refuses its token at once", began)
        reason = refusal(self.kiosk.wait_for("KC: failed to process reply: .*", since))
        self.tell("  the next renewal", f"refused: {reason}", began)
        since = self.kiosk.now()
        self.server.screen("enable")
        began = time.monotonic()
        self.kiosk.wait_for(TOKEN, since, seconds=MENDED)
        self.tell("  enabled again", "a new token", began)

    def expired(self):
        self.server.set_rotation(150, 120)  # the old one lasts until the new one is in use
        secret = self.server.screen("rotate")
        began, since = time.monotonic(), self.kiosk.now()
        self.kiosk.set_secret(secret)
        self.kiosk.wait_for(TOKEN, since, 2)
        self.server.screen("forget")
        since = self.kiosk.now()
        self.kiosk.wait_for(TOKEN, since)
        reason = refusal(self.kiosk.wait_for("KC: failed to process reply: .*", since, seconds=240))
        self.tell("secret expired, 150 s after its change", f"refused: {reason}", began)
        self.server.set_rotation()
        since = self.kiosk.now()
        self.kiosk.set_secret(self.server.screen("rotate"))
        began = time.monotonic()
        self.kiosk.wait_for(TOKEN, since, seconds=MENDED)
        self.tell("  another one in the settings, no restart", "a new token", began)

    def late_bookings(self):
        """All cards are booked in the end, the refused ones as well."""
        began = time.monotonic()
        self.kiosk.wait_for("POST /rs/log/v2: 200", count=self.kiosk.cards, seconds=900)
        self.tell("the bookings that had to wait", f"all {self.kiosk.cards} cards are booked", began)


def main(home, keycloak, programs, steps):
    folder = home / "run"
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True, mode=0o700)
    with contextlib.ExitStack() as stack:
        began = time.monotonic()
        server = Server(keycloak, folder, stack.callback)
        # The file wants https everywhere; here everything is on this machine.
        server.admin("create", "realms", "-f", str(HERE / "lumenboard-realm.json"), "-s", "sslRequired=external",
                     "-s", f"accessTokenLifespan={LIFETIME}")
        kiosk = Kiosk(server, folder, programs, stack.callback, server.screen("add"))
        print(f"{server.program.find(r'Keycloak [0-9.]+')[0][0]}, ready after {time.monotonic() - began:.1f} s", flush=True)
        walk = Walk(server, kiosk)
        try:
            walk.first_token()
            for step in steps or Walk.STEPS:
                getattr(walk, step)()
            assert kiosk.program.end() == 0, kiosk.program.output()
            server.stop()
        finally:
            (folder / "kiosk.log").write_text(kiosk.program.output(), encoding="utf-8")
            (folder / "server.log").write_text(server.program.output(), encoding="utf-8")


signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))  # with all that was started
main(Path(sys.argv[1]), Path(sys.argv[2]), [os.path.abspath(each) for each in sys.argv[3:5]], sys.argv[5:])
