#include "XPStyledText.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QImageReader>
#include <QStringDecoder>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextDocumentWriter>
#include <QUrl>
#include <algorithm>
#include <array>

static constexpr qsizetype longest = 16 << 20;
static constexpr int deepestBoxes = 100;
static constexpr int mostBoxes = 50'000;
static constexpr qsizetype longestName = 16; // of an element
static constexpr int largestSide = 16'384;   // of a picture, in pixels
static constexpr qint64 mostPixels = 1 << 26;

namespace {

// Knows the pictures that are part of the text itself.
class PictureDocument : public QTextDocument
{
public:
    using QTextDocument::QTextDocument;

    static QImage picture(const QString &name)
    {
        constexpr qsizetype longestHead = 200;
        const QStringView head = QStringView(name).left(longestHead);
        const qsizetype comma = head.indexOf(u',');
        if (!head.startsWith(u"data:image/", Qt::CaseInsensitive) || comma < 0)
            return {};
        const QByteArray text = QStringView(name).sliced(comma + 1).toLatin1();
        QByteArray bytes = head.first(comma).endsWith(u";base64", Qt::CaseInsensitive)
                               ? QByteArray::fromBase64(QByteArray::fromPercentEncoding(text))
                               : QByteArray::fromPercentEncoding(text);
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::ReadOnly);
        QImageReader reader(&buffer);
        static const QByteArrayList formats = {"png", "jpeg", "gif", "bmp", "webp", "tiff"};
        const QSize size = reader.size();
        if (!formats.contains(reader.format()) || !size.isValid() ||
            std::max(size.width(), size.height()) > largestSide ||
            qint64(size.width()) * size.height() > mostPixels)
            return {};
        return reader.read();
    }

protected:
    // Never the disk or the network, which the base class would ask.
    QVariant loadResource(int type, const QUrl &name) override
    {
        return type == ImageResource ? QVariant(picture(name.toString(QUrl::FullyEncoded)))
                                     : QVariant();
    }
};

} // namespace

// The encoding by its mark, by what the text says of itself, else UTF-8.
static QString decoded(const QByteArray &html)
{
    auto encoding = QStringConverter::encodingForData(html);
    if (!encoding)
        encoding = QStringConverter::encodingForHtml(html);
    QStringDecoder decoder(encoding.value_or(QStringConverter::Utf8));
    return decoder(html);
}

// The name of the element that begins at `at`, after "<" or "</".
static QStringView nameAt(QStringView html, qsizetype at)
{
    qsizetype end = at;
    while (end < html.size() && html[end].isLetterOrNumber() && end - at < longestName)
        ++end;
    return html.sliced(at, end - at);
}

// Boxes in boxes cost time and memory by the square of their depth.
static bool isNestedTooDeep(QStringView html)
{
    static constexpr std::array boxes = {u"table", u"ul", u"ol", u"dl", u"blockquote", u"div"};
    int depth = 0;
    int count = 0;
    for (qsizetype at = 0; (at = html.indexOf(u'<', at)) >= 0;) {
        ++at;
        const bool closes = at < html.size() && html[at] == u'/';
        const QStringView name = nameAt(html, at + (closes ? 1 : 0));
        const bool isBox = std::any_of(boxes.begin(), boxes.end(), [name](const char16_t *box) {
            return name.compare(QStringView(box), Qt::CaseInsensitive) == 0;
        });
        if (!isBox)
            continue;
        depth = std::max(0, depth + (closes ? -1 : 1));
        if (depth > deepestBoxes || ++count > mostBoxes)
            return true;
    }
    return false;
}

// Pictures that did not come with the text: the writer would look for a file of their name.
static void removeOtherPictures(QTextDocument &document)
{
    QList<std::pair<int, int>> others; // position and length
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment part = it.fragment();
            if (!part.charFormat().isImageFormat())
                continue;
            const QString name = part.charFormat().toImageFormat().name();
            if (!document.resource(QTextDocument::ImageResource, QUrl(name))
                     .value<QImage>()
                     .isNull())
                continue;
            others.append({part.position(), part.length()});
        }
    }
    for (auto other = others.crbegin(); other != others.crend(); ++other) {
        QTextCursor cursor(&document);
        cursor.setPosition(other->first);
        cursor.setPosition(other->first + other->second, QTextCursor::KeepAnchor);
        cursor.removeSelectedText();
    }
}

XPResult<XPStyledText::Document> XPStyledText::fromHtml(const QByteArray &html)
{
    using Kind = XPError::Kind;
    if (qobject_cast<QGuiApplication *>(QCoreApplication::instance()) == nullptr)
        return XPError::make(Kind::Unsupported, qtTrId("XPStyledTextNeedsFonts"));
    if (html.size() > longest)
        return XPError::make(Kind::TooLarge, qtTrId("XPStyledTextTooLong"));
    const QString text = decoded(html);
    if (isNestedTooDeep(text))
        return XPError::malformed(qtTrId("XPStyledTextTooDeep"));
    PictureDocument document;
    document.setUndoRedoEnabled(false);
    document.setHtml(text);
    removeOtherPictures(document);
    Document made;
    made.characters = document.toPlainText();
    QBuffer buffer(&made.openDocument);
    QTextDocumentWriter writer(&buffer, "ODF");
    if (!writer.write(&document))
        return XPError::make(Kind::Io, qtTrId("XPStyledTextNotWritten"));
    return made;
}
