# SPDX-FileCopyrightText: The Lumenboard developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""What is done to the screen on the wall, and what must be seen."""

import collections
import re

from machine import HEIGHT, WIDTH
from program import wait_until

PATIENCE = 600  # seconds; an emulated machine on a busy host is slow
SCHEDULE = ("Jetzt", "H.rsaal")
READY = "Started lumenboard-kiosk.service"
ACCEPTED = r"POST .*attendancelog: 200"
NO_READER = "Kein Leseger.t"
NO_NETWORK = "nicht erreichbar|nicht zu finden|keine Verbindung"
UNIT = "lumenboard-kiosk"


class Wall:
    """The machine on the wall, and the services it speaks to."""

    def __init__(self, services, make_machine):
        self.services = services
        self.make_machine = make_machine
        self.machine = make_machine()
        self.card = 0x20000000

    def cut_power(self):
        self.machine.console.close()  # SIGKILL

    def switch_on(self):
        self.cut_power()
        self.machine = self.make_machine()
        return self.machine

    def new_card(self):
        self.card += 1
        return self.card

    def kiosk(self):
        return self.machine.run("pidof lumenboard")

    def properties(self, *names):
        """Numbers that systemd knows of the unit; times in microseconds since the kernel started."""
        options = " ".join(f"-p {name}" for name in names)
        text = self.machine.run(f"systemctl show {UNIT} {options}")
        return [int(re.search(rf"^{name}=(\d+)", text, re.M)[1]) for name in names]

    def wait_for_schedule(self, **options):
        return self.machine.wait_for_picture(*SCHEDULE, **options)

    def tap_accepted_card(self, reader="first"):
        before = len(self.services.find(ACCEPTED))
        self.machine.tap(self.new_card(), reader=reader)
        self.services.wait_for(ACCEPTED, before + 1, seconds=PATIENCE)

    def come_back(self, break_it):
        """Breaks the kiosk. Seconds until the next one has drawn its first frame, by the guest's clock."""
        said = self.machine.console.said(READY)
        began = float(self.machine.run("cut -d ' ' -f 1 /proc/uptime"))
        break_it()
        self.machine.console.wait_for(re.escape(READY), said + 1, seconds=PATIENCE)
        self.wait_for_schedule()
        return self.properties("ActiveEnterTimestampMonotonic")[0] / 1e6 - began


def power_on(wall):
    machine = wall.machine
    machine.console.wait_for(re.escape(READY), seconds=PATIENCE)
    shown = wall.wait_for_schedule()
    kernel = machine.seconds() - float(machine.run("cut -d ' ' -f 1 /proc/uptime"))
    user = int(machine.run("systemctl show -p UserspaceTimestampMonotonic --value")) / 1e6
    start, ready = (each / 1e6 for each in wall.properties("ExecMainStartTimestampMonotonic",
                                                           "ActiveEnterTimestampMonotonic"))
    return (f"schedule; firmware {kernel:.1f}, kernel {user:.1f}, services {start - user:.1f}, "
            f"X server and first frame {ready - start:.1f}", shown)


def card(wall):
    wall.tap_accepted_card()
    wall.machine.wait_for_picture("Karte|Pr.senz")
    return "accepted by the service, answered on the screen"


def rules(wall):
    """The settings that hold the session together."""
    run = wall.machine.run
    xset = run("nsenter -t $(pidof Xorg) -m env DISPLAY=:0 xset q")
    assert "timeout:  0" in xset and "DPMS is Enabled" not in xset, xset
    problems = run(f"systemd-analyze verify --man=no {UNIT}.service 2>&1")
    assert not problems, problems
    exposure = re.search(r"level for \S+: ([\d.]+)", run(f"systemd-analyze security --no-pager {UNIT} | tail -n 1"))[1]
    assert float(exposure) <= 2, exposure
    reader = run("stat -L -c '%U:%G %a' /dev/lumenboard-reader")
    assert reader == "root:lumenboard 660", reader
    return f"no blanking, no DPMS; verify silent; exposure {exposure}; reader {reader}"


def keys(wall):
    machine, kiosk = wall.machine, wall.kiosk()
    combinations = ["ctrl alt backspace", *8 * ["ctrl alt delete"], "ctrl alt f2", "alt f2", "alt sysrq b",
                    "alt sysrq k", "alt sysrq e", "alt tab", "power", "sleep"]
    for each in combinations:
        machine.press(*each.split())
    machine.ask("system_powerdown")  # the power button
    wall.wait_for_schedule()
    now = wall.kiosk()
    terminal = machine.run("cat /sys/class/tty/tty0/active")
    assert (now, terminal) == (kiosk, "tty1"), (kiosk, now, terminal)
    return "the same process on the same console"


def quit_key(wall):
    return "back, first frame", wall.come_back(lambda: wall.machine.press("ctrl", "q"))


def killed(wall):
    return "back, first frame", wall.come_back(lambda: wall.machine.run("kill -KILL $(pidof lumenboard)"))


def stopped(wall):
    return "back, first frame", wall.come_back(lambda: wall.machine.run("kill -STOP $(pidof lumenboard)"))


def readers(wall):
    machine, console = wall.machine, wall.machine.console
    machine.plug("second")
    assert wait_until(lambda: machine.run("cd /dev && ls ttyUSB1") == "ttyUSB1"), "no second reader"
    wall.tap_accepted_card()
    since = len(console.lines)
    machine.unplug("first")
    console.wait_for("Using serial port.*ttyUSB1", since=since, seconds=PATIENCE)
    wall.tap_accepted_card("second")
    since = len(console.lines)
    machine.unplug("second")
    machine.wait_for_picture(NO_READER)
    began = machine.seconds()
    machine.plug("first")
    console.wait_for("Serial port opened", since=since, seconds=PATIENCE)
    waited = machine.seconds() - began
    wall.tap_accepted_card()
    return "each that is left reads under its name; without any the screen says so; replugged, a card is read", waited


