#include "XPAttributeCache.h"

#include "Karvex.h"
#include "KeptFolder.h"
#include "MDItem.h"
#include "XPExtendedAttributes.h"
#include "XPNotificationCenter.h"
#include "XPPath.h"

#include <cstdio>
#include <semaphore>
#include <thread>

using Raw = XPAttributeOf<PropertyValue>;

namespace {

KPPooledString pooled(const QString &path)
{
    return KPPool::pooledString(path);
}

bool moveFile(const QString &from, const QString &to)
{
    return std::rename(XPPath::encode(from).constData(), XPPath::encode(to).constData()) == 0;
}

// Ratings of files in an indexed folder, and what the cache told of them.
class AttributeCache : public testing::Test
{
protected:
    QString rated(const QString &name, double rating) const
    {
        QString path = m_folder.file(name);
        EXPECT_FALSE(Karvex::setRating(rating, path));
        return path;
    }
    void start(qsizetype limit = 0, XPAttributeCache::Transformer transformer = {})
    {
        m_cache = std::make_unique<XPAttributeCache>(m_folder.index(), Karvex::starRatingKey, limit,
                                                     QStringList{QStringLiteral("ratingsChanged")},
                                                     std::move(transformer));
        ASSERT_TRUE(holdsSoon([] { return XPAttributeCache::allCachingDone(); }));
        ASSERT_TRUE(holdsSoon([this] { return m_notices > 0; }));
    }
    double ratingAt(const QString &path) const
    {
        const auto value = m_cache->attributeAtPathCacheOnly(pooled(path));
        const PropertyValue *raw = Raw::in(value);
        return raw ? raw->doubleValue() : 0;
    }
    bool isSoon(const QString &path, double rating) const
    {
        return holdsSoon([&] { return ratingAt(path) == rating; });
    }

    KeptFolder m_folder;
    int m_notices = 0;
    // As an observer sees them: the path of before (or that was told), and the path now.
    QList<std::pair<QString, QString>> m_told;
    XPObservation m_observeNotices = XPNotificationCenter::instance().addObserver(
        QStringLiteral("ratingsChanged"), [this](const XPNotification &) { ++m_notices; });
    XPObservation m_observeDocuments = XPNotificationCenter::instance().addObserver(
        QStringLiteral("documentChanging"), [this](const XPNotification &notification) {
            if (const auto *path = std::get_if<QString>(&notification.object)) {
                m_told.append({*path, *path});
                return;
            }
            const auto item = std::dynamic_pointer_cast<MDItem>(
                std::get<std::shared_ptr<XPNotificationObject>>(notification.object));
            const auto before = XPAttributeCache::cachedMDITemGetPathIfExists(*item);
            m_told.append({before ? before->toString() : QString(), item->path()});
        });
    std::unique_ptr<XPAttributeCache> m_cache;
};

} // namespace

TEST_F(AttributeCache, HoldsWhatTheIndexHoldsFromTheStart)
{
    const QString one = rated(QStringLiteral("one.pdf"), 4);
    const QString two = rated(QStringLiteral("two\nlines.pdf"), 2);
    const QString none = m_folder.file(QStringLiteral("none.pdf"));
    start();
    EXPECT_TRUE(m_cache->isUpToDate() && m_cache->usingQuery());
    EXPECT_EQ(ratingAt(one), 4);
    EXPECT_EQ(ratingAt(two), 2);
    EXPECT_EQ(m_cache->values().size(), 2);
    EXPECT_EQ(m_notices, 1);
    EXPECT_TRUE(m_told.isEmpty()) << "filling is no news of single documents";
    // Known to have none: read once, fixed, and not queued again.
    EXPECT_FALSE(m_cache->attributeAtPath(pooled(none)));
    EXPECT_TRUE(holdsSoon([this] { return m_cache->numPathsToFix() == 0; }));
    EXPECT_FALSE(m_cache->attributeAtPath(pooled(none)));
    EXPECT_EQ(m_cache->numPathsToFix(), 0);
}

