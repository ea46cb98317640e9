#include "XPPropertyList.h"

XPResult<PropertyValue> XPPropertyList::read(QByteArrayView bytes, const Limits &limits)
{
    // Any version of the binary format: its reader says what it thinks of others than "00".
    return bytes.startsWith("bplist") ? readBinary(bytes, limits) : readXml(bytes, limits);
}
