// KPInspector: what it shows.
#include "KPCommentField.h"
#include "KPDocIcons.h"
#include "KPEditSummary.h"
#include "KPFactsView.h"
#include "KPIconButton.h"
#include "KPInspector.h"
#include "KPLibraryModel.h"
#include "KPNameField.h"
#include "KPPageTurner.h"
#include "XPFileSize.h"
#include "XPFlowLayout.h"
#include "XPPath.h"
#include "XPPropertyList.h"
#include "XPStarsEditor.h"
#include "XPTagChip.h"
#include "XPTagsEditor.h"

#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QScrollArea>
#include <QToolButton>
#include <algorithm>

using Fact = KPDocumentFacts::Fact;

// Of more, the comments are not compared.
static constexpr qsizetype mostCompared = 5000;
static constexpr qsizetype mostSomeTags = 12;

void KPInspector::show(const KPSelectionFacts &facts, const Appearance &appearance)
{
    const KPDoc::Docs &documents = facts.documents();
    if (!std::ranges::equal(documents, m_documents)) {
        m_comment->commit(); // what is being typed is for those before
        m_tags->takeTyped();
        m_nameField->stop();
        m_documents = documents;
    }
    m_commonTags = facts.commonTags();
    m_nothing->setVisible(documents.isEmpty());
    m_content->parentWidget()->parentWidget()->setVisible(!documents.isEmpty());
    if (documents.isEmpty())
        return;
    showPicture(appearance);
    showNames(documents);
    showFacts(facts, appearance);
    showEditors(facts);
    showSomeTags(facts);
    showComment(facts.canEdit());
    showNotes(facts, appearance.contents.get());
}

void KPInspector::showPicture(const Appearance &appearance)
{
    const double ratio = devicePixelRatioF();
    QPixmap picture = appearance.picture;
    if (picture.isNull())
        picture = KPDocIcons::forUTI(appearance.uti).pixmap(QSize(pictureSide, pictureSide), ratio);
    else if (picture.width() > pictureSide * ratio || picture.height() > pictureSide * ratio)
        picture = picture.scaled((QSizeF(pictureSide, pictureSide) * ratio).toSize(),
                                 Qt::KeepAspectRatio, Qt::SmoothTransformation);
    picture.setDevicePixelRatio(ratio);
    m_picture->setPixmap(picture);
    const int pages = m_documents.size() == 1
                          ? KPDocumentFacts::pages(*m_documents.first(), appearance.contents.get())
                          : 0;
    m_turner->setPages(appearance.page, pages);
}

void KPInspector::showNames(const KPDoc::Docs &documents)
{
    if (documents.size() == 1)
        m_name->setText(KPFactsView::breakable(KPLibraryModel::displayName(*documents.first())));
    else
        m_name->setText(qtTrId("KPDocumentCount", static_cast<int>(documents.size()))
                            .arg(QLocale().toString(documents.size())));
}

static QList<Fact> factsOfMany(const KPSelectionFacts &facts)
{
    QList<Fact> result = {{qtTrId("KPFactTotalSize"), xpFileSizeInWords(facts.size()), {}}};
    const QDate first = facts.oldest();
    const QDate last = facts.newest();
    const auto text = [](const QDate &day) {
        return QLocale().toString(day, QLocale::ShortFormat);
    };
    if (first.isValid())
        result.append(
            {qtTrId("KPFactModified"),
             first == last ? text(first) : qtTrId("KPFactFromTo").arg(text(first), text(last)),
             {}});
    return result;
}

void KPInspector::showFacts(const KPSelectionFacts &facts, const Appearance &appearance)
{
    const bool isOne = m_documents.size() == 1;
    const KPContentsReader::Contents *contents = isOne ? appearance.contents.get() : nullptr;
    if (isOne) {
        const KPDoc &doc = *m_documents.first();
        m_facts->setFacts(KPDocumentFacts::ofFile(doc, appearance.uti));
        m_stated->setFacts(KPDocumentFacts::ofContents(doc, contents));
        m_origins->setFacts(KPDocumentFacts::origins(doc, contents));
    } else {
        m_facts->setFacts(factsOfMany(facts));
        m_stated->setFacts({});
        m_origins->setFacts({});
    }
    m_attributes->setFacts(contents ? KPDocumentFacts::attributes(*contents) : QList<Fact>());
    for (KPFactsView *view : {m_stated, m_origins})
        view->setVisible(!view->isEmpty());
    m_attributesHeading->setVisible(!m_attributes->isEmpty());
    m_attributes->setVisible(!m_attributes->isEmpty() && m_attributesHeading->isChecked());
}

