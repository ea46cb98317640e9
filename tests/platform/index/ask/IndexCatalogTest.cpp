#include "IndexEvaluator.h"
#include "IndexOrder.h"
#include "IndexRowAttributes.h"
#include "IndexStore.h"
#include "MDItem.h"
#include "MDQueryParser.h"
#include "TestHome.h"
#include "XPPath.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <sys/stat.h>

// A catalog against a plain list of records that the same changes were made to.
namespace {

class Dice
{
public:
    explicit Dice(quint32 seed) : m_engine(seed) {}
    quint32 operator()() { return static_cast<quint32>(m_engine()); }

private:
    std::mt19937 m_engine;
};

class Model
{
public:
    explicit Model(quint32 seed) : m_random(seed) {}

    IndexBatch step()
    {
        IndexBatch batch;
        for (int i = 0; i < 40; ++i) {
            IndexChange change;
            const unsigned what = m_items.size() < 5 ? 0 : m_random() % 10;
            if (what < 5)
                change = put(what < 4 || m_items.empty() ? 0 : pick());
            else if (what < 7)
                change = move(pick());
            else if (what < 8)
                change = import(pick());
            else if (what < 9)
                change = told(pick());
            else {
                remove(pick(), batch);
                continue;
            }
            if (change.record.item)
                batch.push_back(change);
        }
        return batch;
    }

    const std::map<IndexItem, IndexRecord> &items() const { return m_items; }
    const std::map<IndexItem, IndexRecord::Attributes> &toldOf() const { return m_told; }

    QByteArray path(IndexItem item) const
    {
        const IndexRecord &record = m_items.at(item);
        return record.parent == 0 ? record.name : path(record.parent) + '/' + record.name;
    }

    bool isSystem(IndexItem item) const
    {
        const IndexRecord &record = m_items.at(item);
        if (record.parent == 0)
            return false;
        return (record.info.isDirectory() && record.name.startsWith('.')) ||
               isSystem(record.parent);
    }

private:
    QByteArray freeName(IndexItem parent)
    {
        static const char *const words[] = {"Invoice",
                                            "straße",
                                            "STRASSE",
                                            "Café",
                                            "cafe\xCC\x81",
                                            "x",
                                            "Ax",
                                            "\xFF\xFE",
                                            "日本",
                                            ".hidden",
                                            "i n v",
                                            "_inv_",
                                            "Über Uns and a Longer Name ABC"};
        for (;;) {
            QByteArray name = words[m_random() % std::size(words)];
            if (m_random() % 2)
                name += QByteArray::number(m_random() % 50);
            name += m_random() % 2 ? ".PDF" : ".txt";
            const bool taken = std::any_of(m_items.begin(), m_items.end(), [&](const auto &entry) {
                return entry.second.parent == parent && entry.second.name == name;
            });
            if (!taken)
                return name;
        }
    }
    IndexItem pick()
    {
        auto entry = m_items.begin();
        std::advance(entry, m_random() % m_items.size());
        return entry->first;
    }
    IndexItem pickFolder()
    {
        for (;;) {
            const IndexItem item = pick();
            if (m_items.at(item).info.isDirectory())
                return item;
        }
    }
    bool isBelow(IndexItem item, IndexItem folder) const
    {
        for (; item; item = m_items.at(item).parent) {
            if (item == folder)
                return true;
        }
        return false;
    }

