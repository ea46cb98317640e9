#pragma once

#include "KPDocCache.h"
#include "KPResultGroups.h"
#include "KPResultsOrder.h"

#include <QStringList>

// Records of files that need not exist.
inline KPDoc *testDoc(const QString &name, qint64 size = 1000)
{
    XPFileInfo info;
    info.mode = S_IFREG | 0644;
    info.size = size;
    info.modified = 1'700'000'000'000'000'000;
    return KPDocCache::docAtPath(QStringLiteral("/d/") + name, &info);
}

inline KPResultsArrangement testArrangement(const QStringList &names)
{
    auto docs = std::make_shared<KPDocArray>();
    for (const QString &name : names)
        docs->push_back(testDoc(name));
    return {docs, nullptr};
}

inline QStringList numberedNames(int count)
{
    QStringList names;
    for (int number = 0; number < count; ++number)
        names.append(QStringLiteral("doc %1.pdf").arg(number, 4, 10, QLatin1Char('0')));
    return names;
}
