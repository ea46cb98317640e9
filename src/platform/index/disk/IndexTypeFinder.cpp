#include "IndexTypeFinder.h"

#include "KPContentTypes.h"
#include "KPFileType.h"
#include "XPPath.h"
#include "XPVolumes.h"

#include <sys/stat.h>

// Longer ones are no extensions but parts of names: not worth remembering.
static constexpr qsizetype longestExtension = 15;
static constexpr qsizetype mostExtensions = 1000;

static QByteArrayView extensionOf(QByteArrayView name)
{
    const qsizetype dot = name.lastIndexOf('.');
    return dot > 0 ? name.sliced(dot + 1) : QByteArrayView();
}

// Empty where several types share the extension, or none is told by it.
static QString typeByExtension(const QString &extension)
{
    const quint16 number = KPContentTypes::extensionNumber(extension);
    if (number == 0)
        return extension.isEmpty() ? QString() : KPFileType::preferredUTIForExtension(extension);
    KPContentTypes::Number only = KPContentTypes::none;
    for (const KPContentTypes::Number type : KPContentTypes::typesForExtensionNumber(number)) {
        if (KPContentTypes::isOfFolders(type))
            continue;
        if (only != KPContentTypes::none)
            return {};
        only = type;
    }
    return KPContentTypes::identifier(only);
}

QString IndexTypeFinder::type(const QByteArray &folder, int opened, QByteArrayView name,
                              quint32 mode)
{
    if (S_ISLNK(mode))
        return KPFileType::aliasUTI;
    if (!S_ISDIR(mode) && !S_ISREG(mode))
        return KPFileType::itemUTI;
    const QByteArrayView extension = extensionOf(name);
    if (S_ISDIR(mode) && extension.isEmpty())
        return KPFileType::folderUTI;
    const bool memorable = extension.size() <= longestExtension;
    QHash<QByteArray, QString> &known = S_ISDIR(mode) ? m_folders : m_files;
    if (memorable) {
        const auto key = QByteArray::fromRawData(extension.data(), extension.size());
        auto found = known.constFind(key);
        if (found == known.cend()) {
            const QString text = XPPath::decode(extension);
            if (known.size() >= mostExtensions)
                known.clear();
            found = known.insert(extension.toByteArray(),
                                 S_ISDIR(mode) ? KPFileType::utiForPath({}, text, mode)
                                               : typeByExtension(text));
        }
        if (!found->isEmpty())
            return *found;
    }
    QString path = XPPath::decode(folder) + u'/' + XPPath::decode(name);
    if (!XPVolumes::isOnSlowVolume(path)) // there nothing is read, and the path tells so
        path = QStringLiteral("/proc/self/fd/%1/").arg(opened) + XPPath::decode(name);
    const KPFileType::WithoutIndex ownJudgement;
    KPFileType::forgetPath(path);
    QString type = KPFileType::utiForPath(path, XPPath::decode(extension), mode);
    KPFileType::forgetPath(path); // the index itself is what remembers it
    return type;
}
