#pragma once

#include "XPNotificationCenter.h"

#include <QObject>

// What the managed folder needs while the program runs: whenever it comes to the front, what waits
// in the inbox or lies in the folder's root is filed. When the user chooses folders of months, the
// documents in folders of days may follow, if he wants; he is asked once, too, where there are
// folders of days from before.
// Threads: main; its file calls run on the file worker (KPDocServices).
class KPFilingUpkeep : public QObject
{
    Q_OBJECT

public:
    explicit KPFilingUpkeep(QObject *parent = nullptr);

    void becomeActive();
    // Some moments after the start.
    void checkFormatAndOfferChange();

private:
    void layoutChosen();
    void offerConversion();

    XPObservation m_layout;
};
