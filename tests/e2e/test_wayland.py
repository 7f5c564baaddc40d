# SPDX-FileCopyrightText: The Lumenboard developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""The kiosk under a Wayland compositor without a screen.

Usage: test_wayland.py KIOSK SIMULATOR [TEST...]
"""

import os
import signal
import sys
import tempfile
import unittest

from picture import recognise, run
from program import Program, wait_until

NOBODY = 65534
# The compositor refuses root. The new user still reads the build, wherever it is.
UNPRIVILEGED = [] if os.geteuid() else [
    "setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups", "--inh-caps=-all,+dac_override",
    "--ambient-caps=+dac_override", "--bounding-set=-all,+dac_override"]
COMPOSITOR = {"WLR_BACKENDS": "headless", "WLR_RENDERER": "pixman", "WLR_LIBINPUT_NO_DEVICES": "1"}
WIDTH, HEIGHT = 1280, 720
BACKGROUND = b"\x30\x30\x30"


class Wayland(unittest.TestCase):
    def picture(self):
        return run("grim", "-t", "ppm", "-")[-WIDTH * HEIGHT * 3:]

    def shows_the_schedule(self):
        self.read = recognise(self.picture(), WIDTH, HEIGHT)
        return all(text in self.read for text in ("Jetzt", "Mechanik"))

    def test_fills_the_screen_and_ends_with_the_compositor(self):
        for drawn_by, variables in (("llvmpipe", {}),
                                    ("software without OpenGL", {"__EGL_VENDOR_LIBRARY_DIRS": "/nowhere"})):
            with self.subTest(drawn_by), tempfile.TemporaryDirectory() as home:
                if UNPRIVILEGED:
                    os.chown(home, NOBODY, NOBODY)
                os.environ.update(XDG_RUNTIME_DIR=home, WAYLAND_DISPLAY="wayland-0")
                # Turned upside down, and back by grim: the compositor would otherwise pass the window's
                # buffer on to the screen as it is, where grim reads black.
                screen = Program(self.addCleanup, *UNPRIVILEGED, "cage", "-r", "-r", "--", SIMULATOR, "--home",
                                 f"{home}/home", "--run", KIOSK, HOME=home, **COMPOSITOR, **variables)
                screen.wait_for("Done reading event data")
                screen.wait_for(f"Display: wayland drawn by {drawn_by}")
                self.assertTrue(wait_until(self.shows_the_schedule), f"{self.read}\n{screen.output()}")
                picture = self.picture()
                top, left = picture[:WIDTH // 2 * 3], [picture[i:i + 3] for i in range(0, len(picture), WIDTH * 3)]
                self.assertEqual({*left, *(top[i:i + 3] for i in range(0, len(top), 3))}, {BACKGROUND})
                screen.process.send_signal(signal.SIGKILL)
                screen.wait_for("The Wayland connection broke")
                screen.wait_for("kiosk exited with status 1")


if __name__ == "__main__":
    KIOSK, SIMULATOR = sys.argv[1:3]
    unittest.main(argv=sys.argv[:1] + sys.argv[3:], verbosity=2)
