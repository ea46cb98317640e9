#include "KPBadgeCache.h"

#include "KPPngFile.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <algorithm>
#include <cmath>

// White on these has a contrast of more than 5.
static constexpr QRgb numberColour = 0xFFC62828;
static constexpr QRgb tagColour = 0xFF37474F;
static constexpr int maximumSide = 4096;
static constexpr qsizetype maximumLetters = 24;
static constexpr double textHeight = 0.62; // of the badge's

KPBadgeCache &KPBadgeCache::instance()
{
    static KPBadgeCache cache;
    return cache;
}

QString KPBadgeCache::readOnlyFolder()
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() +
                           QStringLiteral("/../share/murn/badges"));
}

QString KPBadgeCache::writableFolder()
{
    return XPFolders::ourApplicationSupport() + QStringLiteral("/badges");
}

void KPBadgeCache::setFolders(const QString &readOnly, const QString &writable)
{
    m_readOnly = readOnly;
    m_writable = writable;
    m_badges.clear();
    // Numbers and tags that nobody has any more are not worth remembering one by one.
    QDir folder(writable);
    const QStringList files = folder.entryList({QStringLiteral("*.png*")}, QDir::Files);
    if (!writable.isEmpty() && files.size() > maximumFiles) {
        for (const QString &file : files)
            folder.remove(file);
    }
}

QString KPBadgeCache::numberName(qint64 number, int height)
{
    return QStringLiteral("number-%1-%2").arg(number).arg(height);
}

QString KPBadgeCache::tagName(const QString &tag, int height)
{
    const QByteArray sum = QCryptographicHash::hash(tag.toUtf8(), QCryptographicHash::Md5).toHex();
    return QStringLiteral("tag-%1-%2").arg(QString::fromLatin1(sum)).arg(height);
}

QImage KPBadgeCache::numberBadge(qint64 number, int height)
{
    return badge(numberName(number, height), QString::number(number), height, numberColour);
}

QImage KPBadgeCache::tagBadge(const QString &tag, int height)
{
    QString text = XPPath::printable(tag);
    if (text.size() > maximumLetters) {
        text.truncate(maximumLetters - 1);
        if (text.back().isHighSurrogate())
            text.chop(1);
        text += QChar(0x2026);
    }
    return badge(tagName(tag, height), text, height, tagColour);
}

static QFont fontFor(int height)
{
    QFont font = QGuiApplication::font();
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(height * textHeight))));
    font.setWeight(QFont::DemiBold);
    return font;
}

// A badge drawn with another font is not the one that is wanted now.
static QByteArray fontName(int height)
{
    return fontFor(height).toString().toLatin1();
}

static QImage drawn(const QString &text, int height, QColor fill)
{
    const QFont font = fontFor(height);
    const double room = QFontMetricsF(font).horizontalAdvance(text) + height * 0.5;
    const int width = std::clamp(static_cast<int>(std::ceil(room)), height, maximumSide);
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(image.rect(), height / 2.0, height / 2.0);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(image.rect(), Qt::AlignCenter | Qt::TextSingleLine, text);
    return image;
}

// A badge of the program's comes as it is; one of ours must have been drawn with this font.
QImage KPBadgeCache::kept(const QString &name) const
{
    const QString file = u'/' + name + QStringLiteral(".png");
    if (!m_readOnly.isEmpty()) {
        if (QImage image(m_readOnly + file, "PNG"); !image.isNull())
            return image;
    }
    const int height = name.section(u'-', -1).toInt();
    const auto png = m_writable.isEmpty() ? std::nullopt : KPPngFile::read(m_writable + file);
    return png && png->text("Font") == fontName(height) ? png->image(maximumSide) : QImage();
}

QImage KPBadgeCache::badge(const QString &name, const QString &text, int height, QColor fill)
{
    if (height < 1 || height > maximumSide)
        return {};
    if (const QImage *known = m_badges.object(name))
        return *known;
    QImage image = kept(name);
    if (image.isNull()) {
        image = drawn(text, height, fill);
        if (!m_writable.isEmpty())
            KPPngFile::write(m_writable, u'/' + name + QStringLiteral(".png"), image,
                             {{"Font", fontName(height)}});
    }
    m_badges.insert(name, new QImage(image), image.sizeInBytes());
    return image;
}
