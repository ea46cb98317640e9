#include "Murnctl.h"

#include "TestHome.h"
#include "UserDefaults.h"
#include "XPAtomicFile.h"
#include "XPFactorySettings.h"
#include "XPPropertyList.h"

#include <QJsonArray>
#include <QJsonObject>
#include <gtest/gtest.h>

namespace {

struct Written
{
    const char *name;
    QByteArrayList words; // key and values
    const char *read;     // as JSON; empty: refused
};

class MurnctlDefaults : public testing::TestWithParam<Written>
{
};

MurnctlResult defaults(const QByteArrayList &words)
{
    return murnctl(QByteArrayList{"defaults"} + words, QStringLiteral("/"));
}

} // namespace

TEST_P(MurnctlDefaults, ChecksKindsAndLimits)
{
    const Written &row = GetParam();
    const QByteArray key = row.words.first();
    const QByteArray before = defaults({"read", "--json", key}).out;
    const auto written = defaults(QByteArrayList{"write"} + row.words);
    const QByteArray after = defaults({"read", "--json", key}).out.trimmed();
    if (*row.read) {
        EXPECT_EQ(written.status, 0) << written.err.constData();
        EXPECT_EQ(after, row.read);
    } else {
        EXPECT_EQ(written.status, 1);
        EXPECT_TRUE(written.err.startsWith("murnctl: " + key + " takes ")) << written.err.data();
        EXPECT_EQ(after, before.trimmed()); // as it was
    }
    EXPECT_EQ(defaults({"delete", key}).status, 0);
    EXPECT_EQ(defaults({"read", "--json", key}).out, before);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, MurnctlDefaults,
    testing::Values(
        Written{"Bool", {"KPUseCommas", "no"}, "false"},
        Written{"NoBool", {"KPUseCommas", "maybe"}, ""},
        Written{"TwoBools", {"KPUseCommas", "yes", "no"}, ""},
        Written{"Integer", {"KPNumberOfRecentLocations", "20"}, "20"},
        Written{"Fraction", {"KPNumberOfRecentLocations", "2.5"}, ""},
        Written{"TooMany", {"KPNumberOfRecentLocations", "101"}, ""},
        Written{"TooLarge", {"KPNumberOfRecentLocations", "99999999999999999999"}, ""},
        Written{"Real", {"KPCompressionFactor3", "0.5"}, "0.5"},
        Written{"NotANumber", {"KPCompressionFactor3", "nan"}, ""},
        Written{"Choice", {"KPScanDPI", "600"}, "600"},
        Written{"NoChoice", {"KPScanDPI", "301"}, ""},
        Written{"TextChoice", {"KPScanMode", "Gray"}, "\"Gray\""},
        Written{"NoTextChoice", {"KPScanMode", "grey"}, ""},
        Written{"Text", {"KPSpotlightPrefix", "--", "-"}, "\"-\""},
        Written{"NoUtf8", {"KPSpotlightPrefix", "\xff"}, ""},
        Written{"Nothing", {"KPSpotlightPrefix"}, ""},
        Written{"Colour", {"KPLibraryTextColour", "0", "0.25", "1", "1"}, "[0, 0.25, 1, 1]"},
        Written{"ThreeParts", {"KPLibraryTextColour", "0", "0.25", "1"}, ""},
        Written{"Beyond", {"KPLibraryTextColour", "0", "0.25", "2", "1"}, ""},
        Written{"Paths", {"KPSearchFolders", "~/a b", "/c"}, "[\"~/a b\", \"/c\"]"},
        Written{"EmptyPath", {"KPSearchFolders", "~/a", ""}, ""},
        Written{"NoPaths", {"KPSearchFolders"}, "[]"},
        Written{"Inner", {"KPGroupStates", "{}"}, ""}),
    [](const auto &row) { return row.param.name; });

TEST(MurnctlDefaults, KnowsWhatItDoesNotKnow)
{
    EXPECT_EQ(defaults({"read", "KPNoSuchThing"}).err, "murnctl: KPNoSuchThing: no such setting\n");
    EXPECT_EQ(defaults({"write", "KPNoSuchThing", "1"}).status, 1);
    EXPECT_EQ(defaults({"delete", "KPNoSuchThing"}).status, 1);
    EXPECT_EQ(defaults({}).status, 2);
    EXPECT_EQ(defaults({"write"}).status, 2);
    EXPECT_EQ(defaults({"delete"}).status, 2);
    const QJsonObject all = defaults({"read", "--json"}).json().object();
    EXPECT_EQ(all.size(), XPFactorySettings::all().size());
    EXPECT_EQ(all[QStringLiteral("KPUseCommas")][QStringLiteral("takes")].toString(),
              QStringLiteral("true or false"));
}

// A settings file in which everything is of another kind counts as one with factory values.
TEST(MurnctlDefaults, SurviveAFileOfWrongKinds)
{
    PropertyValue::Dictionary wrong;
    for (const XPSetting &setting : XPFactorySettings::all()) {
        const bool isData =
            setting.kind == XPSetting::Kind::Data || setting.kind == XPSetting::Kind::Path;
        wrong.insert(setting.key, isData ? PropertyValue::Date{} : PropertyValue(QByteArray("x")));
    }
    const QString path = UserDefaults::pathForDomain(UserDefaults::programDomain);
    ASSERT_FALSE(XPAtomicFile::write(path, *XPPropertyList::writeBinary(wrong)));
    const QJsonObject all = defaults({"read", "--json"}).json().object();
    for (const XPSetting &setting : XPFactorySettings::all()) {
        const QJsonObject one = all[setting.key].toObject();
        if (!setting.factory.isNull()) {
            EXPECT_EQ(one[QStringLiteral("value")], one[QStringLiteral("factory")])
                << qPrintable(setting.key);
        }
    }
    for (const char *command : {"find", "tags", "index", "healed"})
        EXPECT_GE(murnctl({command, "--help"}, QStringLiteral("/")).status, 0);
    const TestFolder folder;
    EXPECT_EQ(murnctl({"find", "--list-folder", "."}, folder.path()).status, 0);
    EXPECT_EQ(murnctl({"index", "roots"}, folder.path()).status, 0);
    EXPECT_EQ(::remove(path.toUtf8().constData()), 0);
}
