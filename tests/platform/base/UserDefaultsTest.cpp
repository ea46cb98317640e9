#include "UserDefaults.h"

#include "TestSystem.h"
#include "XPAtomicFile.h"
#include "XPFactorySettings.h"
#include "XPFolders.h"
#include "XPLog.h"
#include "XPPath.h"
#include "XPPropertyList.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using Dictionary = PropertyValue::Dictionary;

static const QString key = QStringLiteral("Key");

static PropertyValue number(qint64 value)
{
    return PropertyValue::integer(value);
}

// A domain that no other test has, for objects live as long as the process.
static QString newDomain()
{
    static int count = 0;
    return QStringLiteral("com.brindle.test%1-%2").arg(++count).arg(::getpid());
}

static Dictionary inFile(const QString &domain)
{
    const auto bytes = XPAtomicFile::read(UserDefaults::pathForDomain(domain));
    const auto value =
        bytes ? XPPropertyList::read(*bytes) : XPResult<PropertyValue>(bytes.error());
    return value ? value->dictionary() : Dictionary();
}

static void writeFile(const QString &domain, const QByteArray &bytes)
{
    ASSERT_EQ(XPAtomicFile::write(UserDefaults::pathForDomain(domain), bytes), std::nullopt);
}

TEST(UserDefaults, SavedLiesOverRegistered)
{
    const QString domain = newDomain();
    UserDefaults &defaults = UserDefaults::forDomain(domain);
    EXPECT_EQ(&UserDefaults::forDomain(domain), &defaults);
    EXPECT_TRUE(defaults.value(key).isNull());
    defaults.registerDefaults({{key, number(1)}});
    defaults.registerDefaults({{key, number(2)}});
    EXPECT_EQ(defaults.value(key), number(2));
    EXPECT_FALSE(defaults.isSaved(key));
    defaults.setValue(key, number(2)); // the same as registered, yet the user's choice
    EXPECT_TRUE(defaults.isSaved(key));
    defaults.registerDefaults({{key, number(3)}});
    EXPECT_EQ(defaults.value(key), number(2));
    EXPECT_EQ(defaults.synchronise(), std::nullopt);
    EXPECT_EQ(inFile(domain), Dictionary({{key, number(2)}}));
    defaults.remove(key);
    EXPECT_EQ(defaults.value(key), number(3));
    EXPECT_EQ(defaults.synchronise(), std::nullopt);
    EXPECT_EQ(inFile(domain), Dictionary());
}

TEST(UserDefaults, EveryKindOfValueIsKeptAndBrokenOnesAreRefused)
{
    const QString domain = newDomain();
    UserDefaults &defaults = UserDefaults::forDomain(domain);
    const Dictionary values = {
        {QStringLiteral("bool"), PropertyValue::boolean(true)},
        {QStringLiteral("integer"), number(-5)},
        {QStringLiteral("real"), PropertyValue::real(0.1)},
        {QStringLiteral("date"), PropertyValue::Date{123456789.125}},
        {QStringLiteral("data"), QByteArray("\0\xff", 2)},
        {QStringLiteral("text"), QStringLiteral("Caf\u00e9 \U0001F600")},
        {QStringLiteral("list"), PropertyValue::Array{number(1), QStringLiteral("a")}},
        {QStringLiteral("empty"), Dictionary()},
        {QStringLiteral("nested"), Dictionary{{key, PropertyValue::Array{Dictionary()}}}}};
    for (auto entry = values.begin(); entry != values.end(); ++entry)
        defaults.setValue(entry.key(), *entry);
    const QString broken(QChar(char16_t{0xDCFF}));
    for (const PropertyValue &bad :
         {PropertyValue(PropertyValue::Array{PropertyValue()}), PropertyValue(broken)})
        defaults.setValue(QStringLiteral("text"), bad);
    defaults.setValue(broken, number(1));
    EXPECT_EQ(defaults.synchronise(), std::nullopt);
    EXPECT_EQ(inFile(domain), values);
}

TEST(UserDefaults, ObserversHearEveryChangeOfTheAnswer)
{
    const QString domain = newDomain();
    UserDefaults &defaults = UserDefaults::forDomain(domain);
    PropertyValue::Array heard;
    XPObservation observation =
        defaults.addObserver(QStringLiteral("values.Key"),
                             [&heard](const PropertyValue &value) { heard.append(value); });
    defaults.registerDefaults({{key, number(1)}});
    defaults.setValue(key, number(1)); // no other answer
    defaults.setValue(QStringLiteral("Other"), number(9));
    defaults.setValue(key, number(2));
    defaults.remove(key);
    ASSERT_EQ(defaults.synchronise(), std::nullopt);
    EXPECT_EQ(heard, PropertyValue::Array({number(1), number(2), number(1)}));

    // Another process changes one key and takes the other away.
    writeFile(domain, *XPPropertyList::writeBinary(Dictionary{{key, number(7)}}));
    ASSERT_EQ(defaults.synchronise(), std::nullopt);
    EXPECT_EQ(heard.last(), number(7));
    EXPECT_FALSE(defaults.isSaved(QStringLiteral("Other")));

    std::thread([&defaults] { defaults.setValue(key, number(8)); }).join();
    QCoreApplication::processEvents();
    EXPECT_EQ(heard.last(), number(8));
    observation.reset();
    defaults.setValue(key, number(9));
    EXPECT_EQ(heard.size(), 5);
}

