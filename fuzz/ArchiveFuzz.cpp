// Archives of documents come from other machines, and from whoever made them.
#include "XPArchiveReader.h"
#include "XPPropertyList.h"

#include <cstdlib>
#include <sys/mman.h>
#include <unistd.h>
#include <zlib.h>

// The input is what the members hold, so that every one gets past checksums and compression: each
// begins with its length in two bytes. Where it cannot be a member it is the archive's bytes.
static void writeMembers(int file, const uint8_t *data, size_t size)
{
    XPGzipWriter gzip(file);
    const PropertyValue::Dictionary header = {
        {QStringLiteral("format"), QStringLiteral("com.brindle.murn.documents")},
        {QStringLiteral("version"), PropertyValue::integer(1)}};
    if (gzip.add(*XPPropertyList::writeBinary(PropertyValue::Array{header})))
        std::abort();
    while (size > 2) {
        const size_t length = std::min(size_t{data[0]} | size_t{data[1]} << 8, size - 2);
        if (gzip.add(QByteArrayView(data + 2, static_cast<qsizetype>(length))))
            std::abort();
        data += 2 + length;
        size -= 2 + length;
    }
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    const XPFileDescriptor file(::memfd_create("archive", MFD_CLOEXEC));
    if (data[0] % 4 != 0)
        writeMembers(file.get(), data + 1, size - 1);
    else if (::write(file.get(), data + 1, size - 1) < 0)
        std::abort();
    auto opened = XPArchiveReader::open(file.get(), {});
    if (!opened)
        return 0;
    XPArchiveReader reader = std::move(opened).value();
    qint64 left = 0;
    for (;;) {
        const auto event = reader.next();
        using What = XPArchiveReader::What;
        if (!event || event->what == What::EndArchive)
            return 0;
        if (event->what == What::Begin) {
            if (event->file.path.isEmpty() || event->file.path.contains(QStringLiteral("../")))
                std::abort();
            left = event->file.size;
        }
        left -= event->bytes.size();
        if (left < 0 || (event->what == What::End && !event->isDropped && left != 0))
            std::abort();
    }
}