def survive(wall, spoil, said, mend):
    """The kiosk tells a person that cards are not kept, and accepts them again without a restart."""
    machine, kiosk = wall.machine, wall.kiosk()
    machine.run(spoil)
    machine.tap(wall.new_card())
    machine.wait_for_picture(said)
    machine.run(mend)
    wall.tap_accepted_card()
    assert wall.kiosk() == kiosk, "another process"
    return "the person is told; then the next card is accepted"


def disk_full(wall):
    fill = "fallocate -l $(df --output=avail -B 1 / | tail -n 1) /full; " \
           "runuser -u lumenboard -- sh -c 'cat /dev/zero >/var/lib/lumenboard/full'"
    return survive(wall, fill, "Speicher dieses Ger.ts ist voll", "rm /full /var/lib/lumenboard/full")


def disk_read_only(wall):
    return survive(wall, "echo u >/proc/sysrq-trigger; sleep 2", "Speicher dieses Ger.ts kann", "mount -o remount,rw /")


def rotated(wall):
    machine = wall.machine
    machine.set_display(1, WIDTH, HEIGHT)
    machine.run("printf 'LUMENBOARD_ROTATE=left\\nLUMENBOARD_OUTPUT=Virtual-2\\n' >>/etc/default/lumenboard-kiosk")
    machine.run(f"systemctl restart {UNIT}")
    machine.wait_for_picture(*SCHEDULE, display=1, turn=90)
    machine.touch(20, HEIGHT - 20)  # the menu at the top left of the turned picture
    machine.wait_for_picture("Transponder registrieren", display=1, turn=90)
    machine.run("sed -i '/ROTATE=left/d; /OUTPUT=Virtual/d' /etc/default/lumenboard-kiosk; sync")
    return "the picture is turned, on that output alone; a touch meets what it shows"


def power_cut(wall):
    """A card is certain to be kept once the next one is being logged: they are handled one by one."""
    machine, services = wall.machine, wall.services
    since = len(machine.console.lines)
    machine.tap(*(wall.new_card() for _ in range(80)))
    machine.console.wait_for(r"Logging \d+", 30, since, seconds=PATIENCE)
    wall.cut_power()
    taken = [int(match[1]) for match in machine.console.find(r"Logging (\d+)", since)][:-1]
    answered = {int(match[1]) for match in machine.console.find(r"Attendance logged: .* Karte (\d+) ", since)}
    machine = wall.switch_on()
    wall.wait_for_schedule()
    spool = "find /var/lib/lumenboard/.local -path '*pool*' -type f | wc -l"
    assert wait_until(lambda: machine.run(spool) == "0", 420), "not sent: " + machine.run(spool)
    for command in ("records", "bookings", "audit"):
        services.command(command)
    services.wait_for("stray requests")
    seen = f"{len(taken)} cards were certain, {len(answered)} of them answered"
    for kind in ("record", "booking"):
        times = collections.Counter(int(match[1]) for match in services.find(rf"^{kind}: card (\d+) "))
        lost = [each for each in taken if not times[each]]
        doubled = {each for each in taken if times[each] > 1}
        assert not lost, f"lost {kind}s: {lost}"
        assert not answered & doubled, f"doubled {kind}s: {doubled}"
        seen += f"; {kind}s: 0 lost, {len(doubled)} doubled"
    return seen


def late_plugs(wall):
    machine = wall.switch_on()
    machine.set_display(0, HEIGHT, HEIGHT)  # what is not new has no effect
    machine.set_display(0, 0, 0)
    machine.set_network(False)
    machine.unplug("first")
    machine.console.wait_for(re.escape(READY), seconds=PATIENCE)
    machine.console.wait_for("No display is connected")
    machine.set_display(0, WIDTH, HEIGHT)
    machine.wait_for_picture(NO_NETWORK)
    machine.keep_picture("no-network")
    began = machine.seconds()
    machine.set_network(True)
    shown = wall.wait_for_schedule() - began
    machine.plug("first")
    machine.console.wait_for("Serial port opened", seconds=PATIENCE)
    wall.tap_accepted_card()
    return "the display says what is missing and shows the schedule when it is back; the card is read", shown


TRIALS = (
    ("power on", "from the switch to the schedule on the screen", power_on),
    ("card", "a card at the reader", card),
    ("session", "`xset q`, `systemd-analyze verify` and `security`, rights of the reader", rules),
    ("keys that lead out", "Ctrl+Alt+Backspace, Ctrl+Alt+Delete (8 times), Ctrl+Alt+F2, Alt+F2, SysRq with B, K, E, "
     "Alt+Tab, power, sleep", keys),
    ("Ctrl+Q", "the service key that quits", quit_key),
    ("crash", "`kill -9`", killed),
    ("hang", "`kill -STOP`", stopped),
    ("reader", "a second one plugged in, the first pulled; both pulled, one plugged in again", readers),
    ("disk full", "a file takes all space; a card; the file is removed; a card", disk_full),
    ("disk read-only", "emergency remount; a card; writable again; a card", disk_read_only),
    ("rotation, output", "`LUMENBOARD_ROTATE=left`, `LUMENBOARD_OUTPUT=Virtual-2`, then a touch", rotated),
    ("power cut", "in a burst of 80 cards; then power on", power_cut),
    ("plugged in later", "powered on without display, network and reader; then each of them", late_plugs),
)
