#include "LibArchive.h"

#include "DocumentSource.h"

#include <archive.h>
#include <archive_entry.h>
#include <unistd.h>

void LibArchive::Closer::operator()(archive *open) const
{
    archive_read_free(open);
}

LibArchive::Handle LibArchive::open(const DocumentSource &source, Formats formats)
{
    Handle handle(archive_read_new());
    if (!handle)
        return {};
    archive *const reader = handle.get();
    if (formats == Formats::Zip) {
        archive_read_support_format_zip_seekable(reader);
    } else {
        archive_read_support_format_zip(reader);
        archive_read_support_format_7zip(reader);
        archive_read_support_format_tar(reader);
        archive_read_support_format_rar(reader);
        archive_read_support_format_rar5(reader);
        archive_read_support_format_cpio(reader);
        archive_read_support_format_ar(reader);
        archive_read_support_format_cab(reader);
        archive_read_support_format_lha(reader);
        archive_read_support_format_iso9660(reader);
        archive_read_support_format_xar(reader);
        archive_read_support_format_raw(reader); // a file that is only compressed
        archive_read_support_filter_gzip(reader);
        archive_read_support_filter_bzip2(reader);
        archive_read_support_filter_xz(reader);
        archive_read_support_filter_lzma(reader);
        archive_read_support_filter_compress(reader);
        archive_read_support_filter_zstd(reader);
        archive_read_support_filter_lz4(reader);
    }
    constexpr size_t block = 64 << 10;
    if (::lseek(source.descriptor(), 0, SEEK_SET) != 0 ||
        archive_read_open_fd(reader, source.descriptor(), block) != ARCHIVE_OK)
        return {};
    return handle;
}

XPResult<QByteArray> LibArchive::decompressed(const DocumentSource &source, qsizetype limit)
{
    const Handle handle = open(source, Formats::Any);
    archive_entry *entry = nullptr;
    if (!handle || archive_read_next_header(handle.get(), &entry) < ARCHIVE_WARN)
        return XPError::malformed(QStringLiteral("not compressed"));
    constexpr qsizetype step = 64 << 10;
    QByteArray bytes;
    while (bytes.size() <= limit) {
        QByteArray piece(step, Qt::Uninitialized);
        const la_ssize_t got = archive_read_data(handle.get(), piece.data(), step);
        if (got < 0)
            return XPError::malformed(QStringLiteral("cannot be unpacked"));
        if (got == 0)
            return bytes;
        bytes.append(piece.constData(), got);
    }
    return XPError::make(XPError::Kind::TooLarge, QStringLiteral("too large when unpacked"));
}
