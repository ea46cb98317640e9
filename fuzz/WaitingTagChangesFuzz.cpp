// What waits for volumes that are away stands in a file that people may edit.
#include "KPWaitingTagChanges.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const auto changes = KPWaitingTagChanges::parse(bytes);
    if (!changes)
        return 0;
    const auto again = KPWaitingTagChanges::parse(KPWaitingTagChanges::bytesOf(*changes));
    if (!again || again->size() != changes->size())
        std::abort();
    for (qsizetype at = 0; at < changes->size(); ++at) {
        const auto &one = changes->at(at);
        if (one.rename.from.isEmpty() || one.paths.contains(QString()) ||
            one.paths != again->at(at).paths || !(one.rename == again->at(at).rename))
            std::abort();
        // Whatever the names, a change of tags ends and leaves each of them once.
        (void)one.rename.applied(one.paths);
    }
    return 0;
}
