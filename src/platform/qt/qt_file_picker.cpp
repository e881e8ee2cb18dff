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

/// Why no dialog can be shown now, or empty when one can.
QString whyNoDialog() {
    if (!qobject_cast<QApplication*>(QCoreApplication::instance())) {
        return QStringLiteral("the program has no window system to show it on");
    }
    const QString platform = QGuiApplication::platformName();
    // These platforms draw nowhere: a dialog there would wait for a choice nobody can make.
    if (platform == QLatin1String("offscreen") || platform == QLatin1String("minimal")) {
        return QStringLiteral("the \"%1\" window system cannot show dialogs").arg(platform);
    }
    return {};
}

}  // namespace

Result<std::vector<std::string>> QtFilePicker::pickApplications() {
    if (const QString reason = whyNoDialog(); !reason.isEmpty()) {
        return Status::failure("The file dialog could not be shown: " + reason.toStdString() + ".");
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
