# SPDX-FileCopyrightText: The Lumenboard developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""The kiosk from start to end on a virtual screen, with the simulated services.

Usage: test_kiosk.py KIOSK SIMULATOR [TEST...]
"""

import os
import re
import shutil
import sys
import tempfile
import time
import unittest
from pathlib import Path

from picture import recognise, run
from program import Program, wait_until

WIDTH, HEIGHT = 1280, 800
SCHEDULE = ("H.rsaal 1", "Jetzt", "Technische Mechanik I")  # in room 1 at any time of day


class Kiosk(unittest.TestCase):
    closed = False  # by the test
    read = ""  # from the screen

    @classmethod
    def setUpClass(cls):
        for tool in ("Xvfb", "openbox", "xdotool", "import", "tesseract"):
            if not shutil.which(tool):
                raise RuntimeError(f"{tool} is not installed; scripts/bootstrap installs it")
        screen = Program(cls.addClassCleanup, "Xvfb", "-displayfd", "1", "-screen", "0", f"{WIDTH}x{HEIGHT}x24")
        os.environ.pop("WAYLAND_DISPLAY", None)
        os.environ["DISPLAY"] = ":" + screen.wait_for(r"^(\d+)$")[0][1]
        Program(cls.addClassCleanup, "openbox")

    def start(self, settings=b"", fault="none", **variables):
        """Starts services and kiosk, and waits for the first schedule response and the window."""
        self.services = Program(self.addCleanup, SIMULATOR, "--fault", f"schedule={fault}")
        base = self.services.wait_for(r"ready at (\S+)")[0][1]
        # Machine-wide, so that the user's own file can be broken.
        machine = (f"[General]\nplenarLocationId=1\nrefreshInterval=3600\n"
                   f"eventDataUrlTemplate=\"'{base}/rs/lumenboard/schedule/'yyyy-MM-dd\"\n")
        home = self.enterContext(tempfile.TemporaryDirectory())
        for folder, content in (("CONFIG_HOME", settings), ("CONFIG_DIRS", machine.encode())):
            Path(home, folder, "Kettlewood").mkdir(parents=True)
            Path(home, folder, "Kettlewood/Lumenboard2.conf").write_bytes(content)
        Path(home, "RUNTIME_DIR").mkdir(0o700)
        folders = ("CONFIG_HOME", "CONFIG_DIRS", "DATA_HOME", "CACHE_HOME", "RUNTIME_DIR")
        self.kiosk = Program(self.addCleanup, KIOSK, **variables,
                             **{f"XDG_{folder}": f"{home}/{folder}" for folder in folders})
        self.kiosk.wait_for("Done reading event data")
        self.wait_for_window()

    def start_with_reader(self):
        self.kiosk = Program(self.addCleanup, SIMULATOR, "--set", "tallyxConfirmTimeout=30000", "--configuration",
                             '{"plenarLocationId": 1, "settings": {"attendanceEnabled": false}}', "--run", KIOSK)
        self.kiosk.wait_for("Waiting for cards")
        self.kiosk.wait_for("Access token")
        self.wait_for_window()

    def until(self, what, condition, seconds=20):
        if not wait_until(condition, seconds):
            self.fail(f"waited in vain for {what}; last read: {self.read}\n{self.kiosk.output()}")

    def wait_for_window(self):
        self.until("the window", lambda: run("xdotool", "getactivewindow", "getwindowname") == b"Lumenboard\n")

    def tearDown(self):
        """Every kiosk still runs, ends on SIGTERM and has logged no warning from QML."""
        if not self.closed:
            self.assertIsNone(self.kiosk.process.poll(), "the kiosk has ended by itself")
        self.assertEqual(self.kiosk.end(), 0, self.kiosk.output())
        self.assertNotIn("qrc:/", self.kiosk.output())

    def touch(self, *places):
        for x, y in places:
            run("xdotool", "mousemove", str(x), str(y), "click", "1")

    def press(self, *keys):
        run("xdotool", "key", *keys)

    def set_fault(self, kind):
        self.services.command(f"fault schedule {kind}")
        self.services.wait_for(f"schedule: {kind}")

    def picture(self):
        return run("import", "-window", "root", "-depth", "8", "ppm:-")[-WIDTH * HEIGHT * 3:]

    def shade(self, x, y):
        return self.picture()[(y * WIDTH + x) * 3]

    def shows_notice(self):
        """Whether a notification is at the top right, where nothing else is as bright."""
        return self.shade(900, 10) == 0x72

    def shows_error(self):
        return self.picture().count(b"\xff\0\0") > 2000

    def shows(self, *patterns):
        self.read = recognise(self.picture(), WIDTH, HEIGHT)
        return all(re.search(pattern, self.read) for pattern in patterns)

    def wait_for(self, *patterns):
        self.until(patterns, lambda: self.shows(*patterns))

    def test_books_presence(self):
        self.start_with_reader()
        self.kiosk.command("tap 0A1B2C3D")
        self.until("the question", self.shows_notice)

        def choose_leave():  # against the proposal; gives the button the accent colour
            self.touch((1078, 209))
            return self.shade(1003, 230) > 0x85
        self.until("the choice", choose_leave)
        self.touch((1237, 42))
        self.kiosk.wait_for("Presence logged:")
        self.kiosk.command("bookings")
        self.kiosk.wait_for("booking: card 169552957 out")

    def test_registers_a_card_on_the_keyboard(self):
        self.start_with_reader()

        def open_view():  # the configuration may reload the interface under the touch
            self.touch((20, 20))
            if not wait_until(lambda: self.shade(100, 600) == 0x42, 3):
                return False
            self.touch((200, 40))
            return wait_until(lambda: self.shade(640, 4) == 0x3f, 3)
        self.until("the view", open_view)
        self.kiosk.command("tap 0A0A0A0A")
        self.until("the keyboard in its place", lambda: self.shade(10, 403) == 0)
        self.touch((722, 626), (755, 451), (132, 538), (1146, 538))  # mia, Return
        self.touch((103, 626), (936, 538), (845, 538), (1146, 538))  # Shift, Öl, Return
        self.kiosk.wait_for("POST /iddb")
        self.kiosk.command("registrations")
        self.kiosk.wait_for("Mia Kurz")
        self.wait_for("Transponder registrieren", "Mia Kurz")
        self.touch((1170, 750))  # close
        self.wait_for("Jetzt")

    def test_recovers_from_a_failed_first_read(self):
        self.start(fault="captive-portal")
        self.assertEqual(self.kiosk.said("this doesn't look like event data"), 1, self.kiosk.output())
        self.until("the error", self.shows_error)
        self.wait_for("Der Dienst liefert")
        self.set_fault("none")
        self.press("F5")
        self.until("the error to go", lambda: not self.shows_error())
        self.wait_for(*SCHEDULE)

    def test_keeps_what_it_shows_through_failures_and_rebuild(self):
        failure = r"failed to fetch eventdata: \(401\)"
        self.start()
        self.wait_for(*SCHEDULE)  # only then do keys reach the window
        self.assertEqual(self.kiosk.said("Reading event data..."), 1)
        self.set_fault("server-error")
        self.press("F5")
        self.kiosk.wait_for(failure)
        self.wait_for(*SCHEDULE)
        self.assertFalse(self.shows_error() or self.shows_notice())
        self.press(*8 * ["ctrl+alt+shift+n"])  # of random kinds: some without a countdown
        self.until("a notification", self.shows_notice)
        self.press("ctrl+F5")
        self.kiosk.wait_for(failure, 2)
        self.until("the notification", self.shows_notice)
        self.wait_for("Jetzt", "Technische")  # the panel covers the right half
        self.assertFalse(self.shows_error())

    def test_shows_the_clock(self):
        # In a zone where it is 12:20: single large digits and 12:17 are not recognised reliably.
        now = time.gmtime()
        west = now.tm_hour * 60 + now.tm_min - (12 * 60 + 20)  # minutes
        self.start(b"defaultView=0\nlocationName=Studio 3\n",
                   TZ=f"UTC{'-' if west < 0 else '+'}{abs(west) // 60}:{abs(west) % 60:02}")
        self.wait_for("Studio 3", r"12: ?2[0-2]\b")
        self.closed = True
        self.press("alt+F4")
        self.kiosk.process.wait(timeout=3)

    def test_returns_to_the_start_view_when_nobody_touches_it(self):
        self.start(b"inactivityTimeout=10\n")
        self.wait_for(*SCHEDULE)
        touched = time.monotonic()
        self.touch((WIDTH * 5 // 6, HEIGHT * 2 // 5))
        self.until("the page of an event", lambda: self.shade(WIDTH // 2, 725) < 0x28)
        self.until("the start view", lambda: self.shade(WIDTH // 2, 725) > 0x28)
        self.assertGreater(time.monotonic() - touched, 9)
        self.wait_for(*SCHEDULE)
        self.assertEqual(self.kiosk.said("Reading event data..."), 2)

    def test_lives_with_values_of_the_wrong_type(self):
        self.start(b"fontBaseSize=1, 2\ninactivityTimeout=a, b\nhideMouseCursor=vielleicht\n"
                   b"overrideDate=\xff\xfe\ndefaultView=Uhr\n")
        self.wait_for(*SCHEDULE)


if __name__ == "__main__":
    KIOSK, SIMULATOR = sys.argv[1:3]
    unittest.main(argv=sys.argv[:1] + sys.argv[3:], verbosity=2)
