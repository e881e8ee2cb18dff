#include "ui/general_tab.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QSignalBlocker>
#include <QStyle>
#include <QStyleOptionFocusRect>
#include <QVBoxLayout>

#include "ui/labelled_divider.h"

namespace marzipel {
namespace {

/// A plain grey, underlined text that acts as a button. A text too long for its room is elided
/// in the middle; the whole text is its tooltip.
class LinkButton final : public QAbstractButton {
public:
    LinkButton(const QString& objectName, qreal fontScale, QWidget* parent)
        : QAbstractButton(parent) {
        setObjectName(objectName);
        QFont linkFont = font();
        linkFont.setUnderline(true);
        linkFont.setPointSizeF(linkFont.pointSizeF() * fontScale);
        setFont(linkFont);
        setCursor(Qt::PointingHandCursor);
        setFocusPolicy(Qt::TabFocus);
        setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
        setAttribute(Qt::WA_Hover);
    }

    QSize sizeHint() const override {
        const QFontMetrics metrics = fontMetrics();
        return {metrics.horizontalAdvance(text()) + 1, metrics.height() + 2 * kPadding};
    }
    QSize minimumSizeHint() const override {
        return {fontMetrics().horizontalAdvance(QStringLiteral("M…M")), sizeHint().height()};
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const QRect textRect = rect().adjusted(0, kPadding, 0, -kPadding);
        const bool lit = isDown() || underMouse();
        painter.setPen(palette().color(lit ? QPalette::WindowText : QPalette::PlaceholderText));
        painter.drawText(textRect, Qt::AlignLeft | Qt::AlignVCenter,
                         fontMetrics().elidedText(text(), Qt::ElideMiddle, textRect.width()));
        if (hasFocus()) {
            QStyleOptionFocusRect option;
            option.initFrom(this);
            style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
        }
    }

private:
    static constexpr int kPadding = 2;
};

QLabel* heading(const QString& text, const QString& objectName, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setObjectName(objectName);
    QFont bold = label->font();
    bold.setBold(true);
    label->setFont(bold);
    return label;
}

/// A divider between sections, with room above and below its line.
Divider* sectionDivider(QWidget* parent) {
    auto* divider = new Divider(parent);
    divider->setFixedHeight(9);
    return divider;
}

QCheckBox* toggle(const QString& text, const QString& objectName, QWidget* parent) {
    auto* box = new QCheckBox(text, parent);
    box->setObjectName(objectName);
    return box;
}

/// Shows `on` without reporting it as the user's change.
void showChecked(QCheckBox* box, bool on) {
    const QSignalBlocker quiet(box);
    box->setChecked(on);
}

QString qText(std::string_view text) {
    return QString::fromUtf8(text.data(), qsizetype(text.size()));
}

}  // namespace

GeneralTab::GeneralTab(const UiServices& services, SettingsViewModel& viewModel, QWidget* parent)
    : QWidget(parent),
      model_(GeneralTabModel::Services{services.settings, services.launchAtLogin, services.updater,
                                       services.workspace, services.userDirectories, services.clock,
                                       services.console, services.brightness}),
      viewModel_(viewModel) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 12, 16, 12);
    layout->setSpacing(6);
    buildActiveSection(layout);
    buildOtherSection(layout);
    buildAdvancedSection(layout);
    layout->addStretch(1);

    modelChanged_ = model_.onChanged([this] { scheduleRefresh(); });
    advancedChanged_ = viewModel_.onChanged([this] { refresh(); });
    refresh();
}

GeneralTab::~GeneralTab() = default;

void GeneralTab::buildActiveSection(QVBoxLayout* column) {
    column->addWidget(heading("What Marzipel will do when active", "activeHeading", this));
    keyboardBacklight_ = toggle("Disable keyboard backlight", "disableKeyboardBacklight", this);
    nightShift_ = toggle(qText(model_.blueLightToggleLabel()), "disableNightShift", this);
    for (auto [box, feature] : {std::pair{keyboardBacklight_, Feature::keyboardBacklight},
                                std::pair{nightShift_, Feature::nightShift}}) {
        column->addWidget(box, 0, Qt::AlignLeft);
        connect(box, &QCheckBox::toggled, this,
                [this, feature = feature](bool on) { model_.setFeatureEnabled(feature, on); });
    }
}

void GeneralTab::buildOtherSection(QVBoxLayout* column) {
    column->addWidget(sectionDivider(this));
    column->addWidget(heading("Other settings", "otherHeading", this));

    launchAtLogin_ = toggle(qText(model_.launchAtLogin().label()), "launchAtLogin", this);
    column->addWidget(launchAtLogin_, 0, Qt::AlignLeft);
    connect(launchAtLogin_, &QCheckBox::toggled, this,
            [this](bool on) { model_.launchAtLogin().setOn(on); });

    updaterRow_ = new QWidget(this);
    updaterRow_->setObjectName("updaterRow");
    auto* row = new QHBoxLayout(updaterRow_);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    automaticChecks_ =
        toggle("Automatically check for updates", "automaticallyCheckForUpdates", updaterRow_);
    auto* checkNow = new LinkButton("checkNow", 1.0, updaterRow_);
    checkNow->setText("check now");
    row->addWidget(automaticChecks_);
    row->addWidget(checkNow);
    row->addStretch(1);
    column->addWidget(updaterRow_);
    connect(automaticChecks_, &QCheckBox::toggled, this,
            [this](bool on) { model_.setAutomaticallyChecksForUpdates(on); });
    connect(checkNow, &QAbstractButton::clicked, this, [this] { model_.checkForUpdatesNow(); });
}

void GeneralTab::buildAdvancedSection(QVBoxLayout* column) {
    advanced_ = new QWidget(this);
    advanced_->setObjectName("advancedSettings");
    auto* section = new QVBoxLayout(advanced_);
    section->setContentsMargins(0, 0, 0, 0);
    section->setSpacing(6);
    section->addWidget(sectionDivider(advanced_));
    section->addWidget(heading("Advanced settings", "advancedHeading", advanced_));
    debugLogging_ = toggle(qText(model_.debugLogging().label()), "enableDebugLogging", advanced_);
    section->addWidget(debugLogging_, 0, Qt::AlignLeft);
    logsLine_ = new LinkButton("logsLine", 0.9, advanced_);
    section->addWidget(logsLine_, 0, Qt::AlignLeft);
    column->addWidget(advanced_);
    connect(debugLogging_, &QCheckBox::toggled, this,
            [this](bool on) { model_.debugLogging().setOn(on); });
    connect(logsLine_, &QAbstractButton::clicked, this, [this] { model_.openLogsFolder(); });
}

void GeneralTab::refresh() {
    refreshPending_ = false;
    showChecked(keyboardBacklight_, model_.isFeatureEnabled(Feature::keyboardBacklight));
    showChecked(nightShift_, model_.isFeatureEnabled(Feature::nightShift));
    showChecked(launchAtLogin_, model_.launchAtLogin().isOn());
    updaterRow_->setVisible(model_.hasUpdater());
    showChecked(automaticChecks_, model_.automaticallyChecksForUpdates());
    showChecked(debugLogging_, model_.debugLogging().isOn());
    const QString logs = qText(model_.logsLineText());
    logsLine_->setText(logs);
    logsLine_->setToolTip(logs);
    advanced_->setVisible(viewModel_.showAdvancedSettings());
}

void GeneralTab::scheduleRefresh() {
    if (refreshPending_) return;
    refreshPending_ = true;
    QMetaObject::invokeMethod(this, &GeneralTab::refresh, Qt::QueuedConnection);
}

}  // namespace marzipel
