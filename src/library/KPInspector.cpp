// KPInspector: how it is built, and what it asks for.
#include "KPInspector.h"

#include "KPCommentField.h"
#include "KPDocIcons.h"
#include "KPFactsView.h"
#include "KPIconButton.h"
#include "KPLook.h"
#include "KPNameField.h"
#include "KPPageTurner.h"
#include "XPFlowLayout.h"
#include "XPStarsEditor.h"
#include "XPTagsEditor.h"

#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

static QLabel *makeLabel()
{
    auto *label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setMinimumWidth(1);
    return label;
}

static QLabel *note()
{
    QLabel *label = makeLabel();
    label->setForegroundRole(QPalette::PlaceholderText);
    label->setFont(KPLook::font(KPLook::Type::Facts));
    label->hide();
    return label;
}

static QLabel *heading(const QString &text, QWidget *buddy)
{
    auto *label = new QLabel(text);
    label->setFont(KPLook::font(KPLook::Type::Caption));
    label->setForegroundRole(QPalette::PlaceholderText);
    label->setBuddy(buddy);
    return label;
}

KPInspector::KPInspector(QWidget *parent)
    : QWidget(parent), m_picture(makeLabel()), m_turner(new KPPageTurner), m_name(makeLabel()),
      m_nameField(new KPNameField(this)), m_flag(new KPIconButton), m_stars(new XPStarsEditor),
      m_ratingNote(note()), m_tags(new XPTagsEditor(XPTagsEditor::Purpose::Edit)),
      m_some(new QWidget), m_tagsNote(note()), m_repair(new QPushButton),
      m_healingNote(new QWidget), m_healingText(note()), m_heal(new QPushButton),
      m_unheal(new QPushButton), m_comment(new KPCommentField), m_facts(new KPFactsView),
      m_stated(new KPFactsView), m_origins(new KPFactsView), m_attributesHeading(new QToolButton),
      m_attributes(new KPFactsView), m_nothing(new QWidget), m_content(new QWidget)
{
    build();
    connectEditors();
    show(KPSelectionFacts(), {});
}

void KPInspector::build()
{
    m_picture->setAlignment(Qt::AlignCenter);
    m_picture->setFixedHeight(pictureSide);
    m_picture->setAccessibleName(qtTrId("KPPictureOfDocument"));
    m_name->setAlignment(Qt::AlignHCenter);
    m_name->setFont(KPLook::font(KPLook::Type::Title));
    m_name->setToolTip(qtTrId("KPNameHint"));
    m_name->installEventFilter(this);
    m_flag->setCheckable(true);
    m_flag->setIcon(KPDocIcons::symbol(QStringLiteral("flag")));
    m_flag->setAccessibleName(qtTrId("KPFlag"));
    m_tags->setHint(qtTrId("KPTagsHint"), qtTrId("KPTags"));
    m_some->setLayout(new XPFlowLayout(m_some));
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    m_some->setSizePolicy(policy);

    auto *column = new QVBoxLayout(m_content);
    column->setContentsMargins(16, 16, 16, 16);
    column->setSpacing(4);
    column->addWidget(m_picture);
    column->addWidget(m_turner);
    column->addWidget(m_name);
    column->addWidget(m_nameField);
    auto *rating = new QHBoxLayout;
    rating->addWidget(m_stars);
    rating->addStretch(1);
    rating->addWidget(m_flag);
    column->addSpacing(8);
    column->addWidget(heading(qtTrId("KPRating"), m_stars));
    column->addLayout(rating);
    column->addWidget(m_ratingNote);
    column->addSpacing(8);
    column->addWidget(heading(qtTrId("KPTags"), m_tags));
    column->addWidget(m_tags);
    column->addWidget(m_some);
    buildNotes(column);
    column->addSpacing(8);
    column->addWidget(heading(qtTrId("KPComment"), m_comment));
    column->addWidget(m_comment);
    column->addSpacing(8);
    column->addWidget(heading(qtTrId("KPDetails"), nullptr));
    for (KPFactsView *view : {m_facts, m_stated, m_origins})
        column->addWidget(view);
    column->addSpacing(8);
    m_attributesHeading->setText(qtTrId("KPAttributes"));
    m_attributesHeading->setFont(KPLook::font(KPLook::Type::Caption));
    m_attributesHeading->setCheckable(true);
    m_attributesHeading->setAutoRaise(true);
    m_attributesHeading->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_attributesHeading->setArrowType(Qt::RightArrow);
    column->addWidget(m_attributesHeading);
    column->addWidget(m_attributes);
    m_attributes->hide();
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
    // With large letters it is wider, and nothing stands below the scroll bar.
    scroll->setMinimumWidth(m_content->minimumSizeHint().width() +
                            style()->pixelMetric(QStyle::PM_ScrollBarExtent));
    auto *outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(scroll);
    outer->addWidget(m_nothing);
    setMinimumWidth(220);
}

