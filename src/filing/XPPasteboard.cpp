#include "XPPasteboard.h"

#include "XPFileUrls.h"

#include <QMimeData>
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
        return {QStringLiteral("image/tiff")};
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

static QString formatOf(const QMimeData *data, Kind kind)
{
    const QStringList types = XPPasteboard::mimeTypes(kind);
    const auto found = std::find_if(types.begin(), types.end(),
                                    [data](const QString &type) { return data->hasFormat(type); });
    return found == types.end() ? QString() : *found;
}

bool XPPasteboard::offers(const QMimeData *data, Kind kind)
{
    if (kind == Kind::FileNames)
        return data->hasFormat(uriList) && !XPFileUrls::paths(data).isEmpty();
    return !formatOf(data, kind).isEmpty();
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

XPPasteboard XPPasteboard::from(const QMimeData *data)
{
    XPPasteboard made;
    const auto fetch = [&](Kind kind) {
        if (const QString format = formatOf(data, kind); !format.isEmpty())
            made.add(kind, data->data(format));
        return made.has(kind);
    };
    const auto fetchOne = [&](std::initializer_list<Kind> kinds) {
        return std::any_of(kinds.begin(), kinds.end(), fetch);
    };
    const QString url = formatOf(data, Kind::Url);
    if (!url.isEmpty())
        made.addUrl(url, data->data(url));
    if (fetch(Kind::Email) || fetchOne({Kind::Png, Kind::Tiff, Kind::Jpeg}))
        return made;
    // A link is offered as styled text too, which says no more than the address and its name.
    if (!made.has(Kind::Url) && fetch(Kind::StyledText)) {
        fetch(Kind::String);
        return made;
    }
    made.m_fileNames = XPFileUrls::paths(data);
    if (!made.m_fileNames.isEmpty()) {
        made.add(Kind::FileNames, data->data(uriList));
        return made;
    }
    const bool isRich = fetch(Kind::Rtf);
    if (!fetch(Kind::String) && !isRich && !made.has(Kind::Url))
        fetch(Kind::Pdf);
    return made;
}
