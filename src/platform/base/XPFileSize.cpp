#include "XPFileSize.h"

#include <QLocale>

QString xpFileSizeInWords(qint64 bytes)
{
    constexpr qint64 thousand = 1000;
    if (bytes < thousand)
        return qtTrId("XPBytes", static_cast<int>(bytes));
    return QLocale().formattedDataSize(bytes, 1, QLocale::DataSizeSIFormat);
}
