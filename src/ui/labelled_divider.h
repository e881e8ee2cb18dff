#pragma once

#include <QColor>
#include <QWidget>

namespace marzipel {

/// A thin horizontal line in a soft shade of the text colour that follows the palette, so that it
/// shows the same on light and dark palettes.
class Divider : public QWidget {
    Q_OBJECT
public:
    explicit Divider(QWidget* parent = nullptr);
    QSize sizeHint() const override { return {100, 1}; }

protected:
    void paintEvent(QPaintEvent* event) override;
};

/// A section separator: a line, a label in a colour of its own, and a second line, each line
/// with `horizontalPadding` around it.
class LabelledDivider : public QWidget {
    Q_OBJECT
public:
    LabelledDivider(const QString& label, int horizontalPadding, const QColor& color,
                    QWidget* parent = nullptr);
};

}  // namespace marzipel
