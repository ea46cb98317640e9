#include "KPCommentField.h"

#include "KPLook.h"

#include <QKeyEvent>
#include <algorithm>

static constexpr int fewestLines = 2;
static constexpr int mostLines = 8;

KPCommentField::KPCommentField(QWidget *parent) : QPlainTextEdit(parent)
{
    setFont(KPLook::font(KPLook::Type::Facts));
    setTabChangesFocus(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAccessibleName(qtTrId("KPComment"));
    connect(this, &QPlainTextEdit::textChanged, this, [this] { updateGeometry(); });
}

void KPCommentField::setComment(const QString &comment, bool differs)
{
    setPlaceholderText(differs ? qtTrId("KPCommentsDiffer") : qtTrId("KPCommentHint"));
    const bool isTyping = hasFocus() && toPlainText() != m_comment;
    if (isTyping || comment == m_comment)
        return;
    m_comment = comment;
    setPlainText(comment);
}

void KPCommentField::commit()
{
    const QString typed = toPlainText();
    if (typed == m_comment)
        return;
    m_comment = typed;
    Q_EMIT commented(typed);
}

// Lines as they are broken, so that the field grows with a long sentence too.
QSize KPCommentField::sizeHint() const
{
    const int line = fontMetrics().lineSpacing();
    const double lines = document()->size().height();
    const int shown = std::clamp(static_cast<int>(lines), fewestLines, mostLines);
    return {120,
            shown * line + 2 * frameWidth() + static_cast<int>(2 * document()->documentMargin())};
}

void KPCommentField::keyPressEvent(QKeyEvent *event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->key() == Qt::Key_Escape) {
        setPlainText(m_comment);
        Q_EMIT left();
    } else if (isReturn && event->modifiers().testFlag(Qt::ControlModifier)) {
        commit();
        Q_EMIT left();
    } else {
        QPlainTextEdit::keyPressEvent(event);
    }
}

void KPCommentField::focusOutEvent(QFocusEvent *event)
{
    QPlainTextEdit::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason)
        commit();
}

void KPCommentField::resizeEvent(QResizeEvent *event)
{
    QPlainTextEdit::resizeEvent(event);
    updateGeometry();
}
