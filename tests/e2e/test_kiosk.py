# SPDX-FileCopyrightText: The Lumenboard developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""The kiosk from its start to its end, on a screen of its own, against the simulated services.

Usage: test_kiosk.py KIOSK SIMULATOR [TEST...]
"""

import ctypes
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

WIDTH, HEIGHT = 1280, 800
NEGATIVE = bytes(range(255, -1, -1))
SCHEDULE = ("H.rsaal 1", "Jetzt", "Technische Mechanik I")  # what room 1 shows at any time of day


def until(what, condition, seconds=20):
    end = time.monotonic() + seconds
    while not condition():
        if time.monotonic() > end:
            raise AssertionError(f"waited in vain for {what}")
        time.sleep(0.1)


def run(*command, **options):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False,
                          **options).stdout


class Program:
    """A process with its output in a file."""

    def __init__(self, add_cleanup, *command, **variables):
        self.file = tempfile.NamedTemporaryFile()
        self.process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=self.file, text=True,
                                        stderr=subprocess.STDOUT, env={**os.environ, **variables})
        add_cleanup(self.end)

    def end(self):
        """Asks it to end and returns its status."""
        self.process.terminate()
        try:
            return self.process.wait(timeout=3)
        except subprocess.TimeoutExpired:
            self.process.kill()
            return self.process.wait()

    def output(self):
        return Path(self.file.name).read_text(errors="replace")

    def said(self, text):
        return self.output().count(text)


class Kiosk(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        for tool in ("Xvfb", "openbox", "xdotool", "import", "tesseract"):
            if not shutil.which(tool):
                raise RuntimeError(f"{tool} is not installed; scripts/bootstrap installs it")
        screen = Program(cls.addClassCleanup, "Xvfb", "-displayfd", "1", "-screen", "0", f"{WIDTH}x{HEIGHT}x24")
        until("the screen", lambda: re.search(r"^\d+\n", screen.output(), re.M))
        os.environ["DISPLAY"] = ":" + re.search(r"^(\d+)\n", screen.output(), re.M)[1]
        Program(cls.addClassCleanup, "openbox")

    def start(self, settings=b"", fault="none", **variables):
        """Starts services and kiosk and waits until the kiosk has asked for the day."""
        self.closed = False
        self.services = Program(self.addCleanup, SIMULATOR, "--fault", f"schedule={fault}")
        until("the services", lambda: self.services.said("ready at"))
        base = re.search(r"ready at (\S+)", self.services.output())[1]
        # For the whole machine, so that the user's own file can be as bad as it gets.
        machine = (f"[General]\nplenarLocationId=1\nrefreshInterval=3600\n"
                   f"eventDataUrlTemplate=\"'{base}/rs/lumenboard/schedule/'yyyy-MM-dd\"\n")
        home = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, home)
        for folder, content in (("CONFIG_HOME", settings), ("CONFIG_DIRS", machine.encode())):
            Path(home, folder, "Kettlewood").mkdir(parents=True)
            Path(home, folder, "Kettlewood/Lumenboard2.conf").write_bytes(content)
        Path(home, "RUNTIME_DIR").mkdir(0o700)
        folders = ("CONFIG_HOME", "CONFIG_DIRS", "DATA_HOME", "CACHE_HOME", "RUNTIME_DIR")
        self.kiosk = Program(self.addCleanup, KIOSK, **variables,
                             **{f"XDG_{folder}": f"{home}/{folder}" for folder in folders})
        until("the first answer", lambda: self.kiosk.said("Done reading event data"))
        until("the window", lambda: run("xdotool", "getactivewindow", "getwindowname") == b"Lumenboard\n")

    def tearDown(self):
        """Whatever a test does, the kiosk runs on and ends on SIGTERM as it should."""
        if not self.closed:
            self.assertIsNone(self.kiosk.process.poll(), "the kiosk has ended by itself")
        self.assertEqual(self.kiosk.end(), 0, self.kiosk.output())
        self.assertNotIn("qrc:/", self.kiosk.output(), "QML has complained")

    def press(self, *keys):
        run("xdotool", "key", *keys)

    def set_fault(self, kind):
        print("fault schedule", kind, file=self.services.process.stdin, flush=True)
        until("the fault", lambda: self.services.said(kind))

    def picture(self):
        return run("import", "-window", "root", "-depth", "8", "ppm:-")[-WIDTH * HEIGHT * 3:]

    def shade(self, x, y):
        return self.picture()[(y * WIDTH + x) * 3]

    def shows_card(self):
        """Whether there is a notification at the top right, where nothing else is so bright."""
        return self.shade(900, 10) == 0x72

    def shows_error(self):
        return self.picture().count(b"\xff\0\0") > 2000

    def shows_cursor(self):
        class Image(ctypes.Structure):
            _fields_ = [("place", ctypes.c_short * 2), ("size", ctypes.c_ushort * 2), ("hot", ctypes.c_ushort * 2),
                        ("serial", ctypes.c_ulong), ("pixels", ctypes.POINTER(ctypes.c_ulong))]
        x11, fixes = ctypes.CDLL("libX11.so.6"), ctypes.CDLL("libXfixes.so.3")
        x11.XOpenDisplay.restype = ctypes.c_void_p
        fixes.XFixesGetCursorImage.restype = ctypes.POINTER(Image)
        display = ctypes.c_void_p(x11.XOpenDisplay(None))
        image = fixes.XFixesGetCursorImage(display).contents
        visible = any(image.pixels[i] >> 24 & 255 for i in range(image.size[0] * image.size[1]))
        x11.XCloseDisplay(display)
        return visible

    def shows(self, *patterns):
        # Letters are read most reliably dark on light; in green alone also those on red are.
        image = b"P5 %d %d 255\n" % (WIDTH, HEIGHT) + self.picture()[1::3].translate(NEGATIVE)
        read = run("tesseract", "stdin", "stdout", "-l", "deu", "--psm", "11", input=image).decode()
        self.read = " ".join(read.split())
        return all(re.search(pattern, self.read) for pattern in patterns)

    def wait_for(self, *patterns):
        try:
            until(patterns, lambda: self.shows(*patterns))
        except AssertionError as error:
            raise AssertionError(f"{error}; the screen shows: {self.read}\n{self.kiosk.output()}") from None

    def test_shows_the_day_without_a_cursor(self):
        self.start()
        self.wait_for(*SCHEDULE)
        self.assertEqual(self.kiosk.said("Reading event data..."), 1)
        self.assertFalse(self.shows_error())
        self.assertFalse(self.shows_cursor())
        self.press("shift+F12")
        until("the cursor", self.shows_cursor)

    def start_with_reader(self):
        home = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, home)
        self.closed = False
        self.kiosk = Program(self.addCleanup, SIMULATOR, "--home", home, "--set",
                             "tallyxConfirmTimeout=30000", "--configuration",
                             '{"plenarLocationId": 1, "settings": {"attendanceEnabled": false}}', "--run", KIOSK)
        until("the reader", lambda: self.kiosk.said("Waiting for cards") and self.kiosk.said("Access token"))
        until("the window", lambda: run("xdotool", "getactivewindow", "getwindowname") == b"Lumenboard\n")

    def test_books_presence(self):
        self.start_with_reader()
        print("tap 0A1B2C3D", file=self.kiosk.process.stdin, flush=True)
        until("the question", self.shows_card)

        def choose_leave():  # against the proposal; the button then has the accent's colour
            run("xdotool", "mousemove", "1078", "209", "click", "1")
            return self.shade(1003, 230) > 0x85
        until("the choice", choose_leave)
        run("xdotool", "mousemove", "1237", "42", "click", "1")
        until("the answer", lambda: self.kiosk.said("Presence logged:"))
        print("bookings", file=self.kiosk.process.stdin, flush=True)
        until("the booking", lambda: self.kiosk.said("booking: card 169552957 out"))

    def touch(self, *places):
        for x, y in places:
            run("xdotool", "mousemove", str(x), str(y), "click", "1")

    def test_registers_a_card_on_the_keyboard(self):
        self.start_with_reader()
        self.touch((20, 20))
        until("the drawer", lambda: self.shade(100, 600) == 0x42)
        self.touch((200, 40))
        until("the view", lambda: self.shade(640, 4) == 0x3f)
        print("tap 0A0A0A0A", file=self.kiosk.process.stdin, flush=True)
        until("the keyboard at its place", lambda: self.shade(10, 403) == 0)
        i, m, a, enter, shift, oe, ell = ((755, 451), (722, 626), (132, 538), (1146, 538), (103, 626), (936, 538), (845, 538))
        self.touch(m, i, a, enter, shift, oe, ell, enter)
        until("the answer", lambda: self.kiosk.said("POST /iddb"))
        print("registrations", file=self.kiosk.process.stdin, flush=True)
        until("the registration", lambda: self.kiosk.said("Mia Kurz"))
        self.wait_for("Transponder registrieren", "Mia Kurz")
        self.touch((1170, 750))  # close
        self.wait_for("Jetzt")

    def check_first_read(self, fault, logged, shown):
        self.start(fault=fault)
        self.assertEqual(self.kiosk.said(logged), 1, self.kiosk.output())
        until("the error", self.shows_error)
        self.wait_for(shown)
        self.set_fault("none")
        self.press("F5")
        until("the error to go", lambda: not self.shows_error())
        self.wait_for(*SCHEDULE)

    def test_first_read_not_found(self):
        self.check_first_read("not-found", "failed to fetch eventdata: (203)", "konnten nicht abgerufen")

    def test_first_read_captive_portal(self):
        self.check_first_read("captive-portal", "this doesn't look like event data", "Das sieht nicht nach")

    def test_first_read_dropped(self):
        self.check_first_read("drop", "failed to fetch eventdata: (2)", "konnten nicht abgerufen")

    def test_keeps_what_it_shows_through_failures_and_rebuild(self):
        failures = lambda: self.kiosk.said("failed to fetch eventdata: (401)")
        self.start()
        self.set_fault("server-error")
        self.press("F5")
        until("the failure", lambda: failures() == 1)
        self.wait_for(*SCHEDULE)
        self.assertFalse(self.shows_error() or self.shows_card())
        self.press(*8 * ["ctrl+alt+shift+n"])  # of random kinds: some have no countdown
        until("a notification", self.shows_card)
        self.press("ctrl+F5")
        until("the next failure", lambda: failures() == 2)
        until("the notification", self.shows_card)
        self.wait_for("Jetzt", "Technische")  # the panel covers the right half
        self.assertFalse(self.shows_error())

    def test_shows_the_clock(self):
        # Where it is 12:20: of large digits, single ones are not read reliably, nor is 12:17 at all.
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
        run("xdotool", "mousemove", str(WIDTH * 5 // 6), str(HEIGHT * 2 // 5), "click", "1")
        until("an event at large", lambda: self.shade(WIDTH // 2, 745) < 0x28)
        until("the start view", lambda: self.shade(WIDTH // 2, 745) > 0x28)
        self.assertGreater(time.monotonic() - touched, 9)
        self.wait_for(*SCHEDULE)
        self.assertEqual(self.kiosk.said("Reading event data..."), 2)

    def test_lists_for_numbers(self):
        self.start(b"fontBaseSize=1, 2\ninactivityTimeout=a, b\nplenarLocationId=@Invalid()\n")
        self.wait_for("Jetzt", "Im Augenblick keine Veranstaltung")

    def test_words_for_switches(self):
        self.start(b"hideMouseCursor=vielleicht\noverrideDate=\xff\xfe\ndefaultView=Uhr\nlocationName=Studio 3\n")
        self.wait_for("Studio 3")

    def test_broken_settings_file(self):
        self.start(b"[[[\0\xff\xfe=\x01]]\n===\n")
        self.wait_for(*SCHEDULE)


if __name__ == "__main__":
    KIOSK, SIMULATOR = sys.argv[1:3]
    unittest.main(argv=sys.argv[:1] + sys.argv[3:], verbosity=2)
