#pragma once

#include <QPointer>
#include <QWidget>

#include "ui/models/settings_access.h"
#include "ui/models/settings_view_model.h"
#include "ui/ui_services.h"

class QTabWidget;

namespace marzipel {

/// The settings window: the "General" and "Apps" tabs, each with a fixed content area of
/// 600 x 400, so the window cannot be resized. Deletes itself when closed.
class SettingsWindow : public QWidget {
    Q_OBJECT
public:
    /// The content size of each tab.
    static constexpr QSize kTabContentSize{600, 400};

    /// `services` must outlive the window.
    explicit SettingsWindow(const UiServices& services, QWidget* parent = nullptr);
    ~SettingsWindow() override;

    /// The tabs, "General" at index 0 and "Apps" at index 1.
    QTabWidget* tabs() const { return tabs_; }
    /// Whether the advanced section is shown; Ctrl+Shift+D (Command-Shift-D on macOS) toggles it.
    SettingsViewModel& viewModel() { return viewModel_; }

private:
    SettingsViewModel viewModel_;
    QTabWidget* tabs_ = nullptr;
};

/// Keeps at most one settings window and is the way every part of the program opens it: the
/// delegate's "showSettingsWindow:" action and the open-settings action's link both show it.
class SettingsWindowController : public QObject {
    Q_OBJECT
public:
    /// Installs itself on `services.application` and `openSettings`, which, like `services`,
    /// must outlive the controller.
    SettingsWindowController(const UiServices& services, OpenSettingsAccessAction& openSettings,
                             QObject* parent = nullptr);
    ~SettingsWindowController() override;

    /// Shows the window, making it on first use, and brings it to the front.
    void show();
    /// The open window, or null.
    SettingsWindow* window() const { return window_; }

private:
    UiServices services_;
    OpenSettingsAccessAction& openSettings_;
    QPointer<SettingsWindow> window_;
};

}  // namespace marzipel
