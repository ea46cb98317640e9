#include "XPTagsTokenFieldController.h"

#include "KPButtonRow.h"
#include "KPDocServices.h"
#include "KPRecentTagGroups.h"
#include "KPTagName.h"
#include "KPTagSuggestions.h"
#include "XPMutex.h"
#include "XPTagEntry.h"

#include <QAction>
#include <QEvent>
#include <QLineEdit>
#include <QPointer>
#include <QToolButton>

static constexpr qsizetype mostMatches = 8;

XPTagsTokenFieldController::XPTagsTokenFieldController(XPTagsEditor *field)
    : QObject(field), m_field(field)
{
    m_field->entry()->installEventFilter(this);
    connect(m_field, &XPTagsEditor::tagsEdited, this, &XPTagsTokenFieldController::readCompany);
}

QStringList XPTagsTokenFieldController::tags() const
{
    QStringList texts = m_field->tags();
    texts.append(m_field->entry()->text());
    return tagDisplayNamesForEditingStrings(texts, true, false);
}

// --- Conversions

QString XPTagsTokenFieldController::displayStringToUserString(const QString &tag)
{
    return XPTagEntry::typed(tag);
}

QString XPTagsTokenFieldController::userStringToDisplayString(const QString &text)
{
    return XPTagEntry::tagOfTyped(text);
}

QStringList XPTagsTokenFieldController::tagDisplayNamesForEditingStrings(const QStringList &texts,
                                                                         bool removeDuplicates,
                                                                         bool changeCaseOK)
{
    QStringList tags;
    for (const QString &text : texts)
        tags.append(userStringToDisplayString(text));
    return KPTagName::displayStringsForTagNames(
        KPTagName::tagNamesForUserEnteredTags(tags, removeDuplicates, changeCaseOK));
}

QString XPTagsTokenFieldController::grepStringForTags(const QStringList &tags)
{
    QStringList words;
    for (const QString &tag : tags) {
        if (const QString text = displayStringToUserString(tag); !text.isEmpty())
            words.append(QStringLiteral("tag:") + text);
    }
    return words.join(u' ');
}

QStringList XPTagsTokenFieldController::customTags()
{
    return KPTagSuggestions::customWords();
}

void XPTagsTokenFieldController::rebuildFavoriteTagButtons(QWidget *row, const ButtonTarget &target)
{
    auto *buttons = qobject_cast<KPButtonRow *>(row);
    if (!buttons)
        return;
    buttons->clear();
    for (const QStringList &group : KPRecentTagGroups::groups()) {
        QToolButton *button = buttons->add(group.join(QStringLiteral(", ")));
        connect(button, &QToolButton::clicked, button, [target, group] { target(group); });
        button->setContextMenuPolicy(Qt::ActionsContextMenu);
        auto *remove = new QAction(qtTrId("KPRemoveFromRecents"), button);
        connect(remove, &QAction::triggered, row, [row, target, group] {
            KPRecentTagGroups::removeGroup(group);
            rebuildFavoriteTagButtons(row, target);
        });
        button->addAction(remove);
    }
}

// --- What the library knows

bool XPTagsTokenFieldController::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn) {
        m_field->setHint(XPTagEntry::hint(), m_field->entry()->accessibleName());
        readLibrary();
        readCompany();
    }
    return QObject::eventFilter(watched, event);
}

void XPTagsTokenFieldController::readLibrary()
{
    xpGuiThread.assertHere();
    auto read = std::make_shared<KPTagCompletion::Ptr>();
    KPDocServices::current().runFileWork([read] { *read = KPTagCompletion::read(); },
                                         [self = QPointer(this), read] {
                                             if (self)
                                                 self->complete(*read);
                                         });
}

void XPTagsTokenFieldController::complete(const KPTagCompletion::Ptr &completion)
{
    m_field->setCompletion([this, completion](const QString &typed) {
        QList<XPTagSuggestion> suggestions;
        for (const auto &match :
             completion->matches(typed, m_field->tags(), m_together, mostMatches))
            suggestions.append({match.tag, match.count});
        return suggestions;
    });
}

void XPTagsTokenFieldController::readCompany()
{
    xpGuiThread.assertHere();
    const QStringList tags = m_field->tags();
    if (tags == m_companyOf)
        return;
    m_companyOf = tags;
    auto read = std::make_shared<KPTagCompletion::Counts>();
    KPDocServices::current().runFileWork([read, tags] { *read = KPTagCompletion::usedWith(tags); },
                                         [self = QPointer(this), read, tags] {
                                             if (self && self->m_companyOf == tags)
                                                 self->m_together = *read;
                                         });
}
