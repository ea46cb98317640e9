#include "KPDocsKeys.h"

#include "KPArrangedDocs.h"

#include <QKeyEvent>

bool KPDocsKeys::typeAhead(const QKeyEvent &event)
{
    int row = -1;
    const KPTypeAhead::Names names{m_docs.count(),
                                   [this](int number) { return m_docs.at(number)->fsName(); }};
    if (!m_typeAhead.take(event, names, m_docs.selection().current(), &row))
        return false;
    if (row >= 0)
        m_docs.selectRow(row);
    scrollSelectionToVisible();
    return true;
}

bool KPDocsKeys::press(QKeyEvent &event, int columns)
{
    const Answer answered = answer(event, columns);
    event.setAccepted(answered == Answer::Taken);
    return answered != Answer::Standard;
}

KPDocsKeys::Answer KPDocsKeys::answer(const QKeyEvent &event, int columns)
{
    if (typeAhead(event))
        return Answer::Taken;
    const bool isPlain = !(event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier));
    switch (event.key()) {
    case Qt::Key_Home:
        m_docs.selectFirst(false);
        return Answer::Taken;
    case Qt::Key_End:
        m_docs.selectLast(false);
        return Answer::Taken;
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return isPlain ? Answer::Standard : Answer::NotTaken;
    default:
        break;
    }
    if (handleKeyDown(event))
        return Answer::Taken;
    if (m_docs.selection().isEmpty() && m_docs.count() == 1)
        m_docs.selectRow(0);
    if (event.key() == Qt::Key_Escape) {
        m_typeAhead.reset();
        cancel();
        return Answer::Taken;
    }
    return !m_docs.selection().isEmpty() && doCommand(event, columns) ? Answer::Taken
                                                                      : Answer::NotTaken;
}

bool KPDocsKeys::doCommand(const QKeyEvent &event, int columns)
{
    const bool isExtended = event.modifiers() & Qt::ShiftModifier;
    const bool isCommand = event.modifiers() & Qt::ControlModifier;
    switch (event.key()) {
    case Qt::Key_Left:
        m_docs.modifySelectedBy(-1, isExtended, !isExtended);
        return true;
    case Qt::Key_Right:
        m_docs.modifySelectedBy(1, isExtended, !isExtended);
        return true;
    case Qt::Key_Up:
        isCommand ? m_docs.selectFirst(isExtended)
                  : m_docs.modifySelectedBy(-columns, isExtended, false);
        return true;
    case Qt::Key_Down:
        isCommand ? m_docs.selectLast(isExtended)
                  : m_docs.modifySelectedBy(columns, isExtended, false);
        return true;
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        removeOrDelete(isCommand);
        return true;
    default:
        return false;
    }
}
