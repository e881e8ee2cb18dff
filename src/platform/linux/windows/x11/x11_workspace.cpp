#include "platform/linux/windows/x11/x11_workspace.h"

#include <QDesktopServices>
#include <QObject>
#include <QString>
#include <QUrl>

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "platform/linux/windows/x11/x11_connection.h"
#include "platform/linux/xdg/app_identifier.h"

namespace marzipel {

namespace {

struct ClassHint {
    std::string instance;
    std::string className;
};

/// What the workspace reads from a client window.
struct WindowFacts {
    xcb_window_t window = XCB_WINDOW_NONE;
    std::optional<std::int32_t> processId;
    bool taskbar = false;  // a normal window that does not skip the taskbar
    std::optional<ClassHint> hint;
    std::optional<std::string> gtkApplicationId;
};

std::optional<ClassHint> classHintOf(const std::optional<std::string>& text) {
    if (!text) return std::nullopt;
    const std::string_view all(*text);
    const auto end = all.find('\0');
    ClassHint hint{std::string(all.substr(0, end)), {}};
    if (end != std::string_view::npos) {
        const auto rest = all.substr(end + 1);
        hint.className = std::string(rest.substr(0, rest.find('\0')));
    }
    return hint;
}

std::optional<std::int32_t> processIdOf(const std::vector<std::uint32_t>& pid) {
    if (pid.empty() || pid.front() == 0 ||
        pid.front() > std::uint32_t{std::numeric_limits<std::int32_t>::max()})
        return std::nullopt;
    return static_cast<std::int32_t>(pid.front());
}

/// The properties read of each window, in the order of their requests and so of their replies.
enum class Fact : std::size_t { processId, windowType, state, wmClass, gtkApplicationId, count };
constexpr auto kFactsPerWindow = static_cast<std::size_t>(Fact::count);

void addFactRequests(const X11Connection& x, xcb_window_t window,
                     std::vector<PropertyRequest>& requests) {
    const auto& atoms = x.ewmh();
    std::array<PropertyRequest, kFactsPerWindow> facts;
    const auto ask = [&](Fact fact, xcb_atom_t property, xcb_atom_t type) {
        facts[static_cast<std::size_t>(fact)] = {window, property, type};
    };
    ask(Fact::processId, atoms._NET_WM_PID, XCB_ATOM_CARDINAL);
    ask(Fact::windowType, atoms._NET_WM_WINDOW_TYPE, XCB_ATOM_ATOM);
    ask(Fact::state, atoms._NET_WM_STATE, XCB_ATOM_ATOM);
    ask(Fact::wmClass, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING);
    ask(Fact::gtkApplicationId, x.gtkApplicationIdAtom(), atoms.UTF8_STRING);
    requests.insert(requests.end(), facts.begin(), facts.end());
}

/// `window`'s facts from the replies to its requests, which start at `replies`.
WindowFacts factsFrom(const X11Connection& x, xcb_window_t window, const PropertyReply* replies) {
    const auto& atoms = x.ewmh();
    const auto reply = [&](Fact fact) -> const PropertyReply& {
        return replies[static_cast<std::size_t>(fact)];
    };
    const auto types = X11Connection::itemsOf(reply(Fact::windowType));
    const bool normal =
        types.empty() || std::ranges::count(types, atoms._NET_WM_WINDOW_TYPE_NORMAL);
    const bool skipsTaskbar = std::ranges::count(X11Connection::itemsOf(reply(Fact::state)),
                                                 atoms._NET_WM_STATE_SKIP_TASKBAR) > 0;
    auto gtk = X11Connection::bytesOf(reply(Fact::gtkApplicationId));
    if (gtk && gtk->empty()) gtk.reset();
    return {window, processIdOf(X11Connection::itemsOf(reply(Fact::processId))),
            normal && !skipsTaskbar, classHintOf(X11Connection::bytesOf(reply(Fact::wmClass))),
            std::move(gtk)};
}

/// The facts of every window in `windows`, read in one round trip to the server.
std::vector<WindowFacts> factsOf(const X11Connection& x, const std::vector<xcb_window_t>& windows) {
    std::vector<PropertyRequest> requests;
    requests.reserve(windows.size() * kFactsPerWindow);
    for (const xcb_window_t window : windows) addFactRequests(x, window, requests);
    const auto replies = x.properties(requests);
    std::vector<WindowFacts> result;
    result.reserve(windows.size());
    for (std::size_t i = 0; i < windows.size(); ++i)
        result.push_back(factsFrom(x, windows[i], &replies[i * kFactsPerWindow]));
    return result;
}

/// What the frontmost application is found from: the active window, the client list and the
/// facts of `likelyActive`. Those spare a second round trip when it is the active window and
/// shows in the taskbar, as it then makes its process a regular application by itself.
enum class Frontmost : std::size_t { activeWindow, clientList, likelyActiveFacts };

std::vector<PropertyRequest> frontmostRequests(const X11Connection& x, xcb_window_t likelyActive) {
    std::vector<PropertyRequest> requests{
        {x.root(), x.ewmh()._NET_ACTIVE_WINDOW, XCB_ATOM_WINDOW},
        {x.root(), x.ewmh()._NET_CLIENT_LIST, XCB_ATOM_WINDOW},
    };
    if (likelyActive != XCB_WINDOW_NONE) addFactRequests(x, likelyActive, requests);
    return requests;
}

/// A process with windows in the client list: the window that names it and its policy.
struct Owner {
    std::int32_t processId = 0;
    const WindowFacts* window = nullptr;
    bool regular = false;
};

std::vector<Owner> owners(const std::vector<WindowFacts>& windows) {
    std::vector<Owner> result;
    for (const WindowFacts& window : windows) {
        if (!window.processId) continue;
        auto owner = std::ranges::find(result, *window.processId, &Owner::processId);
        if (owner == result.end())
            owner = result.insert(result.end(), Owner{*window.processId, &window, false});
        if (!owner->regular && window.taskbar) *owner = Owner{*window.processId, &window, true};
    }
    return result;
}

RunningApplication describe(const AppIdentifier& identifier, const Owner& owner,
                            const WindowFacts& window) {
    WindowIdentity identity{owner.processId, window.gtkApplicationId, {}, {}};
    if (window.hint) {
        identity.instance = window.hint->instance;
        identity.className = window.hint->className;
    }
    return identifier.describe(identity, owner.regular);
}

std::vector<WindowFacts> clientFacts(const X11Connection& x) {
    return factsOf(x, x.items(x.root(), x.ewmh()._NET_CLIENT_LIST, XCB_ATOM_WINDOW));
}

/// The frontmost application from the replies to `frontmostRequests`.
std::optional<RunningApplication> frontmostFrom(const X11Connection& x,
                                                const std::vector<PropertyReply>& replies,
                                                xcb_window_t likelyActive,
                                                const AppIdentifier& identifier) {
    const auto reply = [&](Frontmost part) { return &replies[static_cast<std::size_t>(part)]; };
    const auto activeItems = X11Connection::itemsOf(*reply(Frontmost::activeWindow));
    if (activeItems.empty() || activeItems.front() == XCB_WINDOW_NONE) return std::nullopt;
    const xcb_window_t active = activeItems.front();
    if (active == likelyActive) {
        const WindowFacts facts = factsFrom(x, active, reply(Frontmost::likelyActiveFacts));
        if (!facts.processId) return std::nullopt;
        if (facts.taskbar) return describe(identifier, {*facts.processId, &facts, true}, facts);
    }
    auto clients = X11Connection::itemsOf(*reply(Frontmost::clientList));
    if (std::ranges::count(clients, active) == 0) clients.push_back(active);
    const auto windows = factsOf(x, clients);
    const auto& facts = *std::ranges::find(windows, active, &WindowFacts::window);
    if (!facts.processId) return std::nullopt;
    const auto all = owners(windows);
    const auto owner = std::ranges::find(all, *facts.processId, &Owner::processId);
    return describe(identifier, *owner, facts);
}

}  // namespace

X11Workspace::X11Workspace(const DesktopEntries& entries, std::string display, std::string procRoot)
    : entries_(entries),
      display_(std::move(display)),
      procRoot_(std::move(procRoot)),
      turnEnd_(std::make_unique<QObject>()) {}

X11Workspace::~X11Workspace() { dropReadAhead(); }

/// Requests sent ahead for `frontmostApplication`, and its answer once found.
struct X11Workspace::ReadAhead {
    SentRequests sent;
    xcb_window_t likelyActive = XCB_WINDOW_NONE;
    bool answered = false;
    std::optional<RunningApplication> answer;
};

const X11Connection* X11Workspace::connection() const {
    if (!connection_ || !connection_->isOpen()) {
        // What was sent ahead went with the old connection.
        readAhead_.reset();
        connection_ = std::make_unique<X11Connection>(display_);
    }
    if (!connection_->isOpen()) return nullptr;
    connection_->dropQueuedEvents();
    return connection_.get();
}

void X11Workspace::readAhead(std::uint32_t likelyActiveWindow) {
    dropReadAhead();
    const auto* x = connection();
    if (!x) return;
    readAhead_ = std::make_unique<ReadAhead>(ReadAhead{
        x->send(frontmostRequests(*x, likelyActiveWindow)), likelyActiveWindow, false, {}});
    // Posted events run once this turn of the event loop is over. One posted drop serves every
    // read-ahead of the turn: under a stream of changes the loop can take many turns to reach
    // posted events, and one post per change would pile up meanwhile.
    if (std::exchange(dropPosted_, true)) return;
    QMetaObject::invokeMethod(
        turnEnd_.get(),
        [this] {
            dropPosted_ = false;
            dropReadAhead();
        },
        Qt::QueuedConnection);
}

void X11Workspace::dropReadAhead() const {
    if (readAhead_ && connection_) connection_->forget(readAhead_->sent);
    readAhead_.reset();
}

std::optional<RunningApplication> X11Workspace::frontmostApplication() const {
    if (readAhead_ && readAhead_->answered) return readAhead_->answer;
    const auto* x = connection();
    if (!x) return std::nullopt;
    const AppIdentifier identifier(entries_, procRoot_);
    if (!readAhead_) {
        return frontmostFrom(*x, x->properties(frontmostRequests(*x, XCB_WINDOW_NONE)),
                             XCB_WINDOW_NONE, identifier);
    }
    readAhead_->answer =
        frontmostFrom(*x, x->answers(readAhead_->sent), readAhead_->likelyActive, identifier);
    readAhead_->sent = {};
    readAhead_->answered = true;
    return readAhead_->answer;
}

std::vector<RunningApplication> X11Workspace::runningApplications() const {
    const auto* x = connection();
    if (!x) return {};
    const auto windows = clientFacts(*x);
    const AppIdentifier identifier(entries_, procRoot_);
    std::vector<RunningApplication> result;
    for (const auto& owner : owners(windows))
        result.push_back(describe(identifier, owner, *owner.window));
    return result;
}

std::optional<RunningApplication> X11Workspace::runningApplication(std::int32_t processId) const {
    const auto* x = connection();
    if (!x) return std::nullopt;
    const auto windows = clientFacts(*x);
    const auto all = owners(windows);
    const auto owner = std::ranges::find(all, processId, &Owner::processId);
    if (owner == all.end()) return std::nullopt;
    return describe(AppIdentifier(entries_, procRoot_), *owner, *owner->window);
}

bool X11Workspace::openFolder(const std::string& folder) {
    return QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdString(folder)));
}

}  // namespace marzipel
