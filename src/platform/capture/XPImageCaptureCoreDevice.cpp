#include "XPImageCaptureCoreDevice.h"

#include "UserDefaults.h"
#include "XPNotificationCenter.h"
#include "XPPaperSizes.h"
#include "XPPath.h"

#include <QJsonArray>
#include <algorithm>

using namespace std::chrono_literals;

const QString XPImageCaptureCoreDevice::listChangedNotification =
    QStringLiteral("XPNotificationScannerListChanged");
const QString XPImageCaptureCoreDevice::completeNotification =
    QStringLiteral("XPNotificationScanningComplete");
const QString XPImageCaptureCoreDevice::sizesAvailableNotification =
    QStringLiteral("XPNotificationScanningSupportedDocumentSizesAvailable");
const QString XPImageCaptureCoreDevice::selectedScannerKey = QStringLiteral("KPSelectedScanner");
const QString XPImageCaptureCoreDevice::foundScannersKey = QStringLiteral("FoundScanners");
const QString XPImageCaptureCoreDevice::selectedPaperKey = QStringLiteral("KPSelectedPaper");
const QString XPImageCaptureCoreDevice::duplexKey = QStringLiteral("KPDuplexScanning");

static const QString functionalUnitsKey = QStringLiteral("functionalUnits");
static constexpr auto openPatience = 60s; // network scanners wake up slowly
static constexpr auto readPatience = 60s; // lamps warm up
static constexpr auto tryAgainAfter = 1s;

// SANE_Status (SANE standard, section 4.2.7).
enum SaneStatus { SaneCancelled = 2, SaneNoDocs = 7, SaneIoError = 9 };

XPImageCaptureCoreDevice::XPImageCaptureCoreDevice(ScanController *scanController,
                                                   const QByteArray &program)
    : m_scanController(scanController), m_process(program)
{
    connect(&m_process, &XPScannerProcess::answered, this, &XPImageCaptureCoreDevice::take);
    connect(&m_process, &XPScannerProcess::lost, this, &XPImageCaptureCoreDevice::lose);
    m_again.setSingleShot(true);
    connect(&m_again, &QTimer::timeout, this, &XPImageCaptureCoreDevice::startScanIfOk);
}

// --- Finding

void XPImageCaptureCoreDevice::findScanners()
{
    if (m_isBrowsing || m_nowScanning)
        return;
    m_isBrowsing = true;
    m_process.ask({{QStringLiteral("do"), QStringLiteral("list")}}, openPatience);
}

void XPImageCaptureCoreDevice::take(const QJsonObject &answer)
{
    const QString event = answer.value(QStringLiteral("event")).toString();
    if (event == u"devices") {
        takeDevices(answer.value(QStringLiteral("devices")).toArray());
    } else if (event == u"opened") {
        takeUnits(answer.value(QStringLiteral("units")).toArray());
    } else if (event == u"progress") {
        m_scanController->scanProgress(answer.value(QStringLiteral("percent")).toInt(-1));
    } else if (event == u"page") {
        m_isReading = false;
        m_scanController->addPageImagePath(m_targetPath);
        scanningDone();
    } else if (event == u"failed") {
        takeFailure(answer.value(QStringLiteral("status")).toInt(-1),
                    answer.value(QStringLiteral("message")).toString());
    }
}

static QString driverOf(const QString &device)
{
    return device.section(u':', 0, 0);
}

void XPImageCaptureCoreDevice::takeDevices(const QJsonArray &devices)
{
    QList<Scanner> found;
    for (const auto value : devices) {
        const QJsonObject device = value.toObject();
        const QString id = device.value(QStringLiteral("device")).toString();
        const QString name = (device.value(QStringLiteral("vendor")).toString() + u' ' +
                              device.value(QStringLiteral("model")).toString())
                                 .simplified();
        const auto hasName = [&](const QString &wanted) {
            return std::find_if(found.begin(), found.end(),
                                [&](const Scanner &each) { return each.name == wanted; });
        };
        const auto same = hasName(name);
        // Through another driver it is the same device; through the same one a second one.
        if (same != found.end() && driverOf(same->device) != driverOf(id))
            continue;
        QString unique = name;
        for (int number = 2; hasName(unique) != found.end(); ++number)
            unique = name + u' ' + QString::number(number);
        found.append({id, unique});
    }
    m_scanners = found;
    const auto selected = selectedScanner();
    m_unknown.clear();
    for (const Scanner &scanner : std::as_const(m_scanners)) {
        if (functionalUnitsFromPrefsForScanner(scanner.name).isEmpty() ||
            (selected && scanner.name == selected->name))
            m_unknown.append(scanner);
    }
    learnNext();
}

