#include "KPFactsView.h"

#include "KPLook.h"

#include <QDesktopServices>
#include <QFontMetrics>
#include <QGridLayout>
#include <QLabel>
#include <QUrl>

static constexpr int narrowestName = 84;
static constexpr int narrowestValue = 120; // longer words break
static constexpr int widestName = 120;     // longer ones wrap

QString KPFactsView::breakable(const QString &text)
{
    static constexpr QChar maybeBreak(0x200B);
    const QFontMetrics metrics(KPLook::font(KPLook::Type::Facts));
    QString result;
    int run = 0; // of the word so far
    for (const QChar c : text) {
        const int width = metrics.horizontalAdvance(c);
        if (run + width > narrowestValue && !c.isLowSurrogate()) {
            result.append(maybeBreak);
            run = 0;
        }
        result.append(c);
        run = c.isSpace() || c == u'/' ? 0 : run + width;
        if (c == u'/')
            result.append(maybeBreak);
    }
    return result;
}

KPFactsView::KPFactsView(QWidget *parent) : QWidget(parent)
{
}

static QLabel *nameLabel(const QString &text, const QString &before)
{
    // Of several values of one kind the first is named.
    auto *label = new QLabel(text == before ? QString() : KPFactsView::breakable(text));
    label->setTextFormat(Qt::PlainText);
    label->setFont(KPLook::font(KPLook::Type::Facts));
    label->setAlignment(Qt::AlignTop);
    label->setForegroundRole(QPalette::PlaceholderText);
    label->setWordWrap(true);
    label->setMaximumWidth(widestName);
    return label;
}

static QLabel *valueLabel(const KPDocumentFacts::Fact &fact)
{
    auto *label = new QLabel;
    label->setFont(KPLook::font(KPLook::Type::Facts));
    label->setWordWrap(true);
    label->setMinimumWidth(1);
    label->setAccessibleName(fact.name + QStringLiteral(": ") + fact.value);
    if (fact.link.isEmpty()) {
        label->setTextFormat(Qt::PlainText);
        label->setText(KPFactsView::breakable(fact.value));
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        return label;
    }
    label->setTextFormat(Qt::RichText);
    label->setText(
        QStringLiteral("<a href=\"%1\">%2</a>")
            .arg(fact.link.toHtmlEscaped(), KPFactsView::breakable(fact.value).toHtmlEscaped()));
    label->setToolTip(QStringLiteral("<p>%1</p>").arg(fact.link.toHtmlEscaped()));
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::LinksAccessibleByMouse |
                                   Qt::LinksAccessibleByKeyboard);
    QObject::connect(label, &QLabel::linkActivated, label,
                     [link = fact.link] { QDesktopServices::openUrl(QUrl(link)); });
    return label;
}

void KPFactsView::setFacts(const QList<KPDocumentFacts::Fact> &facts)
{
    if (facts == m_facts)
        return; // what is selected in it stays so
    m_facts = facts;
    delete layout();
    qDeleteAll(m_labels);
    m_labels.clear();
    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(4);
    grid->setColumnStretch(1, 1);
    QString before;
    int nameWidth = narrowestName;
    for (const KPDocumentFacts::Fact &fact : facts) {
        const int row = grid->rowCount();
        QLabel *name = nameLabel(fact.name, before);
        QLabel *value = valueLabel(fact);
        grid->addWidget(name, row, 0, Qt::AlignTop);
        grid->addWidget(value, row, 1);
        m_labels += {name, value};
        nameWidth = qMax(nameWidth, name->fontMetrics().horizontalAdvance(fact.name) + 1);
        before = fact.name;
    }
    grid->setColumnMinimumWidth(0, qMin(nameWidth, widestName));
}
