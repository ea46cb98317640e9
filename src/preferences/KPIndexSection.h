#pragma once

#include "XPNotificationCenter.h"

#include <QWidget>
#include <vector>

class KPIndexMonitor;
class KPListEditor;
class QLabel;
class QVBoxLayout;

// How the index is: what it holds and does, and what is degraded with what can be done about it.
// Threads: main. Ownership: the monitor outlives it.
class KPIndexStatusSection : public QWidget
{
    Q_OBJECT

public:
    explicit KPIndexStatusSection(KPIndexMonitor &index, QWidget *parent = nullptr);

private:
    void refresh();

    KPIndexMonitor &m_index;
    QLabel *m_state;
    QLabel *m_problems;
};

// The folders that are indexed, or the rules that leave some out: the settings of IndexSettings.
// Threads: main. Ownership: the monitor outlives it.
class KPIndexListSection : public QWidget
{
    Q_OBJECT

public:
    enum class What { Roots, Rules };
    KPIndexListSection(What what, KPIndexMonitor &index, QWidget *parent = nullptr);

private:
    KPListEditor *makeRoots(KPIndexMonitor &index);
    KPListEditor *makeRules(KPIndexMonitor &index);

    KPListEditor *m_list;
    XPObservation m_observation;
};
