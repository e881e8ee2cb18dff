// Runs inside KWin and tells Marzipel, over the session bus, which window has focus, whether it
// is full screen, and which normal windows are open. Marzipel loads it at start and unloads it
// when it quits; it keeps no state of its own, KWin holds it all.
//
// Plasma 5.27 and Plasma 6 name the same things differently; the names are chosen by what
// `workspace` offers.

"use strict";

const plasma6 = typeof workspace.windowList === "function";

const activated = plasma6 ? workspace.windowActivated : workspace.clientActivated;
const added = plasma6 ? workspace.windowAdded : workspace.clientAdded;
const removed = plasma6 ? workspace.windowRemoved : workspace.clientRemoved;

function activeWindow() {
    return plasma6 ? workspace.activeWindow : workspace.activeClient;
}

function allWindows() {
    return Array.from(plasma6 ? workspace.windowList() : workspace.clientList());
}

function report(method, argument) {
    callDBus("com.orsavelt.Marzipel", "/com/orsavelt/Marzipel", "com.orsavelt.Marzipel", method,
             argument);
}

// callDBus cannot carry null or undefined, and KWin aborts on one inside a map: every value is
// made a string, a number or a boolean first.
function text(value) {
    return typeof value === "string" ? value : "";
}

function processId(window) {
    return typeof window.pid === "number" && window.pid > 0 ? window.pid : 0;
}

function describe(window) {
    return {
        pid: processId(window),
        desktopFileName: text(window.desktopFileName),
        resourceName: text(window.resourceName),
        resourceClass: text(window.resourceClass),
        fullScreen: window.fullScreen === true
    };
}

// A window whose process is unknown cannot be named: it is reported as no window at all.
function reportActive(window) {
    report("ReportActiveWindow", window && processId(window) > 0 ? describe(window) : {});
}

// A window that is going away may still be in the list.
function reportWindows(gone) {
    report("ReportWindows", allWindows()
        .filter(window => window !== gone && window.normalWindow && processId(window) > 0)
        .map(describe));
}

function watch(window) {
    window.fullScreenChanged.connect(() => {
        if (window === activeWindow()) {
            reportActive(window);
        }
    });
}

// `clientActivated` passes null when focus goes nowhere.
activated.connect(reportActive);
added.connect(window => {
    watch(window);
    reportWindows(null);
});
removed.connect(reportWindows);

allWindows().forEach(watch);
reportWindows(null);
reportActive(activeWindow());
