#pragma once

#include "XPMutex.h"

#include <QList>
#include <functional>

class KPDoc;
class KPLongWork;
class QString;
class QUndoStack;

// Lays recognised text over the pages of PDF documents, beside other work; undone in the history,
// which takes the text off again and leaves what else was changed since.
// Threads: main. Ownership: none; work and history outlive what is begun.
namespace KPTextRecognising {

// `said` is given what was done, in words.
void start(const QList<KPDoc *> &docs, KPLongWork &work, QUndoStack &history,
           const std::function<void(const QString &)> &said) XP_REQUIRES(xpGuiThread);

} // namespace KPTextRecognising
