#include "platform/qt/qt_file_picker.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QSysInfo>

namespace marzipel {
namespace {

bool onMacOS() { return QSysInfo::productType() == QLatin1String("macos"); }

/// Where the system keeps its applications, else the home folder.
QString startFolder() {
    const QString system =
        onMacOS() ? QStringLiteral("/Applications") : QStringLiteral("/usr/share/applications");
    return QDir(system).exists() ? system : QDir::homePath();
}

/// Fails, saying why, when no dialog can be shown now.
Status dialogCanShow() {
    if (!qobject_cast<QApplication*>(QCoreApplication::instance())) {
        return Status::failure("the program has no window system to show it on");
    }
    const QString platform = QGuiApplication::platformName();
    // These platforms draw nowhere: a dialog there would wait for a choice nobody can make.
    if (platform == QLatin1String("offscreen") || platform == QLatin1String("minimal")) {
        return Status::failure("the \"" + platform.toStdString() +
                               "\" window system cannot show dialogs");
    }
    return Status();
}

}  // namespace

Result<std::vector<std::string>> QtFilePicker::pickApplications() {
    if (const Status shown = dialogCanShow(); !shown.ok()) {
        return Status::failure("The file dialog could not be shown: " + shown.message() + ".");
    }
    const QString filter = onMacOS() ? QStringLiteral("Applications (*.app)")
                                     : QStringLiteral("Applications (*.desktop)");
    const QStringList chosen = QFileDialog::getOpenFileNames(
        QApplication::activeWindow(), QStringLiteral("Choose Applications"), startFolder(), filter);
    std::vector<std::string> paths;
    for (const QString& path : chosen) paths.push_back(path.toStdString());
    return paths;
}

}  // namespace marzipel
