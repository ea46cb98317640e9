#include "KPPageTurner.h"

#include "KPDocIcons.h"
#include "KPIconButton.h"
#include "KPLook.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>

KPPageTurner::KPPageTurner(QWidget *parent)
    : QWidget(parent), m_back(new KPIconButton), m_forward(new KPIconButton), m_text(new QLabel)
{
    const auto set = [](KPIconButton *button, const char *symbol, const QString &name) {
        button->setIcon(KPDocIcons::symbol(QLatin1String(symbol)));
        button->setAccessibleName(name);
        button->setToolTip(name);
        button->setFocusPolicy(Qt::TabFocus);
        button->setAutoRepeat(true);
    };
    set(m_back, "back", qtTrId("KPPreviousPage"));
    set(m_forward, "forward", qtTrId("KPNextPage"));
    m_text->setFont(KPLook::font(KPLook::Type::Facts));
    m_text->setForegroundRole(QPalette::PlaceholderText);
    m_text->setAlignment(Qt::AlignCenter);
    m_text->setMinimumWidth(64);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);
    row->addStretch(1);
    row->addWidget(m_back);
    row->addWidget(m_text);
    row->addWidget(m_forward);
    row->addStretch(1);
    connect(m_back, &QAbstractButton::clicked, this, [this] { turnBy(-1); });
    connect(m_forward, &QAbstractButton::clicked, this, [this] { turnBy(1); });
    hide();
}

void KPPageTurner::setPages(int page, int pages)
{
    m_page = page;
    m_pages = pages;
    m_back->setEnabled(page > 1);
    m_forward->setEnabled(page < pages);
    m_text->setText(qtTrId("KPPageOf").arg(QLocale().toString(page), QLocale().toString(pages)));
    setVisible(pages > 1);
}

void KPPageTurner::turnTo(int page)
{
    if (page < 1 || page > m_pages || page == m_page)
        return;
    setPages(page, m_pages);
    Q_EMIT turned(page);
}
