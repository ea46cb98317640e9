#include "KPDocumentFacts.h"

#include "KPDoc.h"
#include "KPDocMetaData.h"
#include "KPFileType.h"
#include "Karvex.h"
#include "XPPath.h"

#include <QLocale>
#include <QUrl>
#include <array>
#include <cmath>

using Contents = KPContentsReader::Contents;
using Fact = KPDocumentFacts::Fact;

static QString dateText(const QDateTime &date)
{
    return QLocale().toString(date.toLocalTime(), QLocale::ShortFormat);
}

static QString printable(const QString &text)
{
    static constexpr qsizetype longest = 600;
    return XPPath::printable(text.size() > longest ? text.left(longest) + u'…' : text);
}

QString KPDocumentFacts::text(const PropertyValue &value)
{
    using Kind = PropertyValue::Kind;
    switch (value.kind()) {
    case Kind::Null:
        return {};
    case Kind::Bool:
        return value.boolValue() ? qtTrId("KPYes") : qtTrId("KPNo");
    case Kind::Integer:
        return QLocale().toString(value.integerValue());
    case Kind::Real:
        return QLocale().toString(value.doubleValue());
    case Kind::Date:
        return dateText(QDateTime::fromMSecsSinceEpoch(
            static_cast<qint64>(value.date().secondsSince1970() * 1000), Qt::UTC));
    case Kind::Data:
        return qtTrId("KPFactBytes", static_cast<int>(value.data().size()));
    case Kind::String:
        return printable(value.string());
    case Kind::Array: {
        static constexpr qsizetype most = 20;
        QStringList parts;
        const PropertyValue::Array &array = value.array();
        for (const PropertyValue &each : array.first(std::min(most, array.size())))
            parts.append(text(each));
        if (array.size() > most)
            parts.append(QStringLiteral("…"));
        return parts.join(QStringLiteral(", "));
    }
    case Kind::Dictionary:
        return qtTrId("KPFactEntries", static_cast<int>(value.dictionary().size()));
    }
    return {};
}

PropertyValue KPDocumentFacts::value(const KPDoc &doc, const Contents *contents, const QString &key)
{
    if (contents && contents->isRead) {
        PropertyValue stated = contents->answer.allAttributes().value(key);
        if (!stated.isNull())
            return stated;
    }
    return KPDocMetaData::indexed(doc.filePath(), key);
}

int KPDocumentFacts::pages(const KPDoc &doc, const Contents *contents)
{
    return contents && contents->isRead ? contents->answer.pages : doc.pageCount();
}

QList<Fact> KPDocumentFacts::ofFile(const KPDoc &doc, const QString &uti)
{
    QList<Fact> facts = {{qtTrId("KPFactType"), printable(KPFileType::displayNameForUTI(uti)), {}},
                         {qtTrId("KPFactSize"), doc.fileSizeString(), {}},
                         {qtTrId("KPFactModified"), dateText(doc.unixFileModificationDate()), {}}};
    if (const QDateTime created = doc.creationDate(); created.isValid())
        facts.append({qtTrId("KPFactCreated"), dateText(created), {}});
    facts.append({qtTrId("KPFactFolder"), printable(doc.compactFolderPath()), {}});
    return facts;
}

// --- What stands in the document

namespace {

QString plain(const PropertyValue &value)
{
    return KPDocumentFacts::text(value);
}

QString duration(const PropertyValue &value)
{
    const auto seconds = static_cast<qint64>(std::lround(value.doubleValue()));
    if (seconds <= 0)
        return {};
    const QChar zero(u'0');
    const QString minutes =
        QStringLiteral("%1:%2").arg(seconds / 60 % 60, 2, 10, zero).arg(seconds % 60, 2, 10, zero);
    return seconds < 3600 ? minutes : QStringLiteral("%1:%2").arg(seconds / 3600).arg(minutes);
}

QString bitRate(const PropertyValue &value)
{
    return qtTrId("KPFactKilobits")
        .arg(QLocale().toString(std::lround(value.doubleValue() / 1000)));
}

QString sampleRate(const PropertyValue &value)
{
    return qtTrId("KPFactKilohertz").arg(QLocale().toString(value.doubleValue() / 1000));
}

QString aperture(const PropertyValue &value)
{
    return QStringLiteral("f/%1").arg(QLocale().toString(value.doubleValue(), 'g', 3));
}

QString exposure(const PropertyValue &value)
{
    const double seconds = value.doubleValue();
    const QString number = seconds > 0 && seconds < 1
                               ? QStringLiteral("1/%1").arg(std::lround(1 / seconds))
                               : QLocale().toString(seconds, 'g', 3);
    return qtTrId("KPFactSeconds").arg(number);
}

QString millimetres(const PropertyValue &value)
{
    return qtTrId("KPFactMillimetres").arg(QLocale().toString(value.doubleValue(), 'g', 4));
}

struct Stated
{
    const char *id = "";
    const char *key = "";
    QString (*text)(const PropertyValue &) = &plain;
};

constexpr std::array<Stated, 26> stated = {{
    {QT_TRID_NOOP("KPFactTitle"), "kMDItemTitle"},
    {QT_TRID_NOOP("KPFactSubject"), "kMDItemSubject"},
    {QT_TRID_NOOP("KPFactAuthors"), "kMDItemAuthors"},
    {QT_TRID_NOOP("KPFactRecipients"), "kMDItemRecipients"},
    {QT_TRID_NOOP("KPFactAttachments"), "kMDItemAttachmentNames"},
    {QT_TRID_NOOP("KPFactWritten"), "kMDItemContentCreationDate"},
    {QT_TRID_NOOP("KPFactPages"), "kMDItemNumberOfPages"},
    {QT_TRID_NOOP("KPFactDuration"), "kMDItemDurationSeconds", &duration},
    {QT_TRID_NOOP("KPFactAlbum"), "kMDItemAlbum"},
    {QT_TRID_NOOP("KPFactComposer"), "kMDItemComposer"},
    {QT_TRID_NOOP("KPFactGenre"), "kMDItemMusicalGenre"},
    {QT_TRID_NOOP("KPFactYear"), "kMDItemRecordingYear"},
    {QT_TRID_NOOP("KPFactBitRate"), "kMDItemAudioBitRate", &bitRate},
    {QT_TRID_NOOP("KPFactSampleRate"), "kMDItemAudioSampleRate", &sampleRate},
    {QT_TRID_NOOP("KPFactChannels"), "kMDItemAudioChannelCount"},
    {QT_TRID_NOOP("KPFactLens"), "kMDItemLensModel"},
    {QT_TRID_NOOP("KPFactExposure"), "kMDItemExposureTimeSeconds", &exposure},
    {QT_TRID_NOOP("KPFactAperture"), "kMDItemFNumber", &aperture},
    {QT_TRID_NOOP("KPFactFocalLength"), "kMDItemFocalLength", &millimetres},
    {QT_TRID_NOOP("KPFactSensitivity"), "kMDItemISOSpeed"},
    {QT_TRID_NOOP("KPFactCity"), "kMDItemCity"},
    {QT_TRID_NOOP("KPFactCountry"), "kMDItemCountry"},
    {QT_TRID_NOOP("KPFactKeywords"), "kMDItemKeywords"},
    {QT_TRID_NOOP("KPFactDescription"), "kMDItemDescription"},
    {QT_TRID_NOOP("KPFactCopyright"), "kMDItemCopyright"},
    {QT_TRID_NOOP("KPFactProgram"), "kMDItemCreator"},
}};

} // namespace

