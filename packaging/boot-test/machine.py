# SPDX-FileCopyrightText: The Lumenboard developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""A machine in qemu: its screen, keys, plugs, console, and a shell of its root."""

import contextlib
import json
import re
import socket
import subprocess
import time

from picture import recognise
from program import Program, wait_until

QEMU = "qemu-system-x86_64"
# Some machines have a /dev/kvm that does not know this register.
KVM = ["-accel", "kvm", "-cpu", "host,-arch-capabilities"]
EMULATION = ["-accel", "tcg,thread=multi,tb-size=512", "-cpu", "max"]
WIDTH, HEIGHT = 1280, 800
END = "end-of-answer"


def processor(folder):
    """The host's processor if qemu can really start a kernel on it, else an emulated one."""
    with contextlib.ExitStack() as stack:
        trial = Program(stack.callback, QEMU, *KVM, "-m", "512", "-nodefaults", "-display", "none", "-serial", "stdio",
                        "-kernel", f"{folder}/system/vmlinuz", "-append", "console=ttyS0 panic=-1", "-no-reboot")
        return KVM if wait_until(lambda: trial.said("Linux version"), 10) else EMULATION


class Machine:
    """A running qemu. Its console, with the journal, is the output of the program."""

    def __init__(self, folder, accelerator, add_cleanup):
        self.folder = folder
        self.add_cleanup = add_cleanup
        self.readers = {}
        self.seen, self.text = b"", ""  # the picture that was read last, and what it says
        for each in folder.glob("*.socket"):
            each.unlink()
        self.bus = f"unix:path={folder}/bus.socket"
        bus = Program(add_cleanup, "dbus-daemon", "--session", "--nofork", "--print-address", f"--address={self.bus}")
        bus.wait_for("unix:")
        self.switched_on = time.monotonic()
        self.console = Program(
            add_cleanup, QEMU, *accelerator, "-smp", "2", "-m", "1024", "-nodefaults",
            # Over the bus displays can be plugged in.
            "-display", f"dbus,addr={self.bus}",
            "-device", f"virtio-vga,id=video,max_outputs=2,xres={WIDTH},yres={HEIGHT}",
            "-kernel", f"{folder}/system/vmlinuz", "-initrd", f"{folder}/system/initrd.img",
            "-append", "root=/dev/vda rw console=ttyS0 systemd.journald.forward_to_console=1 "
                       "systemd.journald.max_level_console=debug systemd.show_status=0",
            # What the guest has synced is in the file, what it has not is lost with the guest.
            "-drive", f"file={folder}/disk.img,format=raw,if=virtio,cache=none",
            "-netdev", "user,id=network", "-device", "virtio-net-pci,id=plug,netdev=network",
            "-device", "usb-ehci", "-device", "usb-tablet", "-device", "piix3-usb-uhci,id=uhci",
            "-chardev", f"stdio,id=console,logfile={folder}/console.log", "-serial", "chardev:console",
            *self.chardev("shell"), "-serial", "chardev:shell",
            *self.chardev("first"), *self.chardev("second"), "-qmp", self.address("qmp"))
        self.qmp = self.connect("qmp").makefile("rw")
        if not self.qmp.readline():
            raise AssertionError(f"qemu does not start\n{self.console.output()}")
        self.ask("qmp_capabilities")
        self.shell = self.connect("shell").makefile("rw", errors="replace")
        self.plug("first")

    def address(self, name):
        return f"unix:{self.folder}/{name}.socket,server=on,wait=off"

    def chardev(self, name):
        return "-chardev", f"socket,id={name},path={self.folder}/{name}.socket,server=on,wait=off"

    def connect(self, name):
        endpoint = socket.socket(socket.AF_UNIX)
        self.add_cleanup(endpoint.close)
        if not wait_until(lambda: endpoint.connect_ex(f"{self.folder}/{name}.socket") == 0, 10):
            raise AssertionError(f"{name} does not answer\n{self.console.output()}")
        endpoint.settimeout(120)
        return endpoint

    def ask(self, command, **arguments):
        print(json.dumps({"execute": command, "arguments": arguments}), file=self.qmp, flush=True)
        while True:
            answer = json.loads(self.qmp.readline())
            if "error" in answer:
                raise AssertionError(answer)
            if "return" in answer:
                return answer["return"]

    def run(self, command):
        """What a shell of the guest's root prints."""
        print(f'{command}; echo "{END}"', file=self.shell, flush=True)
        lines = iter(lambda: self.shell.readline().rstrip(), END)
        return "\n".join(lines)

    def plug(self, reader):
        self.ask("device_add", **{"driver": "usb-serial", "bus": "uhci.0", "id": reader, "chardev": reader,
                                  "always-plugged": True})
        if reader not in self.readers:
            self.readers[reader] = self.connect(reader)

    def unplug(self, reader):
        self.ask("device_del", id=reader)

    def tap(self, *cards, reader="first"):
        self.readers[reader].sendall("".join(f"{card:08X}\r\n" for card in cards).encode())

    def press(self, *keys):
        self.ask("send-key", keys=[{"type": "qcode", "data": key} for key in keys])

    def touch(self, x, y):
        """Touches a place of the panel, in pixels."""
        def send(x, y, down):
            self.ask("input-send-event", events=[
                {"type": "abs", "data": {"axis": "x", "value": x * 0x7fff // WIDTH}},
                {"type": "abs", "data": {"axis": "y", "value": y * 0x7fff // HEIGHT}},
                {"type": "btn", "data": {"button": "left", "down": down}}])
            time.sleep(0.5)  # the guest merges what comes at once

        send(x + 1, y + 1, False)  # the guest drops a place that it knows
        for down in (False, True, False):
            send(x, y, down)

    def set_network(self, up):
        self.ask("set_link", name="plug", up=up)

    def set_display(self, number, width, height):
        """Plugs a display with this resolution into an output, or pulls it if that is 0."""
        subprocess.run(["dbus-send", f"--bus={self.bus}", "--print-reply", "--dest=org.qemu",
                        f"/org/qemu/Display1/Console_{number}", "org.qemu.Display1.Console.SetUIInfo",
                        "uint16:0", "uint16:0", "int32:0", "int32:0", f"uint32:{width}", f"uint32:{height}"],
                       check=True, capture_output=True)

    def seconds(self):
        return time.monotonic() - self.switched_on

    def take_picture(self, display=0):
        path = self.folder / "screen.ppm"
        self.ask("screendump", filename=str(path), device="video", head=display)
        return path.read_bytes()

    def read(self, picture, turn=0):
        """The text on a picture. @turn: degrees that it has to be turned for that, clockwise."""
        self.seen = picture
        if turn:
            picture = subprocess.run(["convert", "-", "-rotate", str(turn), "ppm:-"], input=picture, check=True,
                                     capture_output=True).stdout
        _, size, _, pixels = picture.split(b"\n", 3)
        self.text = recognise(pixels, *map(int, size.split()))
        return self.text

    def wait_for_picture(self, *patterns, display=0, turn=0, seconds=600):
        """Waits until all patterns are on the screen. Returns when, in seconds since the power came on."""
        pictures = []  # taken since the last one was read, with their times: reading takes longer than taking
        last_read, read_at = None, self.seconds()

        def shows(picture):
            text = self.read(picture, turn)
            return all(re.search(pattern, text) for pattern in patterns)

        def look():
            nonlocal last_read, read_at
            now, picture = self.seconds(), self.take_picture(display)
            if not pictures or pictures[-1][1] != picture:
                pictures.append((now, picture))
            is_settled = now - pictures[-1][0] > 0.5 or now - read_at > 5
            if pictures[-1][1] is last_read or not is_settled:
                return False
            last_read, read_at = pictures[-1][1], now
            if shows(last_read):
                return True
            del pictures[:-1]
            return False

        if not wait_until(look, seconds):
            raise AssertionError(f"not {patterns} on the screen but {self.text!r}")
        while len(pictures) > 1 and shows(pictures[-2][1]):
            pictures.pop()
        self.seen = pictures[-1][1]
        return pictures[-1][0]

    def keep_picture(self, name):
        """Stores the picture that was read last."""
        if self.seen:
            subprocess.run(["convert", "ppm:-", self.folder / f"{name}.png"], input=self.seen, check=True)
