#include "IndexCatalog.h"
#include "IndexEvaluator.h"
#include "IndexSetup.h"
#include "IndexVerifier.h"
#include "MDQueryParser.h"
#include "MetadataIndex.h"
#include "TestHome.h"
#include "XPExtendedAttributes.h"
#include "XPPath.h"
#include "XPPropertyList.h"

#include <QDir>
#include <QDirIterator>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <random>

namespace fs = std::filesystem;

// What the index holds, as path, size and change time, against what a walk of the disk finds.
using Facts = std::map<std::string, std::pair<qint64, qint64>>;

static Facts onDisk(const QString &root)
{
    Facts facts;
    const auto add = [&](const fs::path &path) {
        const auto info = XPFileInfo::readAt(AT_FDCWD, path.c_str());
        if (info)
            facts[path.string()] = {info->isDirectory() ? qint64{0} : info->size, info->changed};
    };
    const fs::path start(XPPath::encode(root).toStdString());
    for (const auto &entry : fs::recursive_directory_iterator(start))
        add(entry.path());
    return facts;
}

static Facts inIndex(const IndexCatalog &catalog)
{
    const IndexCatalog::Reading reading(catalog);
    Facts facts;
    for (const quint32 slot : catalog.alive().rows()) {
        const IndexRecord record = catalog.record(slot);
        if (record.parent == 0)
            continue;
        facts[catalog.path(slot).toStdString()] = {
            record.info.isDirectory() ? qint64{0} : record.info.size, record.info.changed};
    }
    return facts;
}

static std::string differences(const Facts &disk, const Facts &index)
{
    std::string text;
    for (const auto &[path, facts] : disk) {
        const auto found = index.find(path);
        if (found == index.end())
            text += "missing " + path + "\n";
        else if (found->second != facts)
            text += "stale " + path + "\n";
    }
    for (const auto &[path, facts] : index) {
        if (!disk.count(path))
            text += "too much " + path + "\n";
    }
    return text;
}

static std::unique_ptr<MetadataIndex> indexOf(const TestFolder &store, const QString &root)
{
    IndexSetup setup;
    setup.path = store.path(QStringLiteral("index.sqlite"));
    setup.roots = {root};
    return MetadataIndex::open(setup);
}

static QStringList matching(MetadataIndex &index, const QString &text)
{
    const auto predicate = MDQueryParser::parse(text);
    EXPECT_TRUE(predicate) << text.toStdString();
    const IndexCatalog &catalog = index.source().catalog();
    const IndexCatalog::Reading reading(catalog);
    QStringList names;
    const RowSet rows = IndexEvaluator(catalog).rows(*predicate);
    for (const quint32 slot : *rows)
        names.append(XPPath::fileName(XPPath::decode(catalog.path(slot))));
    names.sort();
    return names;
}

