#!/usr/bin/python3
"""Times full screen on a headless Wayland compositor: to marzipel's SetBrightness(0), and to a
bare listener of the compositor's report, in one run.

    /usr/bin/python3 bench/wayland_full_screen_bench.py [--build-dir build/dev] [--toggles 20]
        [--compositor kwin|gnome]

Builds marzipel, the tests' window program and the benches' stand-in services, starts a private
session and system bus, the compositor (headless KWin, or headless GNOME Shell with marzipel's
extension), and the stand-in UPower keyboard backlight and logind
(system_services_stand_in.cpp). The window program plays the video player and is asked for full
screen by a signal. First a bare listener hears the compositor's reports: the time from the
request to a report reaching it is the compositor's share. Then marzipel runs instead, and the
time from the request to SetBrightness(0) reaching the stand-in UPower is the whole; the
difference of the medians is marzipel's own share, and so is the time from the report passing on
the bus to SetBrightness(0). What is particular to a compositor is in one class below, so that
others can be added.
"""
import argparse
import os
import re
import shutil
import signal
import statistics
import subprocess
import sys
import tempfile
import threading
import time

import dbus
import dbus.bus

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from linux_tray_bench import (PLAYER, ROOT, BrightnessCalls, Processes, output,  # noqa: E402
                              percentile, start_buses_and_keyboard, start_stand_in, succeeds,
                              supervised_run, wait_for, write_home)

SCRIPT = os.path.join(ROOT, "src/platform/linux/windows/kwin/kwin_window_reports.js")
EXTENSION = "marzipel@orsavelt.com"

# Owns marzipel's bus name and prints the arrival time of every full-screen report, nothing else.
KWIN_LISTENER = r"""
import sys, time, dbus, dbus.mainloop.glib
from gi.repository import GLib
dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
bus = dbus.SessionBus()
bus.request_name("com.orsavelt.Marzipel")
def heard(connection, message):
    if message.get_member() == "ReportActiveWindow":
        window = message.get_args_list()[0]
        print(f"{time.time():.6f} {int(bool(window.get('fullScreen', False)))}", flush=True)
bus.add_message_filter(heard)
print("ready", flush=True)
GLib.MainLoop().run()
"""


# Owns marzipel's bus name, to which alone the extension reports, and prints the arrival time of
# every report of marzipel's GNOME Shell extension, nothing else.
GNOME_LISTENER = r"""
import sys, time, dbus, dbus.mainloop.glib
from gi.repository import GLib
dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
bus = dbus.SessionBus()
bus.request_name("com.orsavelt.Marzipel")
def heard(focused, windows):
    print(f"{time.time():.6f} {int(bool(focused and focused[0][3]))}", flush=True)
bus.add_signal_receiver(heard, "Changed", "com.orsavelt.Marzipel.Shell",
                        path="/com/orsavelt/Marzipel/Shell")
print("ready", flush=True)
GLib.MainLoop().run()
"""


