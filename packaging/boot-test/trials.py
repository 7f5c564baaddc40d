# SPDX-FileCopyrightText: The Lumenboard developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""What is done to the screen on the wall, and what must be seen."""

import collections
import re

from program import wait_until

SCHEDULE = ("Jetzt", "H.rsaal")
READY = "Started lumenboard-kiosk.service"
ACCEPTED = r"POST .*attendancelog: 200"
NO_READER = "Kein Leseger.t"
UNIT = "lumenboard-kiosk"


class Wall:
    """The machine on the wall, and the services it speaks to."""

    def __init__(self, services, switch_on):
        self.services = services
        self.switch_on = switch_on
        self.machine = None
        self.card = 0x20000000

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
        self.services.wait_for(ACCEPTED, before + 1, seconds=90)

    def come_back(self, break_it, limit):
        """Breaks the kiosk. Seconds until the next one has drawn its first frame, by the guest's clock."""
        said = self.machine.console.said(READY)
        began = float(self.machine.run("cut -d ' ' -f 1 /proc/uptime"))
        break_it()
        self.machine.console.wait_for(re.escape(READY), said + 1, seconds=limit)
        self.wait_for_schedule()
        return self.properties("ActiveEnterTimestampMonotonic")[0] / 1e6 - began


def power_on(wall):
    machine = wall.machine
    machine.console.wait_for(re.escape(READY), seconds=300)
    shown = wall.wait_for_schedule()
    kernel = machine.seconds() - float(machine.run("cut -d ' ' -f 1 /proc/uptime"))
    user = int(machine.run("systemctl show -p UserspaceTimestampMonotonic --value")) / 1e6
    start, ready = (each / 1e6 for each in wall.properties("ExecMainStartTimestampMonotonic",
                                                           "ActiveEnterTimestampMonotonic"))
    machine.keep_picture("schedule")
    return (f"schedule; firmware {kernel:.1f}, kernel {user:.1f}, services {start - user:.1f}, "
            f"X server and first frame {ready - start:.1f}", shown)


def card(wall):
    wall.tap_accepted_card()
    wall.machine.wait_for_picture("Karte|Pr.senz")
    wall.machine.keep_picture("card")
    return "accepted by the service, answered on the screen"


def rules(wall):
    """The settings that hold the session together."""
    run = wall.machine.run
    xset = run("nsenter -t $(pidof Xorg) -m env DISPLAY=:0 xset q")
    assert "timeout:  0" in xset and "DPMS is Enabled" not in xset, xset
    problems = run(f"systemd-analyze verify {UNIT}.service 2>&1")
    assert not problems, problems
    exposure = re.search(r"level for \S+: ([\d.]+)", run(f"systemd-analyze security --no-pager {UNIT} | tail -n 1"))[1]
    assert float(exposure) <= 2, exposure
    reader = run("stat -L -c '%U:%G %a' /dev/lumenboard-reader")
    assert reader == "root:lumenboard 660", reader
    return f"no blanking, no DPMS; verify silent; exposure {exposure}; reader {reader}"


def keys(wall):
    machine, kiosk = wall.machine, wall.kiosk()
    combinations = ["ctrl alt backspace", *8 * ["ctrl alt delete"], "ctrl alt f2", "alt f2", "alt sysrq b", "alt sysrq k",
                    "alt sysrq e", "alt tab", "power", "sleep"]
    for each in combinations:
        machine.press(*each.split())
    machine.ask("system_powerdown")  # the power button
    wall.wait_for_schedule()
    now = wall.kiosk()
    terminal = machine.run("cat /sys/class/tty/tty0/active")
    assert (now, terminal) == (kiosk, "tty1"), (kiosk, now, terminal)
    return "the same process on the same console"


def quit_key(wall):
    return "back, first frame", wall.come_back(lambda: wall.machine.press("ctrl", "q"), 60)


def killed(wall):
    return "back, first frame", wall.come_back(lambda: wall.machine.run("kill -KILL $(pidof lumenboard)"), 60)


def stopped(wall):
    return "back, first frame", wall.come_back(lambda: wall.machine.run("kill -STOP $(pidof lumenboard)"), 150)


def readers(wall):
    machine, console = wall.machine, wall.machine.console
    machine.plug("second")
    wall.tap_accepted_card()
    since = len(console.lines)
    machine.unplug("first")
    console.wait_for("Using serial port.*ttyUSB1", since=since)
    wall.tap_accepted_card("second")
    since = len(console.lines)
    machine.unplug("second")
    machine.wait_for_picture(NO_READER)
    machine.keep_picture("no-reader")
    began = machine.seconds()
    machine.plug("first")
    console.wait_for("Serial port opened", since=since, seconds=90)
    waited = machine.seconds() - began
    wall.tap_accepted_card()
    return "each that is left reads under its name; without any the screen says so; replugged, a card is read", waited


