#include "ui/key_release_filter.h"

#include <QKeyEvent>
#include <QWindow>

namespace marzipel {

KeyReleaseFilter::KeyReleaseFilter(SettingsViewModel& model, QObject* parent)
    : QObject(parent), model_(model) {}

bool KeyReleaseFilter::eventFilter(QObject* watched, QEvent* event) {
    // An application-wide filter sees one key event again for every widget it propagates
    // through; the window receives it exactly once, before any widget does.
    if (event->type() != QEvent::KeyRelease || !watched->isWindowType()) return false;
    const auto* key = static_cast<QKeyEvent*>(event);
    KeyRelease release;
    if (key->key() >= Qt::Key_A && key->key() <= Qt::Key_Z) {
        release.key = static_cast<char>('A' + (key->key() - Qt::Key_A));
    }
    release.shift = key->modifiers().testFlag(Qt::ShiftModifier);
    // Qt reports macOS's Command key as the control modifier.
    release.command = key->modifiers().testFlag(Qt::ControlModifier);
    release.autoRepeat = key->isAutoRepeat();
    model_.keyReleased(release);
    return false;
}

}  // namespace marzipel
