#include "ui/app_row.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

#include "ui/pixmaps.h"

namespace marzipel {

namespace {

/// A one-line label that shortens its text with an ellipsis instead of widening the list.
class ElidingLabel : public QLabel {
public:
    using QLabel::QLabel;

    QSize minimumSizeHint() const override {
        return {fontMetrics().averageCharWidth() * 6, QLabel::minimumSizeHint().height()};
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const QRect area = contentsRect();
        const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, area.width());
        painter.setPen(palette().color(foregroundRole()));
        painter.drawText(area, int(alignment()), shown);
    }

    void resizeEvent(QResizeEvent* event) override {
        QLabel::resizeEvent(event);
        const bool elided = fontMetrics().horizontalAdvance(text()) > contentsRect().width();
        setToolTip(elided ? text() : QString());
    }
};

}  // namespace

AppRow::AppRow(AppItem item, const ImageLoader& loader, QWidget* parent)
    : QWidget(parent), item_(std::move(item)), layout_(new QHBoxLayout(this)) {
    const QString name = QString::fromStdString(item_.name);
    setObjectName(name);
    setAutoFillBackground(true);
    layout_->setContentsMargins(10, 4, 10, 4);
    layout_->setSpacing(10);

    auto* icon = new QLabel(this);
    icon->setObjectName("icon");
    icon->setFixedSize(kIconSide, kIconSide);
    icon->setPixmap(appIconPixmap(loader, item_.iconPath, kIconSide));
    layout_->addWidget(icon);

    auto* label = new ElidingLabel(name, this);
    label->setObjectName("name");
    label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    label->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    layout_->addWidget(label, 1);
}

void AppRow::addTrailing(QWidget* control) { layout_->addWidget(control, 0, Qt::AlignVCenter); }

AppList::AppList(QWidget* parent) : QScrollArea(parent) {
    auto* content = new QWidget;
    content->setBackgroundRole(QPalette::Base);
    content->setAutoFillBackground(true);
    rowsLayout_ = new QVBoxLayout(content);
    rowsLayout_->setContentsMargins(0, 0, 0, 0);
    rowsLayout_->setSpacing(0);
    rowsLayout_->addStretch(1);
    setWidget(content);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setBackgroundRole(QPalette::Base);
}

void AppList::addRow(AppRow* row) {
    const int index = rowsLayout_->count() - 1;  // before the closing stretch
    row->setBackgroundRole(index % 2 == 0 ? QPalette::Base : QPalette::AlternateBase);
    rowsLayout_->insertWidget(index, row);
}

void AppList::clear() {
    for (AppRow* row : rows()) {
        rowsLayout_->removeWidget(row);
        row->hide();
        row->setParent(nullptr);
        row->deleteLater();
    }
}

QList<AppRow*> AppList::rows() const {
    QList<AppRow*> result;
    for (int i = 0; i < rowsLayout_->count(); ++i) {
        if (auto* row = qobject_cast<AppRow*>(rowsLayout_->itemAt(i)->widget())) {
            result.append(row);
        }
    }
    return result;
}

}  // namespace marzipel
