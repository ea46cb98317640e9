#include "ImportMessages.h"

#include "XPPropertyList.h"

#include <cstring>
#include <gtest/gtest.h>

using Dictionary = PropertyValue::Dictionary;
using Kind = ImportFrame::Kind;

// The frames in `bytes`, given to a reader in pieces; nothing after an error.
static std::vector<ImportFrame> framesIn(QByteArrayView bytes, qsizetype piece, bool &failed)
{
    std::vector<ImportFrame> frames;
    ImportFrameReader reader;
    failed = false;
    while (!bytes.isEmpty() && !failed) {
        const auto space = reader.space();
        const qsizetype count = std::min({piece, space.size, bytes.size()});
        std::memcpy(space.at, bytes.data(), static_cast<size_t>(count));
        bytes = bytes.sliced(count);
        failed = reader.filled(count).has_value();
        while (auto frame = failed ? std::nullopt : reader.take())
            frames.push_back(std::move(*frame));
    }
    return frames;
}

static QByteArray wire(const ImportFrame &frame)
{
    return frame.bytesBeforeBody() + frame.body;
}

static DocumentAnswer fullAnswer()
{
    DocumentAnswer answer;
    answer.title = QStringLiteral("The title");
    answer.text.append(QByteArrayView("some text \xC3\xBC"));
    answer.pages = 3;
    answer.failure = DocumentFailure::Encrypted;
    answer.attributes = {
        {QStringLiteral("kMDItemAuthors"), QStringList{QStringLiteral("A"), QStringLiteral("B")}},
        {QStringLiteral("kMDItemPixelWidth"), PropertyValue::integer(5)},
        {QStringLiteral("kMDItemContentCreationDate"), PropertyValue::Date{1.5}},
        {QStringLiteral("kMDItemKXXMPKeywords"), QStringList{QStringLiteral("sea")}}};
    return answer;
}

TEST(ImportMessages, ComeOutAsTheyWent)
{
    const ImportHello hello = {7, true, {QStringLiteral("public.text")}};
    const ImportJob job = {5,
                           QStringLiteral("a"),
                           {QStringLiteral("a"), QStringLiteral("b")},
                           QStringLiteral("text/plain"),
                           QStringLiteral("txt"),
                           2,
                           256,
                           4000};
    const ImportPicture picture = {2, 1, "abcdefgh", {}};
    const ImportPicture none = {0, 0, {}, DocumentFailure::Damaged};
    QByteArray bytes = wire(hello.frame()) + wire(job.frame()) + wire(picture.frame()) +
                       wire(importFrameOf(fullAnswer())) + wire(none.frame());
    for (const qsizetype piece : {qsizetype{1}, qsizetype{7}, bytes.size()}) {
        bool failed = true;
        const auto frames = framesIn(bytes, piece, failed);
        ASSERT_FALSE(failed);
        ASSERT_EQ(frames.size(), 5);
        EXPECT_EQ(ImportHello::from(frames[0]).valueOr({}), hello);
        EXPECT_EQ(ImportJob::from(frames[1]).valueOr({}), job);
        EXPECT_EQ(ImportPicture::from(frames[2]).valueOr({}), picture);
        EXPECT_EQ(documentAnswerFrom(frames[3]).valueOr({}), fullAnswer());
        EXPECT_EQ(ImportPicture::from(frames[4]).valueOr({}), none);
    }
}

TEST(ImportFrame, RefusesLies)
{
    const auto prefix = [](quint32 kind, quint32 head, quint32 body) {
        const quint32 numbers[] = {kind, head, body};
        return QByteArray(reinterpret_cast<const char *>(numbers), sizeof numbers);
    };
    const auto answer = static_cast<quint32>(Kind::Answer);
    const struct
    {
        const char *name;
        QByteArray bytes;
    } rows[] = {
        {"no kind", prefix(0, 1, 1)},
        {"another kind", prefix(answer + 1, 1, 1)},
        {"a long head", prefix(answer, ImportFrame::maximumHead + 1, 0)},
        {"a long text", prefix(answer, 1, ImportFrame::maximumText + 1)},
        {"the longest of all", prefix(answer, ~0U, ~0U)},
        {"a greeting with a body", prefix(static_cast<quint32>(Kind::Hello), 1, 1)},
    };
    for (const auto &row : rows) {
        bool failed = false;
        framesIn(row.bytes + QByteArray(100, 'x'), 1000, failed);
        EXPECT_TRUE(failed) << row.name;
    }
}

