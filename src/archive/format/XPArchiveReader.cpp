#include "XPArchiveReader.h"

#include "XPArchiveKeys.h"
#include "XPPath.h"
#include "XPPropertyList.h"

#include <QCoreApplication>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

using namespace XPArchiveKeys;
using Dictionary = PropertyValue::Dictionary;
using Error = std::optional<XPError>;
using Event = XPArchiveReader::Event;

static constexpr XPPropertyList::Limits limits = {longestMember, 24, 1'000'000};

XPArchiveReader::XPArchiveReader(int file, const QString &folder)
    : m_folder(folder), m_gzip(std::make_unique<XPGzipReader>(file, longestMember))
{
}

XPError XPArchiveReader::malformed(const QString &message) const
{
    return XPError::malformed(message, m_gzip->offset());
}

XPResult<XPArchiveReader> XPArchiveReader::open(int file, const QString &folder)
{
    XPArchiveReader reader(file, folder);
    if (auto error = reader.readHeader())
        return *error;
    return reader;
}

Error XPArchiveReader::readHeader()
{
    const auto header = nextRecord();
    if (!header || header->value(formatKey).string() != formatName) {
        if (!header && header.error().kind == XPError::Kind::Io)
            return header.error();
        return XPError::malformed(qtTrId("XPNotAnArchive"), 0);
    }
    if (header->value(versionKey).integerValue() > version)
        return XPError::make(
            XPError::Kind::Unsupported,
            qtTrId("XPArchiveNewer").arg(header->value(versionKey).integerValue()));
    m_isBeside = header->value(besideKey).boolValue();
    return {};
}

XPResult<Dictionary> XPArchiveReader::nextRecord()
{
    while (m_next == m_records.size()) {
        const auto member = m_gzip->next();
        if (!member)
            return member.error();
        if (!*member)
            return malformed(qtTrId("XPArchiveCutShort"));
        const auto list = XPPropertyList::readBinary(**member, limits);
        if (!list || !list->isArray() || list->array().isEmpty())
            return malformed(qtTrId("XPArchiveBadRecord"));
        m_records = list->array();
        m_next = 0;
    }
    const PropertyValue record = m_records[m_next++];
    return record.isDictionary() ? XPResult<Dictionary>(record.dictionary())
                                 : XPResult<Dictionary>(malformed(qtTrId("XPArchiveBadRecord")));
}

XPResult<Event> XPArchiveReader::next()
{
    if (m_besideFile.isOpen())
        return nextBeside();
    while (m_events.empty()) {
        if (m_state == State::Ended)
            return Event();
        const auto record = nextRecord();
        if (!record)
            return record.error();
        if (auto error = take(*record))
            return *error;
    }
    Event event = std::move(m_events.front());
    m_events.pop_front();
    if (m_isBeside && event.what == What::Begin)
        beginBeside(event);
    return event;
}

Error XPArchiveReader::take(const Dictionary &record)
{
    if (m_state == State::Contents || m_state == State::PartContents)
        return record.contains(pathKey) || record.contains(partKey) || record.contains(endKey)
                   ? Error(malformed(qtTrId("XPArchiveBadRecord")))
                   : contents(record);
    if (record.contains(endKey))
        return end(record);
    if (!record.contains(m_state == State::Parts ? partKey : pathKey))
        return malformed(qtTrId("XPArchiveBadRecord"));
    return begin(record, m_state == State::Parts);
}

Error XPArchiveReader::begin(const Dictionary &record, bool isPart)
{
    const auto file = XPArchivedFile::fromRecord(record, isPart);
    if (!file)
        return malformed(qtTrId("XPArchiveBadFile"));
    if (m_isBeside && file->kind != XPArchivedFile::Kind::File)
        return malformed(qtTrId("XPArchiveBadRecord"));
    m_events.push_back({What::Begin, *file});
    if (file->kind == XPArchivedFile::Kind::Folder)
        return {};
    if (file->kind == XPArchivedFile::Kind::Package) {
        m_state = State::Parts;
        return {};
    }
    m_left = file->size;
    m_checksum = 0;
    if (m_isBeside) {
        const bool isDropped = record.value(droppedKey).boolValue();
        m_events.push_back({What::End, {}, {}, isDropped});
        m_documents += isDropped ? 0 : 1;
        return {};
    }
    m_state = isPart ? State::PartContents : State::Contents;
    return contents(record);
}

