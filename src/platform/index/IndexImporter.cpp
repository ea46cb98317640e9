#include "IndexImporter.h"

#include "KPContentTypes.h"
#include "XPPath.h"

#include <QStringDecoder>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

static const QString markdownType = QStringLiteral("net.daringfireball.markdown");

bool IndexPlainTextImporter::accepts(const QString &type) const
{
    return type == markdownType ||
           KPContentTypes::conformsTo(type, QStringLiteral("public.plain-text")) ||
           KPContentTypes::conformsTo(type, QStringLiteral("public.source-code"));
}

static XPResult<QByteArray> readStart(const QByteArray &path, qsizetype limit)
{
    const int file = ::open(path.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (file < 0)
        return XPError::fromErrno(errno, XPPath::decode(path));
    QByteArray bytes;
    struct stat facts = {};
    if (::fstat(file, &facts) == 0 && S_ISREG(facts.st_mode)) {
        bytes.resize(static_cast<qsizetype>(std::min<qint64>(facts.st_size, limit)));
        qsizetype have = 0;
        while (have < bytes.size()) {
            const ssize_t got =
                ::read(file, bytes.data() + have, static_cast<size_t>(bytes.size() - have));
            if (got <= 0)
                break;
            have += got;
        }
        bytes.truncate(have);
    }
    ::close(file);
    return bytes;
}

static QString decodedText(const QByteArray &bytes)
{
    if (const auto encoding = QStringConverter::encodingForData(bytes);
        encoding && *encoding != QStringConverter::Utf8)
        return QStringDecoder(*encoding)(bytes);
    if (bytes.contains('\0'))
        return {};
    QStringDecoder utf8(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    // A character cut by the limit is no reason to read the whole as Latin-1.
    const qsizetype whole =
        bytes.size() < IndexPlainTextImporter::maximumBytes ? bytes.size() : bytes.size() - 4;
    const QString text = utf8(QByteArrayView(bytes).first(whole));
    return utf8.hasError() ? QString::fromLatin1(bytes) : text;
}

static QString firstHeading(const QString &text)
{
    for (const QStringView line : QStringView(text).left(4096).split(u'\n')) {
        if (line.startsWith(u"# "))
            return line.mid(2).trimmed().toString();
    }
    return {};
}

XPResult<IndexImporter::Content> IndexPlainTextImporter::import(const QByteArray &path,
                                                                const QString &type)
{
    const auto bytes = readStart(path, maximumBytes);
    if (!bytes)
        return bytes.error();
    Content content;
    content.text = decodedText(*bytes);
    if (type == markdownType) {
        if (const QString title = firstHeading(content.text); !title.isEmpty())
            content.attributes.insert(QStringLiteral("kMDItemTitle"), title);
    }
    return content;
}
