#pragma once

#include <QWidget>

#include "base/subscription.h"
#include "ui/models/general_tab_model.h"
#include "ui/models/settings_view_model.h"
#include "ui/ui_services.h"

class QAbstractButton;
class QCheckBox;
class QVBoxLayout;

namespace marzipel {

/// The settings window's "General" tab: the features run while active, launch at login, the
/// updater, and the advanced section that the view model reveals.
class GeneralTab : public QWidget {
    Q_OBJECT
public:
    /// `services` and `viewModel` must outlive the tab.
    GeneralTab(const UiServices& services, SettingsViewModel& viewModel, QWidget* parent = nullptr);
    ~GeneralTab() override;

private:
    void buildActiveSection(QVBoxLayout* column);
    void buildOtherSection(QVBoxLayout* column);
    void buildAdvancedSection(QVBoxLayout* column);
    /// Re-reads everything shown from the models.
    void refresh();
    /// Re-reads once the current event has been handled: the models announce before they change.
    void scheduleRefresh();

    GeneralTabModel model_;
    SettingsViewModel& viewModel_;
    QCheckBox* keyboardBacklight_ = nullptr;
    QCheckBox* nightShift_ = nullptr;
    QCheckBox* launchAtLogin_ = nullptr;
    QWidget* updaterRow_ = nullptr;
    QCheckBox* automaticChecks_ = nullptr;
    QWidget* advanced_ = nullptr;
    QCheckBox* debugLogging_ = nullptr;
    QAbstractButton* logsLine_ = nullptr;
    bool refreshPending_ = false;
    Subscription modelChanged_;
    Subscription advancedChanged_;
};

}  // namespace marzipel
