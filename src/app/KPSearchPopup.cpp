#include "KPSearchPopup.h"

#include "KPLook.h"
#include "KPSearchField.h"

#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>

static constexpr int width = 480;

KPSearchPopup::KPSearchPopup()
    : QWidget(nullptr, Qt::Dialog | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint),
      m_field(new KPSearchField)
{
    setWindowTitle(qtTrId("KPSearch"));
    setAttribute(Qt::WA_QuitOnClose, false);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(12, 12, 12, 12);
    column->addWidget(m_field);
    setFixedWidth(::width);
    connect(m_field, &KPSearchField::editingEnded, this, [this] {
        if (!isActiveWindow())
            hide();
    });
    connect(m_field, &KPSearchField::left, this, &QWidget::hide);
}

void KPSearchPopup::showOn(const QScreen *screen)
{
    adjustSize();
    const QRect room = screen->availableGeometry();
    move(room.center().x() - ::width / 2, room.top() + room.height() / 5);
    show();
    raise();
    activateWindow();
    m_field->focusAndSelect();
}

void KPSearchPopup::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Window));
    painter.setPen(KPLook::line(palette()));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}
