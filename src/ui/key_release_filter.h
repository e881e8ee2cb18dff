#pragma once

#include <QObject>

#include "ui/models/settings_view_model.h"

namespace marzipel {

/// Shows the settings view model every key released in any of the program's windows. Install it
/// on the application object; it never consumes an event.
class KeyReleaseFilter : public QObject {
    Q_OBJECT
public:
    /// `model` must outlive the filter.
    explicit KeyReleaseFilter(SettingsViewModel& model, QObject* parent = nullptr);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    SettingsViewModel& model_;
};

}  // namespace marzipel
