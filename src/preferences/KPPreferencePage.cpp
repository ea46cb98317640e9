#include "KPPreferencePage.h"

#include "KPLook.h"
#include "XPText.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QEvent>
#include <QLabel>
#include <QVBoxLayout>

// On the grid of 4 that the whole program keeps.
static constexpr int margin = 24;
static constexpr int groupGap = 24;
static constexpr int partGap = 8;
static constexpr int widest = 680; // lines longer than this are hard to read

KPPreferencePage::KPPreferencePage(const QString &title, QWidget *parent)
    : QScrollArea(parent), m_title(title)
{
    setFrameShape(NoFrame);
    setFocusPolicy(Qt::NoFocus); // what is in it has the focus
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAccessibleName(title);
    auto *inside = new QWidget;
    auto *line = new QHBoxLayout(inside);
    line->setContentsMargins(margin, margin, margin, margin);
    auto *column = new QWidget;
    column->setMaximumWidth(widest);
    line->addWidget(column, 100);
    line->addStretch(1);
    m_column = new QVBoxLayout(column);
    m_column->setContentsMargins(0, 0, 0, 0);
    m_column->setSpacing(groupGap);
    auto *head = new QLabel(title);
    head->setFont(KPLook::font(KPLook::Type::Heading));
    m_column->addWidget(head);
    m_column->addStretch(1);
    setWidget(inside);
}

KPPreferencePage::Group &KPPreferencePage::groupNamed(const QString &name)
{
    for (Group &group : m_groups) {
        if (group.name == name)
            return group;
    }
    auto *heading = new QLabel(name);
    heading->setFont(KPLook::font(KPLook::Type::Title));
    auto *layout = new QVBoxLayout;
    layout->setSpacing(partGap);
    layout->addWidget(heading);
    m_column->insertLayout(m_column->count() - 1, layout);
    m_groups.push_back({name, heading, layout, {}});
    return m_groups.back();
}

void KPPreferencePage::add(const QString &heading, QWidget *part)
{
    Group &group = groupNamed(heading);
    group.layout->addWidget(part);
    group.parts.push_back(part);
    // Turning the wheel over a control scrolls the page, as everywhere else.
    for (QWidget *control : part->findChildren<QWidget *>()) {
        if (qobject_cast<QAbstractSpinBox *>(control) || qobject_cast<QComboBox *>(control)) {
            control->setFocusPolicy(Qt::StrongFocus);
            control->installEventFilter(this);
        }
    }
}

bool KPPreferencePage::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Wheel && !static_cast<QWidget *>(watched)->hasFocus()) {
        event->ignore();
        return true;
    }
    return QScrollArea::eventFilter(watched, event);
}

static QString textsOf(const QWidget *part)
{
    QString texts;
    for (const QLabel *label : part->findChildren<QLabel *>())
        texts += label->text() + u' ';
    for (const QAbstractButton *button : part->findChildren<QAbstractButton *>())
        texts += button->text() + u' ';
    return foldText(texts);
}

static bool hasAll(const QString &text, const QStringList &words)
{
    return std::all_of(words.begin(), words.end(),
                       [&](const QString &word) { return text.contains(word); });
}

bool KPPreferencePage::filter(const QString &words)
{
    const QStringList wanted = foldText(words).split(u' ', Qt::SkipEmptyParts);
    const bool isWholePage = hasAll(foldText(m_title), wanted);
    bool hasAny = false;
    for (const Group &group : m_groups) {
        const QString heading = foldText(group.name);
        const bool isWhole = isWholePage || hasAll(heading, wanted);
        bool hasPart = false;
        for (QWidget *part : group.parts) {
            const bool isFound = isWhole || hasAll(heading + u' ' + textsOf(part), wanted);
            part->setVisible(isFound);
            hasPart = hasPart || isFound;
        }
        group.heading->setVisible(hasPart);
        hasAny = hasAny || hasPart;
    }
    return hasAny;
}
