#pragma once

#include "XPNotificationCenter.h"

#include <QToolBar>

class KPCommands;
class KPIconButton;
class KPSearchField;
class QHBoxLayout;

// The window's toolbar: the items that the user chose (KPToolBarItems), each standing for commands,
// and the search field behind the flexible space. An item whose command is not there, or not
// shown, is left out. Follows the setting while it runs. Threads: main.
class KPToolBar : public QToolBar
{
    Q_OBJECT

public:
    // The field is owned by the toolbar from now on.
    KPToolBar(KPCommands *commands, KPSearchField *field, QWidget *parent = nullptr);

    void customise();

protected:
    void contextMenuEvent(QContextMenuEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void adapt();
    void fit();
    void setCompact(bool isCompact);
    void fill();
    QStringList shownIdentifiers() const;
    QList<QAction *> actionsOf(const QString &identifier) const;
    QWidget *widgetFor(const QString &identifier);

    KPCommands *m_commands;
    KPSearchField *m_field;
    QHBoxLayout *m_row;
    QList<QWidget *> m_gaps;
    KPIconButton *m_prominent = nullptr;
    QStringList m_shown;
    XPObservation m_observation;
};
