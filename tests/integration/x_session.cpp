#include "x_session.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <stdexcept>

extern char** environ;

namespace marzipel {

namespace {

using Clock = std::chrono::steady_clock;

int millisecondsUntil(Clock::time_point deadline) {
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
    return static_cast<int>(std::max<std::chrono::milliseconds::rep>(left.count(), 0));
}

/// Blocks until the process has ended or `timeout` has passed; true when it has ended.
bool waitForExit(pid_t pid, std::chrono::milliseconds timeout) {
    const int pidfd = static_cast<int>(syscall(SYS_pidfd_open, pid, 0));
    if (pidfd < 0) return false;
    pollfd entry{pidfd, POLLIN, 0};
    const bool ended = poll(&entry, 1, static_cast<int>(timeout.count())) == 1;
    close(pidfd);
    return ended;
}

std::vector<std::string> environmentWith(const std::vector<std::string>& overrides) {
    std::vector<std::string> result;
    for (char** entry = environ; *entry; ++entry) {
        const std::string_view text(*entry);
        const auto name = text.substr(0, text.find('=') + 1);
        if (std::ranges::none_of(overrides,
                                 [&](const std::string& o) { return o.starts_with(name); }))
            result.emplace_back(text);
    }
    result.insert(result.end(), overrides.begin(), overrides.end());
    return result;
}

bool hasProperty(const X11Connection& x, xcb_window_t window, xcb_atom_t name) {
    xcb_generic_error_t* error = nullptr;
    XcbPtr<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        x.get(), xcb_get_property(x.get(), 0, window, name, XCB_ATOM_ANY, 0, 0), &error));
    std::free(error);
    return reply && reply->type != XCB_ATOM_NONE;
}

std::vector<char*> pointers(std::vector<std::string>& strings) {
    std::vector<char*> result;
    for (auto& s : strings) result.push_back(s.data());
    result.push_back(nullptr);
    return result;
}

}  // namespace

void ChildProcess::start(const std::vector<std::string>& argv,
                         const std::vector<std::string>& environment, int inheritedFd) {
    auto arguments = argv;
    auto variables = environment;
    const auto argp = pointers(arguments);
    const auto envp = pointers(variables);
    const int devNull = open("/dev/null", O_RDWR | O_CLOEXEC);
    const pid_t parent = getpid();
    pid_ = fork();
    if (pid_ < 0) throw std::runtime_error("fork failed: " + std::string(std::strerror(errno)));
    if (pid_ == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != parent) _exit(127);
        dup2(devNull, STDIN_FILENO);
        dup2(devNull, STDOUT_FILENO);
        dup2(devNull, STDERR_FILENO);
        if (inheritedFd >= 0) fcntl(inheritedFd, F_SETFD, 0);
        execve(argp[0], argp.data(), envp.data());
        _exit(127);
    }
    close(devNull);
}

void ChildProcess::stop() {
    if (pid_ <= 0) return;
    kill(pid_, SIGTERM);
    if (!waitForExit(pid_, 5s)) kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
    pid_ = -1;
}

XClient::XClient(const std::string& display) : x_(display) {
    if (!x_.isOpen()) throw std::runtime_error("cannot connect to " + display);
    x_.selectEvents(x_.root(), XCB_EVENT_MASK_PROPERTY_CHANGE);
    xcb_flush(x_.get());
}

bool XClient::waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds timeout) {
    const auto deadline = Clock::now() + timeout;
    for (;;) {
        if (condition()) return true;
        bool readSome = false;
        while (XcbPtr<xcb_generic_event_t>(xcb_poll_for_event(x_.get()))) readSome = true;
        if (readSome) continue;
        const int left = millisecondsUntil(deadline);
        if (left == 0 || !x_.isOpen()) return false;
        pollfd entry{xcb_get_file_descriptor(x_.get()), POLLIN, 0};
        poll(&entry, 1, left);
    }
}

void XClient::expect(const std::function<bool()>& condition, const std::string& what) {
    if (!waitUntil(condition)) throw std::runtime_error("timed out waiting until " + what);
}

