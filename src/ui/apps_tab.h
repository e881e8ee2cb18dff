#pragma once

#include <QWidget>

#include "ui/ui_services.h"

namespace marzipel {

/// The settings window's "Apps" tab, bound to an AppsTabModel of its own.
class AppsTab : public QWidget {
    Q_OBJECT
public:
    /// `services` must outlive the tab.
    explicit AppsTab(const UiServices& services, QWidget* parent = nullptr);
    ~AppsTab() override;
};

}  // namespace marzipel
