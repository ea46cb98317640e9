// Addresses that web pages and mails hand to the program.
#include "KPOpenedUrl.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const QString text = QString::fromUtf8(bytes);
    for (const char16_t *prefix : {u"", u"file:", u"murn://tags/", u"murn://"}) {
        const auto wish = KPOpenedUrl::parse(QString::fromUtf16(prefix) + text);
        const auto *file = wish ? std::get_if<KPOpenedUrl::File>(&*wish) : nullptr;
        if (file != nullptr && !file->path.startsWith(u'/'))
            std::abort();
    }
    return 0;
}
