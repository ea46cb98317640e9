#include "KPContentTypes.h"
#include "KPDynamicType.h"
#include "KPFileType.h"
#include "KPMimeTypes.h"

#include <QCoreApplication>
#include <QLocale>

static constexpr QStringView treePrefix = u"tree_";
static constexpr QStringView extensionPrefix = u"KPExtensionSearch_";
static constexpr QStringView kindPrefix = u"KPkMDItemKind_";

// The text of a translation id; empty when no translation has it.
static QString translated(const QByteArray &id)
{
    const QString text = qtTrId(id.constData());
    return text == QString::fromUtf8(id) ? QString() : text;
}

static QString filledIn(QString format, const QString &argument)
{
    return format.replace(QStringLiteral("%1"), argument);
}

static QString ownExtensionName(const QString &extension)
{
    return translated("KPTranslationForExtension: " + extension.toUtf8());
}

static QString extensionPhrase(const QString &extension)
{
    //% "%1 file"
    const QString format = translated(QT_TRID_NOOP("KPExtensionTypeTemplate"));
    return filledIn(format.isEmpty() ? QStringLiteral("%1 file") : format, extension);
}

// A bare extension: our own name for it, or the extension itself in a phrase.
static QString extensionName(const QString &extension)
{
    QString own = ownExtensionName(extension);
    return own.isEmpty() ? extensionPhrase(extension) : own;
}

// A dynamic type has no description of its own, but the MIME database may know its extension.
static QString dynamicName(const QString &extension)
{
    QString own = ownExtensionName(extension);
    if (own.isEmpty())
        own = KPMimeTypes::descriptionForExtension(extension);
    return own.isEmpty() ? extensionPhrase(extension) : own;
}

static QString unknownName(const QString &uti)
{
    //% "Unknown type %1"
    const QString format = translated(QT_TRID_NOOP("KPUnknownUTITagTemplate"));
    return filledIn(format.isEmpty() ? QStringLiteral("Unknown type %1") : format, uti);
}

// A translation of ours first; then, for users of another language, the MIME database's; the
// English of the table last.
static QString declaredName(KPContentTypes::Number type)
{
    QString own = translated("KPTypeName: " + KPContentTypes::identifier(type).toUtf8());
    if (!own.isEmpty())
        return own;
    const QString mimeType = KPContentTypes::preferredMimeType(type);
    const auto language = QLocale().language();
    if (!mimeType.isEmpty() && language != QLocale::English && language != QLocale::C) {
        QString comment = KPMimeTypes::descriptionForMimeType(mimeType);
        if (!comment.isEmpty())
            return comment;
    }
    return KPContentTypes::description(type);
}

QString KPFileType::displayNameForUTI(const QString &uti)
{
    if (uti.startsWith(kindPrefix))
        return uti.mid(kindPrefix.size());
    if (uti.startsWith(extensionPrefix))
        return extensionName(uti.mid(extensionPrefix.size()));
    const QString type = uti.startsWith(treePrefix) ? uti.mid(treePrefix.size()) : uti;
    if (type.isEmpty())
        return {};
    if (const auto number = KPContentTypes::numberOf(type); number != KPContentTypes::none)
        return declaredName(number);
    const QString extension = KPDynamicType::extensionOf(type);
    return extension.isEmpty() ? unknownName(type) : dynamicName(extension);
}
