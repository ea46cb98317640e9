#pragma once

#include "IndexItem.h"
#include "IndexSource.h"
#include "PropertyValue.h"
#include "XPNotificationCenter.h"

#include <memory>

// One file as the index knows it: what a notification or a result can carry.
//
// Holds the item's number, not its row: it stays valid while the file is renamed, and tells
// nothing any more when the file is gone. There is one object per number at a time, so items can
// be compared and hashed by address as well as by number.
// Threads: any.
class MDItem : public XPNotificationObject
{
public:
    // Nothing when the path is not indexed.
    static std::shared_ptr<MDItem> create(const IndexSource &source, const QString &path);
    static std::shared_ptr<MDItem> withNumber(const IndexSource &source, IndexItem number);

    const IndexSource &source() const { return m_source; }
    IndexItem number() const { return m_number; }
    // The present path; empty when the file is gone.
    QString path() const;
    // Any attribute by its name; null when absent. Dates are dates, counts integers.
    PropertyValue copyAttribute(const QString &name) const;

private:
    MDItem(const IndexSource &source, IndexItem number) : m_source(source), m_number(number) {}

    const IndexSource &m_source;
    const IndexItem m_number;
};