void XPImageCaptureCoreDevice::learnNext()
{
    if (!m_unknown.isEmpty())
        return open(m_unknown.takeFirst());
    m_isBrowsing = false;
    XPNotificationCenter::instance().post(listChangedNotification);
    if (m_nowScanning)
        startScanIfOk();
}

QStringList XPImageCaptureCoreDevice::scannerNames() const
{
    QStringList names;
    for (const Scanner &scanner : m_scanners) {
        QList<int> units = functionalUnitsFromPrefsForScanner(scanner.name);
        for (const int unit : std::as_const(units))
            names.append(stringFromScanner(scanner.name, unit));
    }
    return names;
}

std::optional<XPImageCaptureCoreDevice::Scanner>
XPImageCaptureCoreDevice::selectedScanner(int *wantedUnit) const
{
    return scannerFromString(UserDefaults::standard().stringValue(selectedScannerKey), wantedUnit);
}

// --- Sessions

void XPImageCaptureCoreDevice::open(const Scanner &scanner)
{
    m_open.reset();
    m_units.clear();
    m_opening = scanner;
    m_process.ask({{QStringLiteral("do"), QStringLiteral("open")},
                   {QStringLiteral("device"), scanner.device}},
                  openPatience);
}

void XPImageCaptureCoreDevice::openSelectedScanner()
{
    const auto selected = selectedScanner();
    if (selected && !m_opening && (!m_open || m_open->device != selected->device))
        open(*selected);
}

void XPImageCaptureCoreDevice::takeUnits(const QJsonArray &units)
{
    m_open = std::exchange(m_opening, std::nullopt);
    m_units.clear();
    for (const auto value : units) {
        const QJsonObject object = value.toObject();
        FunctionalUnit unit;
        unit.type = object.value(QStringLiteral("type")).toInt();
        unit.source = object.value(QStringLiteral("source")).toString();
        unit.duplexSource = object.value(QStringLiteral("duplexSource")).toString();
        const QJsonArray resolutions = object.value(QStringLiteral("resolutions")).toArray();
        for (const auto resolution : resolutions)
            unit.resolutions.append(resolution.toDouble());
        unit.size = QSizeF(object.value(QStringLiteral("width")).toDouble(),
                           object.value(QStringLiteral("height")).toDouble());
        m_units.append(unit);
    }
    if (m_open)
        updateInfoForScanner(m_open->name);
    XPNotificationCenter::instance().post(sizesAvailableNotification);
    if (m_isBrowsing)
        learnNext();
    else if (m_nowScanning)
        startScanIfOk();
}

void XPImageCaptureCoreDevice::updateInfoForScanner(const QString &name) const
{
    PropertyValue::Array types;
    for (const FunctionalUnit &unit : m_units)
        types.append(PropertyValue::integer(unit.type));
    PropertyValue::Dictionary found = UserDefaults::standard().value(foundScannersKey).dictionary();
    PropertyValue::Dictionary scanner = found.value(name).dictionary();
    scanner.insert(functionalUnitsKey, types);
    found.insert(name, scanner);
    UserDefaults::standard().setValue(foundScannersKey, found);
}

QList<int> XPImageCaptureCoreDevice::functionalUnitsFromPrefsForScanner(const QString &name)
{
    QList<int> types;
    const PropertyValue::Dictionary found =
        UserDefaults::standard().value(foundScannersKey).dictionary();
    const PropertyValue units = found.value(name).dictionary().value(functionalUnitsKey);
    for (const PropertyValue &type : units.array())
        types.append(static_cast<int>(type.integerValue()));
    return types;
}