def disk_full(wall):
    machine, kiosk = wall.machine, wall.kiosk()
    machine.run("fallocate -l $(df --output=avail -B 1 / | tail -n 1) /full")
    machine.run("runuser -u lumenboard -- sh -c 'cat /dev/zero >/var/lib/lumenboard/full'")
    machine.tap(wall.new_card())
    machine.wait_for_picture("Speicher dieses Ger.ts ist voll")
    machine.keep_picture("disk-full")
    machine.run("rm /full /var/lib/lumenboard/full")
    wall.tap_accepted_card()
    assert wall.kiosk() == kiosk
    return "the person is told; with space again the next card is accepted"


def disk_read_only(wall):
    machine, kiosk = wall.machine, wall.kiosk()
    machine.run("echo u >/proc/sysrq-trigger; sleep 2")
    machine.tap(wall.new_card())
    machine.wait_for_picture("Speicher dieses Ger.ts kann")
    machine.keep_picture("disk-read-only")
    machine.run("mount -o remount,rw /")
    wall.tap_accepted_card()
    assert wall.kiosk() == kiosk
    return "the person is told; writable again, the next card is accepted"


def rotated(wall):
    machine = wall.machine
    setting = "echo LUMENBOARD_ROTATE=left >>/etc/default/lumenboard-kiosk"
    machine.run(f"{setting}; systemctl restart {UNIT}")
    shown = machine.wait_for_picture(*SCHEDULE, turn=90)
    machine.touch(20, 780)  # the menu at the top left of the turned picture
    machine.wait_for_picture("Transponder registrieren", turn=90)
    machine.keep_picture("rotated")
    machine.run(f"sed -i '/^LUMENBOARD_ROTATE/d' /etc/default/lumenboard-kiosk; systemctl restart {UNIT}")
    wall.wait_for_schedule()
    return "picture turned, a touch meets what it shows"


def power_cut(wall):
    """A card is certain to be kept once the next one is being logged: they are handled one by one."""
    machine, services = wall.machine, wall.services
    machine.run("echo 'QT_LOGGING_RULES=*.debug=true\nLUMENBOARD_LOG_LINES=0' >>/etc/default/lumenboard-kiosk; sync")
    since = len(machine.console.lines)
    machine.run(f"systemctl restart {UNIT}")
    machine.console.wait_for("Waiting for cards", since=since, seconds=120)
    wall.wait_for_schedule()
    machine.tap(*(wall.new_card() for _ in range(80)))
    machine.console.wait_for(r"Logging \d+", 30, since, seconds=120)
    machine.console.close()  # SIGKILL
    taken = [int(match[1]) for match in machine.console.find(r"Logging (\d+)", since)][:-1]
    answered = {int(match[1]) for match in machine.console.find(r"Attendance logged: .* Karte (\d+) ", since)}
    wall.machine = machine = wall.switch_on()
    shown = wall.wait_for_schedule()
    spool = "find /var/lib/lumenboard/.local -path '*pool*' -type f | wc -l"
    if not wait_until(lambda: machine.run(spool) == "0", 420):
        raise AssertionError("not sent: " + machine.run(spool))
    services.command("records")
    services.command("bookings")
    services.command("audit")
    services.wait_for("stray requests")
    seen = f"{len(taken)} cards taken, {len(answered)} answered before the cut"
    for kind in ("record", "booking"):
        times = collections.Counter(int(match[1]) for match in services.find(rf"^{kind}: card (\d+) "))
        lost = [each for each in taken if not times[each]]
        doubled = [each for each in taken if times[each] > 1]
        assert not lost, (kind, lost)
        assert not answered & set(doubled), (kind, doubled)
        seen += f"; {kind}s: 0 lost, {len(doubled)} doubled"
    return seen, shown


def network_away(wall):
    wall.machine = machine = wall.switch_on()
    machine.set_network(False)
    machine.wait_for_picture("nicht erreichbar|nicht zu finden|keine Verbindung")
    machine.keep_picture("network-away")
    began = machine.seconds()
    machine.set_network(True)
    return "the screen says so; back, the schedule", wall.wait_for_schedule(seconds=420) - began


TRIALS = (
    ("power on", "from the switch to the schedule on the screen", power_on),
    ("card", "a card at the reader", card),
    ("session", "`xset q`, `systemd-analyze verify` and `security`, rights of the reader", rules),
    ("keys that lead out", "Ctrl+Alt+Backspace, Ctrl+Alt+Delete (8 times), Ctrl+Alt+F2, Alt+F2, SysRq, Alt+Tab, power, sleep",
     keys),
    ("Ctrl+Q", "the service key that quits", quit_key),
    ("crash", "`kill -9`", killed),
    ("hang", "`kill -STOP`", stopped),
    ("reader", "a second one plugged in, the first pulled; both pulled, one plugged in again", readers),
    ("disk full", "a file that takes all space, then a card", disk_full),
    ("disk read-only", "an emergency remount, then a card", disk_read_only),
    ("rotation", "`LUMENBOARD_ROTATE=left`, then a touch", rotated),
    ("power cut", "in a burst of 80 cards; then powered on again", power_cut),
    ("no network at boot", "the cable is out, and in again once the screen says so", network_away),
)