TEST(IndexKeeper, FollowsRandomChangesOfATree)
{
    const TestFolder store;
    const TestFolder tree;
    std::mt19937 random(11);
    std::vector<fs::path> folders{XPPath::encode(tree.path()).toStdString()};
    const auto pick = [&] { return folders[random() % folders.size()]; };
    const auto fresh = [&] { return "n" + std::to_string(random() % 60); };
    const auto step = [&] {
        std::error_code ignored;
        switch (random() % 6) {
        case 0: {
            const fs::path folder = pick() / ("d" + std::to_string(random() % 30));
            if (fs::create_directory(folder, ignored))
                folders.push_back(folder);
            break;
        }
        case 1:
        case 2: {
            std::FILE *file = std::fopen((pick() / fresh()).c_str(), "we");
            if (file) {
                std::fprintf(file, "%u", static_cast<unsigned>(random()));
                std::fclose(file);
            }
            break;
        }
        case 3:
            fs::remove(pick() / fresh(), ignored);
            break;
        case 4:
            fs::rename(pick() / fresh(), pick() / fresh(), ignored);
            break;
        case 5: {
            if (folders.size() < 3 || random() % 3)
                break;
            const size_t which = 1 + random() % (folders.size() - 1);
            const fs::path from = folders[which];
            const fs::path to = pick() / ("m" + std::to_string(random() % 30));
            if (random() % 3 == 0)
                fs::remove_all(from, ignored);
            else
                fs::rename(from, to, ignored);
            folders.assign(1, folders.front());
            for (const auto &entry : fs::recursive_directory_iterator(folders.front())) {
                if (entry.is_directory())
                    folders.push_back(entry.path());
            }
            break;
        }
        }
    };
    for (int i = 0; i < 300; ++i)
        step();
    auto index = indexOf(store, tree.path());
    for (int round = 0; round < 12; ++round) {
        for (int i = 0; i < 150; ++i)
            step();
        ASSERT_FALSE(index->sync(true));
        ASSERT_EQ(differences(onDisk(tree.path()), inIndex(index->source().catalog())), "")
            << round;
    }
    for (const auto &difference : IndexVerifier(index->source().catalog(), IndexRules()).run())
        ADD_FAILURE() << static_cast<int>(difference.kind) << difference.path.toStdString();
    // Changes while nobody watches are found at the next start.
    const Facts before = inIndex(index->source().catalog());
    index.reset();
    for (int i = 0; i < 300; ++i)
        step();
    index = indexOf(store, tree.path());
    ASSERT_FALSE(index->sync(true));
    EXPECT_EQ(differences(onDisk(tree.path()), inIndex(index->source().catalog())), "");
}

TEST(IndexKeeper, FindsByNameTypeTagAndNumber)
{
    const TestFolder store;
    const TestFolder tree;
    const auto tag = [](const QString &path, const QStringList &tags, double rating) {
        const auto bytes = XPPropertyList::writeBinary(PropertyValue(tags));
        ASSERT_FALSE(XPExtendedAttributes::write(
            path, QStringLiteral("com.apple.metadata:kMDItemKXUserTags"), *bytes));
        const auto number = XPPropertyList::writeBinary(PropertyValue::real(rating));
        ASSERT_FALSE(XPExtendedAttributes::write(
            path, QStringLiteral("com.apple.metadata:kMDItemStarRating"), *number));
    };
    tag(tree.file(QStringLiteral("Rechnung Straße.pdf")), {QStringLiteral("Work")}, 4);
    tag(tree.file(QStringLiteral("sub/Café.txt")), {QStringLiteral("work"), QStringLiteral("x")},
        2);
    (void)tree.file(QStringLiteral("sub/plain.txt"));
    const auto index = indexOf(store, tree.path());
    ASSERT_FALSE(index->sync(true));
    const struct
    {
        const char *query = "";
        QStringList names;
    } rows[] = {
        {"kMDItemDisplayName == \"*STRASSE*\"cd", {QStringLiteral("Rechnung Straße.pdf")}},
        {"kMDItemDisplayName == \"*strasse*\"", {}},
        {"kMDItemDisplayName == \"caf*\"cd", {QStringLiteral("Café.txt")}},
        {"kMDItemFSName == \"*.txt\"c", {QStringLiteral("Café.txt"), QStringLiteral("plain.txt")}},
        {"kMDItemKXUserTags == \"work\"cd",
         {QStringLiteral("Café.txt"), QStringLiteral("Rechnung Straße.pdf")}},
        {"kMDItemKXUserTags == \"work\"", {QStringLiteral("Café.txt")}},
        {"kMDItemStarRating >=3", {QStringLiteral("Rechnung Straße.pdf")}},
        {"kMDItemKXUserTags != * && kMDItemFSName == \"*.txt\"", {QStringLiteral("plain.txt")}},
        {"(kMDItemContentType == com.adobe.pdf)", {QStringLiteral("Rechnung Straße.pdf")}},
        {"* == \"caf\"cdw", {}},
        {"* == \"caf*\"cdw", {QStringLiteral("Café.txt")}},
        {"kMDItemContentModificationDate > $time.today(-1) && kMDItemFSName == \"*.pdf\"",
         {QStringLiteral("Rechnung Straße.pdf")}},
    };
    for (const auto &row : rows)
        EXPECT_EQ(matching(*index, QString::fromUtf8(row.query)), row.names) << row.query;
}
