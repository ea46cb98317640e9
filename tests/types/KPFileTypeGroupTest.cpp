#include "KPBuiltInGroups.h"
#include "KPContentTypes.h"
#include "KPDynamicType.h"
#include "KPFileType.h"
#include "KPFileTypeRegistry.h"
#include "TestHome.h"
#include "TestSystem.h"
#include "XPAtomicFile.h"
#include "XPFolders.h"
#include "XPNotificationCenter.h"
#include "XPPath.h"
#include "XPPropertyList.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>
#include <sys/stat.h>

static QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

static KPFileTypeGroup groupOf(const QStringList &entries, const QString &name = text("Mine"))
{
    return KPFileTypeGroup(
        {{KPFileTypeGroup::displayNameKey, name}, {KPFileTypeGroup::utisKey, entries}});
}

TEST(KPFileTypeGroup, StoredFormSurvivesAnotherMachine)
{
    const QString dynamic = KPDynamicType::forExtension(text("zzy9"));
    KPFileTypeGroup group(true, text("Mine"), false);
    group.addUTI(text("com.adobe.pdf"));
    group.addUTI(dynamic);
    group.addUTI(text("com.adobe.pdf"));
    const auto stored = group.dictionary();
    EXPECT_EQ(stored.value(KPFileTypeGroup::utisKey).strings(),
              QStringList({text("com.adobe.pdf"), text("KPExtension:zzy9xxDYNxx") + dynamic}));
    const KPFileTypeGroup back(stored);
    EXPECT_EQ(back.utiArray(), group.utiArray());
    EXPECT_FALSE(back.isBuiltIn());
    // An extension that was unknown where it was stored, and is declared here.
    QStringList expected = KPFileType::allUTIsForExtension(text("ts"), false);
    ASSERT_GE(expected.size(), 2);
    expected.append(text("dyn.stored"));
    EXPECT_EQ(groupOf({text("KPExtension:tsxxDYNxxdyn.stored")}).utiArray(), expected);
}

TEST(KPFileTypeGroup, ReadsEveryFormOfEntry)
{
    const struct
    {
        const char *entry = "";
        QStringList utis;
    } rows[] = {
        {"public.png", {text("public.png")}},
        {"tree_public.image", {text("tree_public.image")}},
        {"KPOSType:PDF ", {text("com.adobe.pdf")}},
        {"KPExtension:pngxxDYNxx", {text("public.png")}},
        {"KPExtension:png", {text("public.png")}},
        {"KPExtension:xxDYNxxdyn.a", {text("dyn.a")}},
    };
    for (const auto &row : rows)
        EXPECT_EQ(groupOf({text(row.entry)}).utiArray(), row.utis) << row.entry;
}

TEST(KPFileTypeGroup, EqualityIsOfTypesInOrderAndTheIdentifierAlsoOfTheName)
{
    KPFileTypeGroup a = groupOf({text("public.png"), text("public.jpeg")});
    const KPFileTypeGroup b = groupOf({text("public.jpeg"), text("public.png")});
    const KPFileTypeGroup c = groupOf({text("public.png"), text("public.jpeg")}, text("Other"));
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(a == c);
    EXPECT_NE(a.persistantID(), c.persistantID());
    EXPECT_EQ(a.persistantID(), text("Minepublic.png|public.jpeg"));
    a.setTheDisplayName(text("Other"));
    EXPECT_EQ(a.persistantID(), c.persistantID());
}

TEST(KPFileTypeGroup, WrongKindsCountAsMissingAndAnEmptyGroupIsRepaired)
{
    KPFileTypeGroup damaged({{KPFileTypeGroup::displayNameKey, text("Images")},
                             {KPFileTypeGroup::enabledKey, text("yes")},
                             {KPFileTypeGroup::utisKey, PropertyValue::integer(4)}});
    EXPECT_TRUE(damaged.enabled());
    EXPECT_EQ(damaged.utiArray(), KPBuiltInGroups::groupWithName(text("Images"))->utiArray());
    EXPECT_TRUE(groupOf({}, text("No such group")).utiArray().isEmpty());
    const KPFileTypeGroup off({{KPFileTypeGroup::displayNameKey, text("Images")},
                               {KPFileTypeGroup::enabledKey, PropertyValue::integer(0)}});
    EXPECT_FALSE(off.enabled());
}

TEST(KPFileTypeGroup, UnderstandsWhatPeopleCallATypeBy)
{
    const struct
    {
        const char *typed = "";
        QStringList entries;
    } cases[] = {
        {" com.adobe.PDF ", {text("com.adobe.pdf")}},
        {"public.image", {text("tree_public.image")}}, // with all that are one
        {"pdf DOCUMENT", {text("com.adobe.pdf")}},
        {"pdf", {text("com.adobe.pdf")}},
        {".zzy9", {KPDynamicType::forExtension(text("zzy9"))}},
        {"zzy9", {KPDynamicType::forExtension(text("zzy9"))}},
        {"no such type", {}},
        {"a/b", {}},
        {".", {}},
        {"", {}},
    };
    for (const auto &each : cases)
        EXPECT_EQ(KPFileTypeGroup::entriesForText(text(each.typed)), each.entries) << each.typed;
    EXPECT_NE(KPFileTypeGroup::nameOfEntry(text("tree_public.image")),
              KPFileTypeGroup::nameOfEntry(text("public.image")));
}

