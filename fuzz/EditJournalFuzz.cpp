// The journal of an edit may be cut off anywhere, or edited by hand.
#include "KPEditJournal.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const auto changes = KPEditJournal::parse(bytes).changes;
    for (const KPFileChange &change : changes) {
        if (change.path.isEmpty() || change.isEmpty())
            std::abort(); // undoing it would touch who knows what
    }
    // A line that was cut off ends it: less of the file never holds more changes.
    if (size > 0 && KPEditJournal::parse(bytes.chopped(1)).changes.size() > changes.size())
        std::abort();
    return 0;
}