TEST(UserDefaults, TwoProcessesKeepEachOthersKeys)
{
    const QString domain = newDomain();
    UserDefaults &defaults = UserDefaults::forDomain(domain);
    constexpr int count = 40;
    const auto writeKeys = [&defaults](char process) {
        for (int i = 0; i < count; ++i) {
            defaults.setValue(QChar::fromLatin1(process) + QString::number(i), number(i));
            if (defaults.synchronise())
                return 1;
        }
        return 0;
    };
    std::thread other([&] { EXPECT_EQ(inOtherProcess([&] { return writeKeys('a'); }), 0); });
    EXPECT_EQ(inOtherProcess([&] { return writeKeys('b'); }), 0);
    other.join();
    EXPECT_EQ(inFile(domain).size(), 2 * count);
    ASSERT_EQ(defaults.synchronise(), std::nullopt);
    EXPECT_EQ(defaults.value(QStringLiteral("a39")), number(39));
    EXPECT_EQ(defaults.value(QStringLiteral("b0")), number(0));
}

TEST(UserDefaults, ADamagedFileIsSetAsideAndTheSettingsGoOn)
{
    const QByteArray good = *XPPropertyList::writeBinary(Dictionary{{key, number(1)}});
    const QByteArray bad[] = {QByteArray(), "garbage", good.chopped(9), good + "x",
                              *XPPropertyList::writeBinary(PropertyValue::Array())};
    for (const QByteArray &bytes : bad) {
        const QString domain = newDomain();
        const QString path = UserDefaults::pathForDomain(domain);
        writeFile(domain, bytes);
        UserDefaults &defaults = UserDefaults::forDomain(domain);
        defaults.registerDefaults({{key, number(5)}});
        EXPECT_EQ(defaults.value(key), number(5));
        EXPECT_EQ(XPAtomicFile::read(path + QStringLiteral(".damaged")).value(), bytes);
        defaults.setValue(QStringLiteral("Mine"), number(6));
        writeFile(domain, bytes); // and damaged again before the change is on disk
        EXPECT_EQ(defaults.synchronise(), std::nullopt);
        EXPECT_EQ(inFile(domain), Dictionary({{QStringLiteral("Mine"), number(6)}}));
        EXPECT_EQ(XPAtomicFile::read(path + QStringLiteral(".damaged-2")).value(), bytes);
    }
}

TEST(UserDefaults, AFileThatCannotBeReadIsNeverWritten)
{
    const TestFolder folder;
    const QByteArray before = qgetenv("XDG_CONFIG_HOME");
    qputenv("XDG_CONFIG_HOME", XPPath::encode(folder.path()));
    const QString domain = newDomain();
    const QByteArray old = *XPPropertyList::writeBinary(Dictionary{{key, number(1)}});
    writeFile(domain, old);
    const QString path = UserDefaults::pathForDomain(domain);
    ASSERT_EQ(::chmod(XPPath::encode(path).constData(), 0000), 0);
    const int outcome = asPlainUser(folder.path(), [&domain] {
        UserDefaults &defaults = UserDefaults::forDomain(domain);
        defaults.setValue(QStringLiteral("Mine"), number(2));
        const auto error = defaults.synchronise();
        const bool kept = defaults.value(QStringLiteral("Mine")) == number(2);
        return error && error->kind == XPError::Kind::NotPermitted && kept ? 0 : 1;
    });
    EXPECT_EQ(outcome, 0);
    EXPECT_EQ(XPAtomicFile::read(path).value(), old);
    qputenv("XDG_CONFIG_HOME", before);
}

TEST(UserDefaults, ChangesThatCouldNotBeSavedAreTriedAgain)
{
    const QString domain = newDomain();
    UserDefaults &defaults = UserDefaults::forDomain(domain);
    const QByteArray path = XPPath::encode(UserDefaults::pathForDomain(domain));
    ASSERT_EQ(::mkdir(path.constData(), 0700), 0); // nothing can be a file here now
    defaults.setValue(key, number(1));
    EXPECT_NE(defaults.synchronise(), std::nullopt);
    defaults.setValue(key, number(2));
    ASSERT_EQ(::rmdir(path.constData()), 0);
    EXPECT_EQ(defaults.synchronise(), std::nullopt);
    EXPECT_EQ(inFile(domain), Dictionary({{key, number(2)}}));
}

