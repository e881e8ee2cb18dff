// The entry form of GNOME Shell 43 and 44.
/* exported init */

const {Gio, GLib, Meta, Shell} = imports.gi;
const Me = imports.misc.extensionUtils.getCurrentExtension();
const {WindowReport} = Me.imports.windowReport;

class MarzipelExtension {
    enable() {
        this._report = new WindowReport({Gio, GLib, Meta, Shell, global});
        this._report.start();
    }

    disable() {
        this._report.stop();
        this._report = null;
    }
}

function init() {
    return new MarzipelExtension();
}
