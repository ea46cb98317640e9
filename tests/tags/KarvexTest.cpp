#include "KarvexTestFiles.h"
#include "TestSystem.h"
#include "XPPath.h"
#include "XPPropertyList.h"

#include <cerrno>
#include <cmath>
#include <fcntl.h>
#include <limits>
#include <unistd.h>

using Kind = XPError::Kind;

static QByteArray xml(const QByteArray &inside)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist PUBLIC "
           "\"-//Apple//DTD PLIST 1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\">" +
           inside + "</plist>\n";
}

static QByteArray nested(int depth)
{
    return xml(QByteArray("<array>").repeated(depth) + QByteArray("</array>").repeated(depth));
}

// An array of one element, by reference: itself.
static const QByteArray cyclic("bplist00\xa1\x00\x08\0\0\0\0\0\0\1\1\0\0\0\0\0\0\0\1\0\0\0\0\0\0\0"
                               "\0\0\0\0\0\0\0\0\x0a",
                               8 + 2 + 1 + 32);
// The array "a", as the format's description gives it.
static const QByteArray arrayOfA("bplist00\xa1\x01\x51"
                                 "a\x08\x0a\0\0\0\0\0\0\1\1\0\0\0\0\0\0\0\2\0\0\0\0\0\0\0\0\0\0\0\0"
                                 "\0\0\0\x0c",
                                 8 + 4 + 2 + 32);

TEST(Karvex, WritesTheConventionsBytesUnderItsNames)
{
    const TestFolder folder;
    const QString file = folder.file(QStringLiteral("a"));
    ASSERT_EQ(Karvex::setUserTags(QStringList{QStringLiteral("a")}, file, {1.5}), std::nullopt);
    ASSERT_EQ(Karvex::setRating(3, file), std::nullopt);
    EXPECT_EQ(storedBytes(file, Karvex::userTagsKey), arrayOfA);
    EXPECT_EQ(Karvex::getXAttrMetaData(Karvex::userTagTimeKey, file).value(),
              PropertyValue(PropertyValue::Date{1.5}));
    EXPECT_EQ(Karvex::getXAttrMetaData(Karvex::starRatingKey, file).value(),
              PropertyValue::real(3));
    EXPECT_EQ(XPExtendedAttributes::list(file).value(),
              QStringList({QStringLiteral("com.apple.metadata:kMDItemKXRatingTime"),
                           QStringLiteral("com.apple.metadata:kMDItemKXUserTagTime"),
                           QStringLiteral("com.apple.metadata:kMDItemKXUserTags"),
                           QStringLiteral("com.apple.metadata:kMDItemStarRating")}));
    EXPECT_EQ(Karvex::karvexKey(Karvex::managedKey),
              QStringLiteral("org.karvexinfo:kMDItemKXManaged"));
    EXPECT_FALSE(Karvex::MavericksOrLater());
    EXPECT_EQ(Karvex::tagsToSearchFor(), QStringLiteral("kMDItemKXUserTags"));
}

struct TagsRow
{
    const char *name;
    QByteArray bytes;
    std::optional<QStringList> tags; // nothing: error -2
};

class KarvexReadsTags : public testing::TestWithParam<TagsRow>
{
};

