// Loads the GNOME Shell 45-and-later form of Marzipel's extension as an ES module under gjs, with
// the shell's own modules and `global` stood in, and checks what it puts on the session bus
// while on, to Marzipel alone, that its menu is in the panel, and that switching it off takes
// back every handler, the bus object and the menu.
// Usage: gjs -m module_form_test.js EXTENSION_FOLDER (on a session bus of the test's own)

import Gio from 'gi://Gio';
import GLib from 'gi://GLib';
import System from 'system';

const PATH = '/com/orsavelt/Marzipel/Shell';
const INTERFACE = 'com.orsavelt.Marzipel.Shell';

/** Signal handlers by name, as GObject keeps them. */
class StandIn {
    constructor(fields) {
        Object.assign(this, fields);
        this.handlers = new Map();
        this.nextId = 1;
    }

    connect(name, handler) {
        this.handlers.set(this.nextId, [name, handler]);
        return this.nextId++;
    }

    disconnect(id) {
        if (!this.handlers.delete(id))
            throw new Error(`disconnect of unknown handler ${id}`);
    }

    fire(name, ...args) {
        for (const [signal, handler] of [...this.handlers.values()]) {
            if (signal === name)
                handler(this, ...args);
        }
    }
}

function standInWindow(pid, wmClass, appId, fields = {}) {
    return new StandIn({
        appId,
        fullscreen: false,
        skipTaskbar: false,
        get_pid: () => pid,
        get_wm_class: () => wmClass,
        get_window_type: () => 0,
        is_skip_taskbar() {
            return this.skipTaskbar;
        },
        is_fullscreen() {
            return this.fullscreen;
        },
        ...fields,
    });
}

/** The module form with its imports of the shell pointed at stand-ins in `folder`. */
function copyWithStandIns(extensionFolder, folder) {
    const read = name => new TextDecoder().decode(GLib.file_get_contents(`${extensionFolder}/${name}`)[1]);
    const write = (name, text) => GLib.file_set_contents(`${folder}/${name}`, text);
    write('extension.js', read('extension.js')
        .replace("'gi://Meta'", "'./meta.js'")
        .replace("'gi://Shell'", "'./shell.js'")
        .replace("'gi://St'", "'./st.js'")
        .replace("'resource:///org/gnome/shell/extensions/extension.js'", "'./shellExtension.js'")
        .replace(/'resource:\/\/\/org\/gnome\/shell\/ui\/(\w+).js'/g, "'./$1.js'"));
    write('windowReport.js', read('windowReport.js'));
    write('topBarMenu.js', read('topBarMenu.js'));
    write('st.js', 'export default {Icon: class {}};\n');
    write('main.js', 'export const panel = globalThis.standInPanel;\n');
    write('panelMenu.js', `export class Button {
        constructor() { this.menu = {items: [], addMenuItem(item) { this.items.push(item); }}; }
        add_child() {}
        destroy() { this.destroyed = true; }
    }\n`);
    write('popupMenu.js', `export class PopupMenuItem {
        constructor(text) { this.label = {text}; }
        connect() {}
    }
    export class PopupSeparatorMenuItem extends PopupMenuItem { constructor() { super(''); } }\n`);
    write('meta.js', 'export default {WindowType: {NORMAL: 0}};\n');
    write('shell.js', 'export default {WindowTracker: {get_default: () => globalThis.standInTracker}};\n');
    write('shellExtension.js', 'export class Extension { constructor(metadata) { Object.assign(this, metadata); } }\n');
}

function assertEqual(actual, expected, what) {
    const [a, e] = [JSON.stringify(actual), JSON.stringify(expected)];
    if (a !== e)
        throw new Error(`${what}: got ${a}, expected ${e}`);
}

/** A connection of its own on the session bus, as another program has. */
function connect() {
    return Gio.DBusConnection.new_for_address_sync(
        Gio.dbus_address_get_for_bus_sync(Gio.BusType.SESSION, null),
        Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT |
            Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION,
        null, null);
}
/** Marzipel, owning its name, and a stranger that counts the window reports it sees. */
/** Asks the bus for `name` (4: without queueing), or gives it back. */
function busName(connection, method, name) {
    const request = method === 'RequestName';
    connection.call_sync('org.freedesktop.DBus', '/org/freedesktop/DBus', 'org.freedesktop.DBus',
        method, new GLib.Variant(request ? '(su)' : '(s)', request ? [name, 4] : [name]), null,
        Gio.DBusCallFlags.NONE, -1, null);
}
const listener = connect();
busName(listener, 'RequestName', 'com.orsavelt.Marzipel');
Gio.DBusExportedObject.wrapJSObject(`<node><interface name="com.orsavelt.Marzipel">
    <method name="GetStatus"><arg type="s" direction="out"/></method>
</interface></node>`, {GetStatus: () => 'Waiting for triggers...'})
    .export(listener, '/com/orsavelt/Marzipel');
const stranger = connect();
let reportsToStranger = 0;
stranger.signal_subscribe(null, INTERFACE, 'Changed', PATH, null, Gio.DBusSignalFlags.NONE,
    () => reportsToStranger++);
const loop = GLib.MainLoop.new(null, false);

function getState(connection = listener) {
    return new Promise((resolve, reject) => {
        connection.call(Gio.DBus.session.unique_name, PATH, INTERFACE, 'GetState', null, null,
            Gio.DBusCallFlags.NONE, 2000, null, (connection, result) => {
                try {
                    resolve(connection.call_finish(result).deepUnpack());
                } catch (error) {
                    reject(error);
                }
            });
    });
}

