// What KPFileType says about extensions alone, without a file.
#include "KPContentTypes.h"
#include "KPDynamicType.h"
#include "KPFileType.h"
#include "XPPath.h"
#include "XPText.h"

#include <algorithm>

using KPContentTypes::Number;

QStringList KPFileType::allUTIsForExtension(const QString &extension, bool isDirectory)
{
    QStringList result;
    for (const Number type : KPContentTypes::typesForExtension(extension)) {
        if (!isDirectory || KPContentTypes::isOfFolders(type))
            result.append(KPContentTypes::identifier(type));
    }
    // A dynamic type is one of files: the form for folders differs and nobody's files have it.
    if (result.isEmpty() && !isDirectory) {
        const QString dynamic = KPDynamicType::forExtension(lowerCase(extension));
        if (!dynamic.isEmpty())
            result.append(dynamic);
    }
    return result;
}

QString KPFileType::preferredUTIForExtension(const QString &extension)
{
    const auto types = KPContentTypes::typesForExtension(extension);
    return types.empty() ? KPDynamicType::forExtension(lowerCase(extension))
                         : KPContentTypes::identifier(types.front());
}

QString KPFileType::utiForFileExtension(const QString &extension)
{
    return preferredUTIForExtension(extension.startsWith(u'.') ? extension.mid(1) : extension);
}

QString KPFileType::fileExtensionForUTI(const QString &uti)
{
    const Number type = KPContentTypes::numberOf(uti);
    return type == KPContentTypes::none ? KPDynamicType::extensionOf(uti)
                                        : KPContentTypes::preferredExtension(type);
}

QString KPFileType::preferredUTIForOSType(const QString &code)
{
    return KPContentTypes::identifier(KPContentTypes::typeForOSType(code));
}

QString KPFileType::bestUTIForStoringExtension(const QString &extension,
                                               const QString &extensionUTI, const QString &pathUTI)
{
    const auto types = KPContentTypes::typesForExtension(extension);
    const bool reliable = types.size() == 1 && !KPContentTypes::isOfFolders(types.front()) &&
                          KPContentTypes::identifier(types.front()) == extensionUTI &&
                          pathUTI == extensionUTI;
    return reliable ? extension : QString();
}

static bool hasExtension(const QString &path, std::initializer_list<QStringView> extensions)
{
    const QString extension = XPPath::extension(path);
    return std::ranges::any_of(extensions, [&](QStringView known) {
        return extension.compare(known, Qt::CaseInsensitive) == 0;
    });
}

bool KPFileType::isMovie(const QString &path)
{
    return hasExtension(path, {u"mov", u"avi", u"mpg", u"mp4"});
}

bool KPFileType::isImage(const QString &path)
{
    return hasExtension(path, {u"jpg", u"gif", u"psd", u"png", u"tif"});
}