Error XPArchiveReader::contents(const Dictionary &record)
{
    const QByteArray bytes = record.value(contentsKey).data();
    m_left -= bytes.size();
    m_checksum =
        static_cast<quint32>(::crc32(m_checksum, reinterpret_cast<const Bytef *>(bytes.constData()),
                                     static_cast<uInt>(bytes.size())));
    const bool isDropped = record.value(droppedKey).boolValue();
    const bool goesOn = record.value(moreKey).boolValue();
    if (m_left < 0 || (goesOn && bytes.isEmpty()))
        return malformed(qtTrId("XPArchiveBadContents"));
    if (!bytes.isEmpty())
        m_events.push_back({What::Contents, {}, bytes});
    if (goesOn)
        return {};
    if (!isDropped && m_left != 0)
        return malformed(qtTrId("XPArchiveBadContents"));
    if (!isDropped && record.value(checksumKey).integerValue() != m_checksum)
        return malformed(qtTrId("XPArchiveBadContents"));
    m_events.push_back({What::End, {}, {}, isDropped});
    if (m_state == State::Contents && !isDropped)
        ++m_documents;
    m_state = m_state == State::Contents ? State::Documents : State::Parts;
    return {};
}

Error XPArchiveReader::end(const Dictionary &record)
{
    const QString what = record.value(endKey).string();
    if (m_state == State::Parts && what == endOfPackage) {
        const bool isDropped = record.value(droppedKey).boolValue();
        m_events.push_back({What::EndPackage, {}, {}, isDropped});
        m_documents += isDropped ? 0 : 1;
        m_state = State::Documents;
        return {};
    }
    if (m_state != State::Documents || what != endOfArchive)
        return malformed(qtTrId("XPArchiveBadRecord"));
    return endArchive(record);
}

Error XPArchiveReader::endArchive(const Dictionary &record)
{
    if (record.value(documentsKey).integerValue() != m_documents)
        return malformed(qtTrId("XPArchiveMiscounts"));
    const auto rest = m_gzip->next();
    if (m_next != m_records.size() || !rest || *rest)
        return malformed(qtTrId("XPArchiveGoesOn"));
    m_state = State::Ended;
    m_events.push_back({What::EndArchive});
    return {};
}

// --- Contents that lie beside the archive

// Every folder on the way is opened by itself, so that no link leads elsewhere.
static XPFileDescriptor openBelow(const QString &folder, const QString &path)
{
    constexpr int asFolder = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
    XPFileDescriptor place(::open(XPPath::encode(folder).constData(), asFolder));
    QByteArrayList names = XPPath::encode(path).split('/');
    const QByteArray last = names.takeLast();
    for (const QByteArray &name : names) {
        if (place.isOpen())
            place =
                XPFileDescriptor(::openat(place.get(), name.constData(), asFolder | O_NOFOLLOW));
    }
    if (!place.isOpen())
        return place;
    return XPFileDescriptor(::openat(place.get(), last.constData(),
                                     O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
}

void XPArchiveReader::beginBeside(Event &event)
{
    XPFileDescriptor file = openBelow(m_folder, event.file.path);
    struct stat status = {};
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        m_events.front().isDropped = true;
        return;
    }
    m_besideFile = std::move(file);
    constexpr qint64 second = 1'000'000'000;
    event.file.size = status.st_size;
    event.file.modified = status.st_mtim.tv_sec * second + status.st_mtim.tv_nsec;
}

XPResult<Event> XPArchiveReader::nextBeside()
{
    QByteArray bytes(pieceSize, Qt::Uninitialized);
    ssize_t got = 0;
    do
        got = ::read(m_besideFile.get(), bytes.data(), static_cast<size_t>(bytes.size()));
    while (got < 0 && errno == EINTR);
    const int error = got < 0 ? errno : 0;
    if (got > 0) {
        bytes.resize(got);
        return Event{What::Contents, {}, bytes};
    }
    m_besideFile = {};
    Event end = std::move(m_events.front());
    m_events.pop_front();
    end.isDropped = end.isDropped || error != 0;
    return end;
}
