#include "XPTagsEditor.h"

#include "KPTabOrder.h"
#include "UserDefaults.h"
#include "XPFlowLayout.h"
#include "XPTagChip.h"
#include "XPTagEntry.h"
#include "XPText.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>

XPTagsEditor::XPTagsEditor(Purpose purpose, QWidget *parent)
    : QFrame(parent), m_purpose(purpose), m_layout(new XPFlowLayout(this)),
      m_entry(new QLineEdit(this)), m_window(new XPSuggestionWindow(this))
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

    m_pause.setSingleShot(true);
    connect(&m_pause, &QTimer::timeout, this, &XPTagsEditor::suggest);
    connect(m_window, &XPSuggestionWindow::taken, this, &XPTagsEditor::take);
    connect(m_entry, &QLineEdit::textEdited, this, &XPTagsEditor::takeFinishedTags);
    connect(m_entry, &QLineEdit::editingFinished, this, &XPTagsEditor::takeTyped);
    m_entry->installEventFilter(this);
}

// The entry loses the focus when it goes, which would be taken for the user leaving it.
XPTagsEditor::~XPTagsEditor()
{
    m_entry->removeEventFilter(this);
    m_entry->disconnect(this);
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
    KPTabOrder::insertBefore(*this, *chip); // between this and its entry it would be passed over
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

void XPTagsEditor::takeTyped()
{
    m_pause.stop();
    m_window->hide();
    // A line end ends whatever is being typed.
    const QString text = m_entry->text() + u'\n';
    m_entry->clear();
    for (const QString &tag : XPTagEntry::split(text, XPTagEntry::usesCommas()).finished)
        addTag(tag);
}

// A separator ends what stands before it; the rest is still being typed.
void XPTagsEditor::takeFinishedTags(const QString &text)
{
    const auto typed = XPTagEntry::split(text, XPTagEntry::usesCommas());
    if (typed.rest != text)
        m_entry->setText(typed.rest);
    for (const QString &tag : typed.finished)
        addTag(tag);
    const double pause = UserDefaults::standard().doubleValue(QStringLiteral("KPCompletionDelay"));
    m_window->hide();
    m_pause.start(static_cast<int>(std::clamp(pause, 0.0, 10.0) * 1000));
}

// --- Suggestions

void XPTagsEditor::refreshKnown()
{
    m_known = m_suggestions ? m_suggestions() : QStringList();
}

QList<XPTagSuggestion> XPTagsEditor::completions(const QString &typed) const
{
    if (m_completion)
        return m_completion(typed);
    QList<XPTagSuggestion> found;
    const QString wanted = foldText(typed);
    for (const QString &tag : m_known) {
        if (foldText(tag).startsWith(wanted))
            found.append({tag, 0});
    }
    return found;
}

void XPTagsEditor::suggest()
{
    const UserDefaults &defaults = UserDefaults::standard();
    const QString typed = XPTagEntry::tagOfTyped(m_entry->text());
    if (typed.isEmpty() || !m_entry->hasFocus() ||
        defaults.boolValue(QStringLiteral("XPSkipTagAutoComplete"))) {
        m_window->hide();
        return;
    }
    const QList<XPTagSuggestion> found = completions(typed);
    if (!defaults.boolValue(QStringLiteral("KPShowSuggestionWindow"))) {
        // What is missing stands selected: the next key writes over it.
        const QString text = m_entry->text();
        const QString first = found.isEmpty() ? QString() : found.first().tag;
        if (m_entry->cursorPosition() == text.size() && first.size() > text.size() &&
            first.startsWith(text, Qt::CaseInsensitive)) {
            m_entry->setText(text + first.mid(text.size()));
            m_entry->setSelection(static_cast<int>(text.size()),
                                  static_cast<int>(first.size() - text.size()));
        }
        return;
    }
    QRect word = m_entry->geometry();
    if (!defaults.boolValue(QStringLiteral("KPAutoPositionSuggestionWindow")))
        word.setLeft(0);
    m_window->showSuggestions(found, word);
}

void XPTagsEditor::take(const QString &suggestion)
{
    m_pause.stop();
    m_window->hide();
    m_entry->clear();
    addTag(suggestion);
}

// The window is shown.
bool XPTagsEditor::suggestionKey(int key)
{
    switch (key) {
    case Qt::Key_Down:
    case Qt::Key_Up:
        m_window->choose(key == Qt::Key_Down ? 1 : -1);
        return true;
    case Qt::Key_Tab:
        take(m_window->current());
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!m_window->isChosen())
            return false;
        take(m_window->current());
        return true;
    case Qt::Key_Escape:
        m_window->hide();
        return true;
    default:
        return false;
    }
}

bool XPTagsEditor::entryKey(const QKeyEvent &event)
{
    const int key = event.key();
    if (m_window->isVisible() && suggestionKey(key))
        return true;
    const bool atStart = m_entry->cursorPosition() == 0 && !m_entry->hasSelectedText();
    if (atStart && !m_chips.isEmpty() && (key == Qt::Key_Backspace || key == Qt::Key_Left)) {
        m_chips.last()->setFocus(Qt::OtherFocusReason);
        return true;
    }
    // Before the pause is over too: the best is taken by one key.
    if (key == Qt::Key_Tab && m_pause.isActive()) {
        m_pause.stop();
        suggest();
        if (m_window->isVisible()) {
            take(m_window->current());
            return true;
        }
    }
    // An entry has one line: the lines of what is pasted are tags.
    if (event.matches(QKeySequence::Paste)) {
        const QString text = QGuiApplication::clipboard()->text();
        if (text.contains(u'\n') || text.contains(u'\t')) {
            m_entry->insert(QString());
            takeFinishedTags(m_entry->text() + text.trimmed() + u'\n');
            return true;
        }
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
        if (event->type() == QEvent::FocusOut)
            m_window->hide();
        update(); // the focus frame
        break;
    case QEvent::KeyPress:
        if (entryKey(*static_cast<QKeyEvent *>(event)))
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
