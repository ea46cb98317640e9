// Karvex: the schema register, where programs announce which keys they write.
#include "Karvex.h"
#include "XPAtomicFile.h"
#include "XPFolders.h"
#include "XPLog.h"
#include "XPMutex.h"
#include "XPPath.h"
#include "XPPropertyList.h"

#include <QCoreApplication>
#include <QTimer>
#include <unistd.h>

static QString registerFolder()
{
    return XPFolders::applicationSupport() + QStringLiteral("/Karvex/schemaregister");
}

void Karvex::registerUsualKXAttributes()
{
    const PropertyValue now = PropertyValue::Date::now();
    registerKXAttributes(
        {{userTagsKey, QStringList{QStringLiteral("tag1"), QStringLiteral("tag2")}},
         {userTagTimeKey, now},
         {documentDateKey, now},
         {managedKey, PropertyValue::boolean(true)},
         {bookmarksKey, QStringList{QStringLiteral("bookmark1"), QStringLiteral("bookmark2")}}},
        QStringLiteral("murn"));
}

void Karvex::registerKXAttributes(const PropertyValue::Dictionary &samples, const QString &appName)
{
    xpGuiThread.assertHere();
    const QString path =
        registerFolder() + u'/' + XPPath::fileName(appName) + QStringLiteral(".karvexschema");
    const auto bytes = XPPropertyList::writeXml(samples);
    const auto error =
        bytes ? XPAtomicFile::write(path, *bytes) : std::optional<XPError>(bytes.error());
    if (error) {
        qCWarning(xpLog).noquote() << "the metadata keys could not be announced:" << error->message;
        return;
    }
    // The file goes when the timer does: after its time, or with an application that ends sooner.
    auto *timer = new QTimer(QCoreApplication::instance());
    timer->setTimerType(Qt::PreciseTimer);
    QObject::connect(timer, &QTimer::timeout, timer, &QObject::deleteLater);
    QObject::connect(timer, &QObject::destroyed, [path] { removeSchemaFile(path); });
    timer->start(std::chrono::seconds(2));
}

void Karvex::removeSchemaFile(const QString &path)
{
    // The folder's name on other platforms of the convention, and its name here.
    const QString literal = QStringLiteral("Library/Application Support/Karvex/schemaregister");
    const bool inside = path.contains(literal) || path.contains(registerFolder());
    if (!inside || path.contains(QStringLiteral("/../")))
        return;
    ::unlink(XPPath::encode(path).constData());
}
