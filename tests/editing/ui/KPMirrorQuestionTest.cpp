#include "KPMirrorQuestion.h"

#include "KPDoc.h"
#include "KPDocMetaData.h"
#include "KarvexMirror.h"
#include "KeptFolder.h"
#include "UserDefaults.h"
#include "XPExtendedAttributes.h"
#include "XPPrompts.h"

#include <gtest/gtest.h>

namespace {

struct Prompts : XPPrompts
{
    void ask(const Question &, std::function<void(int)> answer) override
    {
        ++asked;
        answer(reply);
    }
    void alert(const QString &, const QString &) override {}
    static inline int asked;
    static inline int reply;
};

class MirrorQuestion : public testing::Test
{
protected:
    void SetUp() override
    {
        forget();
        Prompts::asked = 0;
        XPPrompts::install(std::make_unique<Prompts>());
        plain = folder.file(QStringLiteral("plain.txt"));
        rated = folder.file(QStringLiteral("rated.txt"));
    }
    void TearDown() override XP_REQUIRES(xpGuiThread)
    {
        XPPrompts::install(nullptr);
        KPDoc::stopMetaDataSearching();
        forget();
    }
    static void forget() { UserDefaults::standard().remove(KarvexMirror::settingsKey); }
    void foreignRating()
    {
        EXPECT_FALSE(XPExtendedAttributes::write(rated, KarvexFacts::desktopRatingKey, "8"));
    }
    void edited(qsizetype changed) { Q_EMIT worker.reported({1, changed, {}}); }

    KeptFolder folder;
    QString plain, rated;
    KPEditWorker worker;
};

} // namespace

TEST_F(MirrorQuestion, IsAskedOnceAndOnlyWhereTheDesktopHasSomething)
{
    KPMirrorQuestion question(&worker);
    KPDocMetaData::useIndex(folder.index());
    edited(1);
    EXPECT_EQ(Prompts::asked, 0) << "nobody else tags here";
    foreignRating();
    folder.catchUp();
    edited(0);
    EXPECT_EQ(Prompts::asked, 0) << "nothing was changed";
    Prompts::reply = 1;
    edited(1);
    EXPECT_EQ(Prompts::asked, 1);
    EXPECT_FALSE(KarvexMirror::isOn());
    EXPECT_TRUE(KarvexMirror::wasAsked());
    const KPMirrorQuestion nextStart(&worker);
    edited(1);
    EXPECT_EQ(Prompts::asked, 1);
}

TEST_F(MirrorQuestion, YesSwitchesItOnAndAChoiceElsewhereSparesIt)
{
    KPMirrorQuestion question(&worker);
    foreignRating();
    KPDocMetaData::useIndex(folder.index());
    Prompts::reply = 0;
    edited(1);
    EXPECT_TRUE(KarvexMirror::isOn());
    // Off in the preferences.
    forget();
    UserDefaults::standard().setValue(KarvexMirror::settingsKey, PropertyValue::boolean(false));
    const KPMirrorQuestion nextStart(&worker);
    edited(1);
    EXPECT_EQ(Prompts::asked, 1);
}
