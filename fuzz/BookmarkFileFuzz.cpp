// Files of saved searches are handed on between people.
#include "KPBookmark.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const auto contents = KPBookmarkFile::parse(QByteArrayView(data, static_cast<qsizetype>(size)));
    if (!contents)
        return 0;
    // What could be read can be written, and is the same when it is read again.
    const auto bytes = KPBookmarkFile::bytes(contents->root);
    if (!bytes)
        return 0; // too deep, or a text that no property list holds
    const auto again = KPBookmarkFile::parse(*bytes);
    if (!again || again->root.children.size() != contents->root.children.size())
        std::abort();
    return 0;
}
