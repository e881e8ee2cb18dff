#!/usr/bin/python3
"""Measures marzipel next to a bare Qt tray program, both on one private X session.

    /usr/bin/python3 bench/linux_tray_bench.py [--build-dir build/dev] [--idle 60] [--toggles 20]
    /usr/bin/python3 bench/linux_tray_bench.py --soak 10000 [--build-dir build/release]

Builds marzipel, marzipel_bare_tray and the stand-in UPower keyboard backlight
(system_services_stand_in.cpp) in the build folder (configured with MARZIPEL_BENCHMARKS on),
then starts Xvfb, openbox, trayer, private session and system buses, the stand-in UPower and the
real gsd-color, and prints for both programs the resident memory after start, and the CPU time
and voluntary context switches over the idle period; then
for marzipel the time from asking the window manager for full screen to SetBrightness(0) reaching
the stand-in UPower, over repeated toggles.

With --soak N it runs marzipel alone and toggles full screen N times, as fast as marzipel follows,
then prints its resident memory and open file descriptors after 100 and after N toggles, and the
median time to SetBrightness(0) over the first and the last 100.
"""
import argparse
import ctypes
import os
import re
import select
import signal
import statistics
import subprocess
import sys
import tempfile
import threading
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
PLAYER = "marzipel-bench-player"
# The benches' stand-in system services (system_services_stand_in.cpp): what each is called, and
# a question it answers once it is on the system bus.
STAND_INS = {
    "keyboard": ("UPower", "--dest", "org.freedesktop.UPower", "--object-path",
                 "/org/freedesktop/UPower/KbdBacklight", "--method",
                 "org.freedesktop.UPower.KbdBacklight.GetBrightness"),
    "logind": ("logind", "--dest", "org.freedesktop.login1", "--object-path",
               "/org/freedesktop/login1", "--method",
               "org.freedesktop.login1.Manager.ListInhibitors"),
}
COLOR = ["--dest", "org.gnome.SettingsDaemon.Color", "--object-path",
         "/org/gnome/SettingsDaemon/Color"]


class Processes:
    """Everything the bench starts, ended in reverse order however the bench ends."""

    def __init__(self):
        self.started = []

    def start(self, argv, **options):
        options.setdefault("stdout", subprocess.DEVNULL)
        options.setdefault("stderr", subprocess.DEVNULL)
        process = subprocess.Popen(argv, start_new_session=True, **options)
        self.started.append(process)
        return process

    def stop_all(self):
        for process in reversed(self.started):
            if process.poll() is None:
                process.terminate()
                try:
                    process.wait(5)
                except subprocess.TimeoutExpired:
                    process.kill()
                    process.wait()


def wait_for(what, condition, seconds=15.0):
    deadline = time.monotonic() + seconds
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() >= deadline:
            raise TimeoutError(f"gave up after {seconds:.0f} s waiting for {what}")
        time.sleep(0.05)


def succeeds(*argv):
    return subprocess.run(argv, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                          timeout=10).returncode == 0


def output(*argv):
    return subprocess.run(argv, capture_output=True, text=True, timeout=10).stdout


def read_line(fd, seconds=10.0):
    """One line from a program that prints where it listens once it is ready."""
    text = b""
    deadline = time.monotonic() + seconds
    os.set_blocking(fd, False)
    while not text.endswith(b"\n"):
        if time.monotonic() >= deadline:
            raise TimeoutError("no ready line")
        try:
            text += os.read(fd, 256)
        except BlockingIOError:
            time.sleep(0.02)
    os.close(fd)
    return text.decode().split("\n")[0]


def start_with_ready_line(processes, argv):
    """Starts `argv` with FD replaced by a pipe that it writes its ready line to."""
    read_end, write_end = os.pipe()
    processes.start([a.replace("FD", str(write_end)) for a in argv], pass_fds=(write_end,))
    os.close(write_end)
    return read_line(read_end)


class ClientMessage(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("window", ctypes.c_ulong),
                ("message_type", ctypes.c_ulong), ("format", ctypes.c_int),
                ("data", ctypes.c_long * 5)]


class PropertyEvent(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("window", ctypes.c_ulong), ("atom", ctypes.c_ulong),
                ("time", ctypes.c_ulong), ("state", ctypes.c_int)]