/** Resolves with the next Changed signal's arguments. */
let nextReport;
listener.signal_subscribe(null, INTERFACE, 'Changed', PATH, null, Gio.DBusSignalFlags.NONE,
    (...args) => nextReport?.(args[5].deepUnpack()));
/** Resolves once `condition` holds, polling; rejects after two seconds. */
function until(condition) {
    const deadline = GLib.get_monotonic_time() + 2000000;
    return new Promise((resolve, reject) => {
        GLib.timeout_add(GLib.PRIORITY_DEFAULT, 10, () => {
            if (condition())
                resolve();
            else if (GLib.get_monotonic_time() < deadline)
                return GLib.SOURCE_CONTINUE;
            else
                reject(new Error(`never came: ${condition}`));
            return GLib.SOURCE_REMOVE;
        });
    });
}

function awaitReport() {
    return new Promise((resolve, reject) => {
        const timeout = GLib.timeout_add(GLib.PRIORITY_DEFAULT, 2000, () => {
            reject(new Error('no Changed signal'));
            return GLib.SOURCE_REMOVE;
        });
        nextReport = report => {
            GLib.source_remove(timeout);
            resolve(report);
        };
    });
}

async function main() {
    const folder = GLib.dir_make_tmp('marzipel-extension-XXXXXX');
    copyWithStandIns(ARGV[0], folder);

    const player = standInWindow(41, 'mpv', 'mpv.desktop');
    const unlisted = standInWindow(42, 'marzipel-test-unlisted', 'window:7');
    const panel = standInWindow(43, 'panel', 'window:8', {skipTaskbar: true});
    globalThis.standInTracker = {get_window_app: w => ({get_id: () => w.appId})};
    const display = new StandIn({
        focus_window: player,
        list_all_windows: () => [player, unlisted, panel],
    });
    globalThis.global = {display};
    globalThis.standInPanel = {
        statusArea: {},
        addToStatusArea(role, button) {
            this.statusArea[role] = button;
        },
    };

    const {default: MarzipelExtension} = await import(`file://${folder}/extension.js`);
    const extension = new MarzipelExtension({uuid: 'marzipel@orsavelt.com', path: folder});
    if (display.handlers.size !== 0)
        throw new Error('the extension did something before it was switched on');
    extension.enable();

    const windows = [[41, 'mpv', 'mpv'], [42, 'marzipel-test-unlisted', 'marzipel-test-unlisted']];
    assertEqual(await getState(), [[[41, 'mpv', 'mpv', false]], windows], 'state when on');

    player.fullscreen = true;
    let report = awaitReport();
    player.fire('notify::fullscreen');
    assertEqual(await report, [[[41, 'mpv', 'mpv', true]], windows], 'full screen');

    display.focus_window = unlisted;
    report = awaitReport();
    display.fire('notify::focus-window');
    assertEqual((await report)[0], [[42, 'marzipel-test-unlisted', 'marzipel-test-unlisted', false]],
        'focus moved');

    display.focus_window = null;
    display.list_all_windows = () => [player, panel];
    report = awaitReport();
    unlisted.fire('unmanaged');
    assertEqual(await report, [[], [windows[0]]], 'focused window closed');
    assertEqual(unlisted.handlers.size, 0, 'handlers left on a closed window');
    // Its answer comes after any report sent to it before.
    const strangersRead = await getState(stranger).then(() => 'an answer', error => `${error}`);
    if (!strangersRead.includes('org.freedesktop.DBus.Error.AccessDenied'))
        throw new Error(`a stranger read the windows: ${strangersRead}`);
    assertEqual(reportsToStranger, 0, 'reports to a stranger');
    const statusArea = globalThis.standInPanel.statusArea;
    const button = statusArea['marzipel@orsavelt.com'];
    assertEqual(button?.menu.items.map(item => item.label.text),
        ['Waiting for triggers...', 'Configure', '', 'About', 'Quit'], 'menu in the panel');

    // A tray host shows Marzipel's own icon: the menu leaves the panel while it runs.
    Gio.DBusExportedObject.wrapJSObject(`<node><interface name="org.kde.StatusNotifierWatcher">
        <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
    </interface></node>`, {IsStatusNotifierHostRegistered: true})
        .export(stranger, '/StatusNotifierWatcher');
    busName(stranger, 'RequestName', 'org.kde.StatusNotifierWatcher');
    await until(() => button.destroyed);
    busName(stranger, 'ReleaseName', 'org.kde.StatusNotifierWatcher');
    await until(() => statusArea['marzipel@orsavelt.com'] !== button);

    extension.disable();
    assertEqual(statusArea['marzipel@orsavelt.com'].destroyed, true, 'menu left in the panel');
    for (const standIn of [display, player, panel]) {
        assertEqual(standIn.handlers.size, 0, 'handlers left when off');
    }
    const answer = await getState().then(() => 'an answer', error => `${error}`);
    if (!answer.includes('org.freedesktop.DBus.Error.UnknownMethod'))
        throw new Error(`the bus object stayed when off: ${answer}`);
}

let failure = null;
main().catch(error => {
    failure = error;
}).finally(() => loop.quit());
loop.run();
if (failure) {
    printerr(`${failure}\n${failure.stack ?? ''}`);
    System.exit(1);
}
print('ok');