void XPImageCaptureCoreDevice::releaseScanners()
{
    m_again.stop();
    m_process.end();
    m_open.reset();
    m_opening.reset();
    m_units.clear();
    m_unknown.clear();
    m_isBrowsing = false;
    if (m_nowScanning)
        scanningDone();
}

// --- Scanning

void XPImageCaptureCoreDevice::startScan(const QString &targetPath)
{
    if (m_isReading) // refused
        return XPNotificationCenter::instance().post(completeNotification);
    m_targetPath = targetPath;
    m_nowScanning = true;
    startScanIfOk();
}

const XPImageCaptureCoreDevice::FunctionalUnit *XPImageCaptureCoreDevice::selectedUnit() const
{
    int wanted = Flatbed;
    const auto selected = selectedScanner(&wanted);
    if (!selected || !m_open || m_open->device != selected->device)
        return nullptr;
    const auto unit = std::find_if(m_units.begin(), m_units.end(),
                                   [&](const FunctionalUnit &each) { return each.type == wanted; });
    return unit == m_units.end() ? nullptr : &*unit;
}

void XPImageCaptureCoreDevice::startScanIfOk()
{
    if (!m_nowScanning || m_isReading || m_isBrowsing || m_opening)
        return;
    if (!m_process.isRunning()) // it ended while nobody waited for it, and its session with it
        m_open.reset();
    const auto selected = selectedScanner();
    if (!selected) {
        m_scanController->scannerFailed(qtTrId("KPNoScannerAvailable"), {}, false);
        return scanningDone();
    }
    const FunctionalUnit *unit = selectedUnit();
    if (!unit && m_open && m_open->device == selected->device) {
        // It has no such part any more.
        m_scanController->scannerFailed(selected->name, qtTrId("KPScannerPartMissing"), false);
        return scanningDone();
    }
    if (!unit) {
        openSelectedScanner();
        m_again.start(tryAgainAfter);
        return;
    }
    double resolution = m_settings.resolution;
    const auto enough = std::find_if(unit->resolutions.begin(), unit->resolutions.end(),
                                     [&](double each) { return each >= resolution; });
    if (enough != unit->resolutions.end())
        resolution = *enough;
    else if (!unit->resolutions.isEmpty())
        resolution = unit->resolutions.last();
    const bool isDuplex =
        unit->supportsDuplexScanning() && UserDefaults::standard().boolValue(duplexKey);
    const QSizeF area = areaFor(*unit);
    m_isReading = true;
    m_process.ask(
        {{QStringLiteral("do"), QStringLiteral("scan")},
         {QStringLiteral("source"), isDuplex ? unit->duplexSource : unit->source},
         {QStringLiteral("feeds"), unit->type == DocumentFeeder},
         {QStringLiteral("mode"), m_settings.mode},
         {QStringLiteral("resolution"), resolution},
         {QStringLiteral("width"), area.width()},
         {QStringLiteral("height"), area.height()},
         {QStringLiteral("file"), QString::fromLatin1(XPPath::encode(m_targetPath).toBase64())}},
        readPatience);
}

QSizeF XPImageCaptureCoreDevice::areaFor(const FunctionalUnit &unit) const
{
    const int wanted = static_cast<int>(UserDefaults::standard().integerValue(selectedPaperKey));
    QSizeF paper = sizeInMMForPaper(wanted);
    if (unit.type == DocumentFeeder) {
        const QList<int> supported = paperSizesForCurrentScanner();
        for (const int choice : {wanted, XPPaperSizes::usLetter, XPPaperSizes::wholeArea}) {
            if (!supported.contains(choice) && choice != XPPaperSizes::wholeArea)
                continue;
            paper = sizeInMMForPaper(choice);
            break;
        }
    }
    if (paper.isEmpty())
        return unit.size;
    return unit.size.isEmpty() ? paper : paper.boundedTo(unit.size);
}

void XPImageCaptureCoreDevice::cancelScan()
{
    m_again.stop();
    if (m_isReading)
        m_process.cancel();
    else if (m_nowScanning)
        scanningDone();
}

