#pragma once

#include "PropertyValue.h"

#include <QByteArray>
#include <QStringList>
#include <functional>

// A file that came in the place of another one and lacks attributes that the other had.
// Threads: a value.
struct IndexLoss
{
    QByteArray path;
    PropertyValue::Dictionary attributes; // of the file before, all of them; see IndexBytesKey
    QStringList present;                  // names of those that it has now
    QString typeBefore;                   // content types
    QString type;
    // It was seen: renamed over the other one, or made anew within two seconds. Otherwise the file
    // is just another one than when the index looked last, whenever that happened.
    bool isSeen = false;

    using Report = std::function<void(IndexLoss)>;
};
