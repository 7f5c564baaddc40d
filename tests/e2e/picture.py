# SPDX-FileCopyrightText: The Lumenboard developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""What can be read on a picture of the screen."""

import subprocess

NEGATIVE = bytes(range(255, -1, -1))


def run(*command, **options):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False,
                          **options).stdout


def recognise(rgb, width, height):
    """The German text on a picture with three bytes a pixel."""
    # Text is recognised best dark on light. The green channel keeps text on red readable.
    image = b"P5 %d %d 255\n" % (width, height) + rgb[1::3].translate(NEGATIVE)
    read = run("tesseract", "stdin", "stdout", "-l", "deu", "--psm", "11", input=image).decode()
    return " ".join(read.split())
