#pragma once

#include "KPPool.h"
#include "PropertyValue.h"
#include "XPError.h"

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
    // What is read, and a number of the asker's by which he knows what he asked for last.
    struct Lookup
    {
        KPPooledString path;
        quint64 number = 0;
    };
    struct Value
    {
        Lookup lookup;
        XPResult<PropertyValue> raw; // null: no value, or no file
    };
    using Deliver = std::function<void(const QList<Value> &values)>;

    XPAttributeReader(const QString &attributeKey, Deliver deliver);
    ~XPAttributeReader();
    XPAttributeReader(const XPAttributeReader &) = delete;
    XPAttributeReader &operator=(const XPAttributeReader &) = delete;

    // Of a path that is asked for again before it was read only the last number is delivered.
    void read(const QList<Lookup> &lookups);

private:
    struct Lane;

    std::array<std::shared_ptr<Lane>, 2> m_lanes; // local files, files of slow volumes
    std::array<std::thread, 2> m_threads;         // started when first needed
};
