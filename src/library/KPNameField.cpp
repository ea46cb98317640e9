#include "KPNameField.h"

#include "KPDoc.h"
#include "KPFilenameFormatter.h"
#include "XPPath.h"

#include <QKeyEvent>

KPNameField::KPNameField(QWidget *parent) : QLineEdit(parent)
{
    setAlignment(Qt::AlignHCenter);
    setAccessibleName(qtTrId("KPRenameLabel"));
    setContextMenuPolicy(Qt::NoContextMenu);
    hide();
}

QString KPNameField::shownName(const KPDoc &doc)
{
    return KPDoc::changeCharsForNameToFinderDisplayMode(doc.fsName());
}

void KPNameField::selectBaseName(QLineEdit &field, const QString &name)
{
    const qsizetype extension = XPPath::extension(name).size();
    const qsizetype length = name.size() - (extension > 0 ? extension + 1 : 0);
    field.setSelection(0, static_cast<int>(length));
}

std::optional<QString> KPNameField::newName(const KPDoc &doc, const QString &typed)
{
    if (doc.isGone())
        return {};
    QLineEdit shown(shownName(doc)); // a field may hold less than a name does
    KPFilenameFormatter formatter;
    formatter.originalDisplayName = shown.text();
    const QString name = formatter.getObjectValueForString(typed);
    return name == shown.text() ? std::nullopt : std::optional(name);
}

void KPNameField::start(KPDoc *doc)
{
    m_doc = doc;
    setText(shownName(*doc));
    show();
    setFocus();
    selectBaseName(*this, text());
}

void KPNameField::stop()
{
    if (!std::exchange(m_doc, nullptr))
        return;
    hide();
    Q_EMIT ended();
}

void KPNameField::commit()
{
    KPDoc *doc = m_doc;
    if (!doc)
        return;
    const QString typed = text();
    stop();
    if (const auto name = newName(*doc, typed))
        Q_EMIT renamed(doc, *name);
}

void KPNameField::keyPressEvent(QKeyEvent *event)
{
    const int key = event->key();
    if (key == Qt::Key_Escape)
        stop();
    else if (key == Qt::Key_Return || key == Qt::Key_Enter)
        commit();
    else
        QLineEdit::keyPressEvent(event);
}

void KPNameField::focusOutEvent(QFocusEvent *event)
{
    QLineEdit::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason && event->reason() != Qt::ActiveWindowFocusReason)
        commit();
}