class XEvent(ctypes.Union):
    _fields_ = [("xclient", ClientMessage), ("xproperty", PropertyEvent),
                ("pad", ctypes.c_long * 24)]


class ClassHint(ctypes.Structure):
    _fields_ = [("res_name", ctypes.c_char_p), ("res_class", ctypes.c_char_p)]


class XClient:
    """The bench's own window, which plays the video player, and requests to the window manager
    sent as a pager sends them; straight through Xlib so that no program start is timed."""

    def __init__(self, display):
        x = ctypes.CDLL("libX11.so.6")
        x.XOpenDisplay.restype = ctypes.c_void_p
        x.XDefaultRootWindow.restype = ctypes.c_ulong
        x.XDefaultRootWindow.argtypes = [ctypes.c_void_p]
        x.XCreateSimpleWindow.restype = ctypes.c_ulong
        x.XCreateSimpleWindow.argtypes = [ctypes.c_void_p, ctypes.c_ulong] + [ctypes.c_int] * 2 + \
            [ctypes.c_uint] * 3 + [ctypes.c_ulong] * 2
        x.XInternAtom.restype = ctypes.c_ulong
        x.XInternAtom.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int]
        x.XChangeProperty.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_ulong,
                                      ctypes.c_ulong, ctypes.c_int, ctypes.c_int,
                                      ctypes.c_void_p, ctypes.c_int]
        x.XSetClassHint.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.POINTER(ClassHint)]
        x.XMapWindow.argtypes = [ctypes.c_void_p, ctypes.c_ulong]
        x.XSendEvent.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_long,
                                 ctypes.POINTER(XEvent)]
        x.XFlush.argtypes = [ctypes.c_void_p]
        x.XSelectInput.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_long]
        x.XPending.argtypes = [ctypes.c_void_p]
        x.XNextEvent.argtypes = [ctypes.c_void_p, ctypes.POINTER(XEvent)]
        x.XConnectionNumber.argtypes = [ctypes.c_void_p]
        x.XSync.argtypes = [ctypes.c_void_p, ctypes.c_int]
        self.x = x
        self.atoms = {}
        self.display = x.XOpenDisplay(display.encode())
        if not self.display:
            raise RuntimeError(f"cannot open display {display}")
        self.root = x.XDefaultRootWindow(self.display)

    def atom(self, name):
        if name not in self.atoms:
            self.atoms[name] = self.x.XInternAtom(self.display, name.encode(), 0)
        return self.atoms[name]

    def create_player_window(self):
        x = self.x
        window = x.XCreateSimpleWindow(self.display, self.root, 0, 0, 320, 240, 0, 0, 0)
        hint = ClassHint(PLAYER.encode(), PLAYER.encode())
        x.XSetClassHint(self.display, window, ctypes.byref(hint))
        pid = ctypes.c_ulong(os.getpid())
        x.XChangeProperty(self.display, window, self.atom("_NET_WM_PID"), 6, 32, 0,
                          ctypes.byref(pid), 1)
        x.XSelectInput(self.display, window, 1 << 22)  # PropertyChangeMask
        x.XMapWindow(self.display, window)
        x.XFlush(self.display)
        for name in ("_NET_WM_STATE", "_NET_WM_STATE_FULLSCREEN", "_NET_ACTIVE_WINDOW"):
            self.atom(name)
        return window

    def drop_events(self):
        """Forgets the events so far, so that the next wait sees only what follows."""
        self.x.XSync(self.display, 0)
        event = XEvent()
        while self.x.XPending(self.display):
            self.x.XNextEvent(self.display, ctypes.byref(event))

    def wait_for_property_change(self, window, name, seconds=10.0):
        """The time at which a change of the window's property `name` reached this client."""
        atom = self.atom(name)
        event = XEvent()
        deadline = time.monotonic() + seconds
        while True:
            while self.x.XPending(self.display):
                self.x.XNextEvent(self.display, ctypes.byref(event))
                if event.xproperty.type == 28 and event.xproperty.window == window and \
                        event.xproperty.atom == atom:  # PropertyNotify
                    return time.time()
            left = deadline - time.monotonic()
            if left <= 0:
                raise TimeoutError(f"no change of {name}")
            select.select([self.x.XConnectionNumber(self.display)], [], [], left)

    def ask_window_manager(self, window, message_type, data):
        event = XEvent()
        event.xclient.type = 33  # ClientMessage
        event.xclient.window = window
        event.xclient.message_type = self.atom(message_type)
        event.xclient.format = 32
        for i, value in enumerate(data):
            event.xclient.data[i] = value
        mask = (1 << 20) | (1 << 19)  # SubstructureRedirect | SubstructureNotify
        self.x.XSendEvent(self.display, self.root, 0, mask, ctypes.byref(event))
        self.x.XFlush(self.display)

    def activate(self, window):
        self.ask_window_manager(window, "_NET_ACTIVE_WINDOW", [2, 0, 0, 0, 0])

    def set_full_screen(self, window, on):
        fullscreen = self.atom("_NET_WM_STATE_FULLSCREEN")
        self.ask_window_manager(window, "_NET_WM_STATE", [1 if on else 0, fullscreen, 0, 2, 0])


