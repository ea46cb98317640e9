// XPFiledDocuments: where the managed folder and its dated folders are.
#include "Karvex.h"
#include "UserDefaults.h"
#include "XPFileInfo.h"
#include "XPFiledDocuments.h"
#include "XPFolders.h"
#include "XPMutex.h"
#include "XPNotificationCenter.h"
#include "XPPath.h"
#include "XPText.h"

#include <QCoreApplication>
#include <atomic>

const QString XPFiledDocuments::preferredPathKey = QStringLiteral("KPFiledDocumentsPath");
const QString XPFiledDocuments::useYearMonthKey = QStringLiteral("KPUseYearMonthFiledDocs");
const QString XPFiledDocuments::willBecomeActiveNotification =
    QStringLiteral("KPApplicationWillBecomeActive");

namespace {

// The root, once it was found, and how often it was forgotten.
struct Root
{
    XPMutex mutex;
    QString path XP_GUARDED_BY(mutex);
    quint64 generation XP_GUARDED_BY(mutex) = 0;
};

} // namespace

static Root &root()
{
    static auto &instance = *new Root;
    return instance;
}

static QString cachedRoot(quint64 *generation)
{
    const XPLocker lock(root().mutex);
    *generation = root().generation;
    return root().path;
}

// Unless it was forgotten while it was looked for.
static void cacheRoot(const QString &path, quint64 generation)
{
    const XPLocker lock(root().mutex);
    if (root().generation == generation)
        root().path = path;
}

// Once per process, whichever thread comes first: observers belong to the main thread.
static void forgetRootWhenItMayBeAnother()
{
    static std::atomic_flag done;
    if (done.test_and_set() || QCoreApplication::instance() == nullptr)
        return;
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [] {
            static auto &activated = *new XPObservation;
            activated = XPNotificationCenter::instance().addObserver(
                XPFiledDocuments::willBecomeActiveNotification,
                [](const XPNotification &) { XPFiledDocuments::rebuildFiledDocsPath(); });
            static auto &chosen = *new XPObservation; // from the shell, perhaps
            chosen = UserDefaults::standard().addObserver(
                QStringLiteral("values.") + XPFiledDocuments::preferredPathKey,
                [](const PropertyValue &) { XPFiledDocuments::rebuildFiledDocsPath(); });
        },
        Qt::AutoConnection);
}

static bool isFolder(const QString &path)
{
    return XPFolders::realFolder(path).hasValue();
}

static QString usualRoot()
{
    return XPFolders::documents() + QStringLiteral("/Filed Documents");
}

// A setting that another program wrote, or one for a name that is no text, is bytes.
static QString savedPath(const PropertyValue &value)
{
    const QString path = value.isString() ? value.string() : XPPath::decode(value.data());
    return XPFolders::expandTilde(path);
}

QString XPFiledDocuments::filedDocumentsPreferredPath()
{
    return savedPath(UserDefaults::standard().value(preferredPathKey));
}

void XPFiledDocuments::setFiledDocumentsPreferredPath(const QString &path)
{
    if (isFolder(path)) {
        const QString kept = XPFolders::abbreviateWithTilde(XPPath::absolute(path));
        UserDefaults::standard().setValue(
            preferredPathKey,
            kept.isValidUtf16() ? PropertyValue(kept) : PropertyValue(XPPath::encode(kept)));
    }
    rebuildFiledDocsPath();
}

bool XPFiledDocuments::usesFiledDocuments()
{
    return !filedDocumentsPreferredPath().isEmpty() || XPFileInfo::read(usualRoot()).hasValue();
}

static QString wantedRoot()
{
    const QString preferred = XPFiledDocuments::filedDocumentsPreferredPath();
    return preferred.isEmpty() ? usualRoot() : preferred;
}

QString XPFiledDocuments::filedDocumentsRoot()
{
    quint64 generation = 0;
    if (QString path = cachedRoot(&generation); !path.isEmpty())
        return path;
    if (!usesFiledDocuments())
        return XPFolders::desktop();
    forgetRootWhenItMayBeAnother();
    const QString wanted = wantedRoot();
    (void)XPFolders::create(wanted); // what goes there finds out
    QString path = XPFolders::realFolder(wanted).valueOr(wanted);
    cacheRoot(path, generation);
    return path;
}

QString XPFiledDocuments::filedDocumentsRootIfPresent()
{
    quint64 generation = 0;
    if (QString path = cachedRoot(&generation); !path.isEmpty())
        return path;
    if (!usesFiledDocuments())
        return XPFolders::desktop();
    const QString wanted = wantedRoot();
    return XPFolders::realFolder(wanted).valueOr(wanted);
}

void XPFiledDocuments::rebuildFiledDocsPath()
{
    const XPLocker lock(root().mutex);
    root().path.clear();
    ++root().generation;
}

void XPFiledDocuments::createFiledDocumentsFolder()
{
    filedDocumentsRoot();
}

QString XPFiledDocuments::datedFolder(const QDateTime &date)
{
    int year = 2000;
    int month = 1;
    int day = 1;
    if (date.isValid())
        date.toLocalTime().date().getDate(&year, &month, &day);
    QString folder = QString::number(year) + u'/' + QString::number(month);
    if (!UserDefaults::standard().boolValue(useYearMonthKey))
        folder += u'/' + QString::number(day);
    return folder;
}

QString XPFiledDocuments::filedDocumentsPathForDate(const QDateTime &date)
{
    return filedDocumentsRoot() + u'/' + datedFolder(date);
}

QString XPFiledDocuments::currentFiledDocumentsPath(const QDateTime &now)
{
    if (!usesFiledDocuments()) {
        QString folder = XPFolders::desktop();
        (void)XPFolders::create(folder); // a new home may have none; what goes there finds out
        return folder;
    }
    QString folder = filedDocumentsPathForDate(now);
    if (isFolder(folder))
        return folder;
    if (!XPFolders::create(folder))
        (void)Karvex::setXAttrMetaData(PropertyValue::boolean(false), Karvex::managedKey, folder);
    return folder;
}

QString XPFiledDocuments::currentFiledDocumentsPathMonth(const QDateTime &now)
{
    const QString folder = currentFiledDocumentsPath(now);
    const bool hasDay =
        usesFiledDocuments() && !UserDefaults::standard().boolValue(useYearMonthKey);
    return hasDay ? XPPath::folder(folder) : folder;
}

bool XPFiledDocuments::pathIsInFiledDocuments(const QString &path)
{
    return decomposed(path).startsWith(decomposed(filedDocumentsRootIfPresent()));
}

bool XPFiledDocuments::pathIsAlreadyInGoodPlaceInFiledDocuments(const QString &path)
{
    if (!pathIsInFiledDocuments(path))
        return false;
    if (!usesFiledDocuments())
        return true;
    constexpr int depth = 4; // year, month, day, name
    QString above = path;
    for (int i = 0; i < depth; ++i)
        above = XPPath::folder(above);
    return decomposed(above) == decomposed(filedDocumentsRootIfPresent());
}

QString XPFiledDocuments::pendingDocsFolderIfPresent()
{
    return XPFolders::ourApplicationSupport() + QStringLiteral("/Pending Documents");
}

QString XPFiledDocuments::pendingDocsFolder()
{
    QString folder = pendingDocsFolderIfPresent();
    (void)XPFolders::create(folder);
    return folder;
}
