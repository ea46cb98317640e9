#include "KPPngFile.h"

#include "XPFileDescriptor.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <QBuffer>
#include <QImageReader>
#include <QtEndian>
#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

static constexpr qint64 maximumBytes = 16 << 20; // 1024 × 1024 pixels, hardly compressed
static constexpr qsizetype signatureSize = 8;
static constexpr qsizetype chunkOverhead = 12; // length, kind, checksum
static constexpr qsizetype headerChunk = chunkOverhead + 13;
static constexpr qsizetype maximumPacked = 4096; // of a text
static constexpr int fastCompression = 80;       // of Qt's "quality": zlib's level 2

std::optional<KPPngFile> KPPngFile::read(const QString &path)
{
    const QByteArray name = XPPath::encode(path);
    const XPFileDescriptor file(
        ::open(name.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    struct stat facts = {};
    if (!file.isOpen() || ::fstat(file.get(), &facts) != 0 || !S_ISREG(facts.st_mode) ||
        facts.st_uid != ::geteuid() || facts.st_size > maximumBytes)
        return {};
    KPPngFile png;
    png.m_modified = facts.st_mtim.tv_sec;
    png.m_bytes.resize(facts.st_size);
    if (::read(file.get(), png.m_bytes.data(), static_cast<size_t>(facts.st_size)) != facts.st_size)
        return {};
    png.readTexts();
    return png;
}

// Chunks up to the first that tells no text; a length that leads outside ends it.
void KPPngFile::readTexts()
{
    qsizetype at = signatureSize;
    while (m_bytes.size() - at >= chunkOverhead) {
        const qsizetype length = qFromBigEndian<quint32>(m_bytes.constData() + at);
        if (length > m_bytes.size() - at - chunkOverhead)
            return;
        const QByteArrayView kind(m_bytes.constData() + at + 4, 4);
        const QByteArrayView data(m_bytes.constData() + at + 8, length);
        const qsizetype end = data.indexOf('\0');
        if (kind == "tEXt" && end > 0) {
            m_texts.append({data.first(end).toByteArray(), data.sliced(end + 1).toByteArray()});
        } else if (kind == "zTXt" && end > 0 && end + 2 <= length && length <= maximumPacked) {
            // qUncompress() wants the length in front, as a hint only.
            const QByteArray packed =
                QByteArray("\0\0\1\0", 4) + data.sliced(end + 2).toByteArray();
            m_texts.append({data.first(end).toByteArray(), qUncompress(packed)});
        }
        at += length + chunkOverhead;
    }
}

QByteArray KPPngFile::text(const char *key) const
{
    for (const auto &[name, value] : m_texts) {
        if (name == key)
            return value;
    }
    return {};
}

QImage KPPngFile::image(int maximumSide) const
{
    QBuffer buffer;
    buffer.setData(m_bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, "png");
    const QSize size = reader.size();
    if (size.isEmpty() || size.width() > maximumSide || size.height() > maximumSide)
        return {};
    return reader.read();
}

// --- Writing

// The checksum of PNG (ISO 3309), a bit at a time: texts are short.
static quint32 checksum(QByteArrayView bytes)
{
    quint32 sum = 0xFFFFFFFF;
    for (const char byte : bytes) {
        sum ^= static_cast<quint8>(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = (sum >> 1) ^ (0xEDB88320U & (0U - (sum & 1U)));
    }
    return ~sum;
}

static QByteArray bigEndian(quint32 number)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(number, bytes.data());
    return bytes;
}

static QByteArray chunksOf(const KPPngFile::Texts &texts)
{
    QByteArray chunks;
    for (const auto &[key, value] : texts) {
        const QByteArray data = key + '\0' + value;
        const QByteArray body = "tEXt" + data;
        chunks += bigEndian(static_cast<quint32>(data.size())) + body + bigEndian(checksum(body));
    }
    return chunks;
}

static QByteArray encoded(const QImage &image, const KPPngFile::Texts &texts)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, "PNG", fastCompression))
        return {};
    return bytes.insert(signatureSize + headerChunk, chunksOf(texts));
}

static bool writeAll(int descriptor, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t written =
            ::write(descriptor, bytes.data(), static_cast<size_t>(bytes.size()));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        bytes = bytes.sliced(written);
    }
    return true;
}

bool KPPngFile::write(const QString &folder, const QString &name, const QImage &image,
                      const Texts &texts)
{
    static std::atomic<unsigned> number = 0;
    const QByteArray bytes = encoded(image, texts);
    if (bytes.isEmpty() || XPFolders::create(folder))
        return false;
    const QByteArray path = XPPath::encode(folder + name);
    const QByteArray beside = path + '.' + QByteArray::number(::getpid()) + '-' +
                              QByteArray::number(number.fetch_add(1)) + ".part";
    const XPFileDescriptor file(
        ::open(beside.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!file.isOpen())
        return false;
    if (writeAll(file.get(), bytes) && ::rename(beside.constData(), path.constData()) == 0)
        return true;
    ::unlink(beside.constData());
    return false;
}