class BrightnessCalls:
    """SetBrightness calls on the system bus as dbus-monitor sees them: (time, level)."""

    def __init__(self, processes, address):
        self.calls = []
        self.changed = threading.Condition()
        monitor = processes.start(
            ["dbus-monitor", "--address", address,
             "type='method_call',interface='org.freedesktop.UPower.KbdBacklight',"
             "member='SetBrightness'"], stdout=subprocess.PIPE, text=True, bufsize=1)
        threading.Thread(target=self._read, args=(monitor.stdout,), daemon=True).start()

    def _read(self, stream):
        stamp = None
        for line in stream:
            header = re.match(r"method call time=(\d+\.\d+) .*member=SetBrightness", line)
            if header:
                stamp = float(header.group(1))
                continue
            argument = re.match(r"\s+int32 (-?\d+)", line)
            if argument and stamp is not None:
                with self.changed:
                    self.calls.append((stamp, int(argument.group(1))))
                    self.changed.notify_all()
                stamp = None

    def wait_for_level(self, level, after, seconds=10.0):
        with self.changed:
            found = self.changed.wait_for(
                lambda: next((c for c in self.calls[after:] if c[1] == level), None), seconds)
        if not found:
            raise TimeoutError(f"no SetBrightness({level}) within {seconds:.0f} s")
        return next(c for c in self.calls[after:] if c[1] == level)


def tasks(pid):
    return [os.path.join(f"/proc/{pid}/task", t) for t in os.listdir(f"/proc/{pid}/task")]


def cpu_and_switches(pid):
    """CPU time in seconds and voluntary context switches, summed over the process's threads."""
    cpu = switches = 0
    for task in tasks(pid):
        try:
            with open(os.path.join(task, "schedstat")) as f:
                cpu += int(f.read().split()[0])
            with open(os.path.join(task, "status")) as f:
                switches += int(re.search(r"^voluntary_ctxt_switches:\s+(\d+)", f.read(),
                                          re.M).group(1))
        except FileNotFoundError:
            pass  # a thread that ended meanwhile
    return cpu / 1e9, switches


def resident_kib(pid):
    with open(f"/proc/{pid}/status") as f:
        return int(re.search(r"^VmRSS:\s+(\d+) kB", f.read(), re.M).group(1))


def private_kib(pid):
    """Memory of the process's own, not shared with any other (its copy-on-write pages included)."""
    with open(f"/proc/{pid}/smaps_rollup") as f:
        text = f.read()
    return sum(int(kib) for kib in re.findall(r"^Private_\w+:\s+(\d+) kB", text, re.M))


def supervised_run(pid):
    """The process that runs marzipel's program under the supervisor `pid`, which starts it
    again after an unexpected end."""
    children = f"/proc/{pid}/task/{pid}/children"
    return int(wait_for("marzipel's supervised run", lambda: open(children).read().split())[0])


