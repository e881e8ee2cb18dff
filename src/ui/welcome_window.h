#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

#include "core/app_delegate.h"
#include "ui/ui_services.h"

namespace marzipel {

/// Shows the first-run welcome window; owns the newest one.
class WelcomeWindowManager final : public QObject, public WelcomeWindowPresenter {
    Q_OBJECT
public:
    /// `services` must outlive the manager.
    explicit WelcomeWindowManager(const UiServices& services, QObject* parent = nullptr);
    ~WelcomeWindowManager() override;

    /// Finds the installed players, then builds, centres, shows and activates a fresh window.
    void showWelcomeWindow() override;
    /// The window shown last, while it is open.
    QWidget* window() const;

private:
    UiServices services_;
    QPointer<QWidget> window_;
};

}  // namespace marzipel