static ImportFrame answerWith(const Dictionary &head, const QByteArray &text = {})
{
    return {Kind::Answer, XPPropertyList::writeBinary(head).valueOr({}), text};
}

TEST(ImportMessages, RefuseMalformedAnswers)
{
    const QString failure = QStringLiteral("failure");
    const QString title = QStringLiteral("title");
    const struct
    {
        const char *name = nullptr;
        ImportFrame frame;
    } rows[] = {
        {"another kind", ImportHello().frame()},
        {"no property list", {Kind::Answer, "rubbish", {}}},
        {"no dictionary", {Kind::Answer, XPPropertyList::writeBinary(title).valueOr({}), {}}},
        {"an unknown failure", answerWith({{failure, PropertyValue::integer(99)}})},
        {"a negative failure", answerWith({{failure, PropertyValue::integer(-1)}})},
        {"a long title", answerWith({{title, QString(5000, u'x')}})},
        {"no UTF-8", answerWith({}, "\xFF")},
        {"a zero byte", answerWith({}, QByteArray("a\0b", 3))},
    };
    for (const auto &row : rows)
        EXPECT_FALSE(documentAnswerFrom(row.frame)) << row.name;

    const auto picture = [](int width, int height, qsizetype bytes, bool failed) {
        return ImportPicture::from(
            ImportPicture{width, height, QByteArray(bytes, 'x'),
                          failed ? std::optional(DocumentFailure::Damaged) : std::nullopt}
                .frame());
    };
    EXPECT_TRUE(picture(2, 2, 16, false));
    EXPECT_FALSE(picture(2, 2, 15, false));
    EXPECT_FALSE(picture(2, 3, 16, false));
    EXPECT_FALSE(picture(0, 9, 0, false));
    EXPECT_FALSE(picture(1, 1, 4, true));
    EXPECT_FALSE(picture(1 << 30, 1 << 30, 16, false));
}

// A document says things about itself, not about what the user put on it or the disk knows.
TEST(ImportMessages, LetOnlyPlainAttributesThrough)
{
    const PropertyValue text = QStringLiteral("x");
    const Dictionary attributes = {
        {QStringLiteral("kMDItemKeywords"), QStringList{QStringLiteral("k")}},
        {QStringLiteral("kMDItemComment"), text},
        {QStringLiteral("kMDItemKXUserTags"), QStringList{QStringLiteral("t")}},
        {QStringLiteral("kMDItemStarRating"), PropertyValue::integer(5)},
        {QStringLiteral("kMDItemFSSize"), PropertyValue::integer(5)},
        {QStringLiteral("kMDItemContentTypeTree"), text},
        {QStringLiteral("kMDItemPath"), text},
        {QStringLiteral("kMDItem\u00FC"), text},
        {QStringLiteral("other"), text},
        {QStringLiteral("kMDItemData"), QByteArray("bytes")},
        {QStringLiteral("kMDItemNested"), PropertyValue::Array{PropertyValue::Array{text}}},
        {QStringLiteral("kMDItemLong"), QString(100'000, u'x')},
    };
    const auto answer =
        documentAnswerFrom(answerWith({{QStringLiteral("attributes"), attributes}}));
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->attributes.keys(),
              (QStringList{QStringLiteral("kMDItemComment"), QStringLiteral("kMDItemKeywords")}));

    // What a reader gives in good faith arrives, cut to what can be stored.
    DocumentAnswer wild;
    wild.title = QString(1999, u'x') + QStringLiteral("\U0001F600");
    wild.attributes = {{QStringLiteral("kMDItemComment"), QString(100'000, u'x')},
                       {QStringLiteral("kMDItemSubject"), QString(QChar(0xD800))}};
    const auto tamed = documentAnswerFrom(importFrameOf(wild));
    ASSERT_TRUE(tamed);
    EXPECT_EQ(tamed->title, QString(1999, u'x') + u'?');
    EXPECT_EQ(tamed->attributes[QStringLiteral("kMDItemComment")].string().size(), 64 << 10);
    EXPECT_EQ(tamed->attributes[QStringLiteral("kMDItemSubject")].string(), u"?");
}