def write_home(home, work, features):
    """The user's folders in `home` and a runtime folder in `work`: the bench player's desktop
    entry, and settings with the welcome done, the player as the trigger app and `features` on."""
    for folder in (f"{home}/.config/marzipel", f"{home}/.local/share/applications", f"{work}/runtime"):
        os.makedirs(folder, mode=0o700, exist_ok=True)
    with open(f"{home}/.local/share/applications/{PLAYER}.desktop", "w") as f:
        f.write("[Desktop Entry]\nType=Application\nName=Bench Player\nExec=true\n")
    chosen = "".join(f'<string>{{"{feature}":{{}}}}</string>' for feature in features)
    with open(f"{home}/.config/marzipel/com.orsavelt.Marzipel.plist", "w") as f:
        f.write('<?xml version="1.0" encoding="UTF-8"?>\n<plist version="1.0"><dict>\n'
                '<key>welcomeScreenShown</key><true/>\n<key>enabledApps</key><array><string>'
                '{"id":"' + PLAYER + '","name":"Bench Player"}</string></array>\n'
                f'<key>enabledFeatures</key><array>{chosen}</array>\n</dict></plist>\n')


def start_buses_and_keyboard(processes, env, work, build_dir):
    """A private session and system bus in `work`, named in `env`, and on the system bus a
    stand-in UPower keyboard backlight with levels 0 to 3, at 2."""
    for bus in ("session", "system"):
        config = os.path.join(work, f"{bus}.conf")
        with open(config, "w") as f:
            f.write(f"<busconfig><type>{bus}</type><listen>unix:dir={work}</listen>"
                    "<auth>EXTERNAL</auth><policy context='default'><allow user='*'/>"
                    "<allow own='*'/><allow send_destination='*' eavesdrop='true'/>"
                    "<allow eavesdrop='true'/></policy></busconfig>")
        env[f"DBUS_{bus.upper()}_BUS_ADDRESS"] = start_with_ready_line(
            processes, ["dbus-daemon", "--nofork", "--print-address=FD", f"--config-file={config}"])
    start_stand_in(processes, build_dir, "keyboard")


def start_stand_in(processes, build_dir, service):
    """One of the benches' stand-in system services, `service` of STAND_INS, once it answers."""
    name, *question = STAND_INS[service]
    processes.start([os.path.join(build_dir, "bench/marzipel_bench_services"), service])
    wait_for(f"the stand-in {name}", lambda: succeeds("gdbus", "call", "--system", *question))


def percentile(values, fraction):
    ordered = sorted(values)
    return ordered[min(len(ordered) - 1, int(round(fraction * (len(ordered) - 1))))]


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--build-dir", default=os.path.join(ROOT, "build/dev"))
    parser.add_argument("--idle", type=float, default=60.0, help="idle seconds measured")
    parser.add_argument("--toggles", type=int, default=20, help="full-screen toggles timed")
    parser.add_argument("--soak", type=int, default=0, help="toggles of the soak (at least 200)")
    parser.add_argument("--pause", type=float, default=0.02,
                        help="seconds the soak waits after each step, 0 to drive marzipel flat out")
    args = parser.parse_args()
    if args.toggles < 1:
        parser.error("--toggles must be at least 1")
    if args.soak and args.soak < 200:
        parser.error("--soak needs at least 200 toggles")

    targets = ["marzipel", "marzipel_bench_services"]
    if not args.soak:
        targets.append("marzipel_bare_tray")
    subprocess.run(["cmake", "--build", args.build_dir, "--target", *targets], check=True,
                   stdout=subprocess.DEVNULL)
    marzipel = os.path.join(args.build_dir, "src/app/marzipel")
    bare_tray = os.path.join(args.build_dir, "bench/marzipel_bare_tray")
    gsd_color = next(p for p in ("/usr/libexec/gsd-color",
                                 "/usr/lib/gnome-settings-daemon/gsd-color") if os.access(p, os.X_OK))

    processes = Processes()
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    with tempfile.TemporaryDirectory(prefix="marzipel-bench-") as work:
        try:
            run(args, processes, work, marzipel, bare_tray, gsd_color)
        finally:
            processes.stop_all()


