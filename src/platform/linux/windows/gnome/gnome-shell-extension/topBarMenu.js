// Marzipel's icon and menu in GNOME's top bar, for sessions without a tray. Shown while
// Marzipel owns its name on the session bus and no StatusNotifierItem host runs: where one does
// (an AppIndicator extension), it already shows Marzipel's own tray icon. The menu is the tray's;
// its status line and commands are Marzipel's, asked over its bus service. Shared by both entry
// forms like windowReport.js.
/* exported TopBarMenu */

const MARZIPEL = 'com.orsavelt.Marzipel';
const MARZIPEL_PATH = '/com/orsavelt/Marzipel';
const WATCHER = 'org.kde.StatusNotifierWatcher';
const WATCHER_PATH = '/StatusNotifierWatcher';

var TopBarMenu = class TopBarMenu {
    /**
     * @param {object} shell what the entry form imported: Gio, GLib, St, Main, PanelMenu,
     *   PopupMenu, and the extension's uuid and folder
     */
    constructor(shell) {
        this._shell = shell;
        this._button = null;
        this._status = '';
        this._marzipelRuns = false;
        this._trayHostRuns = false;
    }

    start() {
        const {Gio} = this._shell;
        const bus = Gio.DBus.session;
        this._cancellable = new Gio.Cancellable();
        this._watches = [
            Gio.bus_watch_name_on_connection(bus, MARZIPEL, Gio.BusNameWatcherFlags.NONE,
                () => {
                    this._marzipelRuns = true;
                    this._call('GetStatus', reply => this._showStatus(reply.deepUnpack()[0]));
                    this._sync();
                },
                () => {
                    this._marzipelRuns = false;
                    this._sync();
                }),
            Gio.bus_watch_name_on_connection(bus, WATCHER, Gio.BusNameWatcherFlags.NONE,
                () => this._readTrayHost(),
                () => {
                    this._trayHostRuns = false;
                    this._sync();
                }),
        ];
        this._subscriptions = [
            bus.signal_subscribe(MARZIPEL, MARZIPEL, 'StatusChanged', MARZIPEL_PATH, null,
                Gio.DBusSignalFlags.NONE, (...args) => this._showStatus(args[5].deepUnpack()[0])),
            bus.signal_subscribe(WATCHER, WATCHER, null, WATCHER_PATH, null,
                Gio.DBusSignalFlags.NONE, (...args) => {
                    if (args[4].startsWith('StatusNotifierHost'))
                        this._readTrayHost();
                }),
        ];
    }

    stop() {
        const {Gio} = this._shell;
        this._cancellable.cancel();
        for (const id of this._watches)
            Gio.bus_unwatch_name(id);
        for (const id of this._subscriptions)
            Gio.DBus.session.signal_unsubscribe(id);
        this._watches = this._subscriptions = [];
        this._marzipelRuns = this._trayHostRuns = false;
        this._sync();
    }

    _sync() {
        const shown = this._marzipelRuns && !this._trayHostRuns;
        if (shown && !this._button) {
            this._button = this._makeButton();
        } else if (!shown && this._button) {
            this._button.destroy();
            this._button = null;
        }
    }

    _makeButton() {
        const {Gio, St, Main, PanelMenu, PopupMenu} = this._shell;
        const button = new PanelMenu.Button(0.0, 'Marzipel', false);
        button.add_child(new St.Icon({
            gicon: Gio.icon_new_for_string(`${this._shell.path}/marzipel-symbolic.svg`),
            style_class: 'system-status-icon',
        }));
        this._statusLine = new PopupMenu.PopupMenuItem(this._status,
            {reactive: false, can_focus: false});
        button.menu.addMenuItem(this._statusLine);
        this._addCommand(button, 'Configure', 'OpenSettings');
        button.menu.addMenuItem(new PopupMenu.PopupSeparatorMenuItem());
        this._addCommand(button, 'About', 'About');
        this._addCommand(button, 'Quit', 'Quit');
        Main.panel.addToStatusArea(this._shell.uuid, button);
        return button;
    }

    _addCommand(button, label, method) {
        const item = new this._shell.PopupMenu.PopupMenuItem(label);
        item.connect('activate', () => this._call(method, () => {}));
        button.menu.addMenuItem(item);
    }

    _showStatus(status) {
        this._status = status;
        if (this._button)
            this._statusLine.label.text = status;
    }

    _readTrayHost() {
        const {Gio, GLib} = this._shell;
        Gio.DBus.session.call(WATCHER, WATCHER_PATH, 'org.freedesktop.DBus.Properties', 'Get',
            new GLib.Variant('(ss)', [WATCHER, 'IsStatusNotifierHostRegistered']),
            new GLib.VariantType('(v)'), Gio.DBusCallFlags.NONE, -1, this._cancellable,
            (bus, result) => {
                try {
                    this._trayHostRuns = bus.call_finish(result).deepUnpack()[0].unpack();
                } catch {
                    this._trayHostRuns = false;
                }
                this._sync();
            });
    }

    /** Calls `method` of Marzipel's bus object, then `answered` with the reply. */
    _call(method, answered) {
        const {Gio} = this._shell;
        const cancellable = this._cancellable;
        Gio.DBus.session.call(MARZIPEL, MARZIPEL_PATH, MARZIPEL, method, null, null,
            Gio.DBusCallFlags.NONE, -1, cancellable, (bus, result) => {
                try {
                    answered(bus.call_finish(result));
                } catch (error) {
                    if (!cancellable.is_cancelled())
                        logError(error, `Marzipel did not answer ${method}`);
                }
            });
    }
};
