#include "IndexTextStore.h"
#include "IndexTextPattern.h"
#include "IndexWords.h"
#include "MDQueryParser.h"
#include "TestHome.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <thread>

using Items = std::vector<IndexItem>;

static MDPredicate::Value valueOf(const char *quoted)
{
    const auto predicate =
        MDQueryParser::parse(QString::fromUtf8("kMDItemTextContent == " + QByteArray(quoted)));
    EXPECT_TRUE(predicate) << quoted;
    return predicate ? (*predicate)->value : MDPredicate::Value();
}

static Items found(const IndexText &store, const char *quoted, qsizetype limit = 0,
                   const Items *among = nullptr)
{
    Items items = store.itemsMatching(valueOf(quoted), limit, among);
    std::sort(items.begin(), items.end());
    return items;
}

static std::unique_ptr<IndexTextStore> storeAt(const QString &path, bool writable = true)
{
    auto store = IndexTextStore::open(path, writable);
    EXPECT_TRUE(store) << (store ? "" : store.error().message.toStdString());
    return store ? *std::move(store) : nullptr;
}

static IndexTextStore::Text text(IndexItem item, const char *utf8, qint64 modified = 1)
{
    return {item, utf8, modified, static_cast<qint64>(std::strlen(utf8))};
}

TEST(IndexWords, SplitsAndFolds)
{
    const std::string letters(70, 'x');
    const struct
    {
        const char *text;
        std::vector<const char *> words;
    } rows[] = {
        {"", {}},
        {" .-/ ", {}},
        {"One two,three", {"one", "two", "three"}},
        {"STRASSE Straße", {"strasse", "strasse"}},
        {"„Übergrößen“—naïve…", {"ubergrossen", "naive"}},
        {"e\xCC\x81t\xC3\xA9", {"ete"}},
        {"Ἀθῆναι ΣΊΣΥΦΟΣ", {"αθηναι", "σισυφοσ"}},
        {"日本abc語", {"日", "本", "abc", "語"}},
        {"a_b 3.14 x2", {"a", "b", "3", "14", "x2"}},
        {"\xF0\x9D\x94\x98x \xF0\x9F\x98\x80y", {"𝔘x", "y"}},
        {"a\xFFz \xC3", {"a", "z"}},
        {letters.c_str(), {letters.c_str() + 6}},
    };
    for (const auto &row : rows) {
        std::vector<QByteArray> words;
        IndexWords::forEach(row.text, static_cast<int>(std::strlen(row.text)), &words,
                            [](void *to, const char *word, int size, int, int) {
                                static_cast<std::vector<QByteArray> *>(to)->emplace_back(word,
                                                                                         size);
                                return 0;
                            });
        EXPECT_EQ(words, std::vector<QByteArray>(row.words.begin(), row.words.end())) << row.text;
    }
}

// What the word index finds is what the pattern says of the text itself.
TEST(IndexTextStore, FindsWhatThePatternMatches)
{
    const char *texts[] = {
        "invoice 2019 for Müller",
        "an INVOICE, unpaid",
        "invoices and re-invoicing",
        "Grüße aus der Straße",
        "grusse aus der strasse",
        "日本語の文書",
        "日本abc語",
        "foo bar baz",
        "bar foo",
        "foobar",
        "o'clock at 10:30",
        "file_name.txt",
        "résumé",
        "Ω ohm",
        "word",
        "a",
        "C++ code",
        "один Два",
        "don't stop",
        "",
    };
    const char *patterns[] = {
        "\"invoice\"",     "\"invoice*\"", "\"inv*\"",    "\"in*\"",      "\"i*\"",
        "\"MÜLLER\"",      "\"muller*\"",  "\"grusse*\"", "\"grüße\"",    "\"strasse\"",
        "\"日本\"",        "\"本語*\"",    "\"語日\"",    "\"foo bar*\"", "\"foo ba*\"",
        "\"foo bar\"",     "\"bar foo\"",  "\"*bar\"",    "\"f*r\"",      "\"f?obar\"",
        "\"fo?\"",         "\"*nvoic*\"",  "\"o'clock\"", "\"10:30\"",    "\"name.txt*\"",
        "\"resume\"",      "\"ω*\"",       "\"wor?*\"",   "\"word?\"",    "\"a\"",
        "\"a*\"",          "\"ОДИН два\"", "\"два*\"",    "\"don't*\"",   "\"unpaid\"",
        "\"in?oice *19\"", "\"\"",         "\"...\"",     "\"2?19 for\"", "\"abc\"",
        "\"本ab*\"",       "\"bc\"",       "\"語\"",
    };
    const TestFolder folder;
    const auto store = storeAt(folder.path(QStringLiteral("text")));
    IndexItem item = 0;
    for (const char *one : texts) {
        if (const auto error = store->put({text(++item, one)}))
            FAIL() << error->message.toStdString();
    }
    for (const char *pattern : patterns) {
        const MDPredicate::Value value = valueOf((std::string(pattern) + "cdw").c_str());
        Items expected;
        for (item = 0; item < std::size(texts); ++item) {
            if (IndexTextPattern(value).matches(QString::fromUtf8(texts[item])))
                expected.push_back(item + 1);
        }
        Items items = store->itemsMatching(value, 0, nullptr);
        std::sort(items.begin(), items.end());
        EXPECT_EQ(items, expected) << pattern;
    }
    // What differs by intent: blanks and punctuation between words do not count, nor do modifiers.
    EXPECT_EQ(found(*store, "\"foo, bar\""), Items{8});
    EXPECT_EQ(found(*store, "\"c++*\"cdw"), Items{17});
    EXPECT_EQ(found(*store, "invoice"), (Items{1, 2}));
    EXPECT_EQ(found(*store, "2019"), Items{1});
    EXPECT_EQ(found(*store, "*").size(), std::size(texts) - 1);
    EXPECT_EQ(found(*store, "\"*\"").size(), std::size(texts) - 1);
}

