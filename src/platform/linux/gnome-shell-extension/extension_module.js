// The entry form of GNOME Shell 45 and later.

import Gio from 'gi://Gio';
import GLib from 'gi://GLib';
import Meta from 'gi://Meta';
import Shell from 'gi://Shell';
import {Extension} from 'resource:///org/gnome/shell/extensions/extension.js';

import {WindowReport} from './windowReport.js';

export default class MarzipelExtension extends Extension {
    enable() {
        this._report = new WindowReport({Gio, GLib, Meta, Shell, global});
        this._report.start();
    }

    disable() {
        this._report.stop();
        this._report = null;
    }
}
