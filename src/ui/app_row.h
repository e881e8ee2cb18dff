#pragma once

#include <QList>
#include <QScrollArea>
#include <QWidget>

#include "platform/image_loader.h"
#include "settings/app_item.h"

class QHBoxLayout;
class QVBoxLayout;

namespace marzipel {

/// One app in a list: its icon, its name, then the controls the list puts after them. The row's
/// objectName is the app's name, so that a row can be found by what the user reads.
class AppRow : public QWidget {
    Q_OBJECT
public:
    /// Side of the icon in device-independent pixels.
    static constexpr int kIconSide = 45;

    /// Reads the icon through `loader` at once; the loader need not outlive the row.
    AppRow(AppItem item, const ImageLoader& loader, QWidget* parent = nullptr);

    const AppItem& item() const { return item_; }
    /// Appends `control` at the row's end; the row takes it.
    void addTrailing(QWidget* control);

private:
    AppItem item_;
    QHBoxLayout* layout_;
};

/// Rows of apps in a framed, scrolling list with alternating row backgrounds.
class AppList : public QScrollArea {
    Q_OBJECT
public:
    explicit AppList(QWidget* parent = nullptr);

    /// Appends `row`; the list takes it.
    void addRow(AppRow* row);
    /// Removes every row. Safe from within a row's own signal: the rows are deleted later.
    void clear();
    /// The rows from top to bottom.
    QList<AppRow*> rows() const;

private:
    QVBoxLayout* rowsLayout_;
};

}  // namespace marzipel
