#include "ui/image_toggle.h"

#include <QPainter>
#include <QStyleOptionFocusRect>

namespace marzipel {

namespace {

constexpr int kSymbolSide = 40;
constexpr int kSymbolPadding = 14;
constexpr int kFrameSide = kSymbolSide + 2 * kSymbolPadding;
constexpr qreal kCornerRadius = 20;
constexpr qreal kStroke = 2;
constexpr int kCaptionGap = 5;
constexpr int kMargin = 4;

}  // namespace

ImageToggle::ImageToggle(const QIcon& symbol, const QString& caption, QWidget* parent)
    : QAbstractButton(parent), symbol_(symbol) {
    setText(caption);
    setCheckable(true);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize ImageToggle::sizeHint() const {
    const QSize caption = fontMetrics().size(Qt::TextSingleLine, text());
    return {std::max(kFrameSide, caption.width()) + 2 * kMargin,
            kFrameSide + kCaptionGap + caption.height() + 2 * kMargin};
}

QRect ImageToggle::frameRect() const {
    return {(width() - kFrameSide) / 2, kMargin, kFrameSide, kFrameSide};
}

QPixmap ImageToggle::tintedSymbol(const QColor& color) const {
    const qreal ratio = devicePixelRatioF();
    QPixmap pixmap = symbol_.pixmap(QSize(kSymbolSide, kSymbolSide), ratio);
    QPainter painter(&pixmap);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(QRect(QPoint(), pixmap.size()), color);
    return pixmap;
}

void ImageToggle::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isChecked() ? 1.0 : 0.3);
    const QColor color = isChecked() ? palette().color(QPalette::WindowText) : QColor(Qt::gray);

    const QRect frame = frameRect();
    painter.setPen(QPen(color, kStroke));
    const qreal inset = kStroke / 2;
    painter.drawRoundedRect(QRectF(frame).adjusted(inset, inset, -inset, -inset), kCornerRadius,
                            kCornerRadius);
    const QPixmap symbol = tintedSymbol(color);
    const QSize symbolSize = symbol.deviceIndependentSize().toSize();
    painter.drawPixmap(
        QRect(frame.center() - QPoint(symbolSize.width(), symbolSize.height()) / 2, symbolSize),
        symbol);

    painter.setPen(palette().color(QPalette::WindowText));
    const QRect caption(0, frame.bottom() + 1 + kCaptionGap, width(),
                        height() - frame.bottom() - 1 - kCaptionGap - kMargin);
    painter.drawText(caption, Qt::AlignHCenter | Qt::AlignTop, text());

    if (hasFocus()) {
        QStyleOptionFocusRect option;
        option.initFrom(this);
        option.rect = frame.adjusted(-2, -2, 2, 2);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
    }
}

}  // namespace marzipel
