#include "KPSearchFolderSetting.h"

#include "UserDefaults.h"
#include "XPFolders.h"
#include "XPPath.h"

QStringList KPSearchFolderSetting::folders()
{
    QStringList folders;
    const PropertyValue value = UserDefaults::standard().value(key);
    for (const PropertyValue &entry : value.array()) {
        const QString path = entry.isString() ? XPFolders::expandTilde(entry.string())
                                              : XPPath::decode(entry.data());
        if (path.startsWith(u'/'))
            folders.append(XPPath::absolute(path));
    }
    folders.removeDuplicates();
    return folders;
}

void KPSearchFolderSetting::setFolders(const QStringList &folders)
{
    PropertyValue::Array entries;
    for (const QString &folder : folders) {
        if (folder.isValidUtf16())
            entries.append(XPFolders::abbreviateWithTilde(folder));
        else
            entries.append(XPPath::encode(folder));
    }
    UserDefaults::standard().setValue(key, entries);
}