TEST_F(AttributeCache, FollowsWhatHappensToTheFiles)
{
    const QString path = rated(QStringLiteral("a"), 1);
    const QString renamed = m_folder.path(QStringLiteral("b"));
    start();
    ASSERT_FALSE(Karvex::setRating(5, path));
    ASSERT_TRUE(isSoon(path, 5));
    ASSERT_TRUE(holdsSoon([this] { return m_told.size() == 1 && m_notices == 2; }));
    EXPECT_EQ(m_told.takeLast(), std::pair(path, path));

    ASSERT_TRUE(moveFile(path, renamed));
    ASSERT_TRUE(isSoon(renamed, 5));
    EXPECT_EQ(ratingAt(path), 0);
    ASSERT_TRUE(holdsSoon([this] { return m_told.size() == 1; }));
    EXPECT_EQ(m_told.takeLast(), std::pair(path, renamed));

    ASSERT_FALSE(Karvex::setRating(0, renamed));
    ASSERT_TRUE(isSoon(renamed, 0));
    EXPECT_FALSE(m_cache->attributeAtPath(pooled(renamed)));
    EXPECT_EQ(m_cache->numPathsToFix(), 0) << "the loss is known";

    ASSERT_FALSE(Karvex::setRating(3, renamed));
    ASSERT_TRUE(isSoon(renamed, 3));
    ASSERT_TRUE(holdsSoon([this] { return m_told.size() >= 2; }));
    m_told.clear();
    ASSERT_EQ(::remove(XPPath::encode(renamed).constData()), 0);
    ASSERT_TRUE(isSoon(renamed, 0));
    // Word of the changes before may still be on its way.
    const std::pair gone(renamed, QString());
    ASSERT_TRUE(holdsSoon([&] { return !m_told.isEmpty() && m_told.last() == gone; }));
    EXPECT_TRUE(m_cache->values().isEmpty());
}

TEST_F(AttributeCache, TakesFilesThatChangeNamesWithEachOther)
{
    const QString a = rated(QStringLiteral("a"), 1);
    const QString b = rated(QStringLiteral("b"), 2);
    const QString aside = m_folder.path(QStringLiteral("c"));
    start();
    ASSERT_TRUE(moveFile(a, aside) && moveFile(b, a) && moveFile(aside, b));
    EXPECT_TRUE(isSoon(a, 2));
    EXPECT_TRUE(isSoon(b, 1));
    EXPECT_TRUE(holdsSoon([this] { return m_cache->values().size() == 2; }));
}

TEST_F(AttributeCache, IsNotUpToDateNearItsLimit)
{
    for (int i = 0; i < 18; ++i)
        rated(QString::number(i), 1);
    start(20);
    EXPECT_TRUE(m_cache->okToCalculateMissingItems());
    rated(QStringLiteral("nineteenth"), 1);
    EXPECT_TRUE(holdsSoon([this] { return !m_cache->okToCalculateMissingItems(); }));
}

TEST_F(AttributeCache, FixesWhatItsQueryDidNotFind)
{
    rated(QStringLiteral("a"), 1);
    rated(QStringLiteral("b"), 1);
    start(1);
    ASSERT_EQ(m_cache->values().size(), 1);
    const QString other = ratingAt(m_folder.path(QStringLiteral("a"))) == 0
                              ? m_folder.path(QStringLiteral("a"))
                              : m_folder.path(QStringLiteral("b"));
    EXPECT_FALSE(m_cache->attributeAtPath(pooled(other)));
    EXPECT_EQ(m_cache->numPathsToFix(), 1);
    EXPECT_TRUE(isSoon(other, 1));
    EXPECT_TRUE(holdsSoon([this] { return m_notices == 2; }));
    m_cache->unCacheDataAtPath(pooled(other));
    EXPECT_EQ(ratingAt(other), 0);
    EXPECT_EQ(m_cache->numPathsToFix(), 0) << "forgetting alone asks for nothing";
    EXPECT_FALSE(m_cache->attributeAtPath(pooled(other)));
    EXPECT_TRUE(isSoon(other, 1));
    EXPECT_TRUE(m_told.isEmpty()) << "filling in what was unknown is no news";
}

TEST_F(AttributeCache, ReadsFromTheFileWhatIsNotIndexed)
{
    const TestFolder elsewhere;
    const QString rated = elsewhere.file(QStringLiteral("rated"));
    ASSERT_FALSE(Karvex::setRating(4, rated));
    const QStringList none{elsewhere.path(QStringLiteral("missing")),
                           QString(QChar(0xD800)) /* no path at all */};
    start();
    for (const QString &path : none + QStringList{rated})
        EXPECT_FALSE(m_cache->attributeAtPath(pooled(path)));
    EXPECT_TRUE(isSoon(rated, 4));
    EXPECT_TRUE(holdsSoon([this] { return m_notices >= 2 && m_cache->numPathsToFix() == 0; }));
    for (const QString &path : none)
        EXPECT_FALSE(m_cache->attributeAtPath(pooled(path)));
    EXPECT_EQ(m_cache->numPathsToFix(), 0);
}

