#pragma once

#include "IndexItem.h"
#include "IndexSource.h"
#include "PropertyValue.h"
#include "XPFileInfo.h"

#include <QString>
#include <memory>
#include <optional>
#include <span>
#include <vector>

// A look at the rows of an index: everything asked of one look agrees, as nothing changes while it
// lasts. So it must be short, and whoever holds it does no file work: the writer waits for it.
// Threads: any; a look stays on the thread that made it, and a thread holds one at a time.
class IndexLook
{
public:
    explicit IndexLook(const IndexSource &source);
    ~IndexLook();
    IndexLook(const IndexLook &) = delete;
    IndexLook &operator=(const IndexLook &) = delete;

    // One file, as long as the look.
    class Row
    {
    public:
        IndexItem item() const;
        QByteArray path() const; // bytes
        XPFileInfo info() const;
        QString type() const; // content type identifier
        // Any attribute by its name; null when absent. Dates are dates, counts integers.
        PropertyValue attribute(const QString &name) const;
        // What stands on the file or was found in it under these names, in their order: cheaper
        // than one after the other, and without what the index computes (names, sizes, dates).
        std::vector<PropertyValue> stored(std::span<const QString> names) const;

    private:
        friend class IndexLook;
        Row(const IndexCatalog &catalog, quint32 slot) : m_catalog(&catalog), m_slot(slot) {}

        const IndexCatalog *m_catalog;
        quint32 m_slot;
    };

    // Nothing: the file is gone, or not indexed.
    std::optional<Row> at(IndexItem item) const;
    std::optional<Row> atPath(QByteArrayView path) const;
    // What lies directly in a folder, `most` of it at most.
    std::vector<Row> in(QByteArrayView folder, size_t most) const;
    // The folders that are indexed.
    const std::vector<IndexItem> &roots() const;

private:
    struct Held;
    const std::unique_ptr<const Held> m_held;
};
