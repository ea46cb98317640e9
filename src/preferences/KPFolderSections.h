#pragma once

#include "XPNotificationCenter.h"

#include <QWidget>

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

// Where documents are filed. What is on the disk is asked on the thread of file calls.
// Threads: main.
class KPManagedFolderSection : public QWidget
{
    Q_OBJECT

public:
    explicit KPManagedFolderSection(QWidget *parent = nullptr);

private:
    void choose();
    void change(std::function<void()> work);
    void look();
    void show(const QString &root);

    QLabel *m_text;
    QPushButton *m_make;
    QPushButton *m_reset;
    XPObservation m_observation;
};
