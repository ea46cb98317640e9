#include "KPNameOrder.h"

QCollator kpNameCollator()
{
    // The C locale has no collation: it would compare code units and take no number by value.
    const QLocale locale = QLocale();
    QCollator collator(locale.language() == QLocale::C ? QLocale(QLocale::English) : locale);
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}
