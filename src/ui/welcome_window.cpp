#include "ui/welcome_window.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>
#include <memory>

#include "detection/installed_video_apps.h"
#include "ui/app_row.h"
#include "ui/icon_set.h"
#include "ui/image_toggle.h"
#include "ui/labelled_divider.h"
#include "ui/models/welcome_model.h"

namespace marzipel {

namespace {

constexpr int kDividerWidth = 500;
constexpr int kListWidth = 400;
// Heading sizes relative to body text, after the desktop type scale of 13-point body text.
constexpr qreal kLargeTitle = 26.0 / 13;
constexpr qreal kTitle2 = 17.0 / 13;
constexpr qreal kTitle3 = 15.0 / 13;

QLabel* heading(std::string_view text, qreal scale, bool bold, QWidget* parent) {
    auto* label = new QLabel(QString::fromUtf8(text.data(), qsizetype(text.size())), parent);
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * scale);
    font.setBold(bold);
    label->setFont(font);
    label->setAlignment(Qt::AlignCenter);
    label->setWordWrap(true);
    return label;
}

/// The welcome's content; tells its model when it closes, however it was closed.
class WelcomeWindow : public QWidget {
public:
    WelcomeWindow(std::unique_ptr<WelcomeModel> model, const ImageLoader& imageLoader)
        : QWidget(nullptr, Qt::Window | Qt::WindowTitleHint | Qt::WindowMinimizeButtonHint |
                               Qt::CustomizeWindowHint),
          model_(std::move(model)) {
        setObjectName("welcomeWindow");
        setWindowTitle("Welcome!");
        setFixedSize(600, 600);
        setAttribute(Qt::WA_DeleteOnClose);
        closeRequested_ = model_->onCloseRequested([this] { close(); });

        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(20, 20, 20, 20);
        layout->setSpacing(14);
        layout->addStretch(1);
        layout->addWidget(heading("Welcome to Marzipel!", kLargeTitle, true, this));
        addDivider(layout);
        const bool found = model_->hasDetectedApps();
        auto* appsHeading =
            heading(model_->detectedAppsHeading(), found ? kTitle2 : kTitle3, false, this);
        appsHeading->setObjectName("detectedAppsHeading");
        layout->addWidget(appsHeading);
        if (found) layout->addWidget(buildAppList(imageLoader), 0, Qt::AlignHCenter);
        addDivider(layout);
        auto* featuresHeading = heading(model_->featuresHeading(), kTitle2, false, this);
        featuresHeading->setObjectName("featuresHeading");
        layout->addWidget(featuresHeading);
        layout->addLayout(buildFeatureToggles());
        addDivider(layout);
        auto* confirm = new QPushButton("I'm all set!", this);
        confirm->setObjectName("confirmButton");
        confirm->setDefault(true);
        confirm->setMinimumWidth(120);
        connect(confirm, &QPushButton::clicked, this, [this] { model_->confirm(); });
        layout->addWidget(confirm, 0, Qt::AlignHCenter);
        layout->addStretch(1);
    }

protected:
    void closeEvent(QCloseEvent* event) override {
        QWidget::closeEvent(event);
        if (event->isAccepted()) model_->windowWillClose();
    }

private:
    void addDivider(QVBoxLayout* layout) {
        auto* divider = new Divider(this);
        divider->setFixedWidth(kDividerWidth);
        layout->addWidget(divider, 0, Qt::AlignHCenter);
    }

    QWidget* buildAppList(const ImageLoader& imageLoader) {
        auto* list = new AppList(this);
        list->setObjectName("detectedApps");
        list->setFixedWidth(kListWidth);
        // As tall as its rows while they fit; a long list scrolls instead of pushing the rest out.
        list->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
        SelectedApps& selected = model_->selectedApps();
        for (const AppItem& item : model_->detectedApps()) {
            auto* row = new AppRow(item, imageLoader);
            auto* pick = new QCheckBox(row);
            pick->setObjectName("appSwitch");
            pick->setAccessibleName(QString::fromStdString(item.name));
            pick->setChecked(selected.isSelected(item));
            connect(pick, &QCheckBox::toggled, this,
                    [&selected, item](bool on) { selected.setSelected(item, on); });
            row->addTrailing(pick);
            list->addRow(row);
        }
        return list;
    }

    QHBoxLayout* buildFeatureToggles() {
        auto* row = new QHBoxLayout;
        row->setSpacing(32);
        row->addStretch(1);
        auto add = [&](IconName icon, std::string_view caption, const char* name, Feature feature) {
            SelectedFeatures& selected = model_->selectedFeatures();
            auto* toggle =
                new ImageToggle(themedIcon(icon),
                                QString::fromUtf8(caption.data(), qsizetype(caption.size())), this);
            toggle->setObjectName(name);
            toggle->setChecked(selected.isSelected(feature));
            connect(toggle, &ImageToggle::toggled, this,
                    [&selected, feature](bool on) { selected.setSelected(feature, on); });
            row->addWidget(toggle);
        };
        add(IconName::moonHaze, model_->blueLightToggleLabel(), "nightShiftToggle",
            Feature::nightShift);
        add(IconName::light, "Disable keyboard backlight", "keyboardBacklightToggle",
            Feature::keyboardBacklight);
        row->addStretch(1);
        return row;
    }

    std::unique_ptr<WelcomeModel> model_;
    Subscription closeRequested_;
};

void centreOnPrimaryScreen(QWidget& window) {
    if (QScreen* screen = QGuiApplication::primaryScreen()) {
        QRect frame = window.frameGeometry();
        frame.moveCenter(screen->availableGeometry().center());
        window.move(frame.topLeft());
    }
}

}  // namespace

WelcomeWindowManager::WelcomeWindowManager(const UiServices& services, QObject* parent)
    : QObject(parent), services_(services) {}

WelcomeWindowManager::~WelcomeWindowManager() { delete window_; }

void WelcomeWindowManager::showWelcomeWindow() {
    std::vector<AppItem> detected = findInstalledVideoApps(services_.catalog, services_.systemLog);
    auto model = std::make_unique<WelcomeModel>(services_.settings, services_.launchAtLogin,
                                                services_.application, services_.brightness,
                                                std::move(detected));
    delete window_;
    window_ = new WelcomeWindow(std::move(model), services_.imageLoader);
    centreOnPrimaryScreen(*window_);
    window_->show();
    window_->raise();
    window_->activateWindow();
    services_.application.activate();
}

QWidget* WelcomeWindowManager::window() const { return window_; }

}  // namespace marzipel