TEST(IndexTextStore, NeverFindsAReplacedText)
{
    const TestFolder folder;
    const QString path = folder.path(QStringLiteral("text"));
    auto store = storeAt(path);
    const auto follower = storeAt(folder.path(QStringLiteral("text")), false);
    EXPECT_EQ(found(*follower, "alpha"), Items{});
    ASSERT_FALSE(store->put({text(1, "alpha one", 5), text(2, "alpha two", 6)}));
    ASSERT_FALSE(store->put({text(1, "beta one", 7)}));
    for (const bool again : {false, true}) {
        EXPECT_EQ(found(*store, "alpha"), Items{2});
        EXPECT_EQ(found(*store, "one"), Items{1});
        EXPECT_EQ(found(*store, "\"b*\""), Items{1});
        EXPECT_EQ(found(*follower, "alpha"), Items{2});
        EXPECT_EQ(found(*follower, "*"), (Items{1, 2}));
        EXPECT_TRUE(store->isStored(1, 7, 8));
        EXPECT_FALSE(store->isStored(1, 5, 9));
        EXPECT_FALSE(store->isStored(3, 5, 9));
        if (!again) {
            store.reset();
            store = storeAt(path);
        }
    }
    ASSERT_FALSE(store->put({{2, {}, 9, 0}}));
    EXPECT_EQ(found(*follower, "alpha"), Items{});
    EXPECT_EQ(found(*store, "two"), Items{});
    EXPECT_EQ(found(*store, "*"), Items{1});
    EXPECT_TRUE(store->isStored(2, 9, 0));
    EXPECT_FALSE(store->hasText(2));
}

TEST(IndexTextStore, LimitsAndAsksAmongAFew)
{
    const TestFolder folder;
    const auto store = storeAt(folder.path(QStringLiteral("text")));
    std::vector<IndexTextStore::Text> texts;
    for (IndexItem item = 1; item <= 3000; ++item)
        texts.push_back(text(item, item % 3 ? "common" : "common third"));
    ASSERT_FALSE(store->put(texts));
    texts.resize(1500);
    ASSERT_FALSE(store->put(texts)); // the first documents found are stale
    EXPECT_EQ(found(*store, "common", 1000).size(), 1000U);
    EXPECT_EQ(found(*store, "common").size(), 3000U);
    EXPECT_EQ(found(*store, "\"th*\"", 10).size(), 10U);
    Items many(300);
    for (size_t i = 0; i < many.size(); ++i)
        many[i] = static_cast<IndexItem>(i * 7 + 1);
    for (const Items &among : {Items{}, Items{9999}, Items{3, 4, 2997}, many}) {
        Items thirds;
        std::copy_if(among.begin(), among.end(), std::back_inserter(thirds),
                     [](IndexItem item) { return item % 3 == 0 && item <= 3000; });
        for (const char *query : {"third", "\"thir*\"", "\"thi*\"", "\"t?ird\"", "\"*d common\""}) {
            const bool none = query[1] == '*';
            EXPECT_EQ(found(*store, query, 0, &among), none ? Items{} : thirds) << query;
        }
    }
}