void XPImageCaptureCoreDevice::takeFailure(int status, const QString &message)
{
    const QString name = m_opening ? m_opening->name : m_open ? m_open->name : QString();
    if (m_opening) {
        m_opening.reset();
        if (m_isBrowsing)
            return learnNext(); // one that cannot be asked now is asked again another day
        m_scanController->scannerFailed(name, qtTrId("KPScannerError").arg(message), false);
        return scanningDone();
    }
    if (m_isBrowsing) {
        m_isBrowsing = false;
        XPNotificationCenter::instance().post(listChangedNotification);
        return;
    }
    m_isReading = false;
    if (status != SaneCancelled) {
        const QString advice = status == SaneIoError ? qtTrId("KPScannerTurnOffAndOn") : QString();
        m_scanController->scannerFailed(name, message + advice, status == SaneNoDocs);
    }
    scanningDone();
}

void XPImageCaptureCoreDevice::lose(const QString &reason)
{
    const bool wasOpening = m_opening.has_value();
    const QString name = wasOpening ? m_opening->name : m_open ? m_open->name : QString();
    const bool wasBrowsing = std::exchange(m_isBrowsing, false);
    m_open.reset();
    m_opening.reset();
    m_units.clear();
    m_isReading = false;
    if (wasBrowsing) {
        // The one that took the process with it is left out of this round.
        if (wasOpening && !m_unknown.isEmpty()) {
            m_isBrowsing = true;
            return learnNext();
        }
        XPNotificationCenter::instance().post(listChangedNotification);
        if (!m_nowScanning)
            return;
    }
    m_scanController->scannerFailed(name, wasOpening ? qtTrId("KPScannerFailedToOpen") : reason,
                                    false);
    scanningDone();
}

void XPImageCaptureCoreDevice::scanningDone()
{
    m_again.stop();
    m_nowScanning = false;
    m_isReading = false;
    XPNotificationCenter::instance().post(completeNotification);
}

// --- Papers and names

QList<int> XPImageCaptureCoreDevice::paperSizesForCurrentScanner() const
{
    const FunctionalUnit *unit = selectedUnit();
    if (!unit || unit->size.isEmpty())
        return {0, 1, 11, 3, 4, 9, 6};
    QList<int> papers{XPPaperSizes::wholeArea};
    // Papers are laid on with a little over the edge.
    static constexpr double tolerance = 7;
    const QSizeF room = unit->size + QSizeF(tolerance, tolerance);
    for (int paper = 0; paper <= 53; paper = paper == 12 ? 53 : paper + 1) {
        const QSizeF size = sizeInMMForPaper(paper);
        if (!size.isEmpty() && size.width() < room.width() && size.height() < room.height())
            papers.append(paper);
    }
    return papers;
}

QSizeF XPImageCaptureCoreDevice::sizeInMMForPaper(int paper)
{
    return XPPaperSizes::sizeInMM(paper);
}

QString XPImageCaptureCoreDevice::paperSizeLocalized(int paper)
{
    return XPPaperSizes::name(paper);
}

QSizeF XPImageCaptureCoreDevice::setToInchUnitsReturnPhysicalSize(const FunctionalUnit &unit)
{
    return unit.size / 25.4;
}

QString XPImageCaptureCoreDevice::functionalUnitLocalizedName(int type)
{
    switch (type) {
    case Flatbed:
        return qtTrId("KPScannerUnitFlatbed");
    case PositiveTransparency:
        return qtTrId("KPScannerUnitTransparency");
    case Negative:
        return qtTrId("KPScannerUnitNegative");
    case DocumentFeeder:
        return qtTrId("KPScannerUnitFeeder");
    default:
        return qtTrId("KPScannerUnitOther").arg(type);
    }
}

QString XPImageCaptureCoreDevice::stringFromScanner(const QString &name, int functionalUnit)
{
    return name + QStringLiteral(" (%1)").arg(functionalUnitLocalizedName(functionalUnit));
}

std::optional<XPImageCaptureCoreDevice::Scanner>
XPImageCaptureCoreDevice::scannerFromString(const QString &title, int *unit) const
{
    for (const Scanner &scanner : m_scanners) {
        for (const int type : functionalUnitsFromPrefsForScanner(scanner.name)) {
            if (stringFromScanner(scanner.name, type) != title)
                continue;
            if (unit)
                *unit = type;
            return scanner;
        }
    }
    return {};
}
