#include "KPInspector.h"

#include "KPDocIcons.h"
#include "KPEditSummary.h"
#include "KPFileType.h"
#include "KPLibraryModel.h"
#include "XPFolders.h"
#include "XPPath.h"
#include "XPStarsEditor.h"
#include "XPTagsEditor.h"

#include <QDateTime>
#include <QFormLayout>
#include <QLabel>
#include <QLocale>
#include <QScrollArea>
#include <QVBoxLayout>

// Paths may be cut after a slash and long words anywhere: they must not widen the pane.
static QString breakable(const QString &text)
{
    static constexpr int longestWord = 20;
    static constexpr QChar maybeBreak(0x200B);
    QString result;
    int run = 0;
    for (const QChar c : text) {
        result.append(c);
        run = c.isSpace() || c == u'/' ? 0 : run + 1;
        if (c == u'/' || (run >= longestWord && !c.isHighSurrogate()))
            result.append(maybeBreak);
    }
    return result;
}

// The home folder as "~".
static QString shortened(const QString &folder)
{
    const QString home = XPFolders::home();
    const bool within = folder == home || folder.startsWith(home + u'/');
    return within ? u'~' + folder.mid(home.size()) : folder;
}

QLabel *KPInspector::makeLabel()
{
    auto *label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setMinimumWidth(1);
    return label;
}

static QLabel *heading(const QString &text, QWidget *buddy)
{
    auto *label = new QLabel(text);
    QFont font = label->font();
    font.setWeight(QFont::DemiBold);
    label->setFont(font);
    label->setBuddy(buddy);
    return label;
}

KPInspector::KPInspector(QWidget *parent)
    : QWidget(parent), m_picture(makeLabel()), m_name(makeLabel()), m_stars(new XPStarsEditor),
      m_ratingNote(makeLabel()), m_tags(new XPTagsEditor(XPTagsEditor::Purpose::Edit)),
      m_tagsNote(makeLabel()), m_details(new QFormLayout), m_nothing(new QWidget),
      m_content(new QWidget)
{
    m_picture->setAlignment(Qt::AlignCenter);
    m_picture->setFixedHeight(pictureSide);
    m_name->setAlignment(Qt::AlignHCenter);
    m_tagsNote->setForegroundRole(QPalette::PlaceholderText);
    m_ratingNote->setForegroundRole(QPalette::PlaceholderText);
    m_name->setTextInteractionFlags(Qt::TextSelectableByMouse);
    QFont font = m_name->font();
    font.setWeight(QFont::DemiBold);
    m_name->setFont(font);
    m_tags->setHint(qtTrId("KPTagsHint"), qtTrId("KPTags"));
    m_details->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    m_details->setRowWrapPolicy(QFormLayout::DontWrapRows);
    m_details->setLabelAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_details->setHorizontalSpacing(10);
    m_details->setVerticalSpacing(5);

    auto *column = new QVBoxLayout(m_content);
    column->setContentsMargins(14, 14, 14, 14);
    column->setSpacing(6);
    column->addWidget(m_picture);
    column->addWidget(m_name);
    column->addSpacing(10);
    column->addWidget(heading(qtTrId("KPRating"), m_stars));
    column->addWidget(m_stars);
    column->addWidget(m_ratingNote);
    column->addSpacing(10);
    column->addWidget(heading(qtTrId("KPTags"), m_tags));
    column->addWidget(m_tags);
    column->addWidget(m_tagsNote);
    column->addSpacing(10);
    column->addWidget(heading(qtTrId("KPDetails"), nullptr));
    column->addLayout(m_details);
    column->addStretch(1);

    auto *hint = makeLabel();
    hint->setText(qtTrId("KPNothingSelected"));
    hint->setAlignment(Qt::AlignCenter);
    hint->setForegroundRole(QPalette::PlaceholderText);
    auto *nothing = new QVBoxLayout(m_nothing);
    nothing->setContentsMargins(24, 24, 24, 24);
    nothing->addWidget(hint);

    auto *scroll = new QScrollArea;
    scroll->setWidget(m_content);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setFocusPolicy(Qt::NoFocus);
    auto *outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(scroll);
    outer->addWidget(m_nothing);
    setMinimumWidth(220);

    connect(m_tags, &XPTagsEditor::tagsEdited, this, &KPInspector::requestTags);
    connect(m_tags, &XPTagsEditor::left, this, &KPInspector::left);
    connect(m_stars, &XPStarsEditor::rated, this, &KPInspector::requestRating);
    show(KPSelectionFacts(), {});
}