// A transformer that the test holds up: what it is given was read, and is not stored yet.
struct Gate
{
    XPAttributeCache::Transformer transformer()
    {
        return [this](const PropertyValue &raw) {
            if (raw.doubleValue() == heldUp) {
                arrived.release();
                go.acquire();
            }
            return Raw::make(raw);
        };
    }
    static constexpr double heldUp = 1.5;
    std::counting_semaphore<> arrived{0};
    std::counting_semaphore<> go{0};
};

class LateRead : public AttributeCache, public testing::WithParamInterface<bool>
{
};

// Read on either road, in the index or in the file: what this program wrote since is newer.
TEST_P(LateRead, IsNotStoredOverWhatWasWrittenMeanwhile)
{
    const TestFolder elsewhere;
    QString path = elsewhere.file(QStringLiteral("late"));
    rated(QStringLiteral("fills the limit"), 1);
    Gate gate;
    if (GetParam()) {
        path = m_folder.file(QStringLiteral("late"));
        start(1, gate.transformer());
        ASSERT_FALSE(Karvex::setRating(Gate::heldUp, path));
        m_folder.catchUp();
    } else {
        start(1, gate.transformer());
        ASSERT_FALSE(Karvex::setRating(Gate::heldUp, path));
    }
    EXPECT_FALSE(m_cache->attributeAtPath(pooled(path)));
    gate.arrived.acquire();
    m_cache->setAttribute(Raw::make(PropertyValue::real(4)), pooled(path));
    gate.go.release();
    EXPECT_TRUE(holdsSoon([this] { return m_cache->numPathsToFix() == 0 && m_notices >= 2; }));
    EXPECT_EQ(ratingAt(path), 4);

    // Nor over what was forgotten since: that is asked anew.
    m_cache->unCacheDataAtPath(pooled(path));
    EXPECT_FALSE(m_cache->attributeAtPath(pooled(path)));
    gate.arrived.acquire();
    m_cache->unCacheDataAtPath(pooled(path));
    ASSERT_FALSE(Karvex::setRating(2, path));
    m_folder.catchUp();
    gate.go.release();
    EXPECT_TRUE(holdsSoon([&] {
        (void)m_cache->attributeAtPath(pooled(path));
        return ratingAt(path) != 0;
    }));
    EXPECT_EQ(ratingAt(path), 2);
}

INSTANTIATE_TEST_SUITE_P(Roads, LateRead, testing::Bool(), [](const auto &row) {
    return row.param ? "FromTheIndex" : "FromTheFile";
});

TEST_F(AttributeCache, LooksAgainAtWhatItKnowsWhenAskedAndShowsItMeanwhile)
{
    const TestFolder elsewhere;
    const QString path = elsewhere.file(QStringLiteral("a"));
    ASSERT_FALSE(Karvex::setRating(2, path));
    start();
    (void)m_cache->attributeAtPath(pooled(path));
    ASSERT_TRUE(isSoon(path, 2));
    ASSERT_FALSE(Karvex::setRating(3, path));
    m_cache->addPathToFix(pooled(path));
    EXPECT_EQ(ratingAt(path), 2);
    EXPECT_TRUE(isSoon(path, 3));
}

TEST_F(AttributeCache, TellsUnreadableFromNone)
{
    const auto damage = [](const QString &path) {
        return !XPExtendedAttributes::write(path, Karvex::spotlightKey(Karvex::starRatingKey),
                                            "bplist00 not");
    };
    const TestFolder elsewhere;
    const QString outside = elsewhere.file(QStringLiteral("damaged"));
    const QString inside = m_folder.file(QStringLiteral("damaged"));
    const QString later = rated(QStringLiteral("later"), 3);
    ASSERT_TRUE(damage(outside) && damage(inside));
    start();
    const auto isUnreadable = [this](const QString &path) {
        const auto value = m_cache->attributeAtPath(pooled(path));
        return XPAttributeCache::errorIn(value) != nullptr && !Raw::in(value);
    };
    EXPECT_TRUE(holdsSoon([&] { return isUnreadable(inside) && isUnreadable(outside); }));
    EXPECT_EQ(m_cache->values().size(), 1) << "only real values";
    ASSERT_TRUE(damage(later));
    EXPECT_TRUE(holdsSoon([&] { return isUnreadable(later); }));
    EXPECT_TRUE(m_cache->values().isEmpty());
}

