#pragma once

#include "XPDuplicates.h"

#include <QDialog>
#include <QTimer>
#include <atomic>
#include <memory>
#include <thread>

class KPDuplicatesModel;
class QLabel;
class QProgressBar;
class QPushButton;
class QTreeView;

// A window of the documents of the same contents among some, in groups. It looks for them on a
// thread of its own, shows how far it is, and never deletes anything: documents are shown in the
// library, where everything is done with them.
//
// Threads: main. Closing it stops the search; the thread is left behind where a volume holds it.
class KPDuplicatesWindow : public QDialog
{
    Q_OBJECT

public:
    KPDuplicatesWindow(const QStringList &paths, QWidget *window);
    ~KPDuplicatesWindow() override;

Q_SIGNALS:
    void searched(); // the groups are there

private:
    // What the thread and the window share.
    struct Search
    {
        std::atomic<qint64> done = 0;
        std::atomic<qint64> total = 0;
        std::atomic<bool> isStopAsked = false;
        std::atomic<bool> hasEnded = false; // `result` is complete, and the thread lets go of it
        XPDuplicates::Result result;
    };

    void build();
    void look();
    void showGroups(const XPDuplicates::Result &result);
    QStringList chosen() const;
    void showInLibrary();
    void follow();

    std::shared_ptr<Search> m_search = std::make_shared<Search>();
    std::thread m_thread;
    QTimer m_timer; // while it searches
    KPDuplicatesModel *m_model;
    QLabel *m_text;
    QProgressBar *m_bar;
    QTreeView *m_tree;
    QPushButton *m_show = nullptr;
};
