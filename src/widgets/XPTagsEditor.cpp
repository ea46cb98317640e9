#include "XPTagsEditor.h"

#include "XPFlowLayout.h"
#include "XPTagChip.h"
#include "XPTagEntry.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>

XPTagsEditor::XPTagsEditor(Purpose purpose, QWidget *parent)
    : QFrame(parent), m_purpose(purpose), m_layout(new XPFlowLayout(this)),
      m_entry(new QLineEdit(this))
{
    m_layout->setContentsMargins(5, 4, 5, 4);
    m_entry->setFrame(false);
    m_entry->setMinimumWidth(80);
    m_entry->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    QPalette clear = m_entry->palette();
    clear.setColor(QPalette::Base, Qt::transparent);
    m_entry->setPalette(clear);
    m_layout->addWidget(m_entry);
    setFocusProxy(m_entry);
    setCursor(Qt::IBeamCursor);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);

    auto *completer = new QCompleter(&m_completions, this);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    completer->setFilterMode(Qt::MatchStartsWith);
    completer->setMaxVisibleItems(8);
    m_entry->setCompleter(completer);
    // Queued: the completer puts the text into the entry after this signal.
    connect(completer, qOverload<const QString &>(&QCompleter::activated), this,
            &XPTagsEditor::takeEntry, Qt::QueuedConnection);
    connect(m_entry, &QLineEdit::textEdited, this, &XPTagsEditor::takeFinishedTags);
    connect(m_entry, &QLineEdit::editingFinished, this, &XPTagsEditor::takeEntry);
    m_entry->installEventFilter(this);
}

void XPTagsEditor::setHint(const QString &hint, const QString &accessibleName)
{
    m_hint = hint;
    m_entry->setPlaceholderText(m_chips.isEmpty() ? hint : QString());
    m_entry->setAccessibleName(accessibleName);
    m_entry->setAccessibleDescription(hint);
}

void XPTagsEditor::setSuggestions(std::function<QStringList()> suggestions)
{
    m_suggestions = std::move(suggestions);
}

void XPTagsEditor::focusEntry()
{
    m_entry->setFocus(Qt::ShortcutFocusReason);
}

// Chips.

QStringList XPTagsEditor::tags() const
{
    QStringList result;
    for (const XPTagChip *chip : m_chips) {
        if (!chip->isExcluded())
            result.append(chip->tag());
    }
    return result;
}

QStringList XPTagsEditor::excludedTags() const
{
    QStringList result;
    for (const XPTagChip *chip : m_chips) {
        if (chip->isExcluded())
            result.append(chip->tag());
    }
    return result;
}

void XPTagsEditor::setTags(const QStringList &tags)
{
    if (tags == this->tags() && excludedTags().isEmpty())
        return; // a live update must not take the focus from a chip
    while (!m_chips.isEmpty())
        delete m_chips.takeLast();
    for (const QString &tag : tags)
        appendChip(tag);
    resized();
}

XPTagChip *XPTagsEditor::appendChip(const QString &tag)
{
    auto *chip = new XPTagChip(tag, this);
    chip->setTogglable(m_purpose == Purpose::Filter);
    connect(chip, &XPTagChip::removeRequested, this, [this, chip] { removeChip(chip); });
    connect(chip, &XPTagChip::leaveRequested, this,
            [this, chip](int direction) { leaveChip(chip, direction); });
    if (m_purpose == Purpose::Filter) {
        connect(chip, &XPTagChip::clicked, this, [this, chip] {
            chip->setExcluded(!chip->isExcluded());
            Q_EMIT tagsEdited();
        });
    }
    m_layout->insertWidget(static_cast<int>(m_chips.size()), chip);
    m_chips.append(chip);
    chip->show();
    setTabOrder(m_chips.size() > 1 ? static_cast<QWidget *>(m_chips[m_chips.size() - 2])
                                   : previousInFocusChain(),
                chip);
    setTabOrder(chip, m_entry);
    return chip;
}

void XPTagsEditor::removeChip(XPTagChip *chip)
{
    leaveChip(chip, 1);
    m_chips.removeOne(chip);
    m_layout->removeWidget(chip);
    chip->hide();
    chip->deleteLater(); // its own signal brought us here
    resized();
    Q_EMIT tagsEdited();
}

void XPTagsEditor::leaveChip(XPTagChip *chip, int direction)
{
    const qsizetype next = m_chips.indexOf(chip) + direction;
    if (next >= m_chips.size())
        m_entry->setFocus(Qt::OtherFocusReason);
    else if (next >= 0)
        m_chips[next]->setFocus(Qt::OtherFocusReason);
}

void XPTagsEditor::resized()
{
    m_entry->setPlaceholderText(m_chips.isEmpty() ? m_hint : QString());
    m_layout->invalidate();
    updateGeometry();
}

// The entry.

void XPTagsEditor::addTag(const QString &tag)
{
    const QStringList added = XPTagEntry::tags(tag, tags() + excludedTags(), m_known);
    for (const QString &each : added)
        appendChip(each);
    if (added.isEmpty())
        return;
    resized();
    Q_EMIT tagsEdited();
}

void XPTagsEditor::takeEntry()
{
    const QString text = m_entry->text();
    m_entry->clear();
    addTag(text);
}

// A separator ends what stands before it; the rest is still being typed.
void XPTagsEditor::takeFinishedTags(const QString &text)
{
    const qsizetype end =
        std::max({text.lastIndexOf(u','), text.lastIndexOf(u'\n'), text.lastIndexOf(u'\t')});
    if (end < 0)
        return;
    m_entry->setText(text.mid(end + 1));
    addTag(text.left(end));
}

void XPTagsEditor::refreshKnown()
{
    m_known = m_suggestions ? m_suggestions() : QStringList();
    m_completions.setStringList(m_known);
}

bool XPTagsEditor::entryKey(int key)
{
    const bool atStart = m_entry->cursorPosition() == 0 && !m_entry->hasSelectedText();
    if (atStart && !m_chips.isEmpty() && (key == Qt::Key_Backspace || key == Qt::Key_Left)) {
        m_chips.last()->setFocus(Qt::OtherFocusReason);
        return true;
    }
    if (key == Qt::Key_Escape) {
        m_entry->clear();
        Q_EMIT left();
        return true;
    }
    return false;
}

bool XPTagsEditor::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::FocusIn:
        refreshKnown();
        [[fallthrough]];
    case QEvent::FocusOut:
        update(); // the focus frame
        break;
    case QEvent::KeyPress:
        if (entryKey(static_cast<QKeyEvent *>(event)->key()))
            return true;
        break;
    default:
        break;
    }
    return QFrame::eventFilter(watched, event);
}

void XPTagsEditor::mousePressEvent(QMouseEvent *)
{
    m_entry->setFocus(Qt::MouseFocusReason);
}

// Looks like the line edits beside it, whatever the style.
void XPTagsEditor::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor edge = palette().color(m_entry->hasFocus() ? QPalette::Highlight : QPalette::Text);
    if (!m_entry->hasFocus())
        edge.setAlphaF(0.3F);
    painter.setPen(QPen(edge, 1));
    painter.setBrush(palette().color(isEnabled() ? QPalette::Base : QPalette::Window));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
}
