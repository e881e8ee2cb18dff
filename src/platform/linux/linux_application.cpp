#include "platform/linux/linux_application.h"

#include <sys/utsname.h>
#include <xcb/xcb.h>

#include <QApplication>
#include <QGuiApplication>
#include <QMessageBox>
#include <QSessionManager>
#include <QTimer>
#include <QWidget>
#include <QWindow>
#include <algorithm>
#include <charconv>
#include <csignal>
#include <cstdlib>
#include <vector>

#include "platform/linux/process/unix_signal_watcher.h"

namespace marzipel {
namespace {

constexpr std::uint32_t kNetWmStateRemove = 0;
constexpr std::uint32_t kNetWmStateAdd = 1;
constexpr std::uint32_t kSourceIsApplication = 1;

xcb_connection_t* x11Connection() {
    auto* x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11 ? x11->connection() : nullptr;
}

xcb_atom_t internAtom(xcb_connection_t* connection, std::string_view name) {
    const auto cookie =
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
        xcb_intern_atom_reply(connection, cookie, nullptr), &std::free);
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

/// The program's own windows that a taskbar would list: not menus, tooltips or splash screens.
bool isListedWindow(const QWidget* widget) {
    if (!widget->isWindow()) return false;
    const Qt::WindowType type = widget->windowType();
    return type == Qt::Window || type == Qt::Dialog;
}

struct SkipStates {
    xcb_atom_t state;
    xcb_atom_t skipTaskbar;
    xcb_atom_t skipPager;
};

SkipStates skipStates(xcb_connection_t* connection) {
    return {internAtom(connection, "_NET_WM_STATE"),
            internAtom(connection, "_NET_WM_STATE_SKIP_TASKBAR"),
            internAtom(connection, "_NET_WM_STATE_SKIP_PAGER")};
}

/// Before a window is mapped its client owns _NET_WM_STATE; Qt merges its own states into what
/// it finds there when it maps the window.
void setSkipStatesOnUnmapped(xcb_connection_t* connection, xcb_window_t window, bool skip) {
    const SkipStates atoms = skipStates(connection);
    std::vector<xcb_atom_t> states;
    const auto cookie =
        xcb_get_property(connection, 0, window, atoms.state, XCB_ATOM_ATOM, 0, 1024);
    std::unique_ptr<xcb_get_property_reply_t, decltype(&std::free)> reply(
        xcb_get_property_reply(connection, cookie, nullptr), &std::free);
    if (reply && reply->type == XCB_ATOM_ATOM && reply->format == 32) {
        const auto* values = static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get()));
        states.assign(values, values + xcb_get_property_value_length(reply.get()) / 4);
    }
    std::erase_if(states, [&](xcb_atom_t atom) {
        return atom == atoms.skipTaskbar || atom == atoms.skipPager;
    });
    if (skip) {
        states.push_back(atoms.skipTaskbar);
        states.push_back(atoms.skipPager);
    }
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, atoms.state, XCB_ATOM_ATOM, 32,
                        static_cast<std::uint32_t>(states.size()), states.data());
    xcb_flush(connection);
}

/// Once a window is mapped the window manager owns _NET_WM_STATE and is asked instead.
void requestSkipStatesOnMapped(xcb_connection_t* connection, xcb_window_t window, bool skip) {
    const SkipStates atoms = skipStates(connection);
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    if (!screen) return;
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atoms.state;
    message.data.data32[0] = skip ? kNetWmStateAdd : kNetWmStateRemove;
    message.data.data32[1] = atoms.skipTaskbar;
    message.data.data32[2] = atoms.skipPager;
    message.data.data32[3] = kSourceIsApplication;
    xcb_send_event(connection, 0, screen->root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(connection);
}

}  // namespace

OperatingSystemVersion parseKernelRelease(std::string_view release) {
    int parts[3] = {0, 0, 0};
    const char* at = release.data();
    const char* end = release.data() + release.size();
    for (int index = 0; index < 3; ++index) {
        const auto [next, error] = std::from_chars(at, end, parts[index]);
        if (error != std::errc()) {
            if (index == 0) return {};
            break;
        }
        at = next;
        if (at == end || *at != '.') break;
        ++at;
    }
    return {parts[0], parts[1], parts[2]};
}

LinuxApplication::LinuxApplication(NotificationCenter& center, SystemLog& systemLog,
                                   TerminationDecision decision)
    : center_(center), systemLog_(systemLog), decision_(std::move(decision)) {
    QTimer::singleShot(0, this, [this] {
        center_.post(kApplicationDidFinishLaunchingNotification, static_cast<Application*>(this));
    });
    signals_ = std::make_unique<UnixSignalWatcher>(
        std::initializer_list<int>{SIGTERM, SIGINT, SIGHUP},
        [this](int signalNumber) { signalReceived(signalNumber); });
    if (auto* gui = qGuiApp) {
        connect(
            gui, &QGuiApplication::commitDataRequest, this,
            [this](QSessionManager& manager) { endOfSession(manager); }, Qt::DirectConnection);
        gui->installEventFilter(this);
    }
}

