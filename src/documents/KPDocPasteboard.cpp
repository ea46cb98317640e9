#include "KPDocPasteboard.h"

#include "XPPath.h"

#include <QMimeData>

const QString KPDocPasteboard::documentsType =
    QStringLiteral("application/x-com.brindlesoft.KPDocPboardType");
const QString KPDocPasteboard::folderType = QStringLiteral("application/x-com.brindlesoft.kpFO");
const QString KPDocPasteboard::searchType = QStringLiteral("application/x-com.brindlesoft.kpSC");
const QString KPDocPasteboard::locationType = QStringLiteral("application/x-com.brindlesoft.kpLD");

bool KPDocPasteboard::hasDocuments(const QMimeData &data)
{
    return data.hasFormat(documentsType);
}

bool KPDocPasteboard::isOurs(const QMimeData &data)
{
    return hasDocuments(data) || data.hasFormat(folderType) || data.hasFormat(searchType) ||
           data.hasFormat(locationType);
}

QStringList KPDocPasteboard::paths(const QMimeData &data)
{
    QStringList paths;
    for (const QByteArray &bytes : data.data(documentsType).split('\0')) {
        // The type can be claimed by any program: what is no absolute path is passed over.
        if (bytes.startsWith('/'))
            paths.append(XPPath::decode(bytes));
    }
    return paths;
}

void KPDocPasteboard::setPaths(QMimeData &data, const QStringList &paths)
{
    QByteArray all;
    for (const QString &path : paths) {
        if (const QByteArray bytes = XPPath::encode(path); !bytes.isEmpty())
            all += bytes + '\0';
    }
    data.setData(documentsType, all);
}
