#include "KPStatusItem.h"

#include "KPBadgeCache.h"

#include <QApplication>
#include <QPainter>

static constexpr int iconSize = 128; // points; a tray scales it down
static constexpr int badgeHeight = 60;

KPStatusItem::KPStatusItem(QObject *parent) : QObject(parent)
{
    m_menu.addAction(qtTrId("KPStatusShow"), this, &KPStatusItem::showAsked);
    m_menu.addAction(qtTrId("KPStatusSearch"), this, &KPStatusItem::searchAsked);
    m_menu.addSeparator();
    m_menu.addAction(qtTrId("KPQuit"), this, &KPStatusItem::quitAsked);
    m_item.setContextMenu(&m_menu);
    setNumber(0);
    connect(&m_item, &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason == QSystemTrayIcon::Trigger)
                    Q_EMIT toggleAsked();
            });
    m_item.show();
}

bool KPStatusItem::isPossible()
{
    return QSystemTrayIcon::isSystemTrayAvailable();
}

QPixmap KPStatusItem::badged(const QIcon &icon, int number)
{
    QPixmap pixmap = icon.pixmap(QSize(iconSize, iconSize), 1.0);
    if (number <= 0 || pixmap.isNull())
        return pixmap;
    const QImage badge = KPBadgeCache::instance().numberBadge(number, badgeHeight);
    QPainter painter(&pixmap);
    painter.drawImage(std::max(0, pixmap.width() - badge.width()), 0, badge);
    return pixmap;
}

void KPStatusItem::setNumber(int number)
{
    m_item.setIcon(QIcon(badged(QApplication::windowIcon(), number)));
    m_item.setToolTip(number > 0 ? qtTrId("KPStatusUntagged", number)
                                 : qtTrId("KPApplicationName"));
}
