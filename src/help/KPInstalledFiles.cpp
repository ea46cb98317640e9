#include "KPInstalledFiles.h"

#include <QCoreApplication>
#include <QFileInfo>

QString KPInstalledFiles::path(const QString &name)
{
    for (const char *folder : {"/../share/murn/", "/../share/"}) {
        const QFileInfo file(QCoreApplication::applicationDirPath() + QLatin1String(folder) + name);
        if (file.isFile())
            return file.canonicalFilePath();
    }
    return {};
}