// Whatever cannot be read is an error to every reader, and nobody writes over it unless told to
// set the tags as a whole.
TEST_P(KarvexReadsTags, OfAnyWriter)
{
    const TestFolder folder;
    const QString file = folder.file(QStringLiteral("a"));
    const TagsRow &row = GetParam();
    storeBytes(file, Karvex::userTagsKey, row.bytes);
    const QStringList more = {QStringLiteral("more")};
    if (row.tags) {
        EXPECT_EQ(tagsOf(file), *row.tags);
        EXPECT_EQ(Karvex::addUserTags(more, file), std::nullopt);
        EXPECT_EQ(tagsOf(file), *row.tags + more);
        return;
    }
    const auto minusTwo = [&](const std::optional<XPError> &error) {
        ASSERT_TRUE(error);
        EXPECT_EQ(error->domain, XPError::karvexDomain);
        EXPECT_EQ(error->code, -2);
        EXPECT_EQ(error->path, file);
        EXPECT_NE(error->message, QString());
    };
    minusTwo(Karvex::getUserTags(file).error());
    minusTwo(Karvex::getCommonUserTags({file, file}).error());
    minusTwo(Karvex::addUserTags(more, file));
    minusTwo(Karvex::clearUserTags(more, file));
    minusTwo(Karvex::setCommonUserTags({file}, more, {}));
    EXPECT_EQ(storedBytes(file, Karvex::userTagsKey), row.bytes);
    EXPECT_EQ(storedBytes(file, Karvex::userTagTimeKey), std::nullopt);
    EXPECT_EQ(Karvex::setUserTags(more, file), std::nullopt);
    EXPECT_EQ(tagsOf(file), more);
}

INSTANTIATE_TEST_SUITE_P(
    Bytes, KarvexReadsTags,
    testing::Values(
        TagsRow{"None", {""}, QStringList()}, TagsRow{"Binary", arrayOfA, QStringList{u"a"_qs}},
        TagsRow{"Xml", xml("<array><string>&lt;b&gt;</string><string>a</string></array>"),
                QStringList{u"<b>"_qs, u"a"_qs}},
        TagsRow{"EmptyArray", xml("<array/>"), QStringList()},
        TagsRow{"Garbage", "no property list at all", {}},
        TagsRow{"Truncated", arrayOfA.chopped(3), {}}, TagsRow{"HeadOnly", "bplist00", {}},
        TagsRow{"Cyclic", cyclic, {}}, TagsRow{"DeeplyNested", nested(120), {}},
        TagsRow{"AString", xml("<string>work</string>"), {}},
        TagsRow{"ADictionary", xml("<dict/>"), {}},
        TagsRow{"NotAllStrings", xml("<array><string>a</string><integer>1</integer></array>"), {}}),
    [](const auto &row) { return row.param.name; });

TEST(Karvex, ComposedTagsOfOthersAreReadAsTheyAre)
{
    const TestFolder folder;
    const QString file = folder.file(QStringLiteral("a"));
    const QString composed = QStringLiteral("CAF\u00c9");
    storeBytes(file, Karvex::userTagsKey,
               XPPropertyList::writeBinary(QStringList{composed}).value());
    EXPECT_EQ(tagsOf(file), QStringList{composed});
    EXPECT_EQ(Karvex::clearUserTags({QStringLiteral("cafe\u0301")}, file), std::nullopt);
    EXPECT_EQ(tagsOf(file), QStringList());
}

TEST(Karvex, RatingsAreNumbersOfAnyKind)
{
    const struct
    {
        QByteArray inside;
        std::optional<double> rating;
    } rows[] = {{"<integer>4</integer>", 4},
                {"<real>2.5</real>", 2.5},
                {"<true/>", 1},
                {"<false/>", 0},
                {"<integer>-1</integer>", -1},
                {"<real>9</real>", 9},
                {"<real>nan</real>", {}},
                {"<real>inf</real>", {}},
                {"<string>4</string>", {}},
                {"<array><integer>4</integer></array>", {}}};
    const TestFolder folder;
    const QString file = folder.file(QStringLiteral("a"));
    EXPECT_EQ(Karvex::getRating(file).value(), 0);
    for (const auto &row : rows) {
        storeBytes(file, Karvex::starRatingKey, xml(row.inside));
        const auto rating = Karvex::getRating(file);
        ASSERT_EQ(rating.hasValue(), row.rating.has_value()) << row.inside.toStdString();
        EXPECT_EQ(rating.valueOr(-2), row.rating.value_or(-2));
        if (!rating)
            expectError(rating.error(), Kind::Malformed, XPError::karvexDomain, -2, file);
    }
}

