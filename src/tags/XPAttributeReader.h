#pragma once

#include "KPPool.h"
#include "PropertyValue.h"

#include <array>
#include <functional>
#include <memory>
#include <thread>

// Reads one attribute from the files themselves, for paths that the index does not hold.
//
// Files of slow volumes have a thread of their own: one that never answers holds up these alone,
// and not the end of this object: its thread is left behind and does nothing more.
// Threads: construct, use and destroy on one thread. `deliver` is called on the reading threads,
// never after the destructor.
class XPAttributeReader
{
public:
    using Values = QList<std::pair<KPPooledString, PropertyValue>>; // null: no value, or unreadable
    using Deliver = std::function<void(const Values &values)>;

    XPAttributeReader(const QString &attributeKey, Deliver deliver);
    ~XPAttributeReader();
    XPAttributeReader(const XPAttributeReader &) = delete;
    XPAttributeReader &operator=(const XPAttributeReader &) = delete;

    void read(const QList<KPPooledString> &paths);

private:
    struct Lane;

    std::array<std::shared_ptr<Lane>, 2> m_lanes; // local files, files of slow volumes
    std::array<std::thread, 2> m_threads;         // started when first needed
};