TEST_F(AttributeCache, KnowsTheItemsInTheUsersFolders)
{
    const QByteArray home = qgetenv("HOME");
    qputenv("HOME", XPPath::encode(m_folder.path()));
    const QString onDesktop = m_folder.file(QStringLiteral("Desktop/a"));
    const QString deep = m_folder.file(QStringLiteral("deep/b"));
    start();
    qputenv("HOME", home);
    EXPECT_TRUE(holdsSoon([] { return XPAttributeCache::dictCount() == 1; }));
    const auto item = MDItem::create(m_folder.index(), onDesktop);
    EXPECT_EQ(XPAttributeCache::cachedMDITemGetPathIfExists(*item), pooled(onDesktop));
    const auto other = MDItem::create(m_folder.index(), deep);
    EXPECT_FALSE(XPAttributeCache::cachedMDITemGetPathIfExists(*other));
    EXPECT_EQ(XPAttributeCache::cachedMDITemGetPath(*other), pooled(deep));
    XPAttributeCache::clearCacheForItem(*other);
    EXPECT_EQ(XPAttributeCache::dictCount(), 1);
}

TEST_F(AttributeCache, ShowsWhatThisProgramWroteAtOnce)
{
    const QString path = m_folder.file(QStringLiteral("a"));
    start();
    m_cache->setAttribute(Raw::make(PropertyValue::real(2)), pooled(path));
    EXPECT_EQ(ratingAt(path), 2);
    EXPECT_EQ(m_told, (QList<std::pair<QString, QString>>{{path, path}}));
    m_cache->setAttribute({}, pooled(path));
    EXPECT_FALSE(m_cache->attributeAtPath(pooled(path)));
    EXPECT_EQ(m_cache->numPathsToFix(), 0);
}

TEST_F(AttributeCache, HoldsWhatTheTransformerMakes)
{
    const QString one = rated(QStringLiteral("one"), 1);
    const QString five = rated(QStringLiteral("five"), 5);
    start(0, [](const PropertyValue &raw) {
        return raw.doubleValue() < 2 ? XPAttributeValuePtr()
                                     : XPAttributeOf<QString>::make(QStringLiteral("kNoItemxxxxx"));
    });
    const auto value = m_cache->attributeAtPath(pooled(five));
    ASSERT_TRUE(XPAttributeOf<QString>::in(value)) << "the text of a marker is no marker";
    EXPECT_FALSE(Raw::in(value));
    EXPECT_FALSE(m_cache->attributeAtPath(pooled(one)));
    EXPECT_EQ(m_cache->numPathsToFix(), 0) << "a value made into nothing is known to be none";
}

// Many threads read, forget and queue while files change and are renamed.
TEST_F(AttributeCache, IsReadFromManyThreadsWhileFilesChange)
{
    QStringList paths;
    for (int i = 0; i < 300; ++i)
        paths.append(rated(QString::number(i), 1 + i % 4));
    start();
    std::atomic<bool> stop = false;
    constexpr int readerCount = 3;
    std::vector<std::thread> readers;
    readers.reserve(readerCount);
    for (int reader = 0; reader < readerCount; ++reader) {
        readers.emplace_back([&, reader] {
            for (qsizetype i = reader; !stop; i = (i + 7) % paths.size()) {
                (void)m_cache->attributeAtPath(pooled(paths[i]));
                if (i % 50 == 0)
                    m_cache->unCacheDataAtPath(pooled(paths[i]));
            }
        });
    }
    for (int i = 0; i < 300; ++i) {
        ASSERT_FALSE(Karvex::setRating(5, paths[i]));
        ASSERT_TRUE(i % 3 != 0 || moveFile(paths[i], paths[i] + u'x'));
    }
    stop = true;
    for (std::thread &reader : readers)
        reader.join();
    EXPECT_TRUE(holdsSoon([&] {
        bool isRight = true;
        for (int i = 0; i < 300; ++i) {
            const QString path = i % 3 == 0 ? paths[i] + u'x' : paths[i];
            (void)m_cache->attributeAtPath(pooled(path)); // asks again for what was forgotten
            isRight = isRight && ratingAt(path) == 5;
        }
        return isRight;
    }));
}