TEST(KPBuiltInGroups, NameOnlyDeclaredTypesAndHaveAPicture)
{
    for (const auto &group : KPBuiltInGroups::groups()) {
        EXPECT_NE(KPBuiltInGroups::iconFor(*group), text("generic"));
        for (QString uti : group->utiArray()) {
            if (uti.startsWith(u"tree_"))
                uti = uti.mid(5);
            EXPECT_NE(KPContentTypes::numberOf(uti), KPContentTypes::none) << uti.toStdString();
        }
    }
    const auto images = KPBuiltInGroups::groupWithName(text("Images"));
    EXPECT_TRUE(images->containsType(text("public.png")));
    EXPECT_FALSE(images->containsType(text("com.adobe.pdf")));
    EXPECT_TRUE(images->containsType(text("tree_public.camera-raw-image")));
    EXPECT_FALSE(groupOf({text("public.html")}).containsType(text("tree_public.html")));
}

class KPFileTypeRegistryTest : public testing::Test
{
protected:
    void SetUp() override { QFile::remove(KPFileTypeRegistry::filePath()); }
    KPFileTypeRegistry &m_registry = KPFileTypeRegistry::instance();
};

TEST_F(KPFileTypeRegistryTest, KeepsTheUsersEditsAndAnnouncesThem)
{
    m_registry.readFileTypesPlist();
    const qsizetype builtIns = m_registry.fileTypeGroupsArray().size();
    int announced = 0;
    const auto observation = XPNotificationCenter::instance().addObserver(
        KPFileTypeRegistry::changedNotification, [&](const XPNotification &) { ++announced; });
    const auto pdf = m_registry.fileTypeGroupsArray().first();
    EXPECT_TRUE(m_registry.trackingUTIs().contains(text("com.adobe.pdf")));
    pdf->setTheEnabled(false);
    pdf->setTheDisplayName(text("Papers"));
    m_registry.addGroup(std::make_shared<KPFileTypeGroup>(groupOf({text("public.png")})));
    EXPECT_EQ(announced, 3);
    ASSERT_FALSE(m_registry.writeFileTypesPlist());

    m_registry.readFileTypesPlist();
    const auto groups = m_registry.fileTypeGroupsArray();
    ASSERT_EQ(groups.size(), builtIns + 1);
    EXPECT_EQ(groups.first()->displayName(), text("Papers"));
    EXPECT_TRUE(groups.first()->isBuiltIn());
    EXPECT_FALSE(m_registry.trackingUTIs().contains(text("com.adobe.pdf")));
    EXPECT_EQ(groups.last()->utiArray(), QStringList(text("public.png")));
    EXPECT_FALSE(m_registry.removeGroup(groups.first()));
    EXPECT_TRUE(m_registry.removeGroup(groups.last()));
    EXPECT_EQ(m_registry.fileTypeGroupWithName(text("PDF"))->displayName(), text("PDF"));
}

TEST_F(KPFileTypeRegistryTest, SetsAsideWhatIsNotItsOwn)
{
    const QString path = KPFileTypeRegistry::filePath();
    const QByteArray foreign[] = {
        "garbage",
        *XPPropertyList::writeXml(PropertyValue(QStringList{text("a"), text("b")})),
        *XPPropertyList::writeBinary(PropertyValue(PropertyValue::Dictionary{})),
    };
    for (const QByteArray &bytes : foreign) {
        ASSERT_FALSE(XPAtomicFile::write(path, bytes));
        const qsizetype before = QDir(XPFolders::ourApplicationSupport()).count();
        m_registry.readFileTypesPlist();
        EXPECT_FALSE(QFile::exists(path));
        EXPECT_EQ(QDir(XPFolders::ourApplicationSupport()).count(), static_cast<uint>(before));
        EXPECT_FALSE(m_registry.fileTypeGroupsArray().isEmpty());
    }
}

// It can neither be read nor moved just now; later it could be written over.
TEST_F(KPFileTypeRegistryTest, LeavesAloneWhatItCouldNotSetAside)
{
    const TestFolder folder;
    const int status = asPlainUser(folder.path(), [&] {
        const QByteArray bytes = XPPath::encode(folder.path());
        qputenv("XDG_DATA_HOME", bytes);
        const QString path = KPFileTypeRegistry::filePath();
        const QByteArray place = XPPath::encode(XPFolders::ourApplicationSupport());
        if (XPAtomicFile::write(path, "garbage") || ::chmod(place.constData(), 0555) != 0)
            return 1;
        m_registry.readFileTypesPlist();
        if (::chmod(place.constData(), 0755) != 0)
            return 2;
        m_registry.addGroup(std::make_shared<KPFileTypeGroup>(groupOf({text("public.png")})));
        (void)m_registry.writeFileTypesPlist();
        return *XPAtomicFile::read(path) == "garbage" ? 0 : 3;
    });
    EXPECT_EQ(status, 0);
}
