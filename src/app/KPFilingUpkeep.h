#pragma once

#include "XPNotificationCenter.h"

#include <QObject>
#include <memory>

class XPArrivals;

// What the managed folder needs while the program runs: whenever it comes to the front, what waits
// in the inbox or lies in the folder's root is filed, and what comes to the inbox while it is there
// as well. When the user chooses folders of months, the
// documents in folders of days may follow, if he wants; he is asked once, too, where there are
// folders of days from before.
// Threads: main; its file calls run on the file worker (KPDocServices).
class KPFilingUpkeep : public QObject
{
    Q_OBJECT

public:
    explicit KPFilingUpkeep(QObject *parent = nullptr);
    ~KPFilingUpkeep() override;

    void becomeActive();
    // Some moments after the start.
    void checkFormatAndOfferChange();

private:
    void watchInbox();
    void layoutChosen();
    void offerConversion();

    XPObservation m_layout;
    std::unique_ptr<XPArrivals> m_arrivals;
};
