#pragma once

#include "IndexItem.h"

#include <QByteArray>
#include <functional>
#include <vector>

class IndexCatalog;
class IndexText;

// What a query runs on: the catalog of this process, however it is kept up to date. Outside of the
// index the catalog is looked at through an IndexLook.
class IndexSource
{
public:
    virtual ~IndexSource() = default;

    virtual const IndexCatalog &catalog() const = 0;
    virtual const IndexText *text() const = 0; // null: contents are not searchable

    // Called after each applied batch, on the thread that applied it and with no lock held, with
    // the items touched. Whoever listens only takes note; evaluation is done on its own thread.
    // A listener is not called any more once removeListener() has returned.
    using Listener = std::function<void(const std::vector<IndexItem> &touched)>;
    virtual int addListener(Listener listener) = 0;
    virtual void removeListener(int number) = 0;

    // Asks for the path to be read again now; returns before it was.
    virtual void reimport(const QByteArray &path) = 0;

    // Returns when the catalog holds what was known of the files; false: `stop` said so before.
    virtual bool waitUntilLoaded(const std::function<bool()> &stop) const = 0;
};
