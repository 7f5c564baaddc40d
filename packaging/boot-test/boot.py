# SPDX-FileCopyrightText: The Lumenboard developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""Boots the image of scripts/boot-test, breaks the kiosk and tells what came back.

Usage: boot.py FOLDER SIMULATOR PORT [TRIAL...]
"""

import contextlib
import platform
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tests/e2e"))

from machine import KVM, Machine, processor  # noqa: E402
from program import Program  # noqa: E402
from trials import TRIALS, Wall  # noqa: E402


def attempt(wall, trial):
    """What was seen, and how many seconds it took, if that says something."""
    try:
        result = trial(wall)
    except (AssertionError, OSError) as error:
        wall.machine.keep_picture(f"failed-{trial.__name__}")
        print(f"{trial.__name__}: {str(error)[:1000]}\nsee console.log", file=sys.stderr)
        return "FAILED", None
    wall.machine.keep_picture(trial.__name__)
    return result if isinstance(result, tuple) else (result, None)


def main(folder, simulator, port, *names):
    began = time.monotonic()
    accelerator = processor(folder)
    rows = []
    with contextlib.ExitStack() as stack:
        services = Program(stack.callback, simulator, "--port", port)
        services.wait_for("Simulator ready")
        wall = Wall(services, lambda: Machine(folder, accelerator, stack.callback))
        for name, what, trial in TRIALS:
            if names and trial.__name__ not in names:
                continue
            seen, seconds = attempt(wall, trial)
            rows.append((name, what, seen, f"{seconds:.1f}" if seconds else ""))
            print("| " + " | ".join(rows[-1]) + " |", flush=True)
    kind = "with KVM" if accelerator is KVM else "emulated, on a busy machine much slower than hardware"
    print(f"Two processors {kind}; {platform.machine()}, {(time.monotonic() - began) / 60:.0f} minutes in all.")
    return any(seen == "FAILED" for _, _, seen, _ in rows)


sys.exit(main(Path(sys.argv[1]), *sys.argv[2:]))