TEST(UserDefaults, OneFileIsOneObjectAndKeepsItsFormat)
{
    const QString domain = newDomain();
    const QString linked = newDomain();
    const QByteArray xml = *XPPropertyList::writeXml(Dictionary{{key, number(1)}});
    writeFile(domain, xml);
    const QString link = UserDefaults::pathForDomain(linked);
    ASSERT_EQ(::symlink(XPPath::encode(UserDefaults::pathForDomain(domain)).constData(),
                        XPPath::encode(link).constData()),
              0);
    UserDefaults &defaults = UserDefaults::forDomain(linked);
    EXPECT_EQ(&defaults, &UserDefaults::forDomain(domain));
    defaults.setValue(key, number(2));
    EXPECT_EQ(defaults.synchronise(), std::nullopt);
    const QByteArray now = XPAtomicFile::read(link).value();
    EXPECT_EQ(now, *XPPropertyList::writeXml(Dictionary{{key, number(2)}}));
    defaults.setValue(key, QString(QChar(1))); // XML has no such character
    EXPECT_EQ(defaults.synchronise(), std::nullopt);
    EXPECT_EQ(inFile(domain), Dictionary({{key, QString(QChar(1))}}));
}

TEST(UserDefaults, ChangesReachTheDiskByThemselves)
{
    const QString domain = newDomain();
    UserDefaults &defaults = UserDefaults::forDomain(domain);
    for (int i = 0; i < 100; ++i)
        defaults.setValue(key, number(i));
    const QDeadlineTimer deadline(30'000);
    while (inFile(domain).isEmpty() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 1000);
    EXPECT_EQ(inFile(domain), Dictionary({{key, number(99)}}));

    const QString atEnd = newDomain(); // without an event loop: when the process ends
    const int outcome = inOtherProcess([&atEnd]() -> int {
        UserDefaults::forDomain(atEnd).setValue(key, number(1));
        std::exit(0); // NOLINT(concurrency-mt-unsafe): one thread in this process
    });
    EXPECT_EQ(outcome, 0);
    EXPECT_EQ(inFile(atEnd), Dictionary({{key, number(1)}}));
}

TEST(UserDefaults, ManyThreadsLoseNothing)
{
    const QString domain = newDomain();
    UserDefaults &defaults = UserDefaults::forDomain(domain);
    constexpr int each = 50;
    {
        std::vector<std::jthread> threads;
        threads.reserve(2);
        for (const QString &prefix : {QStringLiteral("a"), QStringLiteral("b")}) {
            threads.emplace_back([&defaults, prefix] {
                for (int i = 0; i < each; ++i) {
                    defaults.setValue(prefix + QString::number(i), number(i));
                    if (i % 10 == 0) {
                        EXPECT_EQ(defaults.synchronise(), std::nullopt);
                    }
                    EXPECT_EQ(defaults.value(prefix + QString::number(i)), number(i));
                }
            });
        }
    }
    EXPECT_EQ(defaults.synchronise(), std::nullopt);
    EXPECT_EQ(inFile(domain).size(), 2 * each);
}

TEST(XPFactorySettings, AreCompleteAndTheLogFollows)
{
    const Dictionary &values = XPFactorySettings::values();
    EXPECT_EQ(values.size(), 136);
    EXPECT_TRUE(XPPropertyList::writeBinary(values)); // every value can be saved as it is
    EXPECT_EQ(values[QStringLiteral("KPLoupeModifierKey")], number(0x80000));
    EXPECT_EQ(values[QStringLiteral("KPCacheDaysOld")], PropertyValue::real(360));
    EXPECT_EQ(values[QStringLiteral("KPSpotlightPrefix")], QStringLiteral("&"));
    EXPECT_EQ(values[QStringLiteral("KPSearchFolders")].strings(),
              QStringList({QStringLiteral("~/Documents"), QStringLiteral("~/Desktop"),
                           QStringLiteral("~/Downloads")}));

    XPFactorySettings::registerAll();
    UserDefaults &defaults = UserDefaults::standard();
    EXPECT_TRUE(defaults.boolValue(QStringLiteral("KPConfirmDelete")));
    EXPECT_FALSE(xpLog().isDebugEnabled());
    defaults.setValue(QStringLiteral("KPDebugLogging"), PropertyValue::boolean(true));
    EXPECT_TRUE(xpLog().isDebugEnabled());
    defaults.remove(QStringLiteral("KPDebugLogging"));
    EXPECT_FALSE(xpLog().isDebugEnabled());
}
