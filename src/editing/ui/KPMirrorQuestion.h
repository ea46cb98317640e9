#pragma once

#include "KPEditWorker.h"

// Asks the user, once for all, whether the desktop's own tags are to be kept equal to ours
// (KarvexMirror): after an edit of his was made, when the index knows files that other programs
// tagged or rated for the desktop. Who has none is never asked. Threads: main.
class KPMirrorQuestion : public QObject
{
    Q_OBJECT

public:
    explicit KPMirrorQuestion(KPEditWorker *worker, QObject *parent = nullptr);

private:
    void edited(const KPEditReport &report);
    void ask();

    bool m_isAsking = false;
};
