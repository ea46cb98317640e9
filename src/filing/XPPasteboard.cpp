#include "XPPasteboard.h"

#include "XPFileUrls.h"

#include <QStringDecoder>
#include <algorithm>

using Kind = XPPasteboard::Kind;

static const QString mozillaUrl = QStringLiteral("text/x-moz-url"); // UTF-16: address, title
static const QString netscapeUrl = QStringLiteral("_NETSCAPE_URL"); // address, title
static const QString uriList = QStringLiteral("text/uri-list");     // RFC 2483

QStringList XPPasteboard::mimeTypes(Kind kind)
{
    switch (kind) {
    case Kind::Tiff:
        // And what else is made a PNG.
        return {QStringLiteral("image/tiff"), QStringLiteral("image/webp"),
                QStringLiteral("image/bmp"), QStringLiteral("image/x-bmp"),
                QStringLiteral("image/gif")};
    case Kind::Png:
        return {QStringLiteral("image/png")};
    case Kind::Jpeg:
        return {QStringLiteral("image/jpeg"), QStringLiteral("image/jpg")};
    case Kind::FileNames:
        return {uriList};
    case Kind::String:
        return {QStringLiteral("text/plain;charset=utf-8"), QStringLiteral("text/plain")};
    case Kind::Url:
        return {mozillaUrl, netscapeUrl, uriList};
    case Kind::StyledText:
        return {QStringLiteral("text/html")};
    case Kind::Rtf:
        return {QStringLiteral("text/rtf"), QStringLiteral("application/rtf"),
                QStringLiteral("text/richtext")};
    case Kind::Pdf:
        return {QStringLiteral("application/pdf")};
    case Kind::Email:
        return {QStringLiteral("message/rfc822")};
    }
    return {};
}

static QString formatOf(const QStringList &formats, Kind kind)
{
    const QStringList types = XPPasteboard::mimeTypes(kind);
    const auto found = std::find_if(types.begin(), types.end(),
                                    [&](const QString &type) { return formats.contains(type); });
    return found == types.end() ? QString() : *found;
}

bool XPPasteboard::offers(const QStringList &formats, Kind kind)
{
    return !formatOf(formats, kind).isEmpty();
}

static QString decoded(const QByteArray &bytes, QStringDecoder::Encoding encoding)
{
    QStringDecoder decoder(encoding);
    QString text = decoder(bytes);
    // Programs of other worlds end texts with a NUL.
    while (text.endsWith(QChar::Null))
        text.chop(1);
    return text;
}

QString XPPasteboard::string() const
{
    return decoded(data(has(Kind::String) ? Kind::String : Kind::Url), QStringDecoder::Utf8);
}

void XPPasteboard::add(Kind kind, const QByteArray &bytes)
{
    if (!bytes.isEmpty())
        m_data.insert(kind, bytes);
}

static bool isWeb(const QString &address)
{
    return address.startsWith(u"http://") || address.startsWith(u"https://");
}

void XPPasteboard::addUrl(const QString &mimeType, const QByteArray &bytes)
{
    const QString text =
        decoded(bytes, mimeType == mozillaUrl ? QStringDecoder::Utf16LE : QStringDecoder::Utf8);
    QStringList lines = text.split(u'\n');
    for (QString &line : lines)
        line = line.trimmed();
    if (mimeType == uriList) {
        lines.removeIf([](const QString &line) { return line.startsWith(u'#'); });
        lines = lines.mid(0, 1);
    }
    if (lines.isEmpty() || !isWeb(lines.first()))
        return;
    add(Kind::Url, lines.first().toUtf8());
    if (lines.size() > 1)
        m_urlName = lines[1];
}

XPPasteboard XPPasteboard::of(const QString &mimeType, const QByteArray &bytes)
{
    XPPasteboard made;
    const QString bare = mimeType.section(u';', 0, 0).trimmed().toLower();
    if (mimeType == netscapeUrl || bare == mozillaUrl || bare == uriList)
        made.addUrl(mimeType == netscapeUrl ? mimeType : bare, bytes);
    for (const Kind kind : {Kind::Tiff, Kind::Png, Kind::Jpeg, Kind::String, Kind::StyledText,
                            Kind::Rtf, Kind::Pdf, Kind::Email}) {
        if (mimeTypes(kind).contains(bare))
            made.add(kind, bytes);
    }
    return made;
}

bool XPPasteboard::fetch(XPDataOffer &offer, Kind kind)
{
    const QString format = formatOf(offer.formats(), kind);
    if (format.isEmpty())
        return false;
    const auto bytes = offer.read(format);
    if (bytes)
        add(kind, *bytes);
    else
        m_failure = bytes.error();
    return has(kind);
}

void XPPasteboard::fetchAddress(XPDataOffer &offer)
{
    const QString format = formatOf(offer.formats(), Kind::Url);
    if (format.isEmpty())
        return;
    const auto bytes = offer.read(format);
    if (bytes)
        addUrl(format, *bytes);
    else
        m_failure = bytes.error();
}

XPPasteboard XPPasteboard::from(XPDataOffer &offer)
{
    XPPasteboard made;
    const auto fetch = [&](Kind kind) { return made.fetch(offer, kind); };
    const auto fetchOne = [&](std::initializer_list<Kind> kinds) {
        return std::any_of(kinds.begin(), kinds.end(), fetch);
    };
    made.fetchAddress(offer);
    if (fetch(Kind::Email) || fetchOne({Kind::Png, Kind::Tiff, Kind::Jpeg}))
        return made;
    // A link is offered as styled text too, which says no more than the address and its name.
    if (!made.has(Kind::Url) && fetch(Kind::StyledText)) {
        fetch(Kind::String);
        return made;
    }
    if (fetch(Kind::FileNames)) {
        made.m_fileNames = XPFileUrls::paths(made.data(Kind::FileNames));
        if (!made.m_fileNames.isEmpty())
            return made;
        made.m_data.remove(Kind::FileNames); // addresses of other things
    }
    const bool isRich = fetch(Kind::Rtf);
    if (!fetch(Kind::String) && !isRich && !made.has(Kind::Url))
        fetch(Kind::Pdf);
    return made;
}

XPPasteboard XPPasteboard::from(const QMimeData *data)
{
    return from(*XPDataOffer::of(data));
}
