#pragma once

#include "XPScannerProcess.h"

#include <QList>
#include <QSizeF>
#include <QStringList>
#include <optional>

// The scanners of this machine and of its network, and one page at a time from the chosen one.
//
// A scanner is known by its name for people, and the choice is kept as that name with the name of
// the part that takes the paper ("KPSelectedScanner"), never as a device id, which changes from
// day to day. What parts a scanner has is asked once and kept ("FoundScanners"). Of a device that
// two drivers offer, one is shown.
// Threads: main. Ownership: the controller outlives it. Errors go to the controller.
class XPImageCaptureCoreDevice : public QObject
{
    Q_OBJECT

public:
    // Who wants the pages.
    class ScanController
    {
    public:
        virtual ~ScanController() = default;
        virtual void addPageImagePath(const QString &path) = 0;
        virtual void scanProgress(int percent) = 0; // -1: no telling
        // `isEmpty`: the feeder has no more paper, as at the end of every batch.
        virtual void scannerFailed(const QString &title, const QString &text, bool isEmpty) = 0;
    };

    enum Unit { Flatbed = 0, PositiveTransparency = 1, Negative = 2, DocumentFeeder = 3 };

    struct FunctionalUnit
    {
        int type = Flatbed;
        QString source; // as the driver calls it
        QString duplexSource;
        QList<double> resolutions; // dots per inch, ascending
        QSizeF size;               // millimetres; empty: not said

        bool supportsDuplexScanning() const { return !duplexSource.isEmpty(); }
    };

    struct Scanner
    {
        QString device; // the driver's, of today
        QString name;
    };

    // How a page is taken.
    struct Settings
    {
        int resolution = 300;                   // the first one from this on is taken
        QString mode = QStringLiteral("Color"); // or "Gray", "Lineart"
    };

    explicit XPImageCaptureCoreDevice(ScanController *scanController,
                                      const QByteArray &program = {});

    // Looks for scanners; "XPNotificationScannerListChanged" tells of the end.
    void findScanners();
    bool hasScanner() const { return !m_scanners.isEmpty(); }
    const QList<Scanner> &scanners() const { return m_scanners; }
    // The titles of a menu: one for each scanner and part of it.
    QStringList scannerNames() const;
    // The scanner of "KPSelectedScanner", and the part that is wanted.
    std::optional<Scanner> selectedScanner(int *wantedUnit = nullptr) const;

    void openSelectedScanner();
    // Reads a page into a file whose ending says the format. "XPNotificationScanningComplete"
    // tells of the end, whether or not a page came.
    void startScan(const QString &targetPath);
    void cancelScan();
    // Ends the session and the process.
    void releaseScanners();
    bool nowScanning() const { return m_nowScanning; }
    bool scanInProgress() const { return m_isReading; }
    void setSettings(const Settings &settings) { m_settings = settings; }

    // Papers that fit the chosen part, by their numbers.
    QList<int> paperSizesForCurrentScanner() const;
    static QSizeF sizeInMMForPaper(int paper);
    static QString paperSizeLocalized(int paper);
    // The part's area in inches.
    static QSizeF setToInchUnitsReturnPhysicalSize(const FunctionalUnit &unit);
    static QString functionalUnitLocalizedName(int type);

    static QString stringFromScanner(const QString &name, int functionalUnit);
    // The scanner's name in such a title, and the part; nothing when it is none of ours.
    std::optional<Scanner> scannerFromString(const QString &title, int *unit) const;

    static QList<int> functionalUnitsFromPrefsForScanner(const QString &name);

    static const QString listChangedNotification; // "XPNotificationScannerListChanged"
    static const QString completeNotification;    // "XPNotificationScanningComplete"
    // "XPNotificationScanningSupportedDocumentSizesAvailable"
    static const QString sizesAvailableNotification;

    static const QString selectedScannerKey; // "KPSelectedScanner"
    static const QString foundScannersKey;   // "FoundScanners"
    static const QString selectedPaperKey;   // "KPSelectedPaper"
    static const QString duplexKey;          // "KPDuplexScanning"

private:
    void take(const QJsonObject &answer);
    void takeDevices(const QJsonArray &devices);
    void takeUnits(const QJsonArray &units);
    void takeFailure(int status, const QString &message);
    void lose(const QString &reason);
    void learnNext();
    void open(const Scanner &scanner);
    void startScanIfOk();
    void scanningDone();
    void updateInfoForScanner(const QString &name) const;
    const FunctionalUnit *selectedUnit() const; // null: not open, or it has no such part
    QSizeF areaFor(const FunctionalUnit &unit) const;

    ScanController *m_scanController;
    XPScannerProcess m_process;
    Settings m_settings;
    QList<Scanner> m_scanners;
    QList<Scanner> m_unknown;         // to be opened once, to learn of their parts
    std::optional<Scanner> m_open;    // whose session is open
    std::optional<Scanner> m_opening; // asked for
    QList<FunctionalUnit> m_units;    // of the open one
    QString m_targetPath;
    QTimer m_again;
    bool m_isBrowsing = false;
    bool m_nowScanning = false;
    bool m_isReading = false;
};
