#include "ArchiveReader.h"

#include "FlowText.h"
#include "LibArchive.h"
#include "TextDecoding.h"

#include <archive.h>
#include <archive_entry.h>

static QString nameOf(archive_entry *entry)
{
    if (const char *utf8 = archive_entry_pathname_utf8(entry))
        return QString::fromUtf8(utf8);
    if (const char *bytes = archive_entry_pathname(entry))
        return TextDecoding::detect(QByteArrayView(bytes));
    const wchar_t *wide = archive_entry_pathname_w(entry);
    return wide ? QString::fromWCharArray(wide) : QString();
}

// Passes over what an entry holds; false when too much would have to be unpacked for it.
static bool pass(archive *open, const DocumentSource &source, qint64 &left)
{
    const void *block = nullptr;
    size_t size = 0;
    la_int64_t offset = 0;
    while (archive_read_data_block(open, &block, &size, &offset) == ARCHIVE_OK) {
        left -= static_cast<qint64>(size);
        if (left < 0 || source.mustStop())
            return false;
    }
    return true;
}

std::optional<DocumentFailure> ArchiveReader::read(const DocumentSource &source,
                                                   DocumentAnswer &answer) const
{
    constexpr int mostEntries = 100'000;
    constexpr qint64 mostUnpacked = 512 << 20;
    const LibArchive::Handle open = LibArchive::open(source, LibArchive::Formats::Any);
    if (!open)
        return DocumentFailure::Damaged;
    FlowText flow(answer.text);
    archive_entry *entry = nullptr;
    qint64 left = mostUnpacked;
    for (int entries = 0;; ++entries) {
        const int status = archive_read_next_header(open.get(), &entry);
        if (status == ARCHIVE_EOF)
            return {};
        if (status < ARCHIVE_WARN)
            return archive_read_has_encrypted_entries(open.get()) > 0 ? DocumentFailure::Encrypted
                                                                      : DocumentFailure::Damaged;
        if (entries == mostEntries)
            return DocumentFailure::TooLarge;
        if (archive_format(open.get()) == ARCHIVE_FORMAT_RAW) // one file, packed: it has no name
            return archive_filter_count(open.get()) > 1 ? std::nullopt
                                                        : std::optional(DocumentFailure::Damaged);
        flow.append(nameOf(entry));
        flow.endLine();
        if (flow.isFull() || source.mustStop())
            return {};
        // The first filter is the file itself: in what is not packed as a whole one can seek.
        if (archive_filter_count(open.get()) > 1 && !pass(open.get(), source, left))
            return left < 0 ? std::optional(DocumentFailure::TooLarge) : std::nullopt;
    }
}