void KPInspector::setSuggestions(std::function<QStringList()> suggestions)
{
    m_tags->setSuggestions(std::move(suggestions));
}

void KPInspector::focusTags()
{
    m_tags->focusEntry();
}

// Showing.

void KPInspector::show(const KPSelectionFacts &facts, const Appearance &appearance)
{
    const KPDoc::Docs &documents = facts.documents();
    m_documents = documents;
    m_commonTags = facts.commonTags();
    m_nothing->setVisible(documents.isEmpty());
    m_content->parentWidget()->parentWidget()->setVisible(!documents.isEmpty());
    if (documents.isEmpty())
        return;
    const double ratio = devicePixelRatioF();
    QPixmap picture = appearance.picture;
    if (picture.isNull())
        picture = KPDocIcons::forUTI(appearance.uti).pixmap(QSize(pictureSide, pictureSide), ratio);
    else if (picture.width() > pictureSide * ratio || picture.height() > pictureSide * ratio)
        picture = picture.scaled((QSizeF(pictureSide, pictureSide) * ratio).toSize(),
                                 Qt::KeepAspectRatio, Qt::SmoothTransformation);
    picture.setDevicePixelRatio(ratio);
    m_picture->setPixmap(picture);
    showNames(documents);
    showFacts(facts, appearance.uti);
    showEditors(facts);
}

void KPInspector::showNames(const KPDoc::Docs &documents)
{
    if (documents.size() == 1)
        m_name->setText(breakable(KPLibraryModel::displayName(*documents.first())));
    else
        m_name->setText(qtTrId("KPDocumentCount", static_cast<int>(documents.size()))
                            .arg(QLocale().toString(documents.size())));
}

void KPInspector::addFact(const char *id, const QString &value)
{
    auto *label = makeLabel();
    label->setText(value);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto *name = new QLabel(qtTrId(id));
    name->setAlignment(Qt::AlignTop);
    name->setForegroundRole(QPalette::PlaceholderText);
    m_details->addRow(name, label);
}

static QString dateText(const QDateTime &date)
{
    return QLocale().toString(date.toLocalTime(), QLocale::ShortFormat);
}

void KPInspector::showFacts(const KPSelectionFacts &facts, const QString &uti)
{
    const KPDoc::Docs &documents = facts.documents();
    while (m_details->rowCount() > 0)
        m_details->removeRow(0);
    const QString size = QLocale().formattedDataSize(facts.size(), 1, QLocale::DataSizeSIFormat);
    if (documents.size() > 1) {
        addFact(QT_TRID_NOOP("KPFactTotalSize"), size);
        return;
    }
    const KPDoc &doc = *documents.first();
    addFact(QT_TRID_NOOP("KPFactType"), KPFileType::displayNameForUTI(uti));
    addFact(QT_TRID_NOOP("KPFactSize"), size);
    addFact(QT_TRID_NOOP("KPFactModified"), dateText(doc.unixFileModificationDate()));
    if (const QDateTime created = doc.creationDate(); created.isValid())
        addFact(QT_TRID_NOOP("KPFactCreated"), dateText(created));
    addFact(QT_TRID_NOOP("KPFactFolder"),
            breakable(XPPath::printable(shortened(doc.parentPath()))));
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
    QString note;
    if (facts.unreadable() > 0 && m_documents.size() == 1)
        note = qtTrId("KPTagsUnreadableBecause").arg(XPPath::printable(facts.error()));
    else if (facts.unreadable() > 0)
        note = qtTrId("KPSomeTagsUnreadable", static_cast<int>(facts.unreadable()));
    else if (m_documents.size() > 1)
        note = qtTrId("KPCommonTagsOnly");
    m_tagsNote->setText(note);
    m_tagsNote->setVisible(!note.isEmpty());
}

// Asking.

QStringList KPInspector::paths() const
{
    QStringList paths;
    for (const KPDoc *doc : m_documents)
        paths.append(doc->filePath());
    return paths;
}

void KPInspector::requestTags()
{
    const QStringList before = std::exchange(m_commonTags, m_tags->tags());
    if (before != m_commonTags)
        Q_EMIT editRequested({paths(), KPFileEdit::Tags{before, m_commonTags}, {}});
}

void KPInspector::requestRating(int stars)
{
    m_ratingNote->hide();
    Q_EMIT editRequested({paths(), {}, stars});
}