QList<Fact> KPDocumentFacts::ofContents(const KPDoc &doc, const Contents *contents)
{
    const auto held = [&](const char *key) { return value(doc, contents, QLatin1String(key)); };
    QList<Fact> facts;
    const qint64 width = held("kMDItemPixelWidth").integerValue();
    const qint64 height = held("kMDItemPixelHeight").integerValue();
    if (width > 0 && height > 0)
        facts.append(
            {qtTrId("KPFactPixels"),
             QStringLiteral("%1 × %2").arg(QLocale().toString(width), QLocale().toString(height)),
             {}});
    const QString make = held("kMDItemAcquisitionMake").string();
    const QString model = held("kMDItemAcquisitionModel").string();
    const QString camera = model.startsWith(make) ? model : make + u' ' + model;
    if (!camera.trimmed().isEmpty())
        facts.append({qtTrId("KPFactCamera"), printable(camera.trimmed()), {}});
    for (const Stated &each : stated) {
        const PropertyValue found = held(each.key);
        const QString words = found.isNull() ? QString() : each.text(found);
        if (!words.isEmpty())
            facts.append({qtTrId(each.id), words, {}});
    }
    return facts;
}

// --- Where it comes from

static QString webAddress(const QString &text)
{
    const QUrl url(text, QUrl::StrictMode);
    const bool isWeb = url.scheme() == u"http" || url.scheme() == u"https";
    return isWeb && url.isValid() && !url.host().isEmpty() ? QString::fromLatin1(url.toEncoded())
                                                           : QString();
}

static QList<KPContentsReader::Attribute> attributesOf(const Contents *contents)
{
    return contents ? contents->attributes : QList<KPContentsReader::Attribute>();
}

static PropertyValue onFile(const Contents *contents, const QString &key)
{
    const QString name = Karvex::spotlightKey(key);
    for (const KPContentsReader::Attribute &attribute : attributesOf(contents)) {
        if (attribute.name == name)
            return attribute.value;
    }
    return {};
}

QList<Fact> KPDocumentFacts::origins(const KPDoc &doc, const Contents *contents)
{
    static const QString whereFroms = QStringLiteral("kMDItemWhereFroms");
    QStringList addresses = onFile(contents, whereFroms).strings();
    if (addresses.isEmpty())
        addresses = KPDocMetaData::indexed(doc.filePath(), whereFroms).strings();
    for (const KPContentsReader::Attribute &attribute : attributesOf(contents)) {
        if (attribute.name == u"xdg.origin.url")
            addresses.append(QString::fromUtf8(attribute.bytes));
    }
    QList<Fact> facts;
    addresses.removeDuplicates();
    for (const QString &address : std::as_const(addresses)) {
        if (!address.isEmpty())
            facts.append({qtTrId("KPFactWhereFrom"), printable(address), webAddress(address)});
    }
    for (const QString &address : doc.getURLsForEditing())
        facts.append({qtTrId("KPFactAddress"), printable(address), webAddress(address)});
    return facts;
}

QList<Fact> KPDocumentFacts::attributes(const Contents &contents)
{
    const QString prefix = Karvex::spotlightKey({});
    QList<Fact> facts;
    for (const auto &attribute : contents.attributes) {
        const QString name =
            attribute.name.startsWith(prefix) ? attribute.name.mid(prefix.size()) : attribute.name;
        QString words;
        if (contents.unreadable.contains(attribute.name))
            words = qtTrId("KPAttributeUnreadable", static_cast<int>(attribute.bytes.size()));
        else if (!attribute.value.isNull())
            words = text(attribute.value);
        else if (const QString plain = QString::fromUtf8(attribute.bytes);
                 plain.toUtf8() == attribute.bytes)
            words = printable(plain);
        else
            words = qtTrId("KPFactBytes", static_cast<int>(attribute.bytes.size()));
        facts.append({printable(name), words, {}});
    }
    return facts;
}
