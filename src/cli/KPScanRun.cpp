#include "KPScanRun.h"

#include "KPCommandOutput.h"
#include "UserDefaults.h"
#include "XPNotificationCenter.h"
#include "XPPageCleanUp.h"
#include "XPScanDocument.h"

#include <QTimer>
#include <algorithm>

KPScanRun::KPScanRun(KPCommandOutput &output, XPScannedPages &pages)
    : m_output(output), m_pages(pages)
{
    QObject::connect(&m_interrupt, &KPInterrupt::interrupted, &m_device,
                     [this] { m_device.cancelScan(); });
}

void KPScanRun::wait(const QString &notification)
{
    QEventLoop loop;
    const XPObservation observation = XPNotificationCenter::instance().addObserver(
        notification, [&](const XPNotification &) { loop.quit(); });
    QObject::connect(&m_interrupt, &KPInterrupt::interrupted, &loop, &QEventLoop::quit);
    if (!m_interrupt.happened())
        loop.exec();
}

void KPScanRun::find()
{
    if (m_device.hasScanner())
        return;
    m_device.findScanners();
    wait(XPImageCaptureCoreDevice::listChangedNotification);
}

QStringList KPScanRun::list()
{
    find();
    return m_device.scannerNames();
}

bool KPScanRun::chooseScanner(const KPScanOptions &options)
{
    find();
    const QStringList titles = m_device.scannerNames();
    UserDefaults &defaults = UserDefaults::standard();
    const QString last = defaults.stringValue(XPImageCaptureCoreDevice::selectedScannerKey);
    int lastUnit = XPImageCaptureCoreDevice::Flatbed;
    (void)m_device.scannerFromString(last, &lastUnit);
    QString chosen;
    for (const QString &title : titles) {
        int unit = 0;
        (void)m_device.scannerFromString(title, &unit);
        if (!title.contains(options.device, Qt::CaseInsensitive) ||
            (options.unit && unit != *options.unit))
            continue;
        const bool isLast = options.device.isEmpty() && !options.unit && title == last;
        if (chosen.isEmpty() || isLast)
            chosen = title;
    }
    if (chosen.isEmpty()) {
        m_output.fail(titles.isEmpty()
                          ? QStringLiteral("no scanner was found")
                          : QStringLiteral("no such scanner; 'murnctl scan --list' shows them"));
        return false;
    }
    defaults.setValue(XPImageCaptureCoreDevice::selectedScannerKey, chosen);
    return true;
}

bool KPScanRun::scan(const KPScanOptions &options)
{
    if (!chooseScanner(options))
        return false;
    UserDefaults &defaults = UserDefaults::standard();
    defaults.setValue(XPImageCaptureCoreDevice::duplexKey, PropertyValue::boolean(options.duplex));
    if (options.paper)
        defaults.setValue(XPImageCaptureCoreDevice::selectedPaperKey,
                          PropertyValue::integer(*options.paper));
    m_device.setSettings({options.resolution, options.mode});
    int unit = XPImageCaptureCoreDevice::Flatbed;
    (void)m_device.selectedScanner(&unit);
    const bool feeds = unit == XPImageCaptureCoreDevice::DocumentFeeder;
    const int wanted = options.pages ? options.pages : feeds ? 9999 : 1;
    for (m_added = 0; m_added < wanted;) {
        const int before = m_added;
        m_device.startScan(m_pages.scanToImagePath());
        if (m_device.nowScanning())
            wait(XPImageCaptureCoreDevice::completeNotification);
        if (m_added == before)
            break; // stopped, failed, or the feeder is empty
        if (options.cleans || options.turnsUpright || options.leavesOutBlank || options.separates)
            cleanUp(m_pages.numberOfPages() - 1, options);
    }
    m_progress.clear();
    m_device.releaseScanners();
    if (m_interrupt.happened())
        return false;
    if (m_isEmpty && m_added == 0)
        m_output.fail(QStringLiteral("the feeder is empty"));
    return !m_hasFailed && m_added > 0;
}

void KPScanRun::cleanUp(int index, const KPScanOptions &options) const
{
    const QImage image = XPScannedPages::rendered(m_pages.pages().at(index).path, {});
    const auto cleaned = XPPageCleanUp::of(
        image, {.cropAndStraighten = options.cleans, .turnUpright = options.turnsUpright});
    if (cleaned.isBlank)
        m_pages.markBlank(index, true);
    if (!cleaned.edit.isNone())
        m_pages.setEdit(index, cleaned.edit);
}

void KPScanRun::addPageImagePath(const QString &path)
{
    if (const auto error = m_pages.addPageImagePath(path)) {
        m_hasFailed = true;
        m_output.fail(path, error->reason());
        return;
    }
    ++m_added;
}

void KPScanRun::scanProgress(int percent)
{
    if (m_progress.isDue())
        m_progress.show(QStringLiteral("murnctl: page %1, %2 %").arg(m_added + 1).arg(percent));
}

void KPScanRun::scannerFailed(const QString &title, const QString &text, bool isEmpty)
{
    m_isEmpty = isEmpty;
    if (isEmpty)
        return;
    m_hasFailed = true;
    m_progress.clear();
    m_output.fail(text.isEmpty() ? title : title + QStringLiteral(": ") + text);
}

QString KPScanRun::file(const QList<XPScannedPages::Page> &pages, const KPScanOptions &options)
{
    XPScanDocument::Request request{
        pages, m_pages.folder(),      options.toPath, options.recognisesText,
        {},    options.leavesOutBlank};
    const auto path = XPScanDocument::file(request, [this](double part) {
        if (m_progress.isDue())
            m_progress.show(QStringLiteral("murnctl: %1 %").arg(static_cast<int>(part * 100)));
        return !m_interrupt.happened();
    });
    m_progress.clear();
    if (!path) {
        const XPError &error = path.error();
        error.path.isEmpty() ? m_output.fail(error.reason())
                             : m_output.fail(error.path, error.reason());
        return {};
    }
    return *path;
}
