#pragma once

#include "XPNotificationCenter.h"

#include <QObject>
#include <memory>

class IndexSource;
class KPRowCounts;

// How many documents of the usual folders have no tags, live, while the setting
// "KPBadgeUntaggedDocs" is on: for the number on the program's icon.
// Threads: main. Ownership: the source outlives it.
class KPUntaggedBadge : public QObject
{
    Q_OBJECT

public:
    explicit KPUntaggedBadge(IndexSource &source, QObject *parent = nullptr);
    ~KPUntaggedBadge() override;

    int number() const { return m_number; } // 0 while it is off or not known

Q_SIGNALS:
    void numberChanged(int number);

private:
    void follow(bool isOn);
    void showCount();

    IndexSource &m_source;
    std::unique_ptr<KPRowCounts> m_counts; // while it is on
    int m_number = 0;
    std::vector<XPObservation> m_observations;
};