def run(args, processes, work, marzipel, bare_tray, gsd_color):
    home = os.path.join(work, "home")
    env = os.environ
    env.update(HOME=home, XDG_CONFIG_HOME=f"{home}/.config", XDG_DATA_HOME=f"{home}/.local/share",
               XDG_DATA_DIRS="/usr/local/share:/usr/share", XDG_RUNTIME_DIR=f"{work}/runtime",
               GSETTINGS_BACKEND="keyfile", QT_QPA_PLATFORM="xcb")
    env.pop("XDG_CURRENT_DESKTOP", None)
    write_home(home, work, ["keyboardBacklight", "nightShift"])

    display = ":" + start_with_ready_line(
        processes, ["Xvfb", "-displayfd", "FD", "-screen", "0", "1280x720x24", "-nolisten", "tcp"])
    env["DISPLAY"] = display
    processes.start(["openbox", "--sm-disable"])
    wait_for("openbox", lambda: "window id" in output("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"))
    processes.start(["trayer", "--edge", "bottom", "--align", "right", "--widthtype", "request",
                     "--height", "28", "--SetDockType", "true"])
    wait_for("trayer", lambda: succeeds("xdotool", "search", "--classname", "trayer"))

    start_buses_and_keyboard(processes, env, work, args.build_dir)
    hour = time.localtime().tm_hour
    key = "org.gnome.settings-daemon.plugins.color"
    for name, value in (("night-light-enabled", "true"),
                        ("night-light-schedule-automatic", "false"),
                        ("night-light-schedule-from", f"{(hour + 23) % 24}.0"),
                        ("night-light-schedule-to", f"{(hour + 2) % 24}.0")):
        subprocess.run(["gsettings", "set", key, name, value], check=True, timeout=10)

    def night_light(property_name):
        return "true" in output("gdbus", "call", "--session", "--timeout", "5", *COLOR, "--method",
                                "org.freedesktop.DBus.Properties.Get",
                                "org.gnome.SettingsDaemon.Color", property_name)

    processes.start([gsd_color])
    wait_for("gsd-color's Night Light", lambda: night_light("NightLightActive"), 20)
    calls = BrightnessCalls(processes, env["DBUS_SYSTEM_BUS_ADDRESS"])

    if args.soak:
        soak(args.soak, args.pause, display, calls,
             supervised_run(processes.start([marzipel]).pid))
        return
    supervisor = processes.start([marzipel]).pid
    programs = {"marzipel": supervised_run(supervisor),
                "bare tray": processes.start([bare_tray]).pid}
    for name in ("marzipel", "marzipel_bare_tray"):
        wait_for(f"{name}'s tray icon", lambda: succeeds("xdotool", "search", "--classname", name))
    time.sleep(3)  # start-up work that follows the icon: first paints, D-Bus introspection
    memory = {name: resident_kib(pid) for name, pid in programs.items()}
    supervisor_memory = (resident_kib(supervisor), private_kib(supervisor))

    print(f"Idle for {args.idle:.0f} s ...", file=sys.stderr)
    before = {name: cpu_and_switches(pid) for name, pid in programs.items()}
    time.sleep(args.idle)
    after = {name: cpu_and_switches(pid) for name, pid in programs.items()}

    client = XClient(display)
    window = client.create_player_window()
    wait_for("the player window", lambda: succeeds("xdotool", "search", "--classname", PLAYER))
    client.activate(window)

    def full_screen():
        return "_NET_WM_STATE_FULLSCREEN" in output("xprop", "-id", str(window), "_NET_WM_STATE")

    latencies, window_manager = [], []
    for _ in range(args.toggles):
        seen = len(calls.calls)
        client.drop_events()
        asked = time.time()
        client.set_full_screen(window, True)
        window_manager.append(client.wait_for_property_change(window, "_NET_WM_STATE") - asked)
        latencies.append(calls.wait_for_level(0, seen)[0] - asked)
        wait_for("full screen", full_screen)
        wait_for("Night Light lifted", lambda: night_light("DisabledUntilTomorrow"))
        seen = len(calls.calls)
        client.set_full_screen(window, False)
        calls.wait_for_level(2, seen)
        wait_for("full screen left", lambda: not full_screen())
        wait_for("Night Light back", lambda: not night_light("DisabledUntilTomorrow"))

    print(f"marzipel and a bare Qt tray on Xvfb + openbox + trayer ({display}), same run\n")
    print(f"{'':34}{'marzipel':>12}{'bare tray':>12}{'ratio':>8}")
    rows = [("resident memory after start (KiB)", memory["marzipel"], memory["bare tray"], ".0f"),
            (f"CPU time over {args.idle:.0f} s idle (ms)",
             (after["marzipel"][0] - before["marzipel"][0]) * 1000,
             (after["bare tray"][0] - before["bare tray"][0]) * 1000, ".3f"),
            (f"voluntary switches, {args.idle:.0f} s idle",
             after["marzipel"][1] - before["marzipel"][1],
             after["bare tray"][1] - before["bare tray"][1], ".0f")]
    for label, ours, bare, shape in rows:
        ratio = f"{ours / bare:.2f}" if bare else "-"
        print(f"{label:34}{ours:>12{shape}}{bare:>12{shape}}{ratio:>8}")
    print(f"  marzipel's supervisor process: {supervisor_memory[0]} KiB resident, of which "
          f"{supervisor_memory[1]} KiB its own (the rest shared with the program)")
    milliseconds = [1000 * latency for latency in latencies]
    print(f"\nfull-screen request -> SetBrightness(0) at the stand-in UPower, {len(latencies)} "
          f"toggles:\n  median {statistics.median(milliseconds):.2f} ms, 90th percentile "
          f"{percentile(milliseconds, 0.9):.2f} ms, min {min(milliseconds):.2f} ms, "
          f"max {max(milliseconds):.2f} ms")
    own = [1000 * (total - wm) for total, wm in zip(latencies, window_manager)]
    print(f"  of which openbox setting the full-screen state: median "
          f"{1000 * statistics.median(window_manager):.2f} ms; from there marzipel: median "
          f"{statistics.median(own):.2f} ms, 90th percentile {percentile(own, 0.9):.2f} ms")
    print(f"  resident memory of marzipel after the toggles: {resident_kib(programs['marzipel'])} KiB")


