#include "KPPrintInfo.h"

#include "UserDefaults.h"

#include <QPageLayout>
#include <QPrinter>
#include <QPrinterInfo>

static const QString setting = QStringLiteral("KPPrintInfo");
static const QString printerKey = QStringLiteral("printer");
static const QString sizeKey = QStringLiteral("pageSize"); // by its name in PPD files
static const QString landscapeKey = QStringLiteral("landscape");
static const QString marginsKey = QStringLiteral("margins"); // left, top, right, bottom in mm
static const QString greyKey = QStringLiteral("grey");
static const QString duplexKey = QStringLiteral("duplex");

static std::optional<QPageSize> sizeNamed(const QString &key)
{
    for (int id = 0; id <= QPageSize::LastPageSize; ++id) {
        if (QPageSize::key(QPageSize::PageSizeId(id)) == key)
            return QPageSize(QPageSize::PageSizeId(id));
    }
    return {};
}

void KPPrintInfo::restore(QPrinter *printer)
{
    const PropertyValue::Dictionary info = UserDefaults::standard().value(setting).dictionary();
    const QString name = info.value(printerKey).string();
    if (QPrinterInfo::availablePrinterNames().contains(name))
        printer->setPrinterName(name);
    if (const auto size = sizeNamed(info.value(sizeKey).string()))
        printer->setPageSize(*size);
    if (info.contains(landscapeKey))
        printer->setPageOrientation(info.value(landscapeKey).boolValue() ? QPageLayout::Landscape
                                                                         : QPageLayout::Portrait);
    const PropertyValue::Array margins = info.value(marginsKey).array();
    if (margins.size() == 4)
        printer->setPageMargins(QMarginsF(margins[0].doubleValue(), margins[1].doubleValue(),
                                          margins[2].doubleValue(), margins[3].doubleValue()),
                                QPageLayout::Millimeter);
    if (info.value(greyKey).boolValue())
        printer->setColorMode(QPrinter::GrayScale);
    const qint64 duplex = info.value(duplexKey).integerValue();
    if (duplex > QPrinter::DuplexNone && duplex <= QPrinter::DuplexShortSide)
        printer->setDuplex(static_cast<QPrinter::DuplexMode>(duplex));
}

void KPPrintInfo::save(const QPrinter &printer)
{
    const QPageLayout layout = printer.pageLayout();
    const QMarginsF margins = layout.margins(QPageLayout::Millimeter);
    PropertyValue::Dictionary info{
        {printerKey, printer.printerName()},
        {sizeKey, layout.pageSize().key()},
        {landscapeKey, PropertyValue::boolean(layout.orientation() == QPageLayout::Landscape)},
        {marginsKey, PropertyValue::Array{PropertyValue::real(margins.left()),
                                          PropertyValue::real(margins.top()),
                                          PropertyValue::real(margins.right()),
                                          PropertyValue::real(margins.bottom())}},
        {greyKey, PropertyValue::boolean(printer.colorMode() == QPrinter::GrayScale)},
        {duplexKey, PropertyValue::integer(printer.duplex())}};
    if (PropertyValue(info) != UserDefaults::standard().value(setting))
        UserDefaults::standard().setValue(setting, info);
}
