#include "ui/qt_main_loop.h"

#include <QCoreApplication>

namespace marzipel {

PostToMainLoop qtMainLoop() {
    return [](std::function<void()> task) {
        QMetaObject::invokeMethod(QCoreApplication::instance(), std::move(task),
                                  Qt::QueuedConnection);
    };
}

}  // namespace marzipel
