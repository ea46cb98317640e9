#include "XPPasteboardSupport.h"

#include "KPDocTitles.h"
#include "KPPool.h"
#include "PropertyValue.h"
#include "XPFiledDocuments.h"
#include "XPLog.h"
#include "XPNewFile.h"
#include "XPNotificationCenter.h"
#include "XPPath.h"
#include "XPPropertyList.h"
#include "XPRtfText.h"
#include "XPStyledText.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QImageReader>
#include <QMimeData>
#include <algorithm>
#include <array>

using Kind = XPPasteboard::Kind;
using Paths = XPResult<QStringList>;

const QString XPPasteboardSupport::fileListImportNotification = QStringLiteral("XPFileListImport");
const QString XPPasteboardSupport::addedNotification =
    QStringLiteral("DocumentAddedToFiledDocumentsFromPBoard");

static constexpr std::array kinds = {Kind::Tiff,   Kind::Png,  Kind::Jpeg,       Kind::FileNames,
                                     Kind::String, Kind::Url,  Kind::StyledText, Kind::Rtf,
                                     Kind::Pdf,    Kind::Email};

QStringList XPPasteboardSupport::supportedTypes()
{
    QStringList types;
    for (const Kind kind : kinds)
        types += XPPasteboard::mimeTypes(kind);
    types.removeDuplicates();
    return types;
}

bool XPPasteboardSupport::canImportFromPB(const QMimeData *data)
{
    if (data == nullptr)
        return false;
    const QStringList formats = data->formats();
    return formats.contains(XPDataOffer::directSaveFormat) ||
           std::any_of(kinds.begin(), kinds.end(),
                       [&](Kind kind) { return XPPasteboard::offers(formats, kind); });
}

bool XPPasteboardSupport::canImportFromPB(const XPPasteboard &pb)
{
    return !pb.isEmpty();
}

QByteArray XPPasteboardSupport::dataFromPB(const XPPasteboard &pb, Kind kind)
{
    return pb.data(kind);
}

std::optional<XPError> XPPasteboardSupport::markManaged(const QString &path)
{
    return path.isEmpty() ? std::nullopt : XPFiledDocuments::setManaged(true, path);
}

static Paths write(const QString &folder, const QString &title, const QString &extension,
                   const QByteArray &bytes)
{
    QString stem = title;
    const QString ending = u'.' + extension;
    if (stem.endsWith(ending, Qt::CaseInsensitive))
        stem.chop(ending.size());
    const auto path = XPNewFile::write(folder, stem, extension, bytes);
    if (!path)
        return path.error();
    if (const auto error = XPPasteboardSupport::markManaged(*path))
        qCWarning(xpLog).noquote() << XPPath::printable(*path) << error->reason();
    return QStringList{*path};
}

// By what the source or the user calls it, else by the text.
static QString titleFor(const XPPasteboard &pb, const QString &text)
{
    return XPPasteboardSupport::titleOf(pb.urlName().isEmpty() ? text : pb.urlName());
}

XPResult<std::optional<XPFilePromise>> XPPasteboardSupport::importFilePromise(XPDataOffer &sender,
                                                                              const QString &folder)
{
    const auto name = sender.promisedName();
    if (!name)
        return std::optional<XPFilePromise>();
    return XPFilePromise::ask(sender, *name, folder);
}

Paths XPPasteboardSupport::importEmail(const XPPasteboard &pb, const QString &folder)
{
    const QByteArray bytes = pb.data(Kind::Email);
    if (bytes.isEmpty())
        return QStringList();
    const QString subject = KPDocTitles::subjectIn(bytes);
    const QString text = QStringLiteral("Subject:") + subject;
    return write(folder, pb.urlName().isEmpty() ? titleOf(text.trimmed()) : titleFor(pb, {}),
                 QStringLiteral("eml"), bytes);
}

// The picture as PNG; bytes that are a whole PNG already stay as they are.
static QByteArray asPng(const QByteArray &bytes, bool isPng)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    const QImage image = QImageReader(&buffer).read();
    if (image.isNull() || isPng)
        return image.isNull() ? QByteArray() : bytes;
    QByteArray png;
    QBuffer out(&png);
    out.open(QIODevice::WriteOnly);
    return image.save(&out, "PNG") ? png : QByteArray();
}

Paths XPPasteboardSupport::importImage(const XPPasteboard &pb, const QString &folder)
{
    for (const Kind kind : {Kind::Png, Kind::Tiff, Kind::Jpeg}) {
        if (!pb.has(kind))
            continue;
        const QByteArray png = asPng(pb.data(kind), kind == Kind::Png);
        if (png.isEmpty())
            return XPError::malformed(qtTrId("XPPictureNotReadable"));
        const QString name = cleanupDocTitle(pb.urlName());
        const bool hasName = !name.trimmed().isEmpty();
        return write(folder, hasName ? name : qtTrId("KPImageTitle"), QStringLiteral("png"), png);
    }
    return QStringList();
}

