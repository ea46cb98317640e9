#include "KPSearchField.h"

#include "KPDocIcons.h"
#include "KPIconButton.h"
#include "KPLook.h"
#include "XPPath.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>

static constexpr int shownRecent = 10;
static constexpr int longestItem = 48; // characters of a search in the menu
static constexpr int roomForNote = 260;

KPSearchField::KPSearchField(QWidget *parent)
    : QWidget(parent), m_entry(new QLineEdit), m_note(new QLabel), m_button(new KPIconButton)
{
    m_button->setIcon(KPDocIcons::symbol(QStringLiteral("search")));
    m_button->setAccessibleName(qtTrId("KPRecentSearches"));
    m_button->setToolTip(qtTrId("KPRecentSearches"));
    connect(m_button, &QToolButton::clicked, this, &KPSearchField::showMenu);
    m_entry->setFrame(false);
    m_entry->setAccessibleName(qtTrId("KPSearch"));
    m_entry->setClearButtonEnabled(true);
    m_entry->installEventFilter(this);
    setFocusProxy(m_entry);
    // Not only what is typed: a screen reader or a voice sets a text as a whole.
    connect(m_entry, &QLineEdit::textChanged, this, [this](const QString &text) {
        if (!m_isShowing)
            Q_EMIT edited(text);
    });
    connect(m_entry, &QLineEdit::returnPressed, this, &KPSearchField::finished);
    m_note->setForegroundRole(QPalette::PlaceholderText);
    m_note->setFont(KPLook::font(KPLook::Type::Facts));

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 8, 0);
    row->setSpacing(4);
    row->addWidget(m_button);
    row->addWidget(m_entry, 1);
    row->addWidget(m_note);
    setFixedHeight(KPLook::controlHeight);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setMinimumWidth(110);
    setFilterMode(false);
}

QSize KPSearchField::sizeHint() const
{
    return {340, KPLook::controlHeight};
}

QString KPSearchField::text() const
{
    return m_entry->text();
}

void KPSearchField::setText(const QString &text)
{
    const auto composed = [](const QString &some) {
        return some.normalized(QString::NormalizationForm_C);
    };
    if (composed(text) == composed(m_entry->text()))
        return;
    m_isShowing = true;
    m_entry->setText(composed(text));
    m_isShowing = false;
}

void KPSearchField::focusAndSelect()
{
    m_entry->setFocus(Qt::ShortcutFocusReason);
    m_entry->selectAll();
}

void KPSearchField::setRecentSearches(const QStringList &searches)
{
    m_recent = searches;
}

void KPSearchField::setModeActions(const QList<QAction *> &actions)
{
    m_modes = actions;
}

void KPSearchField::setFilterMode(bool isFilter)
{
    m_isFilter = isFilter;
    const QString hint = isFilter ? qtTrId("KPSearchPlaceholderFilenameFilter")
                                  : qtTrId("KPSearchPlaceholderSearch");
    m_entry->setPlaceholderText(hint);
    m_entry->setAccessibleDescription(hint);
    adaptColours();
}

void KPSearchField::setNote(const QString &note)
{
    m_note->setText(note);
}

// The frame is this widget's: the entry itself is see-through.
void KPSearchField::adaptColours()
{
    QPalette entry;
    entry.setColor(QPalette::Base, Qt::transparent);
    if (m_isFilter)
        entry.setColor(QPalette::Text, KPLook::brown(palette()));
    m_entry->setPalette(entry);
}

void KPSearchField::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        adaptColours();
}

void KPSearchField::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    m_note->setVisible(width() >= roomForNote);
}

void KPSearchField::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool hasFocus = m_entry->hasFocus();
    painter.setPen(hasFocus ? QPen(palette().color(QPalette::Highlight), 1.5)
                            : QPen(KPLook::line(palette()), 1));
    painter.setBrush(palette().color(QPalette::Base));
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), KPLook::controlRadius,
                            KPLook::controlRadius);
}

bool KPSearchField::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)
        update();
    if (event->type() == QEvent::FocusOut)
        Q_EMIT editingEnded();
    if (event->type() == QEvent::KeyPress && keyPressed(static_cast<QKeyEvent *>(event)->key()))
        return true;
    return QWidget::eventFilter(watched, event);
}

bool KPSearchField::keyPressed(int key)
{
    switch (key) {
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        Q_EMIT pageRequested(key == Qt::Key_PageUp ? -1 : 1);
        return true;
    case Qt::Key_Down:
        Q_EMIT left();
        return true;
    case Qt::Key_Escape:
        if (m_entry->text().isEmpty())
            Q_EMIT left();
        else
            m_entry->clear();
        return true;
    default:
        return false;
    }
}

// Built anew each time: the list changes with every search.
void KPSearchField::showMenu()
{
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QStringList shown;
    for (auto text = m_recent.crbegin(); text != m_recent.crend() && shown.size() < shownRecent;
         ++text) {
        if (!text->isEmpty() && !shown.contains(*text))
            shown.append(*text);
    }
    if (!shown.isEmpty())
        menu->addSection(qtTrId("KPRecentSearches"));
    for (const QString &text : std::as_const(shown)) {
        QString title = XPPath::printable(text.normalized(QString::NormalizationForm_C));
        if (title.size() > longestItem)
            title = title.first(longestItem) + u'…';
        title.replace(u'&', QStringLiteral("&&"));
        connect(menu->addAction(title), &QAction::triggered, this,
                [this, text] { Q_EMIT recentChosen(text); });
    }
    if (!shown.isEmpty()) {
        menu->addSeparator();
        connect(menu->addAction(qtTrId("KPClearRecentSearches")), &QAction::triggered, this,
                [this] {
                    m_recent.clear();
                    Q_EMIT recentChanged();
                });
        menu->addSeparator();
    }
    menu->addActions(m_modes);
    menu->popup(mapToGlobal(QPoint(0, height() + 4)));
}