    void newFacts(IndexRecord &record)
    {
        record.info.size = m_random() % 5000;
        record.info.modified = qint64{1'600'000'000} * 1'000'000'000 + m_random();
        record.info.changed = record.info.modified + m_random() % 1000;
        record.info.birth = qint64{1'500'000'000 + m_random() % 1000} * 1'000'000'000;
        record.info.inode = m_random();
        static const char *const types[] = {"com.adobe.pdf", "public.plain-text", "public.jpeg"};
        record.type = QString::fromLatin1(types[m_random() % 3]);
        record.attributes.clear();
        if (m_random() % 2 == 0)
            return;
        static const char *const tags[] = {"Work", "work", "Straße", "strasse", "urgent !", "é"};
        PropertyValue::Array list;
        for (unsigned i = m_random() % 3; i > 0; --i)
            list.append(QString::fromUtf8(tags[m_random() % 6]));
        record.attributes[QStringLiteral("kMDItemKXUserTags")] = list;
        if (m_random() % 2)
            record.attributes[QStringLiteral("kMDItemStarRating")] =
                PropertyValue::real(m_random() % 6);
        if (m_random() % 3 == 0)
            record.attributes[QStringLiteral("kMDItemKXManaged")] =
                PropertyValue::boolean(m_random() % 2);
        if (m_random() % 5 == 0)
            record.attributes[QStringLiteral("kMDItemOdd")] =
                PropertyValue::Dictionary{{QStringLiteral("a"), PropertyValue::integer(1)}};
    }
    IndexChange put(IndexItem item)
    {
        IndexChange change;
        if (item == 0) {
            item = ++m_last;
            IndexRecord record;
            record.item = item;
            record.parent = m_items.empty() ? 0 : pickFolder();
            record.name = m_items.empty() ? "/home/me" : freeName(record.parent);
            record.info.mode =
                m_items.empty() || m_random() % 4 == 0 ? S_IFDIR | 0755U : S_IFREG | 0644U;
            m_items[item] = record;
        }
        IndexRecord &record = m_items[item];
        newFacts(record);
        record.importedSize = -1; // other facts: not imported as of these
        record.importedModified = 0;
        change.record = record;
        return change;
    }
    IndexChange move(IndexItem item)
    {
        IndexChange change;
        const IndexItem folder = pickFolder();
        IndexRecord &record = m_items[item];
        if (record.parent == 0 || isBelow(folder, item))
            return change;
        record.parent = folder;
        record.name = freeName(folder);
        change.kind = IndexChange::Kind::Move;
        change.record = record;
        return change;
    }
    IndexChange import(IndexItem item)
    {
        IndexChange change;
        IndexRecord &record = m_items[item];
        record.imported = {{QStringLiteral("kMDItemTitle"), QStringLiteral("A title")},
                           {QStringLiteral("kMDItemStarRating"), PropertyValue::integer(3)}};
        if (m_random() % 2) // among the births
            record.imported[QStringLiteral("kMDItemContentCreationDate")] =
                PropertyValue::Date{521'692'800 + double(m_random() % 2000)};
        record.importedModified = record.info.modified;
        record.importedSize = record.info.size;
        change.kind = IndexChange::Kind::Import;
        change.record = record;
        return change;
    }
    IndexChange told(IndexItem item)
    {
        IndexChange change;
        change.kind = IndexChange::Kind::Attribute;
        change.record.item = item;
        const QString used = QStringLiteral("kMDItemLastUsedDate");
        const bool gone = m_random() % 3 == 0;
        change.record.attributes[used] =
            gone ? PropertyValue() : PropertyValue(PropertyValue::Date{double(m_random() % 99)});
        if (gone)
            m_told[item].remove(used);
        else
            m_told[item][used] = change.record.attributes[used];
        return change;
    }
    void remove(IndexItem item, IndexBatch &batch)
    {
        if (m_items.at(item).parent == 0)
            return;
        std::vector<IndexItem> gone;
        for (const auto &[other, record] : m_items) {
            if (isBelow(other, item))
                gone.push_back(other);
        }
        for (const IndexItem other : gone) {
            IndexChange change;
            change.kind = IndexChange::Kind::Remove;
            change.record.item = other;
            batch.push_back(change);
            m_items.erase(other);
            m_told.erase(other);
        }
    }

    Dice m_random;
    IndexItem m_last = 0;
    std::map<IndexItem, IndexRecord> m_items;
    std::map<IndexItem, IndexRecord::Attributes> m_told;
};

} // namespace

static void expectSame(const IndexCatalog &catalog, const Model &model)
{
    const IndexCatalog::Reading reading(catalog);
    ASSERT_EQ(catalog.count(), static_cast<qsizetype>(model.items().size()));
    std::map<IndexItem, quint32> counts;
    for (const auto &[item, expected] : model.items()) {
        const IndexSlot slot = catalog.slotOf(item);
        ASSERT_NE(slot, IndexCatalog::noSlot) << item;
        ASSERT_EQ(catalog.record(slot), expected) << item;
        const QByteArray path = model.path(item);
        ASSERT_EQ(catalog.path(slot), path);
        ASSERT_EQ(catalog.itemAtPath(path), item) << path.toStdString();
        ASSERT_EQ(catalog.systemRows()->contains(slot), model.isSystem(item));
        const auto told = model.toldOf().find(item);
        ASSERT_EQ(catalog.attribute(slot, QStringLiteral("kMDItemLastUsedDate")),
                  told == model.toldOf().end()
                      ? PropertyValue()
                      : told->second.value(QStringLiteral("kMDItemLastUsedDate")));
        ++counts[expected.parent];
    }
    for (const auto &[parent, count] : counts) {
        if (parent) {
            ASSERT_EQ(catalog.childCount(parent), count);
            ASSERT_EQ(catalog.children(parent).size(), count);
        }
    }
    // Folders below one another, as they come out of the walk upwards.
    const IndexSlot root = catalog.slotOf(catalog.roots().front());
    ASSERT_EQ(catalog.below(root)->cardinality(), model.items().size());
}

// What each comparison says of one record, without any of the catalog's short cuts.
static bool accepts(const IndexCatalog &catalog, IndexSlot slot, const QString &attribute,
                    const MDPredicate &predicate)
{
    const PropertyValue value = IndexRowAttributes::value(catalog, slot, attribute);
    std::vector<PropertyValue> values{value};
    if (value.isArray())
        values.assign(value.array().begin(), value.array().end());
    const auto one = [&](const PropertyValue &part) {
        if (predicate.value.type == MDPredicate::Value::Type::Present)
            return !part.isNull();
        if (part.isString())
            return !predicate.value.isDate &&
                   IndexTextPattern(predicate.value).matches(part.string());
        if (part.isNull() || part.isDictionary() || !part.data().isEmpty())
            return false;
        const double number = part.kind() == PropertyValue::Kind::Date
                                  ? part.date().secondsSince2001
                                  : part.doubleValue();
        const double asked = predicate.value.number;
        switch (predicate.op) {
        case MDPredicate::Op::Less:
            return number < asked;
        case MDPredicate::Op::LessOrEqual:
            return number <= asked;
        case MDPredicate::Op::Greater:
            return number > asked;
        case MDPredicate::Op::GreaterOrEqual:
            return number >= asked;
        default:
            return number == asked && predicate.value.type == MDPredicate::Value::Type::Number;
        }
    };
    const bool any = std::any_of(values.begin(), values.end(), one);
    return predicate.op == MDPredicate::Op::NotEqual ? !any : any;
}

static const char *const comparisons[] = {
    "kMDItemDisplayName == \"*x*\"cd",
    "kMDItemDisplayName == \"x*\"cd",
    "kMDItemDisplayName == \"*INV*\"cd",
    "kMDItemDisplayName == \"inv*\"cdw",
    "kMDItemDisplayName == \"inv\"cdw",
    "kMDItemDisplayName == \"v\"cdw",
    "kMDItemDisplayName == \"*strasse*\"cd",
    "kMDItemDisplayName == \"*strasse*\"c",
    "kMDItemDisplayName == \"*STRASSE*\"",
    "kMDItemDisplayName == \"café*\"c",
    "kMDItemDisplayName == \"cafe*\"d",
    "kMDItemDisplayName == \"*a*e*.t?t\"cd",
    "kMDItemDisplayName == \"日*\"cdw",
    "kMDItemDisplayName != \"*.txt\"c",
    "kMDItemFSName == \"*.pdf\"c",
    "kMDItemFSName == \"*.pdf\"",
    "kMDItemFSSize > 2500",
    "kMDItemFSSize <= 100",
    "kMDItemContentModificationDate > $time.iso(2020-09-13T12:26:42Z)",
    "kMDItemFSCreationDate >= $time.iso(2017-07-14T02:48:20Z)",
    "kMDItemContentCreationDate >= $time.iso(2017-07-14T02:48:20Z)",
    "kMDItemContentCreationDate != *",
    "kMDItemContentType == com.adobe.pdf",
    "kMDItemContentType != \"public.jpeg\"",
    "kMDItemContentTypeTree == \"public.image\"",
    "kMDItemContentTypeTree == \"public.*text\"",
    "kMDItemKXUserTags == \"work\"cd",
    "kMDItemKXUserTags == \"work\"",
    "kMDItemKXUserTags != \"STRASSE\"cd",
    "kMDItemKXUserTags == *",
    "kMDItemStarRating >= 3",
    "kMDItemStarRating == 3",
    "kMDItemStarRating != *",
    "kMDItemKXManaged == 1",
    "kMDItemKXManaged == 0",
    "kMDItemLastUsedDate == *",
    "kMDItemTitle == \"a*\"cdw",
    "kMDItemSupportFileType != MDSystemFile",
    "kMDItemSupportFileType == MDSystemFile",
    "kMDItemPath == \"*inv*/*\"cd",
    "kMDItemPath == \"*/home/*\"cd",
    "kMDItemNobodyHasThis == 1",
};

static void expectAnswers(const IndexCatalog &catalog, Dice &random)
{
    const IndexCatalog::Reading reading(catalog);
    const IndexEvaluator evaluator(catalog);
    Roaring some;
    for (const IndexSlot slot : catalog.alive().rows()) {
        if (random() % 3 == 0)
            some.add(slot);
    }
    const auto within = std::make_shared<const Roaring>(some);
    for (const char *text : comparisons) {
        const auto predicate = MDQueryParser::parse(QString::fromUtf8(text));
        ASSERT_TRUE(predicate) << text;
        Roaring expected;
        for (const IndexSlot slot : catalog.alive().rows()) {
            if (accepts(catalog, slot, (*predicate)->attribute, **predicate))
                expected.add(slot);
        }
        EXPECT_EQ(*evaluator.rows(*predicate), expected) << text;
        EXPECT_EQ(*evaluator.rows(*predicate, within), expected & some) << text;
    }
}

static void expectInOrder(const IndexCatalog &catalog)
{
    const IndexCatalog::Reading reading(catalog);
    const auto name = [&](IndexSlot slot) {
        return catalog.chunkOf(slot).foldedName(IndexCatalog::rowOf(slot)).toByteArray();
    };
    for (const bool ascending : {true, false}) {
        std::vector<IndexSlot> all;
        for (const IndexSlot slot : catalog.alive().rows())
            all.push_back(slot);
        std::stable_sort(all.begin(), all.end(), [&](IndexSlot a, IndexSlot b) {
            return ascending ? name(a) < name(b) : name(b) < name(a);
        });
        const IndexOrder order(QStringLiteral("kMDItemDisplayName"), ascending);
        for (const size_t limit : {size_t{0}, size_t{7}, size_t{100}}) {
            const auto first = order.first(catalog, catalog.alive().rows(), limit);
            const size_t count = limit ? std::min(limit, all.size()) : all.size();
            ASSERT_EQ(first.size(), count);
            for (size_t i = 0; i < count; ++i)
                ASSERT_EQ(name(first[i]), name(all[i])) << i;
        }
    }
    // By the documents' own dates, the files' where they have none.
    const QString created = QStringLiteral("kMDItemContentCreationDate");
    double last = 0;
    for (const IndexSlot slot :
         IndexOrder(created, true).first(catalog, catalog.alive().rows(), 0)) {
        const double date =
            IndexRowAttributes::value(catalog, slot, created).date().secondsSince2001;
        ASSERT_GE(date, last);
        last = date;
    }
}

TEST(IndexCatalog, HoldsAndFindsWhatAPlainListDoes)
{
    Model model(5);
    IndexCatalog catalog;
    Dice random(6);
    for (int round = 0; round < 60; ++round) {
        (void)catalog.apply(model.step());
        if (round % 10 != 9)
            continue;
        expectSame(catalog, model);
        expectAnswers(catalog, random);
        expectInOrder(catalog);
        if (round % 20 == 9)
            catalog.orderNames();
    }
}

TEST(IndexCatalog, IsTheSameAfterSavingAndLoading)
{
    const TestFolder folder;
    const QString path = folder.path(QStringLiteral("index.sqlite"));
    Model model(7);
    IndexCatalog catalog;
    Dice random(8);
    auto store = IndexStore::open(path, IndexStore::Mode::Write);
    ASSERT_TRUE(store);
    for (int round = 0; round < 30; ++round) {
        const IndexBatch batch = model.step();
        (void)catalog.apply(batch);
        ASSERT_FALSE((*store)->append(batch));
        if (round % 4 == 1)
            catalog.orderNames();
        if (round % 7 == 3) {
            ASSERT_FALSE((*store)->checkpoint(catalog));
        }
        if (round % 5 != 4)
            continue;
        // What another process reads, and what this one would after a restart.
        IndexCatalog loaded;
        auto reader = IndexStore::open(path, IndexStore::Mode::Read);
        ASSERT_TRUE(reader);
        const auto error = (*reader)->load(loaded);
        ASSERT_FALSE(error) << error->message.toStdString();
        for (const auto &[item, record] : model.items())
            ASSERT_EQ(loaded.itemAtPath(model.path(item)), item); // before it is made quick
        loaded.prepareForWriting();
        expectSame(loaded, model);
        expectAnswers(loaded, random);
        expectInOrder(loaded);
    }
}

TEST(IndexCatalog, DropsDeadRowsWhenTheyAreMany)
{
    IndexCatalog catalog;
    IndexBatch batch(1);
    batch[0].record.item = 1;
    batch[0].record.name = "/home/me";
    batch[0].record.info.mode = S_IFDIR | 0755U;
    (void)catalog.apply(batch);
    // A program that makes and deletes the same files again and again.
    IndexItem item = 1;
    for (int round = 0; round < 60; ++round) {
        batch.clear();
        for (int i = 0; i < 1000; ++i) {
            IndexChange change;
            change.record.item = ++item;
            change.record.parent = 1;
            change.record.name = "t" + QByteArray::number(i);
            change.record.info.mode = S_IFREG | 0644U;
            change.record.attributes[QStringLiteral("kMDItemKXUserTags")] =
                QStringList{QStringLiteral("t")};
            batch.push_back(change);
        }
        for (int i = 0; i < (round < 59 ? 1000 : 0); ++i) {
            IndexChange change;
            change.kind = IndexChange::Kind::Remove;
            change.record.item = item - static_cast<IndexItem>(i);
            batch.push_back(change);
        }
        (void)catalog.apply(batch);
    }
    ASSERT_EQ(catalog.count(), 1001);
    ASSERT_EQ(catalog.slotCount(), 60'001U);
    catalog.compact();
    EXPECT_EQ(catalog.slotCount(), 1001U);
    EXPECT_EQ(catalog.lastItem(), item); // numbers are never used again
    EXPECT_EQ(catalog.itemAtPath("/home/me/t999"), item);
    EXPECT_EQ(catalog.childCount(1), 1000U);
    const auto predicate = MDQueryParser::parse(QStringLiteral("kMDItemKXUserTags == \"T\"c"));
    EXPECT_EQ(IndexEvaluator(catalog).rows(*predicate)->cardinality(), 1000U);
}
