#include "KPLoginSection.h"

#include "KPLook.h"
#include "XPMutex.h"
#include "XPPrompts.h"

#include <QCheckBox>
#include <QLabel>
#include <QVBoxLayout>

KPLoginSection::KPLoginSection(QWidget *parent)
    : QWidget(parent), m_service(QStringLiteral("murn-index.service")),
      m_box(new QCheckBox(qtTrId("KPPrefLoginKeep"))), m_hint(new QLabel)
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(4);
    m_hint->setTextFormat(Qt::PlainText);
    m_hint->setWordWrap(true);
    m_hint->setFont(KPLook::font(KPLook::Type::Facts));
    m_hint->setForegroundRole(QPalette::PlaceholderText);
    m_hint->setIndent(KPLook::boxIndent);
    column->addWidget(m_box);
    column->addWidget(m_hint);
    connect(m_box, &QCheckBox::clicked, &m_service, &XPUserService::setOn);
    connect(&m_service, &XPUserService::changed, this, &KPLoginSection::refresh);
    connect(&m_service, &XPUserService::failed, this, [](const QString &reason) {
        xpGuiThread.assertHere();
        XPPrompts::current().alert(qtTrId("KPPrefLoginFailed"), reason);
    });
    refresh();
}

void KPLoginSection::refresh()
{
    using State = XPUserService::State;
    const State state = m_service.state();
    m_box->setChecked(state == State::On);
    m_box->setEnabled(state == State::On || state == State::Off);
    m_hint->setText(state == State::Absent ? qtTrId("KPPrefLoginAbsent")
                                           : qtTrId("KPPrefLoginHint"));
    m_box->setAccessibleDescription(m_hint->text());
}