// What is said of tags that cannot be read, or that were put back.
void KPInspector::buildNotes(QVBoxLayout *column)
{
    column->addWidget(m_tagsNote);
    m_repair->setText(qtTrId("KPRepairAttributes"));
    column->addWidget(m_repair, 0, Qt::AlignLeft);
    auto *healing = new QVBoxLayout(m_healingNote);
    healing->setContentsMargins(0, 4, 0, 0);
    healing->setSpacing(4);
    healing->addWidget(m_healingText);
    m_healingText->setVisible(true);
    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(4);
    m_heal->setText(qtTrId("KPHealAccept"));
    for (QPushButton *button : {m_heal, m_unheal})
        buttons->addWidget(button);
    buttons->addStretch(1);
    healing->addLayout(buttons);
    column->addWidget(m_healingNote);
}

void KPInspector::connectEditors()
{
    connect(m_tags, &XPTagsEditor::tagsEdited, this, &KPInspector::requestTags);
    connect(m_tags, &XPTagsEditor::left, this, &KPInspector::left);
    connect(m_stars, &XPStarsEditor::rated, this, &KPInspector::requestRating);
    connect(m_turner, &KPPageTurner::turned, this, &KPInspector::pageRequested);
    connect(m_comment, &KPCommentField::left, this, &KPInspector::left);
    connect(m_comment, &KPCommentField::commented, this, [this](const QString &comment) {
        KPFileEdit edit{paths(), {}, {}};
        edit.comment = comment;
        Q_EMIT editRequested(edit);
    });
    connect(m_nameField, &KPNameField::renamed, this, &KPInspector::renameRequested);
    connect(m_nameField, &KPNameField::ended, this, [this] {
        m_name->show();
        Q_EMIT left();
    });
    connect(m_flag, &QAbstractButton::clicked, this,
            [this](bool isOn) { Q_EMIT flagRequested(paths(), isOn); });
    connect(m_repair, &QAbstractButton::clicked, this, [this] { Q_EMIT repairRequested(paths()); });
    const auto decide = [this](bool accepts) {
        m_healingNote->setEnabled(false);
        if (m_healing)
            Q_EMIT healingDecided(*m_healing, accepts);
    };
    connect(m_heal, &QAbstractButton::clicked, this, [decide] { decide(true); });
    connect(m_unheal, &QAbstractButton::clicked, this, [decide] { decide(false); });
    connect(m_attributesHeading, &QAbstractButton::toggled, this, [this](bool isOpen) {
        m_attributesHeading->setArrowType(isOpen ? Qt::DownArrow : Qt::RightArrow);
        m_attributes->setVisible(isOpen);
    });
}

void KPInspector::setSuggestions(std::function<QStringList()> suggestions)
{
    m_tags->setSuggestions(std::move(suggestions));
}

void KPInspector::focusTags()
{
    m_tags->focusEntry();
}

void KPInspector::editName()
{
    if (m_documents.size() != 1 || m_documents.first()->isGone())
        return;
    m_name->hide();
    m_nameField->start(m_documents.first());
}

bool KPInspector::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_name && event->type() == QEvent::MouseButtonDblClick) {
        editName();
        return true;
    }
    return QWidget::eventFilter(watched, event);
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
        requestTagsOfAll(before, m_commonTags);
}

void KPInspector::requestTagsOfAll(const QStringList &before, const QStringList &after)
{
    Q_EMIT editRequested({paths(), KPFileEdit::Tags{before, after}, {}});
}

void KPInspector::requestRating(int stars)
{
    m_ratingNote->hide();
    Q_EMIT editRequested({paths(), {}, stars});
}
