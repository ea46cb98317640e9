#pragma once

#include "KPTypeAhead.h"

#include <functional>

class KPArrangedDocs;
class QKeyEvent;

// What keys do among documents, in the grid and in the list alike, in this order: names typed,
// Home and End, what the window's controller takes, and moving the selection.
// Threads: main. The documents are not owned.
class KPDocsKeys
{
public:
    explicit KPDocsKeys(KPArrangedDocs &docs) : m_docs(docs) {}

    // Installed by the controller.
    std::function<bool(const QKeyEvent &)> handleKeyDown;
    std::function<void(bool commandKey)> removeOrDelete;
    std::function<void()> cancel; // Escape
    std::function<void()> scrollSelectionToVisible;

    // A view's key press, which is accepted or ignored. `columns`: how many documents up and down
    // pass over. False: the standard handling of views is to follow.
    bool press(QKeyEvent &event, int columns);

private:
    enum class Answer { Taken, NotTaken, Standard };
    Answer answer(const QKeyEvent &event, int columns);
    bool typeAhead(const QKeyEvent &event);
    bool doCommand(const QKeyEvent &event, int columns);

    KPArrangedDocs &m_docs;
    KPTypeAhead m_typeAhead;
};