class KWin:
    """Headless KWin on Wayland; our script is loaded through its Scripting interface."""

    name = "KWin (kwin_wayland --virtual, QPainter)"
    session = {"XDG_SESSION_TYPE": "wayland", "XDG_CURRENT_DESKTOP": "KDE"}
    listener = KWIN_LISTENER
    # How dbus-monitor shows a report passing: the rule, its header line, the key of its flag.
    monitored = ("type='method_call',interface='com.orsavelt.Marzipel',member='ReportActiveWindow'",
                 r"method call time=(\d+\.\d+) .*member=ReportActiveWindow", '"fullScreen"')

    def __init__(self, build_dir):
        self.build_dir = build_dir

    def start(self, processes, work):
        start_stand_in(processes, self.build_dir, "logind")
        # The packaged binary carries a file capability that a container may refuse; a copy has
        # none. It finds its platform plugin only under its own name.
        os.makedirs(f"{work}/bin")
        shutil.copy(shutil.which("kwin_wayland"), f"{work}/bin/kwin_wayland")
        processes.start([f"{work}/bin/kwin_wayland", "--virtual", "--width", "1280", "--height",
                         "800", "--socket", "marzipel-bench"],
                        env=dict(os.environ, KWIN_COMPOSE="Q"))
        wait_for("KWin's scripting", lambda: succeeds(
            "gdbus", "call", "--session", "--dest", "org.kde.KWin", "--object-path", "/Scripting",
            "--method", "org.kde.kwin.Scripting.isScriptLoaded", "none"))
        return "marzipel-bench"

    def start_reports(self):
        answer = subprocess.run(
            ["gdbus", "call", "--session", "--dest", "org.kde.KWin", "--object-path", "/Scripting",
             "--method", "org.kde.kwin.Scripting.loadScript", SCRIPT, "marzipel"],
            capture_output=True, text=True, check=True, timeout=10).stdout
        script = answer.strip("()\n, ").split()[-1]
        subprocess.run(["gdbus", "call", "--session", "--dest", "org.kde.KWin", "--object-path",
                        f"/{script}", "--method", "org.kde.kwin.Script.run"],
                       check=True, stdout=subprocess.DEVNULL, timeout=10)

    def stop_reports(self):
        subprocess.run(["gdbus", "call", "--session", "--dest", "org.kde.KWin", "--object-path",
                        "/Scripting", "--method", "org.kde.kwin.Scripting.unloadScript",
                        "marzipel"], check=True, stdout=subprocess.DEVNULL, timeout=10)


class Gnome:
    """Headless GNOME Shell 43 on Wayland with marzipel's extension, which reports all the time.
    It needs a stand-in logind on the system bus to start, and starts in the overview, where no
    window gets focus until a user leaves it."""

    name = "GNOME Shell (gnome-shell --headless --virtual-monitor)"
    session = {"XDG_SESSION_TYPE": "wayland", "XDG_CURRENT_DESKTOP": "GNOME",
               "GSETTINGS_BACKEND": "keyfile"}
    listener = GNOME_LISTENER
    # The focused window's flag is the first boolean of the signal.
    monitored = ("type='signal',interface='com.orsavelt.Marzipel.Shell',member='Changed'",
                 r"signal time=(\d+\.\d+) .*member=Changed", None)

    def __init__(self, build_dir):
        self.build_dir = build_dir
        major = int(re.search(r"(\d+)", output("gnome-shell", "--version")).group(1))
        self.extension = os.path.join(build_dir, "gnome-shell-extension",
                                      "legacy" if major < 45 else "module", EXTENSION)

    def start(self, processes, work):
        shutil.copytree(self.extension, os.path.join(
            os.environ["XDG_DATA_HOME"], "gnome-shell/extensions", EXTENSION))
        settings = os.path.join(os.environ["XDG_CONFIG_HOME"], "glib-2.0/settings")
        os.makedirs(settings)
        with open(f"{settings}/keyfile", "w") as f:
            f.write(f"[org/gnome/shell]\nenabled-extensions=['{EXTENSION}']\n")
        shell_logind = processes.start(["/usr/bin/python3", "-m", "dbusmock", "--system", "-t",
                                        "logind"])
        wait_for("the stand-in logind", lambda: succeeds(
            "gdbus", "introspect", "--system", "--dest", "org.freedesktop.login1",
            "--object-path", "/org/freedesktop/login1"))
        processes.start(["gnome-shell", "--headless", "--wayland", "--no-x11", "--wayland-display",
                         "marzipel-bench", "--virtual-monitor", "1280x800"],
                        env=dict(os.environ, **self.session))
        # Mutter ends a remote desktop session when the connection that made it goes.
        bus = dbus.bus.BusConnection(os.environ["DBUS_SESSION_BUS_ADDRESS"])

        def shell(method, *arguments, interface="org.gnome.Shell.Extensions"):
            try:
                return bus.call_blocking("org.gnome.Shell", "/org/gnome/Shell", interface,
                                         method, None, arguments)
            except dbus.DBusException:
                return None  # not on the bus yet

        wait_for("the shell with our extension on", lambda: (
            shell("GetExtensionInfo", EXTENSION) or {}).get("state") == 1, 30)
        # It starts in the overview, shown once its start-up animation has run; a user leaves
        # it with Escape, typed here as a remote desktop would.
        overview = ("org.gnome.Shell", "OverviewActive")
        wait_for("the overview", lambda: shell("Get", *overview, interface=dbus.PROPERTIES_IFACE))
        remote = "org.gnome.Mutter.RemoteDesktop"
        session = bus.call_blocking(remote, "/org/gnome/Mutter/RemoteDesktop", remote,
                                    "CreateSession", None, ())
        desktop = dbus.Interface(bus.get_object(remote, session), f"{remote}.Session")
        desktop.Start()
        for pressed in (True, False):
            desktop.NotifyKeyboardKeycode(dbus.UInt32(1), pressed)  # evdev KEY_ESC
        wait_for("the overview to go",
                 lambda: not shell("Get", *overview, interface=dbus.PROPERTIES_IFACE))
        desktop.Stop()
        bus.close()
        # The shell needs the Python stand-in to start. That one takes a millisecond or more to
        # answer marzipel's question here, where a real logind takes a fraction of that; from now
        # on the benches' own stand-in answers, as it does on KWin.
        shell_logind.terminate()
        shell_logind.wait()
        start_stand_in(processes, self.build_dir, "logind")
        return "marzipel-bench"

    def start_reports(self):
        pass

    def stop_reports(self):
        pass


