// The entry form of GNOME Shell 43 and 44.
/* exported init */

const {Gio, GLib, Meta, Shell, St} = imports.gi;
const Main = imports.ui.main;
const PanelMenu = imports.ui.panelMenu;
const PopupMenu = imports.ui.popupMenu;
const Me = imports.misc.extensionUtils.getCurrentExtension();
const {TopBarMenu} = Me.imports.topBarMenu;
const {WindowReport} = Me.imports.windowReport;

class MarzipelExtension {
    enable() {
        this._report = new WindowReport({Gio, GLib, Meta, Shell, global});
        this._report.start();
        this._topBar = new TopBarMenu(
            {Gio, GLib, St, Main, PanelMenu, PopupMenu, uuid: Me.uuid, path: Me.path});
        this._topBar.start();
    }

    disable() {
        this._topBar.stop();
        this._topBar = null;
        this._report.stop();
        this._report = null;
    }
}

function init() {
    return new MarzipelExtension();
}
