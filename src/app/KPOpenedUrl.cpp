#include "KPOpenedUrl.h"

#include "XPPath.h"

static constexpr QStringView fileScheme = u"file:";
static constexpr QStringView ourScheme = u"murn://";

static XPError malformed(const char *message)
{
    return XPError::malformed(QString::fromLatin1(message));
}

static int hexDigit(QChar character)
{
    const char16_t code = character.unicode();
    if (code >= u'0' && code <= u'9')
        return code - u'0';
    const char16_t lower = code | 0x20U;
    return lower >= u'a' && lower <= u'f' ? lower - u'a' + 10 : -1;
}

// The bytes that a part of an address stands for.
static XPResult<QByteArray> unescaped(QStringView part)
{
    QByteArray bytes;
    qsizetype plain = 0; // begin of what was not taken over yet
    for (qsizetype at = part.indexOf(u'%'); at >= 0; at = part.indexOf(u'%', plain)) {
        bytes += XPPath::encode(part.mid(plain, at - plain).toString());
        const int high = at + 2 < part.size() ? hexDigit(part[at + 1]) : -1;
        const int low = at + 2 < part.size() ? hexDigit(part[at + 2]) : -1;
        if (high < 0 || low < 0)
            return malformed("the address has a broken escape");
        bytes += static_cast<char>(high * 16 + low);
        plain = at + 3;
    }
    bytes += XPPath::encode(part.mid(plain).toString());
    if (bytes.contains('\0'))
        return malformed("the address holds a NUL");
    return bytes;
}

// Without what is behind the path.
static QStringView pathPart(QStringView rest)
{
    for (qsizetype at = 0; at < rest.size(); ++at) {
        if (rest[at] == u'?' || rest[at] == u'#')
            return rest.left(at);
    }
    return rest;
}

static XPResult<KPOpenedUrl::Wish> parseFile(QStringView rest)
{
    QStringView path = pathPart(rest);
    if (path.startsWith(u"//")) {
        const qsizetype slash = path.indexOf(u'/', 2);
        const QStringView host = slash < 0 ? path.mid(2) : path.mid(2, slash - 2);
        if (!host.isEmpty() && host.compare(u"localhost", Qt::CaseInsensitive) != 0)
            return malformed("the address names a file of another machine");
        path = slash < 0 ? QStringView() : path.mid(slash);
    }
    const auto bytes = unescaped(path);
    if (!bytes)
        return bytes.error();
    if (!bytes->startsWith('/'))
        return malformed("the address names no file");
    return KPOpenedUrl::Wish(KPOpenedUrl::File{XPPath::decode(*bytes)});
}

static XPResult<KPOpenedUrl::Wish> parseOurs(QStringView rest)
{
    const QStringView address = pathPart(rest);
    const qsizetype slash = address.indexOf(u'/');
    const QStringView host = slash < 0 ? address : address.left(slash);
    const auto bytes = unescaped(slash < 0 ? QStringView() : address.mid(slash + 1));
    if (!bytes)
        return bytes.error();
    const QString path = QString::fromUtf8(*bytes);
    if (host.compare(u"tags", Qt::CaseInsensitive) == 0)
        return KPOpenedUrl::Wish(KPOpenedUrl::WithTags{path.split(u'/', Qt::SkipEmptyParts)});
    return KPOpenedUrl::Wish(KPOpenedUrl::WithText{path});
}

XPResult<KPOpenedUrl::Wish> KPOpenedUrl::parse(const QString &url)
{
    if (url.size() > longest)
        return XPError::make(XPError::Kind::TooLarge, QStringLiteral("the address is too long"));
    if (url.contains(QChar::Null))
        return malformed("the address holds a NUL");
    if (url.startsWith(fileScheme, Qt::CaseInsensitive))
        return parseFile(QStringView(url).mid(fileScheme.size()));
    if (url.startsWith(ourScheme, Qt::CaseInsensitive))
        return parseOurs(QStringView(url).mid(ourScheme.size()));
    for (const char *scheme : {"https://", "http://"}) {
        if (url.startsWith(QLatin1String(scheme), Qt::CaseInsensitive))
            return Wish(Capture{url});
    }
    return malformed("the address is of no kind that Murn opens");
}