Paths XPPasteboardSupport::importRTFD(const XPPasteboard &pb, const QString &folder,
                                      const QString &name)
{
    if (!pb.has(Kind::StyledText))
        return QStringList();
    const auto text = XPStyledText::fromHtml(pb.data(Kind::StyledText));
    if (!text)
        return text.error();
    const QString title = name.isEmpty() ? titleFor(pb, text->characters) : titleOf(name);
    return write(folder, title, QStringLiteral("odt"), text->openDocument);
}

static Paths importRtf(const XPPasteboard &pb, const QString &folder)
{
    constexpr qsizetype enough = 2000; // to find a subject in
    const QByteArray rtf = pb.data(Kind::Rtf);
    const QString text = pb.has(Kind::String) ? pb.string() : XPRtfText::characters(rtf, enough);
    return write(folder, titleFor(pb, text), QStringLiteral("rtf"), rtf);
}

static Paths importWebLocation(const XPPasteboard &pb, const QString &address,
                               const QString &folder)
{
    const PropertyValue::Dictionary entry = {{QStringLiteral("URL"), address}};
    const auto bytes = XPPropertyList::writeXml(PropertyValue(entry));
    if (!bytes)
        return bytes.error();
    QString name = XPPasteboardSupport::cleanupDocTitle(pb.urlName());
    if (name.trimmed().isEmpty())
        name = QStringLiteral("URL");
    return write(folder, name, QStringLiteral("webloc"), *bytes);
}

Paths XPPasteboardSupport::importString(const XPPasteboard &pb, const QString &folder)
{
    if (pb.has(Kind::Rtf))
        return importRtf(pb, folder);
    const QString text = pb.string();
    // Shorter ones were hardly meant to be documents.
    if (text.size() < shortestString)
        return QStringList();
    if (text.startsWith(u"http://"))
        return importWebLocation(pb, text.trimmed(), folder);
    const bool isAddress = !pb.has(Kind::String);
    return write(folder, isAddress ? titleOf(text) : titleFor(pb, text), QStringLiteral("txt"),
                 text.toUtf8());
}

static bool isPdf(const QByteArray &bytes)
{
    // The mark may follow a line of another program's.
    constexpr qsizetype head = 1024;
    return bytes.first(std::min(head, bytes.size())).contains("%PDF-");
}

Paths XPPasteboardSupport::importPDF(const XPPasteboard &pb, const QString &folder)
{
    // Some programs hand a PDF over as rich text.
    QByteArray bytes = pb.data(Kind::Rtf);
    if (!isPdf(bytes))
        bytes = pb.data(Kind::Pdf);
    if (bytes.isEmpty())
        return QStringList();
    if (!isPdf(bytes))
        return XPError::malformed(qtTrId("XPPDFNotReadable"));
    const QString name = cleanupDocTitle(pb.urlName());
    return write(folder, name.trimmed().isEmpty() ? qtTrId("KPImportedPDFTitle") : name,
                 QStringLiteral("pdf"), bytes);
}

QStringList XPPasteboardSupport::importFilenames(const XPPasteboard &pb)
{
    QStringList paths;
    PropertyValue::Array list;
    for (const QString &path : pb.fileNames()) {
        paths.append(KPPool::pooledString(path).toString());
        list.append(PropertyValue(path));
    }
    if (!paths.isEmpty())
        XPNotificationCenter::instance().post(fileListImportNotification, PropertyValue(list));
    return paths;
}

Paths XPPasteboardSupport::importFromPB(const XPPasteboard &pb, const QString &folder)
{
    if (pb.has(Kind::Email))
        return importEmail(pb, folder);
    if (pb.has(Kind::Png) || pb.has(Kind::Tiff) || pb.has(Kind::Jpeg))
        return importImage(pb, folder);
    if (pb.has(Kind::StyledText))
        return importRTFD(pb, folder);
    if (pb.has(Kind::FileNames))
        return importFilenames(pb);
    if (pb.has(Kind::String) || pb.has(Kind::Rtf) || pb.has(Kind::Url))
        return importString(pb, folder);
    if (pb.has(Kind::Pdf))
        return importPDF(pb, folder);
    return QStringList();
}

Paths XPPasteboardSupport::importFromPBToFiledDocuments(const XPPasteboard &pb)
{
    const QString folder = XPFiledDocuments::currentFiledDocumentsPath();
    auto paths = importFromPB(pb, folder);
    if (paths && !paths->isEmpty() && XPPath::folder(paths->first()) == folder)
        XPNotificationCenter::instance().post(addedNotification);
    return paths;
}
