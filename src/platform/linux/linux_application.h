#pragma once

#include <QObject>
#include <QPointer>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "base/notification_center.h"
#include "platform/application.h"
#include "platform/system_log.h"

class QMessageBox;
class QSessionManager;
class QWidget;

namespace marzipel {

class UnixSignalWatcher;

/// The version in a kernel release such as "6.1.0-18-amd64"; missing parts read as 0 and a
/// release that does not start with a number as 0.0.0.
OperatingSystemVersion parseKernelRelease(std::string_view release);

/// The program's application as Qt runs it on Linux. Every way the run can end passes through
/// here, so that kApplicationWillTerminateNotification is posted exactly once before it ends:
/// terminate() and the session manager's end-of-session request ask the termination decision;
/// SIGTERM, SIGINT and SIGHUP cannot be refused and end the run as an agreed termination does,
/// after one system-log line that names the signal. Make it after the QApplication and before
/// the event loop starts; main thread only.
class LinuxApplication final : public QObject, public Application {
public:
    /// Whether the program may end now; asked on each request to terminate.
    using TerminationDecision = std::function<bool()>;

    /// Posts kApplicationDidFinishLaunchingNotification on `center` once the event loop runs.
    /// `center` and `systemLog` must outlive it; `decision` may be replaced later.
    LinuxApplication(NotificationCenter& center, SystemLog& systemLog,
                     TerminationDecision decision = nullptr);
    ~LinuxApplication() override;

    void setTerminationDecision(TerminationDecision decision) { decision_ = std::move(decision); }

    /// Accessory hides the program's windows from taskbars, pagers and window switchers through
    /// the EWMH skip-taskbar and skip-pager states; regular shows them again. Only X11 windows
    /// carry these states: elsewhere the policy is remembered and nothing else happens.
    void setActivationPolicy(ActivationPolicy policy) override;
    /// Raises the program's active window, else its newest visible one. The window manager
    /// may still decline to hand over the focus.
    void activate() override;
    /// A non-modal box with the application's name, version and window icon; one at a time.
    void showAboutPanel() override;
    /// The running kernel's version.
    OperatingSystemVersion operatingSystemVersion() const override;
    /// Ends the run when the decision agrees; otherwise nothing happens.
    void terminate() override;

    void installDelegateAction(std::string action, std::function<void()> handler) override;
    bool delegateRespondsTo(std::string_view action) const override;
    void sendActionToDelegate(std::string_view action) override;
    /// The responder chain is the delegate alone.
    bool sendAction(std::string_view action) override;

    /// The session is ending: true when the program agrees to end with it (the run then
    /// ends), false when the session manager is to be asked to cancel.
    bool answerEndOfSession();
    /// Ends the run as Quit does, without asking: for ends the system imposes, a signal or a
    /// display that went away. Posts the will-terminate notification once and leaves the
    /// event loop.
    void endRun();
    /// The About box while it is open.
    QMessageBox* aboutPanel() const;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void endOfSession(QSessionManager& manager);
    void signalReceived(int signalNumber);
    void applyPolicyToShownWindows();

    NotificationCenter& center_;
    SystemLog& systemLog_;
    TerminationDecision decision_;
    ActivationPolicy policy_ = ActivationPolicy::regular;
    bool ending_ = false;
    std::map<std::string, std::function<void()>, std::less<>> delegateActions_;
    QPointer<QMessageBox> aboutPanel_;
    QPointer<QWidget> lastShownWindow_;
    std::unique_ptr<UnixSignalWatcher> signals_;
};

}  // namespace marzipel
