#pragma once

#include "KPInterrupt.h"
#include "KPProgressLine.h"
#include "KPScanOptions.h"
#include "XPImageCaptureCoreDevice.h"
#include "XPScannedPages.h"

#include <QEventLoop>

class KPCommandOutput;

// Scanning from the shell: the same device and pages as the window's, waited for.
// Threads: main.
class KPScanRun : private XPImageCaptureCoreDevice::ScanController
{
public:
    KPScanRun(KPCommandOutput &output, XPScannedPages &pages);

    // The titles of what can be scanned with.
    QStringList list();
    // Adds pages until the feeder is empty, the number is reached or somebody stops it. False:
    // failed or stopped, and said so; the pages so far are kept.
    bool scan(const KPScanOptions &options);
    // The document's path; empty: failed, and said so.
    QString file(const QList<XPScannedPages::Page> &pages, const KPScanOptions &options);

private:
    void addPageImagePath(const QString &path) override;
    void scanProgress(int percent) override;
    void scannerFailed(const QString &title, const QString &text, bool isEmpty) override;
    void find();
    bool chooseScanner(const KPScanOptions &options);
    void wait(const QString &notification);
    void cleanUp(int index, const KPScanOptions &options) const;

    KPCommandOutput &m_output;
    XPScannedPages &m_pages;
    KPInterrupt m_interrupt;
    KPProgressLine m_progress;
    XPImageCaptureCoreDevice m_device{this};
    bool m_hasFailed = false;
    bool m_isEmpty = false;
    int m_added = 0;
};
