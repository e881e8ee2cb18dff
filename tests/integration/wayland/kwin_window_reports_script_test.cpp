// The KWin script's Plasma 6 branch, run in Qt's JavaScript engine against a stand-in
// `workspace` that offers only Plasma 6's names; the real KWin here is 5.27.
#include <gtest/gtest.h>

#include <QFile>
#include <QJSEngine>

namespace marzipel {
namespace {

// callDBus throws on null or undefined anywhere in its argument, where KWin would abort.
constexpr char kStandIn[] = R"(
function signal() {
    var handlers = [];
    return { connect: f => handlers.push(f), emit: w => handlers.forEach(f => f(w)) };
}
function makeWindow(pid, appId, normal) {
    return { pid: pid, desktopFileName: appId, resourceName: "name", resourceClass: "class",
             fullScreen: false, normalWindow: normal, fullScreenChanged: signal() };
}
function carriesNothing(value) {
    if (value === null || value === undefined) return true;
    return typeof value === "object" && Object.values(value).some(carriesNothing);
}
var calls = [];
function callDBus(service, path, iface, method, argument) {
    if (arguments.length !== 5 || carriesNothing(argument)) throw new Error("bad call " + method);
    calls.push([service, path, iface, method].join(" ") + " " + JSON.stringify(argument));
}
var windows = [makeWindow(10, "mpv", true), makeWindow(11, "panel", false)];
var workspace = { activeWindow: windows[0], windowList: () => windows.slice(),
                  windowActivated: signal(), windowAdded: signal(), windowRemoved: signal() };
)";

std::string run(QJSEngine& engine, const QString& source) {
    const QJSValue result = engine.evaluate(source);
    return result.isError() ? result.toString().toStdString() : "";
}

TEST(KWinWindowReportsScript, Plasma6NamesReportFocusFullScreenAndWindows) {
    QJSEngine engine;
    ASSERT_EQ(run(engine, kStandIn), "");
    QFile script(KWIN_SCRIPT);
    ASSERT_TRUE(script.open(QIODevice::ReadOnly));
    ASSERT_EQ(run(engine, QString::fromUtf8(script.readAll())), "");
    ASSERT_EQ(run(engine, R"(
        var x11 = makeWindow(12, null, true);
        windows.push(x11);
        workspace.windowAdded.emit(x11);
        workspace.activeWindow = x11;
        workspace.windowActivated.emit(x11);
        x11.fullScreen = true;
        x11.fullScreenChanged.emit();
        windows[0].fullScreen = true;
        windows[0].fullScreenChanged.emit();
        workspace.activeWindow = null;
        workspace.windowActivated.emit(null);
        workspace.windowRemoved.emit(x11);
    )"),
              "");
    const std::string to = "com.orsavelt.Marzipel /com/orsavelt/Marzipel com.orsavelt.Marzipel ";
    const std::string mpv = R"({"pid":10,"desktopFileName":"mpv","resourceName":"name",)"
                            R"("resourceClass":"class","fullScreen":false})";
    const std::string x11 = R"({"pid":12,"desktopFileName":"","resourceName":"name",)"
                            R"("resourceClass":"class","fullScreen":)";
    const std::string expected = to + "ReportWindows [" + mpv + "]\n" +     // at start
                                 to + "ReportActiveWindow " + mpv + "\n" +  //
                                 to + "ReportWindows [" + mpv + "," + x11 + "false}]\n" + to +
                                 "ReportActiveWindow " + x11 + "false}\n" +      //
                                 to + "ReportActiveWindow " + x11 + "true}\n" +  //
                                 to + "ReportActiveWindow {}\n" +                //
                                 to + "ReportWindows [" + mpv.substr(0, mpv.size() - 6) + "true}]";
    EXPECT_EQ(engine.evaluate("calls.join('\\n')").toString().toStdString(), expected);
}

}  // namespace
}  // namespace marzipel
