#include "KarvexTagStore.h"
#include "KarvexTestFiles.h"
#include "XPFolders.h"
#include "XPPath.h"
#include "XPPropertyList.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <cerrno>

static QStringList words(const char *text)
{
    return QString::fromUtf8(text).split(u' ', Qt::SkipEmptyParts);
}

TEST(KarvexTagList, FirstSpellingStaysInItsPlaceDecomposed)
{
    const struct
    {
        QStringList given;
        QStringList kept;
    } rows[] = {
        {words("Work work Café"), words("Work Cafe\u0301")},
        {words("b A a B c"), words("b A c")},
        {words("Cafe\u0301 CAF\u00c9"), words("Cafe\u0301")},
        {words("straße STRASSE"), words("straße STRASSE")}, // lower case is no folding
        {{}, {}},
    };
    for (const auto &row : rows)
        EXPECT_EQ(Karvex::removeDuplicateTags(row.given), row.kept);
    EXPECT_EQ(Karvex::removeDuplicateTags(
                  PropertyValue::Array{PropertyValue::integer(1), QStringLiteral("a")}),
              words("a"));
    EXPECT_EQ(Karvex::removeDuplicateTags(PropertyValue()), QStringList());
    const QHash<QString, QString> dictionary = {{u"a"_qs, u"A"_qs}, {u"b"_qs, u"B"_qs}};
    EXPECT_EQ(Karvex::orderedArrayWithDict(dictionary, words("x b B")), words("b A"));
}

TEST(KarvexUserTags, AreAddedAndClearedAndWrittenOnlyWhenTheyChange)
{
    const TestFolder folder;
    const QString file = folder.file(QStringLiteral("a"));
    const auto writtenSince = [&] {
        const bool written = storedBytes(file, Karvex::userTagTimeKey).has_value();
        EXPECT_EQ(Karvex::setXAttrMetaData({}, Karvex::userTagTimeKey, file), std::nullopt);
        return written;
    };
    ASSERT_EQ(Karvex::setUserTags(words("Work work Café"), file), std::nullopt);
    EXPECT_EQ(tagsOf(file), words("Work Cafe\u0301"));
    EXPECT_TRUE(writtenSince());
    ASSERT_EQ(Karvex::addUserTags(words("WORK café"), file), std::nullopt);
    EXPECT_FALSE(writtenSince());
    ASSERT_EQ(Karvex::addUserTags(words("new"), file), std::nullopt);
    EXPECT_EQ(tagsOf(file), words("Work Cafe\u0301 new"));
    EXPECT_TRUE(writtenSince());
    ASSERT_EQ(Karvex::clearUserTags(words("absent"), file), std::nullopt);
    EXPECT_FALSE(writtenSince());
    ASSERT_EQ(Karvex::clearUserTags(words("WORK NEW CAFÉ"), file), std::nullopt);
    EXPECT_TRUE(writtenSince());
    // An empty list is a list: others must be able to tell it from "never tagged".
    EXPECT_EQ(Karvex::getXAttrMetaData(Karvex::userTagsKey, file).value(),
              PropertyValue(PropertyValue::Array()));
}