def open_descriptors(pid):
    return len(os.listdir(f"/proc/{pid}/fd"))


def soak(toggles, pause, display, calls, pid):
    """Toggles full screen and back `toggles` times, each step `pause` seconds after marzipel set
    the keyboard for the one before; Night Light follows on its own and is not waited for. With
    no pause marzipel's main thread never idles, and Qt's own queues (X events, posted events)
    grow while it is behind: that measures the load, not the program."""
    wait_for("marzipel's tray icon", lambda: succeeds("xdotool", "search", "--classname",
                                                       "marzipel"))
    client = XClient(display)
    window = client.create_player_window()
    wait_for("the player window", lambda: succeeds("xdotool", "search", "--classname", PLAYER))
    client.activate(window)
    time.sleep(3)  # start-up work that follows the icon: first paints, D-Bus introspection
    latencies, figures = [], {}
    started = time.monotonic()
    for toggle in range(1, toggles + 1):
        seen = len(calls.calls)
        asked = time.time()
        client.set_full_screen(window, True)
        latencies.append(calls.wait_for_level(0, seen)[0] - asked)
        time.sleep(pause)
        seen = len(calls.calls)
        client.set_full_screen(window, False)
        calls.wait_for_level(2, seen)
        time.sleep(pause)
        if toggle in (100, toggles):
            figures[toggle] = (resident_kib(pid), open_descriptors(pid))
        if toggle % 1000 == 0:
            print(f"{toggle} toggles, {time.monotonic() - started:.0f} s, "
                  f"{resident_kib(pid)} KiB resident", file=sys.stderr)

    print(f"marzipel on Xvfb + openbox + trayer ({display}), {toggles} full-screen toggles "
          f"in {time.monotonic() - started:.0f} s, {1000 * pause:.0f} ms after each step\n")
    print(f"{'after toggles':16}{'resident KiB':>14}{'open fds':>10}")
    for toggle, (memory, descriptors) in figures.items():
        print(f"{toggle:<16}{memory:>14}{descriptors:>10}")
    first = statistics.median(1000 * latency for latency in latencies[:100])
    last = statistics.median(1000 * latency for latency in latencies[-100:])
    print(f"\nfull-screen request -> SetBrightness(0), median: first 100 {first:.2f} ms, "
          f"last 100 {last:.2f} ms")
    grown = figures[toggles][0] - figures[100][0]
    new_descriptors = figures[toggles][1] - figures[100][1]
    print(f"growth from 100 to {toggles}: {grown} KiB, {new_descriptors} descriptors")


if __name__ == "__main__":
    main()