LinuxApplication::~LinuxApplication() {
    if (auto* application = QCoreApplication::instance()) application->removeEventFilter(this);
}

void LinuxApplication::setActivationPolicy(ActivationPolicy policy) {
    if (policy == policy_) return;
    policy_ = policy;
    applyPolicyToShownWindows();
}

void LinuxApplication::applyPolicyToShownWindows() {
    xcb_connection_t* connection = x11Connection();
    if (!connection) return;
    const bool skip = policy_ != ActivationPolicy::regular;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (!isListedWindow(widget) || !widget->isVisible() || !widget->windowHandle()) continue;
        requestSkipStatesOnMapped(connection, widget->windowHandle()->winId(), skip);
    }
}

bool LinuxApplication::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Show && watched->isWidgetType()) {
        auto* widget = static_cast<QWidget*>(watched);
        if (isListedWindow(widget)) {
            lastShownWindow_ = widget;
            // Sent before the window is mapped, so the states count from its first appearance.
            xcb_connection_t* connection = x11Connection();
            if (connection && widget->windowHandle()) {
                setSkipStatesOnUnmapped(connection, widget->windowHandle()->winId(),
                                        policy_ != ActivationPolicy::regular);
            }
        }
        return false;
    }
    // Qt's own requests to quit (the session manager's last word among them) face the same
    // decision as terminate().
    if (event->type() == QEvent::Quit && watched == QCoreApplication::instance()) {
        if (!ending_) terminate();
        return true;
    }
    return false;
}

void LinuxApplication::activate() {
    QWidget* window = QApplication::activeWindow();
    if (!window && lastShownWindow_ && lastShownWindow_->isVisible()) window = lastShownWindow_;
    if (!window) return;
    window->raise();
    window->activateWindow();
}

void LinuxApplication::showAboutPanel() {
    if (!aboutPanel_) {
        const QString name = QGuiApplication::applicationDisplayName();
        aboutPanel_ = new QMessageBox();
        aboutPanel_->setAttribute(Qt::WA_DeleteOnClose);
        // The settings window stays usable while the box is open, as beside the macOS panel.
        aboutPanel_->setWindowModality(Qt::NonModal);
        aboutPanel_->setWindowTitle(QStringLiteral("About %1").arg(name));
        aboutPanel_->setTextFormat(Qt::RichText);
        aboutPanel_->setText(
            QStringLiteral("<h3>%1</h3><p>Version %2</p>")
                .arg(name.toHtmlEscaped(), QCoreApplication::applicationVersion().toHtmlEscaped()));
        const QIcon icon = QGuiApplication::windowIcon();
        if (!icon.isNull()) aboutPanel_->setIconPixmap(icon.pixmap(64, 64));
        aboutPanel_->setStandardButtons(QMessageBox::Ok);
    }
    aboutPanel_->show();
    aboutPanel_->raise();
    aboutPanel_->activateWindow();
}

QMessageBox* LinuxApplication::aboutPanel() const { return aboutPanel_; }

OperatingSystemVersion LinuxApplication::operatingSystemVersion() const {
    struct utsname system {};
    if (::uname(&system) != 0) return {};
    return parseKernelRelease(system.release);
}

void LinuxApplication::terminate() {
    if (ending_) return;
    if (decision_ && decision_()) endRun();
}

bool LinuxApplication::answerEndOfSession() {
    terminate();
    return ending_;
}

void LinuxApplication::endOfSession(QSessionManager& manager) {
    if (answerEndOfSession()) return;
    // The session manager takes a cancellation only from a client it let interact.
    if (manager.allowsInteraction()) manager.cancel();
}

void LinuxApplication::signalReceived(int signalNumber) {
    systemLog_.info(kAppLogSubsystem, kAppLogCategory,
                    "Received " + signalName(signalNumber) + ": quitting as Quit does.");
    endRun();
}

void LinuxApplication::endRun() {
    if (ending_) return;
    ending_ = true;
    center_.post(kApplicationWillTerminateNotification, static_cast<Application*>(this));
    // exit() rather than quit(): from Qt 6.5 quit() would come back through the Quit event and
    // close every window first, which must not run the windows' own closing steps.
    QCoreApplication::exit(0);
}

void LinuxApplication::installDelegateAction(std::string action, std::function<void()> handler) {
    delegateActions_[std::move(action)] = std::move(handler);
}

bool LinuxApplication::delegateRespondsTo(std::string_view action) const {
    const auto found = delegateActions_.find(action);
    return found != delegateActions_.end() && found->second;
}

void LinuxApplication::sendActionToDelegate(std::string_view action) {
    if (!delegateRespondsTo(action)) return;
    // A copy, so that the handler may replace itself while it runs.
    const std::function<void()> handler = delegateActions_.find(action)->second;
    handler();
}

bool LinuxApplication::sendAction(std::string_view action) {
    if (!delegateRespondsTo(action)) return false;
    sendActionToDelegate(action);
    return true;
}

}  // namespace marzipel
