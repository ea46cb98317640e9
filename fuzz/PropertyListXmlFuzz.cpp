#include "PropertyListRoundTrip.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const auto value = XPPropertyList::readXml(
        QByteArrayView(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)),
        fuzzLimits);
    if (value)
        requireRoundTrip(*value);
    else
        requireReason(value, size);
    return 0;
}
