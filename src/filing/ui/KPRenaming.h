#pragma once

#include "XPMutex.h"

#include <QString>

class KPDoc;
class QUndoStack;

// Gives a document's file the name that was typed for it; undone in the history. Threads: main.
namespace KPRenaming {

void rename(KPDoc *doc, const QString &typed, QUndoStack &history) XP_REQUIRES(xpGuiThread);

} // namespace KPRenaming