void KPInspector::showEditors(const KPSelectionFacts &facts)
{
    const std::optional<double> rating = facts.rating();
    const bool differs = !rating;
    m_stars->setRating(rating.value_or(0));
    m_ratingNote->setText(differs ? qtTrId("KPRatingsDiffer") : QString());
    m_ratingNote->setVisible(differs);
    m_tags->setTags(m_commonTags);
    m_stars->setEnabled(facts.canEdit());
    m_tags->setEnabled(facts.canEdit());
    m_flag->setEnabled(facts.canEdit());
    const bool isFlagged = m_commonTags.contains(QStringLiteral("flagged"), Qt::CaseInsensitive);
    m_flag->setChecked(isFlagged);
    m_flag->setToolTip(isFlagged ? qtTrId("KPUnflag") : qtTrId("KPFlag"));
}

// Tags that not all of them have: a click gives one to all, its cross takes it from those.
void KPInspector::showSomeTags(const KPSelectionFacts &facts)
{
    const auto some = facts.someTags(mostSomeTags);
    const auto same = [](const KPSelectionFacts::Some &a, const KPSelectionFacts::Some &b) {
        return a.tag == b.tag && a.count == b.count;
    };
    if (std::equal(some.begin(), some.end(), m_someTags.begin(), m_someTags.end(), same)) {
        m_some->setVisible(!some.isEmpty());
        return;
    }
    m_someTags = some;
    auto *row = static_cast<XPFlowLayout *>(m_some->layout());
    while (QLayoutItem *item = row->takeAt(0)) {
        item->widget()->hide();
        item->widget()->deleteLater(); // its own click may have brought us here
        delete item;
    }
    for (const KPSelectionFacts::Some &each : some) {
        auto *chip = new XPTagChip(each.tag, m_some);
        chip->setPartial(each.count, m_documents.size());
        row->insertWidget(row->count(), chip);
        chip->show();
        connect(chip, &XPTagChip::clicked, this, [this, tag = each.tag] {
            requestTagsOfAll(m_commonTags, m_commonTags + QStringList{tag});
        });
        connect(chip, &XPTagChip::removeRequested, this, [this, tag = each.tag] {
            requestTagsOfAll(m_commonTags + QStringList{tag}, m_commonTags);
        });
    }
    m_some->setVisible(!some.isEmpty());
    m_some->updateGeometry();
}

void KPInspector::showComment(bool canEdit)
{
    const QString first = m_documents.first()->spotlightComment();
    const bool differs = m_documents.size() > mostCompared ||
                         std::any_of(m_documents.begin(), m_documents.end(), [&](const KPDoc *doc) {
                             return doc->spotlightComment() != first;
                         });
    m_comment->setComment(differs ? QString() : first, differs);
    m_comment->setEnabled(canEdit);
}

static QString tagsOf(const KPHealing &healing)
{
    const QByteArray bytes = healing.attributes.value(QStringLiteral("kMDItemKXUserTags"));
    const QStringList tags = XPPropertyList::read(bytes).valueOr({}).strings();
    return XPPath::printable(tags.join(QStringLiteral(", ")));
}

void KPInspector::showNotes(const KPSelectionFacts &facts,
                            const KPContentsReader::Contents *contents)
{
    const bool isOne = m_documents.size() == 1;
    QString note;
    if (facts.unreadable() > 0 && isOne)
        note = qtTrId("KPTagsUnreadableBecause").arg(XPPath::printable(facts.error()));
    else if (facts.unreadable() > 0)
        note = qtTrId("KPSomeTagsUnreadable", static_cast<int>(facts.unreadable()));
    else if (contents && !contents->unreadable.isEmpty())
        note = qtTrId("KPAttributesUnreadable", static_cast<int>(contents->unreadable.size()));
    else if (!isOne)
        note = qtTrId("KPCommonTagsOnly");
    m_tagsNote->setText(note);
    m_tagsNote->setVisible(!note.isEmpty());
    m_repair->setVisible(facts.unreadable() > 0 || (contents && !contents->unreadable.isEmpty()));

    m_healing.reset();
    if (contents && !contents->healings.isEmpty())
        m_healing = contents->healings.first();
    m_healingNote->setVisible(m_healing.has_value());
    if (!m_healing)
        return;
    m_healingNote->setEnabled(true);
    const bool isHealed = m_healing->state == KPHealing::State::Healed;
    const QString when = KPDocumentFacts::text(PropertyValue(m_healing->time));
    m_healingText->setText(isHealed ? qtTrId("KPHealed").arg(when, tagsOf(*m_healing))
                                    : qtTrId("KPHealPending").arg(when, tagsOf(*m_healing)));
    m_heal->setVisible(!isHealed);
    m_unheal->setText(isHealed ? qtTrId("KPHealUndo") : qtTrId("KPHealRefuse"));
}