xcb_window_t XClient::createWindow(const TestWindow& shape) {
    xcb_connection_t* c = x_.get();
    const auto& atoms = x_.ewmh();
    const xcb_window_t window = xcb_generate_id(c);
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(c, XCB_COPY_FROM_PARENT, window, x_.root(), 0, 0, 200, 150, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                      &mask);
    const auto setAtoms = [&](xcb_atom_t property, xcb_atom_t type,
                              const std::vector<std::uint32_t>& values) {
        xcb_change_property(c, XCB_PROP_MODE_REPLACE, window, property, type, 32,
                            static_cast<std::uint32_t>(values.size()), values.data());
    };
    if (shape.processId) setAtoms(atoms._NET_WM_PID, XCB_ATOM_CARDINAL, {*shape.processId});
    const std::string wmClass = shape.instance + '\0' + shape.className + '\0';
    xcb_change_property(c, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                        static_cast<std::uint32_t>(wmClass.size()), wmClass.data());
    if (shape.gtkApplicationId)
        xcb_change_property(c, XCB_PROP_MODE_REPLACE, window, x_.gtkApplicationIdAtom(),
                            atoms.UTF8_STRING, 8,
                            static_cast<std::uint32_t>(shape.gtkApplicationId->size()),
                            shape.gtkApplicationId->data());
    if (shape.skipTaskbar)
        setAtoms(atoms._NET_WM_STATE, XCB_ATOM_ATOM, {atoms._NET_WM_STATE_SKIP_TASKBAR});
    if (shape.utility)
        setAtoms(atoms._NET_WM_WINDOW_TYPE, XCB_ATOM_ATOM, {atoms._NET_WM_WINDOW_TYPE_UTILITY});
    xcb_map_window(c, window);
    xcb_flush(c);
    expect(
        [&] {
            return std::ranges::count(x_.items(x_.root(), atoms._NET_CLIENT_LIST, XCB_ATOM_WINDOW),
                                      window) > 0;
        },
        "the window manager lists window " + std::to_string(window));
    return window;
}

void XClient::askWindowManager(xcb_window_t window, xcb_atom_t type,
                               std::vector<std::uint32_t> data) const {
    data.resize(5);
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = type;
    std::copy(data.begin(), data.end(), message.data.data32);
    xcb_send_event(x_.get(), 0, x_.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(x_.get());
}

// Source indication 2: a pager, whose requests the window manager does not second-guess.
void XClient::activate(xcb_window_t window) {
    askWindowManager(window, x_.ewmh()._NET_ACTIVE_WINDOW, {2, XCB_CURRENT_TIME});
    expect([&] { return x_.activeWindow() == window; },
           "window " + std::to_string(window) + " is active");
}

void XClient::setFullScreen(xcb_window_t window, bool fullScreen) {
    const auto& atoms = x_.ewmh();
    askWindowManager(window, atoms._NET_WM_STATE,
                     {fullScreen ? 1u : 0u, atoms._NET_WM_STATE_FULLSCREEN, 0, 2});
    expect([&] { return x_.hasState(window, atoms._NET_WM_STATE_FULLSCREEN) == fullScreen; },
           "window " + std::to_string(window) + " has full screen " + (fullScreen ? "on" : "off"));
}

void XClient::switchToDesktop(std::uint32_t desktop) {
    const auto& atoms = x_.ewmh();
    askWindowManager(x_.root(), atoms._NET_CURRENT_DESKTOP, {desktop, XCB_CURRENT_TIME});
    expect(
        [&] {
            const auto current = x_.items(x_.root(), atoms._NET_CURRENT_DESKTOP, XCB_ATOM_CARDINAL);
            return !current.empty() && current.front() == desktop;
        },
        "desktop " + std::to_string(desktop) + " is shown");
}

XSession::XSession() {
    int fds[2];
    if (pipe2(fds, O_CLOEXEC) != 0) throw std::runtime_error("pipe2 failed");
    server_.start({XVFB_PROGRAM, "-displayfd", std::to_string(fds[1]), "-screen", "0",
                   "1024x768x24", "-nolisten", "tcp"},
                  environmentWith({}), fds[1]);
    close(fds[1]);
    const auto deadline = Clock::now() + 10s;
    std::string number;
    char c = 0;
    pollfd entry{fds[0], POLLIN, 0};
    while (poll(&entry, 1, millisecondsUntil(deadline)) == 1 && read(fds[0], &c, 1) == 1 &&
           c != '\n')
        number += c;
    close(fds[0]);
    if (c != '\n' || number.empty()) throw std::runtime_error("Xvfb did not start");
    display_ = ":" + number;

    client_ = std::make_unique<XClient>(display_);
    const std::string home = home_.path().string();
    windowManager_.start(
        {OPENBOX_PROGRAM, "--sm-disable"},
        environmentWith({"DISPLAY=" + display_, "HOME=" + home,
                         "XDG_CONFIG_HOME=" + home + "/config", "XDG_CACHE_HOME=" + home + "/cache",
                         "XDG_DATA_HOME=" + home + "/data"}));
    // Events that reach openbox while it is still starting up wait in its queue until the
    // next one arrives. So ask it something until it answers: from then on it is listening.
    const auto& x = client_->x();
    const xcb_window_t probe = xcb_generate_id(x.get());
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(x.get(), XCB_COPY_FROM_PARENT, probe, x.root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                      &mask);
    const auto answered = [&] { return hasProperty(x, probe, x.ewmh()._NET_FRAME_EXTENTS); };
    const auto startDeadline = Clock::now() + 10s;
    bool ready = false;
    while (!ready && Clock::now() < startDeadline) {
        client_->askWindowManager(probe, x.ewmh()._NET_REQUEST_FRAME_EXTENTS, {});
        ready = client_->waitUntil(answered, 200ms);
    }
    xcb_destroy_window(x.get(), probe);
    xcb_flush(x.get());
    if (!ready) throw std::runtime_error("openbox did not start");
}

}  // namespace marzipel
