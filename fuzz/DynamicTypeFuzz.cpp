// Dynamic identifiers come from other machines, in attributes, settings and queries.
#include "KPDynamicType.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    // As it stands, and with the prefix and digits that get past the first tests.
    QString digits = QStringLiteral("dyn.a");
    for (const char byte : bytes)
        digits.append(QLatin1Char("abcdefghkmnpqrstuvwxyz0123456789"[byte & 31]));
    for (const QString &identifier : {QString::fromUtf8(bytes), digits}) {
        const QString extension = KPDynamicType::extensionOf(identifier);
        const QString again = KPDynamicType::forExtension(extension);
        if (!again.isEmpty() && KPDynamicType::extensionOf(again) != extension)
            std::abort();
    }
    return 0;
}
