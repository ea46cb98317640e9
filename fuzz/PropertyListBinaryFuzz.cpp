#include "PropertyListRoundTrip.h"

// Any bytes behind the magic, so that every input gets past it.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes =
        "bplist00" + QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const auto value = XPPropertyList::read(bytes, fuzzLimits);
    if (value)
        requireRoundTrip(*value);
    else
        requireReason(value, static_cast<size_t>(bytes.size()));
    return 0;
}
