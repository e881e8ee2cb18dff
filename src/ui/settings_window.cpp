#include "ui/settings_window.h"

#include <QCoreApplication>
#include <QTabWidget>
#include <QVBoxLayout>

#include "ui/apps_tab.h"
#include "ui/general_tab.h"
#include "ui/icon_set.h"
#include "ui/key_release_filter.h"
#include "ui/qt_main_loop.h"

namespace marzipel {
namespace {

constexpr char kShowSettingsWindow[] = "showSettingsWindow:";

QWidget* fixedPage(QWidget* page) {
    page->setFixedSize(SettingsWindow::kTabContentSize);
    return page;
}

}  // namespace

SettingsWindow::SettingsWindow(const UiServices& services, QWidget* parent)
    : QWidget(parent), viewModel_(qtMainLoop()) {
    setObjectName("settingsWindow");
    setWindowTitle("Marzipel Settings");
    setAttribute(Qt::WA_DeleteOnClose);

    tabs_ = new QTabWidget(this);
    tabs_->setObjectName("settingsTabs");
    tabs_->setDocumentMode(false);
    tabs_->addTab(fixedPage(new GeneralTab(services, viewModel_)), themedIcon(IconName::gear),
                  "General");
    tabs_->addTab(fixedPage(new AppsTab(services)), themedIcon(IconName::apps), "Apps");

    auto* layout = new QVBoxLayout(this);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(tabs_);

    // Lives with the view model; deleting a filter also uninstalls it.
    QCoreApplication::instance()->installEventFilter(new KeyReleaseFilter(viewModel_, this));
}

SettingsWindow::~SettingsWindow() = default;

SettingsWindowController::SettingsWindowController(const UiServices& services,
                                                   OpenSettingsAccessAction& openSettings,
                                                   QObject* parent)
    : QObject(parent), services_(services), openSettings_(openSettings) {
    services_.application.installDelegateAction(kShowSettingsWindow, [this] { show(); });
    openSettings_.installLink([this]() -> std::optional<OpenActionFailure> {
        show();
        return std::nullopt;
    });
}

SettingsWindowController::~SettingsWindowController() {
    // Whoever keeps the action or the link past this controller must not reach it.
    services_.application.installDelegateAction(kShowSettingsWindow, [] {});
    openSettings_.installLink(nullptr);
    delete window_.data();
}

void SettingsWindowController::show() {
    if (!window_) window_ = new SettingsWindow(services_);
    window_->setWindowState(window_->windowState() & ~Qt::WindowMinimized);
    window_->show();
    window_->raise();
    window_->activateWindow();
}

}  // namespace marzipel