class Reports:
    """The bare listener's lines: (time, full screen)."""

    def __init__(self, processes, listener):
        self.heard = []
        self.changed = threading.Condition()
        listener = processes.start(["/usr/bin/python3", "-c", listener], stdout=subprocess.PIPE,
                                   text=True, bufsize=1)
        if listener.stdout.readline().strip() != "ready":
            raise RuntimeError("the bare listener did not start")
        threading.Thread(target=self._read, args=(listener.stdout,), daemon=True).start()

    def _read(self, stream):
        for line in stream:
            stamp, full_screen = line.split()
            with self.changed:
                self.heard.append((float(stamp), full_screen == "1"))
                self.changed.notify_all()

    def wait_for(self, full_screen, after, seconds=10.0):
        with self.changed:
            found = self.changed.wait_for(
                lambda: next((h for h in self.heard[after:] if h[1] == full_screen), None),
                seconds)
        if not found:
            raise TimeoutError("no report from the compositor")
        return found[0]


class MonitoredReports(Reports):
    """The compositor's reports to marzipel as dbus-monitor on the session bus sees them pass:
    (time, full screen)."""

    def __init__(self, processes, address, monitored):
        self.heard = []
        self.changed = threading.Condition()
        rule, header, key = monitored
        monitor = processes.start(["dbus-monitor", "--address", address, rule],
                                  stdout=subprocess.PIPE, text=True, bufsize=1)
        threading.Thread(target=self._parse, args=(monitor.stdout, header, key),
                         daemon=True).start()

    def _parse(self, stream, header_pattern, key):
        stamp, keyed = None, False
        for line in stream:
            header = re.match(header_pattern, line)
            if header:
                stamp, keyed = float(header.group(1)), key is None
            elif key and key in line:
                keyed = True
            elif keyed and "boolean" in line and stamp is not None:
                self._add(stamp, line.split()[-1] == "true")
                stamp, keyed = None, False

    def _add(self, stamp, full_screen):
        with self.changed:
            self.heard.append((stamp, full_screen))
            self.changed.notify_all()


