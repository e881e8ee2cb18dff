#pragma once

#include <QAbstractButton>
#include <QIcon>

namespace marzipel {

/// A switch drawn as a large symbol in a rounded frame with its caption underneath: the symbol
/// in the text colour when on, grey when off, and the whole control faded while off. Clicking
/// flips it; `toggled` reports the new state.
class ImageToggle : public QAbstractButton {
    Q_OBJECT
public:
    /// `symbol` is tinted, so a single-colour symbol reads best.
    ImageToggle(const QIcon& symbol, const QString& caption, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QPixmap tintedSymbol(const QColor& color) const;
    QRect frameRect() const;

    QIcon symbol_;
};

}  // namespace marzipel