TEST(Karvex, RatingsAreClippedTimedAndRemoved)
{
    const TestFolder folder;
    const QString file = folder.file(QStringLiteral("a"));
    ASSERT_EQ(Karvex::setRating(7, file), std::nullopt);
    EXPECT_EQ(Karvex::getRating(file).value(), 5);
    const auto time = storedBytes(file, Karvex::ratingTimeKey);
    EXPECT_NE(time, std::nullopt);
    expectError(Karvex::setRating(std::nan(""), file), Kind::InvalidArgument, XPError::karvexDomain,
                -1, file);
    EXPECT_EQ(Karvex::getRating(file).value(), 5);
    for (const double none : {0.0, -std::numeric_limits<double>::infinity()}) {
        ASSERT_EQ(Karvex::setRating(none, file), std::nullopt);
        EXPECT_EQ(storedBytes(file, Karvex::starRatingKey), std::nullopt);
    }
    EXPECT_EQ(storedBytes(file, Karvex::ratingTimeKey), time);
}

TEST(Karvex, AValueOverTheLimitIsRefusedWhole)
{
    const TestFolder folder;
    const QString file = folder.file(QStringLiteral("a"));
    const QStringList old = {QStringLiteral("old")};
    ASSERT_EQ(Karvex::setUserTags(old, file, {1}), std::nullopt);
    // A string of n > 255 ASCII characters in an array takes 48 + n bytes: see arrayOfA.
    const auto tag = [](int bytes) { return QStringList{QString(bytes - 50, u't')}; };
    ASSERT_EQ(XPPropertyList::writeBinary(tag(4096))->size(), 4096);
    expectError(Karvex::setUserTags(tag(4097), file), Kind::TooLarge, XPError::karvexDomain, -5,
                file);
    const auto atLimit = Karvex::setUserTags(tag(4096), file); // some file systems have no room
    EXPECT_EQ(tagsOf(file), atLimit ? old : tag(4096));
    if (atLimit) {
        EXPECT_EQ(atLimit->kind, Kind::NoSpace);
        EXPECT_EQ(Karvex::getXAttrMetaData(Karvex::userTagTimeKey, file).value(),
                  PropertyValue(PropertyValue::Date{1}));
    }
}

TEST(Karvex, ALongValueOfOthersIsAnErrorNeverNone)
{
    const auto volume = TestVolume::tmpfs("1m");
    const QString file = volume ? volume->path(QStringLiteral("a")) : QString();
    const QByteArray value = xml("<array/>").leftJustified(4097, ' ');
    if (volume)
        ::close(::creat(XPPath::encode(file).constData(), S_IRUSR | S_IWUSR));
    if (XPExtendedAttributes::write(file, Karvex::spotlightKey(Karvex::userTagsKey), value))
        GTEST_SKIP() << "no file system here takes an attribute of 4097 bytes";
    for (const auto &error : {std::optional(Karvex::getUserTags(file).error()),
                              Karvex::addUserTags({QStringLiteral("a")}, file)})
        expectError(error, Kind::TooLarge, XPError::posixDomain, ERANGE, file);
    EXPECT_EQ(storedBytes(file, Karvex::userTagsKey), value);
    storeBytes(file, Karvex::userTagsKey, value.first(4096));
    EXPECT_EQ(tagsOf(file), QStringList());
}

