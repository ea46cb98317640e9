#pragma once

#include "XPMutex.h"

class KPDoc;
class QUndoStack;
class QWidget;

// Asks for a document's new name over `window`, and gives it to the file; undone in the history.
// An empty or hidden name is none: the old one stays. Threads: main.
namespace KPRenameDialog {

void open(KPDoc *doc, QUndoStack &history, QWidget *window) XP_REQUIRES(xpGuiThread);

} // namespace KPRenameDialog
