#include "KPMimeTypes.h"

#include <QMimeDatabase>
#include <algorithm>

using KPContentTypes::Number;

// The preferred declared type of a MIME type itself, `none` when it has none.
static Number declaredType(const QMimeType &mime)
{
    QStringList names = mime.aliases();
    names.prepend(mime.name());
    for (const QString &name : names) {
        const auto types = KPContentTypes::typesForMimeType(name);
        if (!types.empty())
            return types.front();
    }
    return KPContentTypes::none;
}

// The general type of a MIME type's class ("image/…").
static Number classType(const QString &mimeName)
{
    static constexpr struct
    {
        QStringView prefix;
        QStringView identifier;
    } classes[] = {
        {u"image/", u"public.image"},     {u"audio/", u"public.audio"},
        {u"video/", u"public.movie"},     {u"text/", u"public.text"},
        {u"font/", u"public.font"},       {u"model/", u"public.3d-content"},
        {u"message/", u"public.message"},
    };
    for (const auto &entry : classes) {
        if (mimeName.startsWith(entry.prefix))
            return KPContentTypes::numberOf(entry.identifier);
    }
    return KPContentTypes::none;
}

static void appendOnce(std::vector<Number> &types, Number type)
{
    if (type != KPContentTypes::none && std::ranges::find(types, type) == types.end())
        types.push_back(type);
}

// The declared types nearest to a MIME type: its own, those of what it inherits, its class.
static std::vector<Number> declaredTypes(const QMimeDatabase &database, const QMimeType &mime)
{
    std::vector<Number> types;
    appendOnce(types, declaredType(mime));
    for (const QString &ancestor : mime.allAncestors())
        appendOnce(types, declaredType(database.mimeTypeForName(ancestor)));
    appendOnce(types, classType(mime.name()));
    return types;
}

static QMimeType mimeTypeForExtension(const QMimeDatabase &database, const QString &extension)
{
    const auto found = database.mimeTypesForFileName(QStringLiteral("x.") + extension);
    return found.isEmpty() || found.first().isDefault() ? QMimeType() : found.first();
}

std::vector<Number> KPMimeTypes::typesForExtension(const QString &extension)
{
    const QMimeDatabase database;
    const QMimeType mime = mimeTypeForExtension(database, extension);
    return mime.isValid() ? declaredTypes(database, mime) : std::vector<Number>();
}

QString KPMimeTypes::descriptionForExtension(const QString &extension)
{
    const QMimeType mime = mimeTypeForExtension(QMimeDatabase(), extension);
    return mime.isValid() ? mime.comment() : QString();
}

QString KPMimeTypes::descriptionForMimeType(const QString &mimeType)
{
    const QMimeType mime = QMimeDatabase().mimeTypeForName(mimeType);
    return mime.isValid() ? mime.comment() : QString();
}

Number KPMimeTypes::typeForData(const QByteArray &firstBytes)
{
    const QMimeDatabase database;
    const QMimeType mime = database.mimeTypeForData(firstBytes);
    if (!mime.isValid() || mime.isDefault())
        return KPContentTypes::none;
    const auto types = declaredTypes(database, mime);
    return types.empty() ? KPContentTypes::none : types.front();
}
