#include "KPFilingUpkeep.h"

#include "KPDocServices.h"
#include "UserDefaults.h"
#include "XPArrivals.h"
#include "XPFilePromise.h"
#include "XPFiledDocuments.h"
#include "XPFilingWork.h"
#include "XPLog.h"
#include "XPPath.h"
#include "XPPrompts.h"

#include <QGuiApplication>
#include <QPointer>

static void logProblems(const XPFileReport &report)
{
    for (const XPFileStep &step : report.problems())
        qCWarning(xpLog).noquote() << XPPath::printable(step.from) << step.problem->reason();
}

static void arrived(const XPFileReport &report)
{
    logProblems(report);
    KPDocServices::current().documentsImported(report.paths);
}

KPFilingUpkeep::KPFilingUpkeep(QObject *parent) : QObject(parent)
{
    xpGuiThread.assertHere();
    m_layout = UserDefaults::standard().addObserver(QStringLiteral("values.") +
                                                        XPFiledDocuments::useYearMonthKey,
                                                    [this](const PropertyValue &on) {
                                                        if (on.boolValue())
                                                            layoutChosen();
                                                    });
    watchInbox();
}

KPFilingUpkeep::~KPFilingUpkeep() = default;

void KPFilingUpkeep::watchInbox()
{
    xpGuiThread.assertHere();
    XPFilingWork::run(
        [] { return XPFiledDocuments::pendingDocsFolder(); },
        [self = QPointer(this)](const QString &folder) {
            if (!self)
                return;
            self->m_arrivals = std::make_unique<XPArrivals>(folder);
            connect(self->m_arrivals.get(), &XPArrivals::arrived, self.data(), [] {
                xpGuiThread.assertHere();
                if (qGuiApp->applicationState() == Qt::ApplicationActive)
                    XPFilingWork::run(
                        [] { return XPFiledDocuments::movePendingFilesToFiledDocuments(); },
                        &arrived);
            });
        });
}

void KPFilingUpkeep::becomeActive()
{
    xpGuiThread.assertHere();
    XPNotificationCenter::instance().post(XPFiledDocuments::willBecomeActiveNotification);
    XPFilingWork::run(
        [] {
            XPFileReport report = XPFiledDocuments::movePendingFilesToFiledDocuments();
            const XPFileReport atRoot = XPFiledDocuments::moveDocsAtRootOfFiledDocumentsToToday();
            report.steps += atRoot.steps;
            report.paths += atRoot.paths;
            for (const int days : {0, -1})
                XPFilePromise::takeLeftBehind(XPFiledDocuments::filedDocumentsPathForDate(
                    QDateTime::currentDateTime().addDays(days)));
            return report;
        },
        &arrived);
}

void KPFilingUpkeep::checkFormatAndOfferChange()
{
    xpGuiThread.assertHere();
    static const QString askedKey = QStringLiteral("askedFiledDocsFormatQuestion");
    struct Layout
    {
        bool isUsed = false;
        bool hasDays = false;
    };
    if (UserDefaults::standard().boolValue(askedKey))
        return;
    XPFilingWork::run(
        [] {
            const bool isUsed = XPFiledDocuments::usesFiledDocuments();
            return Layout{isUsed, isUsed && XPFiledDocuments::hasYearMonthDayFolders()};
        },
        [this](const Layout &layout) {
            if (!layout.isUsed)
                return;
            UserDefaults &defaults = UserDefaults::standard();
            defaults.setValue(askedKey, PropertyValue::boolean(true));
            if (layout.hasDays)
                offerConversion();
            else
                defaults.setValue(XPFiledDocuments::useYearMonthKey, PropertyValue::boolean(true));
        });
}

void KPFilingUpkeep::layoutChosen()
{
    xpGuiThread.assertHere();
    XPFilingWork::run(
        [] {
            return XPFiledDocuments::usesFiledDocuments() &&
                   XPFiledDocuments::hasYearMonthDayFolders();
        },
        [this](bool hasDays) {
            if (hasDays)
                offerConversion();
        });
}

void KPFilingUpkeep::offerConversion()
{
    xpGuiThread.assertHere();
    const XPPrompts::Question question{qtTrId("XPConvertTitle"),
                                       qtTrId("XPConvertText"),
                                       {qtTrId("XPConvertButton"), qtTrId("XPConvertLeaveButton")},
                                       1};
    XPPrompts::current().ask(question, [](int button) {
        xpGuiThread.assertHere();
        if (button != 0)
            return;
        XPFilingWork::runShown(
            qtTrId("XPConvertProgress"), 0,
            [](const XPFileRunOptions &options) {
                return XPFiledDocuments::convertFromYearMonthDayToYearMonth(options);
            },
            &logProblems);
    });
}