TEST(IndexTextStore, RenewsItsTables)
{
    const TestFolder folder;
    const QString path = folder.path(QStringLiteral("text"));
    auto store = storeAt(path);
    const auto follower = storeAt(path, false);
    ASSERT_FALSE(store->put({text(1, "kept"), text(2, "gone"), text(3, "kept too")}));
    ASSERT_FALSE(store->put({{2, {}, 2, 0}}));
    EXPECT_FALSE(store->isMostlyStale());
    const QByteArray large = "waste" + QByteArray(3 << 20, ' ');
    for (int i = 0; i < 8; ++i)
        ASSERT_FALSE(store->put({{4, large, i, large.size()}}));
    EXPECT_TRUE(store->isMostlyStale());
    const auto items = store->beginRenewal();
    ASSERT_TRUE(items);
    EXPECT_EQ(*items, (Items{1, 3, 4}));
    EXPECT_FALSE(store->isStored(1, 1, 4));
    EXPECT_TRUE(store->isRenewing());
    ASSERT_FALSE(store->put({text(1, "kept"), text(5, "kept new")}));
    // Both tables answer, each item once; a restart goes on where it was.
    EXPECT_EQ(found(*store, "\"ke*\""), (Items{1, 3, 5}));
    store.reset();
    store = storeAt(path);
    EXPECT_TRUE(store->isRenewing());
    EXPECT_TRUE(store->isStored(1, 1, 4));
    EXPECT_FALSE(store->isStored(3, 1, 8));
    EXPECT_EQ(found(*follower, "kept"), (Items{1, 3, 5}));
    ASSERT_FALSE(store->put({text(3, "kept too")}));
    ASSERT_FALSE(store->endRenewal());
    EXPECT_FALSE(store->isRenewing());
    for (int pass = 0; pass < 2; ++pass) {
        EXPECT_EQ(found(*store, "kept"), (Items{1, 3, 5}));
        EXPECT_EQ(found(*store, "waste"), Items{}); // it was not imported anew
        EXPECT_EQ(found(*follower, "kept"), (Items{1, 3, 5}));
        EXPECT_EQ(found(*follower, "waste"), Items{});
        store.reset();
        store = storeAt(path);
    }
    ASSERT_FALSE(store->put({text(6, "kept last")}));
    EXPECT_EQ(found(*follower, "kept"), (Items{1, 3, 5, 6}));
}

TEST(IndexTextStore, BeginsAnewWhereTheFileIsDamaged)
{
    const TestFolder folder;
    const QString path = folder.path(QStringLiteral("text"));
    std::ofstream(path.toStdString()) << std::string(100'000, 'x');
    const auto refused = IndexTextStore::open(path, true);
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.error().kind, XPError::Kind::Malformed);
    std::filesystem::remove(path.toStdString());
    const auto store = storeAt(path);
    const auto follower = storeAt(path, false);
    ASSERT_FALSE(store->put({text(1, "one")}));
    EXPECT_EQ(found(*follower, "one"), Items{1});
    ASSERT_FALSE(store->startOver());
    EXPECT_EQ(found(*store, "one"), Items{});
    EXPECT_EQ(found(*follower, "one"), Items{});
    ASSERT_FALSE(store->put({text(2, "two")}));
    EXPECT_EQ(found(*store, "*"), Items{2});
    EXPECT_EQ(found(*follower, "two"), Items{2});
}

TEST(IndexTextStore, AnswersWhileTextsAreReplaced)
{
    const TestFolder folder;
    const QString path = folder.path(QStringLiteral("text"));
    const auto store = storeAt(path);
    const auto follower = storeAt(path, false);
    const IndexItem count = 40;
    const auto all = [&](int round) {
        std::vector<IndexTextStore::Text> texts;
        for (IndexItem item = 1; item <= count; ++item)
            texts.push_back(text(item, round % 2 ? "steady odd" : "steady even"));
        return texts;
    };
    ASSERT_FALSE(store->put(all(0)));
    std::atomic<bool> stop = false;
    const auto ask = [&](const IndexTextStore &asked) {
        while (!stop)
            ASSERT_EQ(found(asked, "steady").size(), size_t{count});
    };
    std::thread first([&] { ask(*store); });
    std::thread second([&] { ask(*follower); });
    for (int round = 1; round < 60; ++round) {
        if (round % 20 == 10) {
            ASSERT_TRUE(store->beginRenewal());
        }
        ASSERT_FALSE(store->put(all(round)));
        if (round % 20 == 15) {
            ASSERT_FALSE(store->endRenewal());
        }
    }
    stop = true;
    first.join();
    second.join();
    EXPECT_EQ(found(*store, "odd").size(), size_t{count});
}

// A connection that is being opened meanwhile must not take the new file's log for that of the old
// file: SQLite cuts it short below the writer then, which ends the process.
TEST(IndexTextStore, BeginsAnewWhileConnectionsAreOpened)
{
    const TestFolder folder;
    const QString path = folder.path() + QStringLiteral("/text");
    const auto store = storeAt(path);
    std::jthread asking([&path](const std::stop_token &stop) {
        while (!stop.stop_requested()) {
            const auto reader = IndexTextReader::open(path);
            if (reader && (*reader)->begin())
                (*reader)->end();
        }
    });
    for (IndexItem item = 1; item <= 100; ++item) {
        ASSERT_FALSE(store->startOver());
        ASSERT_FALSE(store->put({text(item, "one")}));
        ASSERT_EQ(found(*store, "one"), Items{item});
    }
    asking.request_stop();
    asking.join();
    EXPECT_EQ(found(*storeAt(path), "one"), Items{100}); // all of it is in the files
}