TEST(Karvex, WrongParametersHaveTheirErrors)
{
    const TestFolder folder;
    const QString file = folder.file(QStringLiteral("a"));
    const QString key = Karvex::bookmarksKey;
    const PropertyValue number = PropertyValue::integer(1);
    const PropertyValue mixed = PropertyValue::Array{QStringLiteral("a"), number};
    const QString loneSurrogate(QChar(char16_t{0xd800}));
    const struct
    {
        std::optional<XPError> error;
        qint64 code;
        QString message;
        QString path;
    } rows[] = {
        {Karvex::setXAttrMetaData(number, key, {}), -1, u"Kar Vex parameter error"_qs, {}},
        {Karvex::getXAttrMetaData(key, {}).error(), -1, u"Kar Vex parameter error"_qs, {}},
        {Karvex::setXAttr(number, {}, file), -1, u"Kar Vex parameter error"_qs, file},
        {Karvex::setNSArrayMetaData(number, key, file), -1, u"Kar Vex parameter error"_qs, file},
        {Karvex::addToNSArrayMetaData(mixed, key, file), -1, u"Kar Vex parameter error"_qs, file},
        {Karvex::setXAttrMetaData(number, key, loneSurrogate), -1, u"Kar Vex parameter error"_qs,
         loneSurrogate},
        {Karvex::setUserTags(mixed, file), -1, u"Kar Vex SYNC parameter error"_qs, file},
        {Karvex::setUserTags(PropertyValue(), file), -1, u"Kar Vex SYNC parameter error"_qs, file},
    };
    for (const auto &row : rows) {
        expectError(row.error, Kind::InvalidArgument, XPError::karvexDomain, row.code, row.path);
        EXPECT_EQ(row.error->message, row.message);
    }
    const auto error = Karvex::setString(loneSurrogate, key, file);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code, -2);
    EXPECT_EQ(XPExtendedAttributes::list(file).value(), QStringList());
    EXPECT_EQ(Karvex::errnoString(ENOENT),
              QStringLiteral("errno error: 2, No such file or directory"));
}

TEST(Karvex, ArraysAreAddedToByExactElements)
{
    const TestFolder folder;
    const QString file = folder.file(QStringLiteral("a"));
    const QString key = Karvex::bookmarksKey;
    const auto array = [](std::initializer_list<QString> list) { return QStringList(list); };
    ASSERT_EQ(Karvex::addToNSArrayMetaData(array({u"a"_qs, u"A"_qs, u"a"_qs}), key, file),
              std::nullopt);
    EXPECT_EQ(Karvex::getNSArrayMetaData(key, file).value(), array({u"a"_qs, u"A"_qs}));
    ASSERT_EQ(Karvex::setString(u"no array"_qs, key, file), std::nullopt);
    EXPECT_TRUE(Karvex::getNSArrayMetaData(key, file)->isNull());
    expectError(Karvex::addToNSArrayMetaData(array({u"b"_qs}), key, file), Kind::Malformed,
                XPError::karvexDomain, -2, file);
    EXPECT_EQ(Karvex::getString(key, file).value(), PropertyValue(u"no array"_qs));
    ASSERT_EQ(Karvex::setString({}, key, file), std::nullopt);
    EXPECT_TRUE(Karvex::getString(key, file)->isNull());
}

TEST(Karvex, AnyFileNameAFolderButNoLinkAndNoVanishedFile)
{
    const TestFolder folder;
    QStringList paths = {folder.path()};
    for (const QString &name : {XPPath::decode("\xff latin \xe9"), QStringLiteral("two\nlines"),
                                QStringLiteral("Caf\u00e9"), QStringLiteral("Cafe\u0301")})
        paths.append(folder.file(name));
    for (qsizetype i = 0; i < paths.size(); ++i)
        ASSERT_EQ(Karvex::addUserTags({QString::number(i)}, paths[i]), std::nullopt);
    for (qsizetype i = 0; i < paths.size(); ++i)
        EXPECT_EQ(tagsOf(paths[i]), QStringList{QString::number(i)});

    const QString link = folder.path(QStringLiteral("link"));
    ASSERT_EQ(::symlink("two\nlines", XPPath::encode(link).constData()), 0);
    EXPECT_EQ(tagsOf(link), QStringList());
    expectError(Karvex::addUserTags({QStringLiteral("x")}, link), Kind::NotPermitted,
                XPError::posixDomain, EPERM, link);
    EXPECT_EQ(tagsOf(paths[2]), QStringList{QStringLiteral("2")});

    const QString gone = folder.path(QStringLiteral("gone"));
    for (const auto &error :
         {Karvex::addUserTags({QStringLiteral("x")}, gone), Karvex::setRating(3, gone),
          std::optional(Karvex::getUserTags(gone).error())})
        expectError(error, Kind::NotFound, XPError::posixDomain, ENOENT, gone);
}
