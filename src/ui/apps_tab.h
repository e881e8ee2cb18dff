#pragma once

#include <QPointer>
#include <QWidget>
#include <memory>
#include <vector>

#include "base/subscription.h"
#include "settings/app_item.h"
#include "ui/ui_services.h"

class QComboBox;
class QLabel;
class QMessageBox;
class QStackedWidget;

namespace marzipel {

class AppList;
class AppsTabModel;

/// The settings window's "Apps" tab, bound to an AppsTabModel of its own.
class AppsTab : public QWidget {
    Q_OBJECT
public:
    /// `services` must outlive the tab.
    explicit AppsTab(const UiServices& services, QWidget* parent = nullptr);
    ~AppsTab() override;

protected:
    /// Reloads the running applications each time the tab comes into view.
    void showEvent(QShowEvent* event) override;

private:
    QWidget* buildPicker();
    void showModel();
    void showTriggerApps();
    void showRunningApps();
    void showAlert();

    const ImageLoader& imageLoader_;
    std::unique_ptr<AppsTabModel> model_;
    QStackedWidget* appsStack_ = nullptr;
    AppList* appList_ = nullptr;
    QComboBox* runningApps_ = nullptr;
    QPointer<QMessageBox> alert_;
    /// What the list and the picker show now, so that unrelated changes do not rebuild them.
    std::vector<AppItem> shownTriggerApps_;
    std::vector<AppItem> shownRunningApps_;
    Subscription modelChanged_;
};

}  // namespace marzipel
