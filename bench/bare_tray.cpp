// The least a Qt 6 tray program can be: an icon with a one-item menu and nothing behind it. The
// bench script measures it next to marzipel, as the floor for marzipel's own idle cost.
#include <QApplication>
#include <QMenu>
#include <QPainter>
#include <QPixmap>
#include <QSystemTrayIcon>

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);

    QPixmap pixmap(22, 22);
    pixmap.fill(Qt::transparent);
    {
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setBrush(Qt::white);
        painter.setPen(QPen(Qt::black, 2));
        painter.drawRoundedRect(QRectF(3, 4, 16, 12), 2, 2);
    }
    QMenu menu;
    menu.addAction(QStringLiteral("Quit"), &application, &QApplication::quit);
    QSystemTrayIcon icon{QIcon(pixmap)};
    icon.setContextMenu(&menu);
    icon.show();
    return QApplication::exec();
}
