#include "KPUserGuide.h"

#include <QCoreApplication>
#include <QFileInfo>

QString KPUserGuide::path()
{
    for (const char *folder : {"/../share/murn/", "/../share/"}) {
        const QFileInfo file(QCoreApplication::applicationDirPath() + QLatin1String(folder) +
                             QStringLiteral("Zel Manual.pdf"));
        if (file.isFile())
            return file.canonicalFilePath();
    }
    return {};
}
