// Tells Marzipel, on the session bus, which window has focus, whether it is full screen and
// which normal windows there are, and no one else: GNOME's Wayland design keeps other windows
// from ordinary programs. Shared by the GNOME 43/44 and the 45-and-later entry forms, which
// hand in what the shell gives them; this file imports nothing itself so that both module
// systems can load it.
/* exported WindowReport */

const OBJECT_PATH = '/com/orsavelt/Marzipel/Shell';
const INTERFACE = 'com.orsavelt.Marzipel.Shell';
const MARZIPEL = 'com.orsavelt.Marzipel';
const INTERFACE_XML = `<node>
  <interface name="com.orsavelt.Marzipel.Shell">
    <method name="GetState">
      <arg type="a(issb)" direction="out" name="focused"/>
      <arg type="a(iss)" direction="out" name="windows"/>
    </method>
    <signal name="Changed">
      <arg type="a(issb)" name="focused"/>
      <arg type="a(iss)" name="windows"/>
    </signal>
  </interface>
</node>`;

var WindowReport = class WindowReport {
    /**
     * @param {object} shell what the entry form imported: Gio, GLib, Meta, Shell, and the
     *   shell's `global`
     */
    constructor(shell) {
        this._shell = shell;
        this._exported = null;
        this._displaySignals = [];
        this._windowSignals = new Map();
    }

    start() {
        const {Gio, global} = this._shell;
        this._tracker = this._shell.Shell.WindowTracker.get_default();
        this._exported = Gio.DBusExportedObject.wrapJSObject(INTERFACE_XML, this);
        this._exported.export(Gio.DBus.session, OBJECT_PATH);
        this._marzipel = null;
        this._marzipelWatch = Gio.bus_watch_name_on_connection(Gio.DBus.session, MARZIPEL,
            Gio.BusNameWatcherFlags.NONE, (_bus, _name, owner) => {
                this._marzipel = owner;
            }, () => {
                this._marzipel = null;
            });
        const display = global.display;
        this._displaySignals = [
            display.connect('notify::focus-window', () => this._changed()),
            display.connect('in-fullscreen-changed', () => this._changed()),
            display.connect('window-created', (_display, window) => {
                this._watch(window);
                this._changed();
            }),
        ];
        for (const window of display.list_all_windows())
            this._watch(window);
    }

    stop() {
        this._shell.Gio.bus_unwatch_name(this._marzipelWatch);
        this._marzipel = null;
        const display = this._shell.global.display;
        for (const id of this._displaySignals)
            display.disconnect(id);
        this._displaySignals = [];
        for (const [window, ids] of this._windowSignals) {
            for (const id of ids)
                window.disconnect(id);
        }
        this._windowSignals.clear();
        this._exported?.unexport();
        this._exported = null;
        this._tracker = null;
    }

    /** Asks the bus who owns Marzipel's name now, which a watch may learn a moment late. */
    GetStateAsync(_parameters, invocation) {
        const {Gio, GLib} = this._shell;
        Gio.DBus.session.call('org.freedesktop.DBus', '/org/freedesktop/DBus',
            'org.freedesktop.DBus', 'GetNameOwner', new GLib.Variant('(s)', [MARZIPEL]),
            new GLib.VariantType('(s)'), Gio.DBusCallFlags.NONE, -1, null, (bus, result) => {
                let owner = null;
                try {
                    [owner] = bus.call_finish(result).deepUnpack();
                } catch {
                    // No owner: no one may read.
                }
                if (owner !== invocation.get_sender() || !this._tracker) {
                    invocation.return_dbus_error('org.freedesktop.DBus.Error.AccessDenied',
                        'Only Marzipel may read the windows');
                    return;
                }
                invocation.return_value(new GLib.Variant('(a(issb)a(iss))',
                    [this._focused(), this._windows()]));
            });
    }

    _watch(window) {
        if (this._windowSignals.has(window))
            return;
        this._windowSignals.set(window, [
            window.connect('notify::fullscreen', () => this._changed()),
            window.connect('unmanaged', () => {
                for (const id of this._windowSignals.get(window) ?? [])
                    window.disconnect(id);
                this._windowSignals.delete(window);
                this._changed();
            }),
        ]);
    }

    _changed() {
        const {Gio, GLib} = this._shell;
        if (!this._marzipel)
            return;
        Gio.DBus.session.emit_signal(this._marzipel, OBJECT_PATH, INTERFACE, 'Changed',
            new GLib.Variant('(a(issb)a(iss))', [this._focused(), this._windows()]));
    }

    _focused() {
        const window = this._shell.global.display.focus_window;
        if (!window)
            return [];
        const [pid, appId, wmClass] = this._identity(window);
        return [[pid, appId, wmClass, window.is_fullscreen()]];
    }

    _windows() {
        const {Meta, global} = this._shell;
        return global.display.list_all_windows()
            .filter(w => w.get_window_type() === Meta.WindowType.NORMAL && !w.is_skip_taskbar())
            .map(w => this._identity(w));
    }

    /** The tracker's desktop-file id; it names windows it cannot match "window:N". */
    _identity(window) {
        const wmClass = window.get_wm_class() ?? '';
        let appId = this._tracker.get_window_app(window)?.get_id() ?? '';
        if (appId.startsWith('window:') || appId === '')
            appId = wmClass;
        else if (appId.endsWith('.desktop'))
            appId = appId.slice(0, -'.desktop'.length);
        return [Math.max(window.get_pid(), 0), appId, wmClass];
    }
};
