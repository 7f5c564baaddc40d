# SPDX-FileCopyrightText: The Lumenboard developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""Boots the image of scripts/boot-test, breaks the kiosk and tells what came back.

Usage: boot.py FOLDER SIMULATOR PORT
"""

import contextlib
import json
import re
import socket
import subprocess
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tests/e2e"))

from picture import recognise  # noqa: E402
from program import Program, wait_until  # noqa: E402

SHOWN = ("Jetzt", "Hörsaal")  # on the schedule of the simulator
READY = "Started lumenboard-kiosk.service"


class Machine:
    """A running qemu. Its console, with the journal, is the output of the program."""

    def __init__(self, folder, add_cleanup):
        self.folder = folder
        sockets = {name: str(folder / f"{name}.socket") for name in ("qmp", "shell", "reader")}
        server = "server=on,wait=off"
        self.switched_on = time.monotonic()
        self.console = Program(
            add_cleanup, "qemu-system-x86_64", "-accel", "tcg,thread=multi", "-smp", "2", "-m", "1024",
            "-nodefaults", "-display", "none", "-device", "virtio-vga,xres=1280,yres=800",
            "-kernel", str(folder / "system/vmlinuz"), "-initrd", str(folder / "system/initrd.img"),
            "-append", "root=/dev/vda rw console=ttyS0 systemd.journald.forward_to_console=1",
            "-drive", f"file={folder}/disk.img,format=raw,if=virtio", "-nic", "user,model=virtio-net-pci",
            "-device", "usb-ehci", "-device", "usb-tablet", "-device", "piix3-usb-uhci,id=uhci",
            "-chardev", f"socket,id=reader,path={sockets['reader']},{server}",
            "-device", "usb-serial,bus=uhci.0,chardev=reader,always-plugged=on",
            "-chardev", f"stdio,id=console,logfile={folder}/console.log", "-serial", "chardev:console", "-serial", f"unix:{sockets['shell']},{server}", "-qmp", f"unix:{sockets['qmp']},{server}")
        self.qmp, self.shell, self.reader = (self.connect(path, add_cleanup) for path in sockets.values())
        self.answers = self.qmp.makefile()
        if not self.answers.readline():
            raise AssertionError(f"qemu does not start\n{self.console.output()}")
        self.ask("qmp_capabilities")

    def connect(self, path, add_cleanup):
        endpoint = socket.socket(socket.AF_UNIX)
        add_cleanup(endpoint.close)
        if not wait_until(lambda: endpoint.connect_ex(path) == 0, 10):
            raise AssertionError(f"{path} does not answer\n{self.console.output()}")
        return endpoint

    def ask(self, command, **arguments):
        self.qmp.sendall(json.dumps({"execute": command, "arguments": arguments}).encode())
        while True:
            answer = json.loads(self.answers.readline())
            if "error" in answer:
                raise AssertionError(answer)
            if "return" in answer:
                return answer

    def run(self, command):
        """Has the guest's root run a shell command."""
        self.shell.sendall(f"{command}\n".encode())

    def tap(self, card):
        self.reader.sendall(f"{card}\r\n".encode())

    def seconds(self):
        return time.monotonic() - self.switched_on

    def wait_for(self, pattern, seconds=240):
        self.console.wait_for(pattern, seconds=seconds)
        return self.seconds()

    def read_screen(self):
        path = self.folder / "screen.ppm"
        self.ask("screendump", filename=str(path))
        _, size, _, pixels = path.read_bytes().split(b"\n", 3)
        width, height = map(int, size.split())
        return recognise(pixels, width, height)

    def wait_for_schedule(self, seconds=240):
        text = ""

        def is_shown():
            nonlocal text
            text = self.read_screen()
            return all(each in text for each in SHOWN)

        if not wait_until(is_shown, seconds):
            raise AssertionError(f"The screen shows {text!r}\n{self.console.output()}")
        return self.seconds()

    def keep_picture(self, name):
        subprocess.run(["convert", self.folder / "screen.ppm", self.folder / f"{name}.png"], check=True)


def power_on(machine, table):
    last = 0
    for what, pattern in (("firmware and kernel", r"Run /init|Loading, please wait"), ("system", r"systemd\[1\]: .*Detected"),
                          ("services", r"Starting lumenboard-kiosk"), ("X server and first frame", READY)):
        now = machine.wait_for(pattern)
        table.append((f"  {what}", f"{now - last:.1f} s"))
        last = now
    table.insert(len(table) - 4, ("power on → schedule on the screen", f"{machine.wait_for_schedule():.1f} s"))
    machine.keep_picture("schedule")


def come_back(machine, table, what, command):
    """Breaks the kiosk and waits for the next one."""
    before = machine.console.said(READY)
    began = machine.seconds()
    machine.run(command)
    machine.console.wait_for(re.escape(READY), before + 1, seconds=150)
    machine.wait_for_schedule()
    table.append((what, f"back after {machine.seconds() - began:.1f} s"))


def main(folder, simulator, port):
    table = []
    with contextlib.ExitStack() as stack:
        services = Program(stack.callback, simulator, "--port", port)
        services.wait_for("Simulator ready")
        try:
            machine = Machine(folder, stack.callback)
            power_on(machine, table)
            machine.tap("0A1B2C3D")
            services.wait_for("POST .*attendancelog: 200")
            table.append(("a card", "accepted by the service"))
            come_back(machine, table, "kill -9 of the kiosk", "kill -KILL $(pidof lumenboard)")
            come_back(machine, table, "the kiosk stopped (SIGSTOP)", "kill -STOP $(pidof lumenboard)")
            machine.keep_picture("afterwards")
        finally:
            for what, result in table:
                print(f"{what:40} {result}")


main(Path(sys.argv[1]), sys.argv[2], sys.argv[3])