class Questions:
    """marzipel's method calls on the system and the session bus and the answers to them, as one
    dbus-monitor on each bus sees them pass: (time, member, or None for an answer). They split
    marzipel's own share into the services answering what it asks before dimming (on KDE, KWin's
    Night Color on the session bus too) and what is left to marzipel."""

    def __init__(self, processes, system, session):
        self.seen = []
        self.changed = threading.Condition()
        # Each bus's unique name of marzipel, once known; a question is counted by its sender.
        self.asker = {}
        for bus, address in (("system", system), ("session", session)):
            monitor = processes.start(
                ["dbus-monitor", "--address", address, "--profile", "type='method_call'",
                 "type='method_return'", "type='error'"], stdout=subprocess.PIPE, text=True,
                bufsize=1)
            threading.Thread(target=self._read, args=(bus, monitor.stdout), daemon=True).start()

    def know(self, bus, unique_name):
        with self.changed:
            self.asker[bus] = unique_name
            self.seen = [s for s in self.seen if s[2] != bus or s[3] == unique_name]
            self.seen.sort()

    def _read(self, bus, stream):
        asked = set()
        for line in stream:
            fields = line.rstrip("\n").split("\t")
            if fields[0] not in ("mc", "mr", "err") or len(fields) < 6:
                continue
            question = fields[0] == "mc"
            if not question and (fields[4], fields[5]) not in asked:
                continue  # an answer to a question not counted
            if question:
                asked.add((fields[3], fields[2]))
            entry = (float(fields[1]), fields[7] if question else None, bus,
                     fields[3] if question else fields[4])
            with self.changed:
                if bus in self.asker and entry[3] != self.asker[bus]:
                    continue
                # The two monitors' lines arrive each in its own order; keep them in time order.
                at = len(self.seen)
                while at and self.seen[at - 1][0] > entry[0]:
                    at -= 1
                self.seen.insert(at, entry)
                self.changed.notify_all()

    def split(self, number, seconds=10.0):
        """For marzipel's SetBrightness call `number` (from 0): from the first of the questions
        asked just before it (in one burst, so not those about a request the window let go) to
        the last answer, and from there to the call, in ms; nothing when there was no question."""
        def calls():
            return [i for i, (_, member, _, _) in enumerate(self.seen) if member == "SetBrightness"]

        with self.changed:
            self.changed.wait_for(lambda: len(calls()) > number, seconds)
            found, seen = calls(), list(self.seen)
        if len(found) <= number:
            return None
        end = start = found[number]
        while start > (found[number - 1] + 1 if number else 0) and \
                seen[start][0] - seen[start - 1][0] < 0.05:
            start -= 1
        between = seen[start:end]
        asked = [t for t, member, _, _ in between if member]
        answered = [t for t, member, _, _ in between if not member and asked and t >= asked[0]]
        if not answered:
            return None
        return 1000 * (answered[-1] - asked[0]), 1000 * (seen[end][0] - answered[-1])


def unique_name_of(address, pid):
    """The connection of process `pid` to the bus at `address`."""
    bus = dbus.bus.BusConnection(address)
    try:
        daemon = dbus.Interface(bus.get_object("org.freedesktop.DBus", "/org/freedesktop/DBus"),
                                "org.freedesktop.DBus")
        for name in daemon.ListNames():
            if name.startswith(":") and daemon.GetConnectionUnixProcessID(name) == pid:
                return str(name)
    finally:
        bus.close()
    raise RuntimeError(f"process {pid} is not on the bus at {address}")


def toggle(player, times, seen, heard):
    """Asks for full screen and back until `times` requests for it were heard at once:
    `seen()` counts what was heard so far, `heard(on, after, seconds)` waits for what follows
    and gives its time. A Qt Wayland window asked back too soon after it went full screen may
    let the request go, so one not heard is sent again, and a delay that needed that is left
    out. The delays in ms, and how many requests were sent again."""
    delays, again = [], 0
    while len(delays) < times:
        for on, ask in ((True, signal.SIGUSR1), (False, signal.SIGUSR2)):
            after = seen()
            for attempt in range(5):
                asked = time.time()
                player.send_signal(ask)
                try:
                    arrived = heard(on, after, 2.0)
                    break
                except TimeoutError:
                    again += 1
            else:
                raise TimeoutError(f"full screen {'on' if on else 'off'} not heard")
            if on and attempt == 0:
                delays.append(1000 * (arrived - asked))
    return delays, again


