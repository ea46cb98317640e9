// Alias records come in a file that another program wrote.
#include "XPAliasRecord.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArrayView bytes(data, static_cast<qsizetype>(size));
    // As it stands, and as the fields behind a head that is right.
    QByteArray record(150, '\0');
    record[7] = 2;
    record.append(bytes);
    for (const QByteArrayView each : {bytes, QByteArrayView(record)}) {
        const auto path = XPAliasRecord::path(each);
        if (path && !path->startsWith(u'/'))
            std::abort();
    }
    return 0;
}
