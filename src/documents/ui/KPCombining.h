#pragma once

#include "XPMutex.h"

#include <QList>
#include <functional>

class KPDoc;
class KPLongWork;
class QUndoStack;
class QWidget;

// Makes one PDF of several: asks for order and name, files the new document and shows it. Its
// making is undone in the history: it goes to the trash then.
// Threads: main. Ownership: none; work and history outlive what is begun.
namespace KPCombining {

constexpr qsizetype mostDocuments = 1000; // at once

// `changed` is called after each undo and redo.
void start(const QList<KPDoc *> &docs, KPLongWork &work, QUndoStack &history, QWidget *window,
           std::function<void()> changed) XP_REQUIRES(xpGuiThread);

} // namespace KPCombining
