#pragma once

#include "XPNotificationCenter.h"

#include <QWidget>

class KPIndexMonitor;
class KPListEditor;
class QLabel;
class QPushButton;

// The folders that the library searches. Threads: main.
class KPSearchFoldersSection : public QWidget
{
    Q_OBJECT

public:
    explicit KPSearchFoldersSection(QWidget *parent = nullptr);

private:
    KPListEditor *m_list;
    XPObservation m_observation;
};

// Where documents are filed. What is on the disk is asked on the thread of file calls. A folder
// that is chosen is indexed too. Threads: main.
class KPManagedFolderSection : public QWidget
{
    Q_OBJECT

public:
    // `index`: null: there is none.
    explicit KPManagedFolderSection(KPIndexMonitor *index, QWidget *parent = nullptr);

private:
    void choose();
    void change(std::function<void()> work, std::function<void()> done = {});
    void look();
    void show(const QString &root);

    KPIndexMonitor *m_index;
    QLabel *m_text;
    QPushButton *m_make;
    QPushButton *m_reset;
    XPObservation m_observation;
};
