#include "KPHealing.h"

#include "Karvex.h"
#include "KarvexFileLock.h"
#include "XPExtendedAttributes.h"
#include "XPFileInfo.h"

#include <QCoreApplication>
#include <QSet>
#include <cerrno>

// What another program brings with a file when it knows of tags.
bool KPHealing::haveNoTags(const QStringList &names)
{
    static const QSet<QString> known = {Karvex::userTagsKey,
                                        Karvex::systemTagsKey,
                                        Karvex::userTagTimeKey,
                                        Karvex::starRatingKey,
                                        Karvex::ratingTimeKey,
                                        Karvex::managedKey,
                                        QStringLiteral("_kMDItemUserTags")};
    return std::none_of(names.begin(), names.end(),
                        [](const QString &name) { return known.contains(name); });
}

XPResult<bool> KPHealing::hasNoTags(const QString &path)
{
    const auto names = XPExtendedAttributes::list(path);
    if (!names)
        return names.error();
    const QString prefix = Karvex::spotlightKey({});
    QStringList known;
    for (const QString &name : *names) {
        if (name.startsWith(prefix))
            known.append(name.mid(prefix.size()));
    }
    return haveNoTags(known);
}

static void removeAll(const QStringList &names, const QString &path)
{
    for (const QString &name : names)
        (void)XPExtendedAttributes::remove(path, name);
}

static bool isOtherFile(const XPFileInfo &one, const XPFileInfo &other)
{
    return one.inode != other.inode || one.birth != other.birth;
}

std::optional<XPError> KPHealing::heal()
{
    const KarvexFileLock lock(path);
    const auto file = XPFileInfo::read(path);
    if (!file)
        return file.error();
    const auto isBare = hasNoTags(path);
    if (!isBare)
        return isBare.error();
    if (!*isBare)
        return XPError::make(XPError::Kind::NotFound, qtTrId("KPHealedHasTags"), path);
    QStringList written;
    for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute) {
        const QString name = Karvex::spotlightKey(attribute.key());
        const auto present = XPExtendedAttributes::read(path, name);
        if (present && *present)
            continue;
        if (auto error = XPExtendedAttributes::write(path, name, *attribute)) {
            removeAll(written, path);
            return error;
        }
        written.append(name);
    }
    // Saved once more meanwhile: one part may stand on the file before and the rest on this one,
    // which would then look as if it had tags.
    const auto now = XPFileInfo::read(path);
    if (now && !isOtherFile(*file, *now))
        return {};
    for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute) {
        const QString name = Karvex::spotlightKey(attribute.key());
        const auto present = XPExtendedAttributes::read(path, name);
        if (written.contains(name) && present && *present == *attribute)
            (void)XPExtendedAttributes::remove(path, name);
    }
    return XPError::fromErrno(ESTALE, path);
}

std::optional<XPError> KPHealing::undo()
{
    const KarvexFileLock lock(path);
    QStringList changed;
    for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute) {
        const QString name = Karvex::spotlightKey(attribute.key());
        const auto present = XPExtendedAttributes::read(path, name);
        if (!present)
            return present.error();
        if (!*present)
            continue;
        if (**present != *attribute) {
            changed.append(attribute.key());
        } else if (auto error = XPExtendedAttributes::remove(path, name)) {
            return error;
        }
    }
    if (changed.isEmpty())
        return {};
    return XPError::make(XPError::Kind::InvalidArgument,
                         qtTrId("KPHealedLeft").arg(changed.join(QStringLiteral(", "))), path);
}
