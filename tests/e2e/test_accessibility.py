# SPDX-FileCopyrightText: The Lumenboard developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""What a screen reader and a finger find: names, states, announcements, focus order and sizes.

Usage: test_accessibility.py KIOSK SIMULATOR
"""

import contextlib
import os
import re
import subprocess
import sys
import tempfile
import unittest

import gi
gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

from program import Program, wait_until  # noqa: E402

WIDTH, HEIGHT = 1920, 1200
TARGET = 9 * WIDTH / 517  # 9 mm on a screen of 24 inches, which is 517 mm wide
CONFIGURATION = '{"plenarLocationId": 1, "settings": {"attendanceEnabled": false}}'


class Accessibility(unittest.TestCase):
    def setUp(self):
        self.spoken = []
        os.environ["XDG_RUNTIME_DIR"] = self.enterContext(tempfile.TemporaryDirectory())
        screen = Program(self.addCleanup, "Xvfb", "-displayfd", "1", "-screen", "0", f"{WIDTH}x{HEIGHT}x24")
        os.environ["DISPLAY"] = ":" + screen.wait_for(r"^(\d+)$")[0][1]
        Program(self.addCleanup, "openbox")
        bus = Program(self.addCleanup, "dbus-daemon", "--session", "--nofork", "--print-address")
        os.environ["DBUS_SESSION_BUS_ADDRESS"] = bus.wait_for("^unix:.*")[0][0]
        self.kiosk = Program(self.addCleanup, SIMULATOR, "--set", "tallyxConfirmTimeout=30000", "--configuration",
                             CONFIGURATION, "--run", KIOSK, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
                             QT_QUICK_BACKEND="software")
        self.kiosk.wait_for("Waiting for cards")
        self.kiosk.wait_for("Access token")

    def hear(self, event):
        """A screen reader speaks a notification as soon as it shows."""
        with contextlib.suppress(GLib.Error):  # an item that has just gone
            if event.detail1 and event.source.get_role() == Atspi.Role.NOTIFICATION:
                self.spoken.append(event.source.get_name())

    def walk(self, node):
        yield node
        for child in map(node.get_child_at_index, range(node.get_child_count())):
            if child and (child.get_role() == Atspi.Role.FRAME or child.get_state_set().contains(Atspi.StateType.SHOWING)):
                yield from self.walk(child)

    def controls(self):
        """What can be focused or pressed, by name. Each is large enough for a finger."""
        self.found = {}
        desktop = Atspi.get_desktop(0)
        desktop.clear_cache()
        for node in self.walk(desktop):
            role = node.get_role()
            if node.get_state_set().contains(Atspi.StateType.FOCUSABLE) or node.get_n_actions():
                size = node.get_extents(Atspi.CoordType.SCREEN)
                if not size.width or not size.height:
                    continue  # an item that is just made or gone
                # Qt tells no name of a password field, only its description.
                name = node.get_description() if role == Atspi.Role.PASSWORD_TEXT else node.get_name()
                name = name.replace("\u00a0", " ").replace("\u2060", "")  # they keep a time on one line
                self.assertRegex(name, r"^[ -~ßäöüÄÖÜ–„“]+$", f"{node.get_role_name()} at {size.x}, {size.y}")
                if role != Atspi.Role.SCROLL_BAR:  # the list itself scrolls by touch
                    self.assertGreaterEqual(min(size.width, size.height), TARGET, name)
                self.found[name] = node
        return self.found

    def until(self, condition):
        def is_reached():
            while GLib.MainContext.default().iteration(False):
                pass
            with contextlib.suppress(GLib.Error):  # an item that has just gone
                return condition()
        if not wait_until(is_reached, 20):
            self.fail(f"waited in vain; seen last: {list(self.found)}; spoken: {self.spoken}\n{self.kiosk.output()}")

    def find(self, pattern):
        return next((node for name, node in self.controls().items() if re.fullmatch(pattern, name)), None)

    def press(self, pattern):
        node = self.find(pattern)
        return node and node.do_action(0)

    def is_in(self, state, name):
        node = self.find(name)
        return node and node.get_state_set().contains(state)

    def has_focus(self, name):
        return self.is_in(Atspi.StateType.FOCUSED, name)

    def type(self, *keys):
        subprocess.run(("xdotool", "key", *keys), check=True)

    def test_every_control_is_for_everybody(self):
        self.until(lambda: self.press(r".+, [\d :-]+ Uhr.*"))  # the first of the list
        self.until(lambda: self.press(r".+ 20\d\d, [\d :-]+ Uhr.*"))  # its details, which close
        self.until(lambda: self.press("Menü"))
        self.until(lambda: self.press("Transponder registrieren") and self.find("Zurück"))

        # Now that its controls were found: a kiosk that is just joining the bus can miss a listener.
        listener = Atspi.EventListener.new(self.hear)
        listener.register("object:state-changed:showing")
        self.kiosk.command("tap 0A0A0A0A")
        self.until(lambda: self.has_focus("Benutzername"))
        self.type("m", "Tab", "x")
        self.until(lambda: self.is_in(Atspi.StateType.FOCUSABLE, "Registrieren"))
        for name in ("Registrieren", "Mit QR-Code anmelden", "Schließen", "Zurück", "Benutzername"):
            self.type("Tab")
            self.until(lambda: self.has_focus(name))

        self.kiosk.command("tap 0A1B2C3D")
        self.until(lambda: "Erika Beispiel\nSie sind nicht als anwesend gebucht." in self.spoken)
        self.until(lambda: self.find("Bestätigen") and self.has_focus("Benutzername"))  # for a person who types
        self.until(lambda: self.is_in(Atspi.StateType.CHECKED, "Kommen"))
        self.until(lambda: not self.is_in(Atspi.StateType.CHECKED, "Gehen"))
        self.until(lambda: not self.press("Bestätigen"))
        self.until(lambda: re.search("Ihr Kommen wurde um .* gebucht", self.spoken[-1]))
        self.until(lambda: not self.press("Countdown anhalten"))
        self.until(lambda: self.press("Registrieren"))
        self.until(lambda: "Benutzername oder Passwort ist falsch." in self.spoken)
        self.assertFalse(self.kiosk.find("qrc:/"), self.kiosk.output())


if __name__ == "__main__":
    KIOSK, SIMULATOR = sys.argv[1:3]
    unittest.main(argv=sys.argv[:1], verbosity=2)
