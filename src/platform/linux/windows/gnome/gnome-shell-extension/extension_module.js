// The entry form of GNOME Shell 45 and later.

import Gio from 'gi://Gio';
import GLib from 'gi://GLib';
import Meta from 'gi://Meta';
import Shell from 'gi://Shell';
import St from 'gi://St';
import {Extension} from 'resource:///org/gnome/shell/extensions/extension.js';
import * as Main from 'resource:///org/gnome/shell/ui/main.js';
import * as PanelMenu from 'resource:///org/gnome/shell/ui/panelMenu.js';
import * as PopupMenu from 'resource:///org/gnome/shell/ui/popupMenu.js';

import {TopBarMenu} from './topBarMenu.js';
import {WindowReport} from './windowReport.js';

export default class MarzipelExtension extends Extension {
    enable() {
        this._report = new WindowReport({Gio, GLib, Meta, Shell, global});
        this._report.start();
        this._topBar = new TopBarMenu(
            {Gio, GLib, St, Main, PanelMenu, PopupMenu, uuid: this.uuid, path: this.path});
        this._topBar.start();
    }

    disable() {
        this._topBar.stop();
        this._topBar = null;
        this._report.stop();
        this._report = null;
    }
}
