#include "ui/apps_tab.h"

#include <QCollator>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QShowEvent>
#include <QSignalBlocker>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/app_row.h"
#include "ui/icon_set.h"
#include "ui/models/apps_tab_model.h"

namespace marzipel {

namespace {

/// Sub-line size relative to body text, after the desktop type scale of 13-point body text.
constexpr qreal kSubheadline = 11.0 / 13;

NameOrder localeNameOrder() {
    auto collator = std::make_shared<QCollator>();
    collator->setCaseSensitivity(Qt::CaseInsensitive);
    return [collator](const std::string& a, const std::string& b) {
        return collator->compare(QString::fromStdString(a), QString::fromStdString(b)) < 0;
    };
}

QToolButton* symbolButton(const QIcon& icon, const QString& objectName, QWidget* parent) {
    auto* button = new QToolButton(parent);
    button->setObjectName(objectName);
    button->setIcon(icon);
    button->setIconSize(QSize(18, 18));
    button->setAutoRaise(true);
    return button;
}

QLabel* label(const QString& text, qreal scale, bool bold, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * scale);
    font.setBold(bold);
    label->setFont(font);
    return label;
}

}  // namespace

AppsTab::AppsTab(const UiServices& services, QWidget* parent)
    : QWidget(parent),
      imageLoader_(services.imageLoader),
      model_(std::make_unique<AppsTabModel>(
          AppsTabModel::Services{services.settings, services.workspace, services.catalog,
                                 services.filePicker, localeNameOrder()})) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 12, 16, 12);
    layout->setSpacing(8);

    auto* heading = label("Apps that will trigger Marzipel", 1.0, true, this);
    heading->setObjectName("heading");
    auto* subline = label("as they go fullscreen", kSubheadline, false, this);
    subline->setObjectName("subline");
    subline->setForegroundRole(QPalette::PlaceholderText);
    auto* titles = new QVBoxLayout;
    titles->setSpacing(2);
    titles->addWidget(heading);
    titles->addWidget(subline);
    layout->addLayout(titles);

    auto* emptyText = new QLabel("You haven't added any apps yet.", this);
    emptyText->setObjectName("emptyText");
    emptyText->setAlignment(Qt::AlignCenter);
    emptyText->setForegroundRole(QPalette::PlaceholderText);
    appList_ = new AppList(this);
    appList_->setObjectName("appList");
    appsStack_ = new QStackedWidget(this);
    appsStack_->addWidget(emptyText);
    appsStack_->addWidget(appList_);
    layout->addWidget(appsStack_, 1);

    auto* browse = new QPushButton("Browse file system...", this);
    browse->setObjectName("browseButton");
    connect(browse, &QPushButton::clicked, this, [this] { model_->browse(); });
    layout->addWidget(browse, 0, Qt::AlignLeft);
    layout->addWidget(buildPicker());

    modelChanged_ = model_->onChanged([this] { showModel(); });
    showModel();
}

AppsTab::~AppsTab() = default;

QWidget* AppsTab::buildPicker() {
    auto* picker = new QWidget(this);
    auto* row = new QHBoxLayout(picker);
    row->setContentsMargins(0, 0, 0, 0);
    auto* caption = new QLabel("Select from running apps:", picker);
    runningApps_ = new QComboBox(picker);
    runningApps_->setObjectName("runningApps");
    runningApps_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    runningApps_->setMinimumContentsLength(16);
    caption->setBuddy(runningApps_);
    connect(runningApps_, &QComboBox::activated, this,
            [this](int index) { model_->select(model_->runningApps().at(std::size_t(index))); });
    auto* add = symbolButton(themedIcon(IconName::plus), "addRunningApp", picker);
    add->setAccessibleName("Add");
    connect(add, &QToolButton::clicked, this, [this] { model_->addSelected(); });
    auto* refresh = symbolButton(themedIcon(IconName::refresh), "refreshRunningApps", picker);
    refresh->setAccessibleName("Refresh");
    connect(refresh, &QToolButton::clicked, this, [this] { model_->refresh(); });
    row->addWidget(caption);
    row->addWidget(runningApps_, 1);
    row->addWidget(add);
    row->addWidget(refresh);
    return picker;
}

void AppsTab::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (!event->spontaneous()) model_->refresh();
}

void AppsTab::showModel() {
    showTriggerApps();
    showRunningApps();
    showAlert();
}

void AppsTab::showTriggerApps() {
    std::vector<AppItem> apps = model_->triggerApps();
    if (apps != shownTriggerApps_) {
        appList_->clear();
        // Drawn once for all rows: our own icons are rendered at every common size.
        const QIcon film = themedIcon(IconName::film);
        const QIcon trash = themedIcon(IconName::trash);
        for (const AppItem& item : apps) {
            auto* row = new AppRow(item, imageLoader_);
            if (model_->hasVideoSwitch(item)) {
                auto* video = symbolButton(film, "videoSwitch", row);
                video->setCheckable(true);
                video->setToolTip("Only when playing video (experimental)");
                connect(video, &QToolButton::toggled, this,
                        [this, item](bool on) { model_->setOnlyWhenPlayingVideo(item, on); });
                row->addTrailing(video);
            }
            auto* remove = symbolButton(trash, "removeButton", row);
            remove->setAccessibleName("Remove");
            connect(remove, &QToolButton::clicked, this, [this, item] { model_->remove(item); });
            row->addTrailing(remove);
            appList_->addRow(row);
        }
        shownTriggerApps_ = std::move(apps);
    }
    for (AppRow* row : appList_->rows()) {
        if (auto* video = row->findChild<QToolButton*>("videoSwitch")) {
            const QSignalBlocker quiet(video);
            video->setChecked(model_->onlyWhenPlayingVideo(row->item()));
        }
    }
    appsStack_->setCurrentIndex(shownTriggerApps_.empty() ? 0 : 1);
}

void AppsTab::showRunningApps() {
    const QSignalBlocker blocker(runningApps_);
    const std::vector<AppItem>& apps = model_->runningApps();
    if (apps != shownRunningApps_) {
        runningApps_->clear();
        for (const AppItem& item : apps) runningApps_->addItem(QString::fromStdString(item.name));
        shownRunningApps_ = apps;
    }
    const auto& selected = model_->selectedApp();
    auto found = selected ? std::ranges::find(apps, *selected) : apps.end();
    runningApps_->setCurrentIndex(found == apps.end() ? -1 : int(found - apps.begin()));
}

void AppsTab::showAlert() {
    if (!model_->isAlertShown() || alert_) return;
    alert_ = new QMessageBox(QMessageBox::Warning, "An error occurred", "An error occurred",
                             QMessageBox::NoButton, this);
    alert_->setObjectName("alert");
    alert_->setInformativeText(QString::fromStdString(model_->alertMessage()));
    alert_->setDefaultButton(alert_->addButton("OK", QMessageBox::AcceptRole));
    alert_->setAttribute(Qt::WA_DeleteOnClose);
    connect(alert_, &QMessageBox::finished, this, [this] { model_->dismissAlert(); });
    alert_->open();
}

}  // namespace marzipel
