#include "ui/labelled_divider.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

namespace marzipel {

Divider::Divider(QWidget* parent) : QWidget(parent) {
    setFixedHeight(1);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void Divider::paintEvent(QPaintEvent*) {
    QColor line = palette().color(QPalette::WindowText);
    line.setAlphaF(0.2);
    // One pixel across the middle, however tall a layout makes the widget.
    QPainter(this).fillRect(QRect(0, height() / 2, width(), 1), line);
}

LabelledDivider::LabelledDivider(const QString& label, int horizontalPadding, const QColor& color,
                                 QWidget* parent)
    : QWidget(parent) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    auto addLine = [&] {
        auto* padded = new QVBoxLayout;
        padded->setContentsMargins(horizontalPadding, horizontalPadding, horizontalPadding,
                                   horizontalPadding);
        padded->addWidget(new Divider(this), 0, Qt::AlignVCenter);
        row->addLayout(padded, 1);
    };
    addLine();
    auto* text = new QLabel(label, this);
    QPalette palette = text->palette();
    palette.setColor(QPalette::WindowText, color);
    text->setPalette(palette);
    row->addWidget(text, 0, Qt::AlignVCenter);
    addLine();
}

}  // namespace marzipel
