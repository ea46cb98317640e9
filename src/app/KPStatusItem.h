#pragma once

#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>

// The program's icon in the desktop's tray, with a badge for a number, and a menu of its own. Made
// only when the user wants it; then the window can be closed and brought back.
// Threads: main.
class KPStatusItem : public QObject
{
    Q_OBJECT

public:
    explicit KPStatusItem(QObject *parent = nullptr);

    // This desktop has a tray.
    static bool isPossible();
    void setNumber(int number); // 0: no badge

    // The icon with the number over its upper right corner.
    static QPixmap badged(const QIcon &icon, int number);

Q_SIGNALS:
    void toggleAsked(); // the icon was clicked
    void showAsked();
    void searchAsked();
    void quitAsked();

private:
    QMenu m_menu;
    QSystemTrayIcon m_item;
};
