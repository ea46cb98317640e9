#include "KPSharedThumbnails.h"

#include "KPPngFile.h"
#include "XPFileInfo.h"
#include "XPFileUrls.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <QCryptographicHash>
#include <array>
#include <ctime>

struct SharedSize
{
    int side;
    const char *folder;
};
static constexpr std::array<SharedSize, 4> sizes = {
    {{128, "normal"}, {256, "large"}, {512, "x-large"}, {1024, "xx-large"}}};
static constexpr const char *failureKey = "X-Murn::Failure";
static constexpr qint64 nanoseconds = 1'000'000'000;
// A file that changed in the last two seconds may change again within the same one.
static constexpr qint64 settledAfter = 2;

KPFileOrigin KPFileOrigin::of(const XPFileInfo &info)
{
    return {info.device, info.inode, info.size, info.modified};
}

KPSharedThumbnails::KPSharedThumbnails(QString folder, QString program)
    : m_folder(std::move(folder)), m_program(std::move(program))
{
}

int KPSharedThumbnails::sizeFor(int side)
{
    for (const SharedSize &size : sizes) {
        if (size.side >= side)
            return size.side;
    }
    return 0;
}

// GLib leaves these bare in the address of a file; Qt the brackets and the semicolon too.
QByteArrayList KPSharedThumbnails::addressesOf(const QString &path)
{
    const QByteArray bytes = XPPath::encode(path);
    if (bytes.isEmpty())
        return {};
    const QByteArray usual = "file://" + bytes.toPercentEncoding("/!$&'()*+,=:@");
    QByteArray other = usual;
    other.replace("%3B", ";").replace("%5B", "[").replace("%5D", "]");
    return other == usual ? QByteArrayList{usual} : QByteArrayList{usual, other};
}

QByteArrayList KPSharedThumbnails::placesOf(const QString &path) const
{
    return m_folder.isEmpty() ? QByteArrayList() : addressesOf(path);
}

static QString fileNameOf(const QByteArray &address)
{
    const QByteArray sum = QCryptographicHash::hash(address, QCryptographicHash::Md5).toHex();
    return u'/' + QString::fromLatin1(sum) + QStringLiteral(".png");
}

static QByteArray secondsOf(qint64 time)
{
    return QByteArray::number(time >= 0 ? time / nanoseconds : (time + 1) / nanoseconds - 1);
}

static KPPngFile::Texts textsOf(const QByteArray &address, const KPFileOrigin &origin)
{
    return {{"Thumb::URI", address},
            {"Thumb::MTime", secondsOf(origin.modified)},
            {"Thumb::Size", QByteArray::number(origin.size)},
            {"Software", "Murn"}};
}

static bool isOf(const KPPngFile &file, const QByteArray &address, const KPFileOrigin &origin)
{
    const QByteArray size = file.text("Thumb::Size");
    return file.text("Thumb::URI") == address &&
           file.text("Thumb::MTime") == secondsOf(origin.modified) &&
           (size.isEmpty() || size == QByteArray::number(origin.size));
}

static bool isYoung(const KPPngFile &file, std::chrono::seconds lifetime)
{
    return std::time(nullptr) - file.modified() <= lifetime.count();
}

std::optional<QImage> KPSharedThumbnails::read(const QString &path, const KPFileOrigin &origin,
                                               int side, std::chrono::seconds lifetime) const
{
    const QByteArrayList addresses = placesOf(path);
    for (const SharedSize &size : sizes) {
        if (size.side < side)
            continue;
        for (const QByteArray &address : addresses) {
            const auto file =
                KPPngFile::read(m_folder + u'/' + QLatin1String(size.folder) + fileNameOf(address));
            if (!file || !isYoung(*file, lifetime) || !isOf(*file, address, origin))
                continue;
            if (const QImage image = file->image(size.side); !image.isNull())
                return scaled(image, side);
        }
    }
    return {};
}

QImage KPSharedThumbnails::scaled(const QImage &image, int side)
{
    QImage plain = image.convertToFormat(
        image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    if (plain.width() <= side && plain.height() <= side)
        return plain;
    const QSize size = plain.size().scaled(side, side, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
    return plain.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

// --- Storing

bool KPSharedThumbnails::mayStore(const QString &path, const KPFileOrigin &origin) const
{
    const qint64 age = std::time(nullptr) - origin.modified / nanoseconds;
    return origin.modified > 0 && age > settledAfter && !path.startsWith(m_folder + u'/');
}

void KPSharedThumbnails::write(const QString &path, const KPFileOrigin &origin,
                               const QImage &image) const
{
    const QByteArrayList addresses = placesOf(path);
    const int side = sizeFor(std::max(image.width(), image.height()));
    if (addresses.isEmpty() || image.isNull() || side == 0 || !mayStore(path, origin))
        return;
    for (const SharedSize &size : sizes) {
        if (size.side == side)
            KPPngFile::write(m_folder + u'/' + QLatin1String(size.folder),
                             fileNameOf(addresses.first()), image,
                             textsOf(addresses.first(), origin));
    }
}

QString KPSharedThumbnails::failures() const
{
    return m_folder + QStringLiteral("/fail/") + m_program;
}

std::optional<DocumentFailure> KPSharedThumbnails::failure(const QString &path,
                                                           const KPFileOrigin &origin,
                                                           std::chrono::seconds lifetime) const
{
    const QByteArrayList addresses = placesOf(path);
    if (addresses.isEmpty())
        return {};
    const auto file = KPPngFile::read(failures() + fileNameOf(addresses.first()));
    if (!file || !isYoung(*file, lifetime) || !isOf(*file, addresses.first(), origin))
        return {};
    return documentFailureNamed(QString::fromLatin1(file->text(failureKey)))
        .value_or(DocumentFailure::Damaged);
}

// As the standard has it: an empty picture.
void KPSharedThumbnails::writeFailure(const QString &path, const KPFileOrigin &origin,
                                      DocumentFailure why) const
{
    const QByteArrayList addresses = placesOf(path);
    if (addresses.isEmpty() || !mayStore(path, origin))
        return;
    QImage nothing(1, 1, QImage::Format_ARGB32);
    nothing.fill(Qt::transparent);
    KPPngFile::Texts texts = textsOf(addresses.first(), origin);
    texts.append({failureKey, documentFailureName(why).toLatin1()});
    KPPngFile::write(failures(), fileNameOf(addresses.first()), nothing, texts);
}
