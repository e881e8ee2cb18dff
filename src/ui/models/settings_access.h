#pragma once

#include <functional>
#include <optional>
#include <string>
#include <variant>

#include "platform/application.h"

namespace marzipel {

/// Why the route for systems before 14.0 could not open the settings window.
enum class LegacyOpenSettingsError { unsupportedPlatform = 0, selectorNotFound = 1 };

/// Why the open-settings action could not open the settings window.
enum class OpenSettingsError {
    unsupportedPlatform = 0,
    selectorNotFound = 1,
    /// Nothing has installed a way to open the window yet.
    settingsLinkNotConnected = 2,
};

/// Any other failure of an opening action, passed on as its text.
struct OtherOpenSettingsError {
    std::string description;
    friend bool operator==(const OtherOpenSettingsError&, const OtherOpenSettingsError&) = default;
};

/// A failure raised by an installed opening action.
using OpenActionFailure = std::variant<LegacyOpenSettingsError, OtherOpenSettingsError>;
/// A failure of the open-settings action as its caller sees it.
using OpenSettingsFailure = std::variant<OpenSettingsError, OtherOpenSettingsError>;

/// An action that opens the settings window; nothing on success.
using OpenSettingsFunction = std::function<std::optional<OpenActionFailure>()>;

/// Whether the system has its own settings link (14.0 and later).
bool hasPlatformSettingsLink(const Application& application);

/// Opens the settings window the way systems before 14.0 need: the delegate's
/// "showSettingsWindow:" if it answers it, else its "showPreferencesWindow:".
std::optional<LegacyOpenSettingsError> openSettingsLegacy(Application& application);

/// The one way the interface opens the settings window on every supported system. From 14.0 on
/// it calls whatever the settings window installed as the link; before 14.0 it takes the legacy
/// route from the start. Main thread.
class OpenSettingsAccessAction {
public:
    /// `application` must outlive the action.
    explicit OpenSettingsAccessAction(Application& application);

    /// Runs the installed action; a legacy error becomes the open-settings error of the same
    /// name, any other passes unchanged.
    std::optional<OpenSettingsFailure> operator()() const;

    /// Installs the link's trigger. Before 14.0 the legacy route stays and this does nothing.
    void installLink(OpenSettingsFunction link);

private:
    bool usesLink_;
    OpenSettingsFunction openSettings_;
};

/// A press of the settings button: the pre-action, the opening, then the post-action, in that
/// order whatever the opening does; its failure is dropped. From 14.0 on the opening is the
/// link, before it the legacy route.
void pressSettingsButton(const OpenSettingsAccessAction& openSettings, Application& application,
                         const std::function<void()>& preAction,
                         const std::function<void()>& postAction);

}  // namespace marzipel