def figures(label, milliseconds):
    print(f"  {label}: median {statistics.median(milliseconds):.2f} ms, 90th percentile "
          f"{percentile(milliseconds, 0.9):.2f} ms, min {min(milliseconds):.2f} ms, "
          f"max {max(milliseconds):.2f} ms")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("--build-dir", default=os.path.join(ROOT, "build/dev"))
    parser.add_argument("--toggles", type=int, default=20, help="full-screen toggles timed")
    parser.add_argument("--compositor", choices=("kwin", "gnome"), default="kwin")
    args = parser.parse_args()
    if args.toggles < 1:
        parser.error("--toggles must be at least 1")
    subprocess.run(["cmake", "--build", args.build_dir, "--target", "marzipel",
                    "marzipel_bench_services", "marzipel_test_window"], check=True,
                   stdout=subprocess.DEVNULL)
    processes = Processes()
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    with tempfile.TemporaryDirectory(prefix="marzipel-bench-") as work:
        try:
            run(args, processes, work,
                (KWin if args.compositor == "kwin" else Gnome)(args.build_dir))
        finally:
            processes.stop_all()


def run(args, processes, work, compositor):
    home = os.path.join(work, "home")
    env = os.environ
    env.update(HOME=home, XDG_CONFIG_HOME=f"{home}/.config", XDG_DATA_HOME=f"{home}/.local/share",
               XDG_DATA_DIRS="/usr/local/share:/usr/share", XDG_RUNTIME_DIR=f"{work}/runtime")
    env.pop("DISPLAY", None)
    write_home(home, work, ["keyboardBacklight"])
    start_buses_and_keyboard(processes, env, work, args.build_dir)

    env["WAYLAND_DISPLAY"] = compositor.start(processes, work)
    env.update(compositor.session, QT_QPA_PLATFORM="wayland")
    player = processes.start([os.path.join(args.build_dir, "tests/integration/marzipel_test_window"),
                              PLAYER], stdout=subprocess.PIPE)
    if player.stdout.readline().strip() != b"ready":
        raise RuntimeError("the player window did not show")

    reports = Reports(processes, compositor.listener)
    compositor.start_reports()
    bare, bare_again = toggle(player, args.toggles, lambda: len(reports.heard), reports.wait_for)
    compositor.stop_reports()
    processes.started[-1].terminate()
    processes.started[-1].wait()

    calls = BrightnessCalls(processes, env["DBUS_SYSTEM_BUS_ADDRESS"])
    passing = MonitoredReports(processes, env["DBUS_SESSION_BUS_ADDRESS"], compositor.monitored)
    questions = Questions(processes, env["DBUS_SYSTEM_BUS_ADDRESS"],
                          env["DBUS_SESSION_BUS_ADDRESS"])
    marzipel = processes.start([os.path.join(args.build_dir, "src/app/marzipel")])
    wait_for("marzipel's bus name", lambda: succeeds(
        "gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path",
        "/org/freedesktop/DBus", "--method", "org.freedesktop.DBus.GetNameOwner",
        "com.orsavelt.Marzipel"))
    time.sleep(2)  # start-up work after the name: the script's first reports, first paints
    for bus in ("system", "session"):
        questions.know(bus, unique_name_of(env[f"DBUS_{bus.upper()}_BUS_ADDRESS"],
                                                   supervised_run(marzipel.pid)))
    own, split = [], []

    def dimmed(on, after, seconds):
        level = calls.wait_for_level(0 if on else 2, after[0], seconds)
        if on:
            own.append(1000 * (level[0] - passing.wait_for(True, after[1])))
            split.extend(filter(None, [questions.split(calls.calls.index(level, after[0]))]))
        return level[0]

    whole, whole_again = toggle(player, args.toggles,
                                lambda: (len(calls.calls), len(passing.heard)), dimmed)

    print(f"Full screen on {compositor.name}, {args.toggles} toggles of a Qt Wayland window "
          f"({bare_again + whole_again} requests sent again); load average "
          f"{' '.join(f'{load:.2f}' for load in os.getloadavg())}\n")
    figures("request -> the compositor's report at a bare listener", bare)
    figures("request -> SetBrightness(0) at the stand-in UPower", whole)
    print(f"  difference of the two medians: "
          f"{statistics.median(whole) - statistics.median(bare):.2f} ms")
    figures("marzipel's own share, the report passing on the bus -> SetBrightness(0)", own)
    if split:
        figures("of which its first question -> the stand-ins' last answer", [w for w, _ in split])
        figures("of which the last answer -> SetBrightness(0)", [r for _, r in split])


if __name__ == "__main__":
    main()
