#include "ui/models/settings_access.h"

namespace marzipel {
namespace {

constexpr OperatingSystemVersion kSettingsLinkVersion{14, 0, 0};

bool sendIfAnswered(Application& application, std::string_view action) {
    if (!application.delegateRespondsTo(action)) return false;
    application.sendActionToDelegate(action);
    return true;
}

}  // namespace

bool hasPlatformSettingsLink(const Application& application) {
    return application.operatingSystemVersion() >= kSettingsLinkVersion;
}

std::optional<LegacyOpenSettingsError> openSettingsLegacy(Application& application) {
    if (hasPlatformSettingsLink(application)) return LegacyOpenSettingsError::unsupportedPlatform;
    // The newer name first; the older one is only the fallback.
    if (sendIfAnswered(application, "showSettingsWindow:")) return std::nullopt;
    if (sendIfAnswered(application, "showPreferencesWindow:")) return std::nullopt;
    return LegacyOpenSettingsError::selectorNotFound;
}

OpenSettingsAccessAction::OpenSettingsAccessAction(Application& application)
    : usesLink_(hasPlatformSettingsLink(application)) {
    if (!usesLink_) {
        openSettings_ = [&application]() -> std::optional<OpenActionFailure> {
            if (auto error = openSettingsLegacy(application)) return *error;
            return std::nullopt;
        };
    }
}

std::optional<OpenSettingsFailure> OpenSettingsAccessAction::operator()() const {
    if (!openSettings_) return OpenSettingsError::settingsLinkNotConnected;
    std::optional<OpenActionFailure> failure = openSettings_();
    if (!failure) return std::nullopt;
    if (const auto* legacy = std::get_if<LegacyOpenSettingsError>(&*failure)) {
        return static_cast<OpenSettingsError>(static_cast<int>(*legacy));
    }
    return std::get<OtherOpenSettingsError>(*failure);
}

void OpenSettingsAccessAction::installLink(OpenSettingsFunction link) {
    if (usesLink_) openSettings_ = std::move(link);
}

void pressSettingsButton(const OpenSettingsAccessAction& openSettings, Application& application,
                         const std::function<void()>& preAction,
                         const std::function<void()>& postAction) {
    if (preAction) preAction();
    if (hasPlatformSettingsLink(application)) {
        (void)openSettings();
    } else {
        (void)openSettingsLegacy(application);
    }
    if (postAction) postAction();
}

}  // namespace marzipel
