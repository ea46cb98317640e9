#pragma once

#include "XPError.h"

#include <QStringList>
#include <memory>

// Where the tag list of a file is kept. The convention's own attribute is the store, until a
// platform with a tag list of its own installs that one in its place.
// Threads: read() and write() any; installNative() at start-up, before other threads.
class KarvexTagStore
{
public:
    virtual ~KarvexTagStore() = default;

    // The metadata key that a query names to find tags.
    virtual QString searchKey() const = 0;

    // An empty list when there are none; what is there and cannot be read is an error.
    virtual XPResult<QStringList> read(const QString &path) const = 0;

    // `tags` is normalised. An empty list is stored as one. The old list stays when this fails.
    virtual std::optional<XPError> write(const QStringList &tags, const QString &path) const = 0;

    // The attribute kMDItemKXUserTags.
    static const KarvexTagStore &attribute();

    // The platform's own tag list, null when it has none; then the one in use.
    static const KarvexTagStore *native();
    static const KarvexTagStore &current();
    static void installNative(std::unique_ptr<KarvexTagStore> store);
};