TEST(KarvexUserTags, OfSeveralFilesAreSharedByLowerCase)
{
    const TestFolder folder;
    const QString a = folder.file(QStringLiteral("a"));
    const QString b = folder.file(QStringLiteral("b"));
    const QString none = folder.file(QStringLiteral("none"));
    const QString gone = folder.path(QStringLiteral("gone"));
    ASSERT_EQ(Karvex::setUserTags(words("x Blue only-a RED"), a), std::nullopt);
    ASSERT_EQ(Karvex::setUserTags(words("red only-b blue"), b), std::nullopt);
    EXPECT_EQ(Karvex::getCommonUserTags({}).value(), QStringList());
    EXPECT_EQ(Karvex::getCommonUserTags({a}).value(), words("x Blue only-a RED"));
    EXPECT_EQ(Karvex::getCommonUserTags({a, b}).value(), words("red blue"));
    EXPECT_EQ(Karvex::getCommonUserTags({b, a}).value(), words("Blue RED"));
    EXPECT_EQ(Karvex::getCommonUserTags({a, none, gone}).value(), QStringList());
    EXPECT_EQ(Karvex::getCommonUserTags({a, gone}).error().code, ENOENT);

    // The common tags are replaced; what a file has besides stays in front. A file that is gone
    // is reported and stops nothing.
    const auto error =
        Karvex::setCommonUserTags({a, gone, b}, words("red blue"), words("Green ONLY-A"));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->path, gone);
    EXPECT_EQ(tagsOf(a), words("x only-a Green"));
    EXPECT_EQ(tagsOf(b), words("only-b Green ONLY-A"));
    ASSERT_EQ(Karvex::setXAttrMetaData({}, Karvex::userTagTimeKey, b), std::nullopt);
    ASSERT_EQ(Karvex::setCommonUserTags({b}, words("Green"), tagsOf(b)), std::nullopt);
    ASSERT_EQ(Karvex::setCommonUserTags({a, gone}, {}, {}), std::nullopt);
    EXPECT_EQ(storedBytes(b, Karvex::userTagTimeKey), std::nullopt); // nothing to change
}

namespace {

class OtherStore : public KarvexTagStore
{
public:
    QString searchKey() const override { return Karvex::systemTagsKey; }
    XPResult<QStringList> read(const QString &) const override { return tags; }
    std::optional<XPError> write(const QStringList &list, const QString &) const override
    {
        tags = list;
        return {};
    }
    mutable QStringList tags = {QStringLiteral("native")};
};

} // namespace

TEST(KarvexUserTags, AreKeptInThePlatformsOwnListWhereThereIsOne)
{
    const TestFolder folder;
    const QString file = folder.file(QStringLiteral("a"));
    KarvexTagStore::installNative(std::make_unique<OtherStore>());
    EXPECT_TRUE(Karvex::MavericksOrLater());
    EXPECT_EQ(Karvex::tagsToSearchFor(), QStringLiteral("kMDItemUserTags"));
    EXPECT_EQ(Karvex::addUserTags(words("Café"), file), std::nullopt);
    EXPECT_EQ(Karvex::getAppleTags(file).value(), words("native Cafe\u0301"));
    EXPECT_EQ(storedBytes(file, Karvex::userTagsKey), std::nullopt);
    EXPECT_NE(storedBytes(file, Karvex::userTagTimeKey), std::nullopt);
    KarvexTagStore::installNative(nullptr);
}

TEST(KarvexSchema, IsAnnouncedForAMomentAndOnlyItsFilesAreRemoved)
{
    const QString path = XPFolders::applicationSupport() +
                         QStringLiteral("/Karvex/schemaregister/murn.karvexschema");
    Karvex::registerUsualKXAttributes();
    QFile schema(path);
    ASSERT_TRUE(schema.open(QIODevice::ReadOnly));
    const auto samples = XPPropertyList::read(schema.readAll());
    ASSERT_TRUE(samples);
    EXPECT_EQ(samples->dictionary().keys(),
              words("kMDItemKXBookmarks kMDItemKXDocumentDate kMDItemKXManaged "
                    "kMDItemKXUserTagTime kMDItemKXUserTags"));
    const QDeadlineTimer deadline(std::chrono::seconds(30));
    while (schema.exists() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_FALSE(schema.exists());

    const TestFolder folder;
    const QString literal = QStringLiteral("Library/Application Support/Karvex/schemaregister/");
    const QString other = folder.file(QStringLiteral("other"));
    const QString inside = folder.file(literal + QStringLiteral("x"));
    Karvex::removeSchemaFile(other);
    Karvex::removeSchemaFile(folder.path(literal + QStringLiteral("../../../../other")));
    EXPECT_TRUE(QFile::exists(other));
    Karvex::removeSchemaFile(inside);
    EXPECT_FALSE(QFile::exists(inside));
}
