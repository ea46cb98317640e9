#include "KPQuickLook.h"

#include "ImportPause.h"
#include "KPDocCache.h"
#include "TestHome.h"
#include "UserDefaults.h"
#include "XPFactorySettings.h"
#include "XPPath.h"

#include <QDir>
#include <QPainter>
#include <QSignalSpy>
#include <QTest>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace std::chrono_literals;

static QByteArray svg(const char *colour)
{
    return QByteArray("<svg xmlns='http://www.w3.org/2000/svg' width='40' height='30'>"
                      "<rect width='40' height='30' fill='") +
           colour + "'/></svg>";
}

class QuickLook : public testing::Test
{
protected:
    void SetUp() override
    {
        XPFactorySettings::registerAll();
        for (const char *key :
             {"KPCacheSizeMB", "KPQuicklookBordersImages", "KPQuicklookCacheSlowImages"})
            UserDefaults::standard().remove(QLatin1String(key));
    }
    KPQuickLook::Setup setup(const char *program = MURN_IMPORTER)
    {
        return {{.importer = program,
                 .sharedCache = m_folder.path(QStringLiteral("thumbnails")),
                 .failuresFolder = QStringLiteral("murn-1"),
                 .slots = 2,
                 .limit = 300ms},
                &m_pause};
    }
    KPDoc *document(const QString &name, const QByteArray &bytes, qint64 seconds = 1'600'000'000)
    {
        const QString path = m_folder.file(name, bytes);
        const timespec times[] = {{seconds, 0}, {seconds, 0}};
        EXPECT_EQ(::utimensat(AT_FDCWD, XPPath::encode(path).constData(), times, 0), 0);
        KPDoc *doc = KPDocCache::docAtPath(path);
        doc->updateFileInfo();
        return doc;
    }
    void wantAll(KPQuickLook &looks, const QList<KPDoc *> &docs, int side = 64)
    {
        std::vector<KPQuickLook::Wanted> wanted;
        for (KPDoc *doc : docs)
            wanted.push_back({doc, side});
        looks.want(&m_view, wanted);
        ASSERT_TRUE(QTest::qWaitFor([&] { return !looks.isBusy(); }, 30000));
    }
    QStringList shared(const char *folder) const
    {
        return QDir(m_folder.path(QStringLiteral("thumbnails/") + QLatin1String(folder)))
            .entryList(QDir::Files);
    }
    static QColor middle(const QImage &image)
    {
        return image.pixelColor(image.width() / 2, image.height() / 2);
    }
    const TestFolder m_folder;
    ImportPause m_pause;
    QObject m_view;
};

TEST_F(QuickLook, ShowsWhatTheImporterDraws)
{
    KPQuickLook looks(setup());
    KPDoc *red = document(QStringLiteral("a.svg"), svg("red"));
    KPDoc *text = document(XPPath::decode(QByteArrayView("caf\xe9.txt")), "Words");
    KPDoc *folder = document(QStringLiteral("folder/x.unknown"), "x");
    wantAll(looks, {red, text, folder}, 100);
    EXPECT_EQ(looks.look(*red).picture.size(), QSize(100, 75));
    EXPECT_EQ(middle(looks.look(*red).picture), QColor(Qt::red));
    EXPECT_EQ(looks.look(*red).uti, u"public.svg-image");
    EXPECT_FALSE(looks.look(*text).picture.isNull());
    EXPECT_EQ(looks.look(*folder).failure, DocumentFailure::Unsupported);
    EXPECT_EQ(m_pause.reasons(), 0U);
}

// Also those that a preview holds beside the cache.
TEST_F(QuickLook, MakesPicturesAnewWhenTold)
{
    KPQuickLook looks(setup());
    const QString name = QStringLiteral("again.svg");
    KPDoc *doc = document(name, svg("red"));
    const auto colours = [&] {
        looks.want(&m_view, {{doc, 64}, {doc, 400, 1, true}});
        EXPECT_TRUE(QTest::qWaitFor([&] { return !looks.isBusy(); }, 30000));
        return QList<QColor>{middle(looks.look(*doc).picture),
                             middle(looks.heldLook(*doc).picture)};
    };
    EXPECT_EQ(colours(), QList<QColor>(2, QColor(Qt::red)));
    // Nobody says that the file changed.
    (void)m_folder.file(name, svg("lime"));
    looks.rebuild({doc});
    EXPECT_EQ(colours(), QList<QColor>(2, QColor(Qt::green)));
    (void)m_folder.file(name, svg("blue"));
    looks.rebuildAll();
    EXPECT_EQ(middle(looks.look(*doc).picture), QColor(Qt::green)) << "until the new one is there";
    EXPECT_EQ(colours(), QList<QColor>(2, QColor(Qt::blue)));
}

// The desktop's cache serves the next run, and a program that has no importer at all.
TEST_F(QuickLook, SharesWhatWasSlowToMake)
{
    KPDoc *doc = document(QStringLiteral("shared.svg"), svg("blue"));
    KPSharedThumbnails cache(setup().maker.sharedCache, QStringLiteral("murn-1"));
    QImage green(128, 96, QImage::Format_RGB32);
    green.fill(Qt::green);
    cache.write(doc->filePath(), KPFileOrigin::of(XPFileInfo::read(doc->filePath()).value()),
                green);
    KPQuickLook looks(setup("/nowhere"));
    wantAll(looks, {doc}, 100);
    EXPECT_EQ(looks.look(*doc).picture.size(), QSize(100, 75));
    EXPECT_EQ(middle(looks.look(*doc).picture), QColor(Qt::green));
}

TEST_F(QuickLook, RemembersFailuresUntilTheFileChanges)
{
    KPDoc *doc = document(QStringLiteral("broken.die"), "x");
    KPDoc *slow = document(QStringLiteral("slow.sleep"), "x");
    {
        KPQuickLook looks(setup(MURN_TEST_IMPORTER));
        wantAll(looks, {doc, slow});
        ASSERT_TRUE(QTest::qWaitFor([&] { return shared("fail/murn-1").size() == 2; }, 10000));
    }
    KPQuickLook next(setup("/nowhere"));
    wantAll(next, {doc, slow});
    EXPECT_EQ(next.look(*doc).failure, DocumentFailure::Crashed);
    EXPECT_EQ(next.look(*slow).failure, DocumentFailure::TimedOut);
    document(QStringLiteral("broken.die"), "changed");
    wantAll(next, {doc});
    EXPECT_FALSE(next.look(*doc).failure);
}

// It is shown at once and not made again; what took its place at the old path has its own.
TEST_F(QuickLook, MovedFileKeepsItsPicture)
{
    xpGuiThread.assertHere();
    // Shared thumbnails cannot tell the two files apart: same path, second and size.
    UserDefaults::standard().setValue(QStringLiteral("KPQuicklookCacheSlowImages"),
                                      PropertyValue::boolean(false));
    KPQuickLook::initializeGlobals(setup());
    KPQuickLook &looks = KPQuickLook::instance();
    KPDoc *doc = document(QStringLiteral("here/moved.svg"), svg("red"));
    wantAll(looks, {doc});
    const QString old = doc->filePath();
    const QString moved = m_folder.path(QStringLiteral("there/moved.svg"));
    ASSERT_TRUE(QDir().mkpath(m_folder.path(QStringLiteral("there"))));
    ASSERT_EQ(::rename(XPPath::encode(old).constData(), XPPath::encode(moved).constData()), 0);
    doc->setFilePath(moved);
    KPQuickLook::clearCacheForPath(old);
    KPDoc *other = document(QStringLiteral("here/moved.svg"), svg("tan"));
    ASSERT_EQ(other->cacheID(), doc->cacheID());
    QSignalSpy ready(&looks, &KPQuickLook::looksReady);
    ASSERT_TRUE(ready.wait());
    EXPECT_EQ(middle(looks.look(*doc).picture), QColor(Qt::red));
    wantAll(looks, {doc, other});
    EXPECT_EQ(middle(looks.look(*doc).picture), QColor(Qt::red));
    EXPECT_EQ(middle(looks.look(*other).picture), QColor("tan"));
    KPQuickLook::shutDown();
    KPQuickLook::clearCacheForPath(old); // nothing to tell any more
    KPQuickLook::updateCachedPrefs();
}

// The text that the index imports waits meanwhile.
TEST_F(QuickLook, PausesImportingWhileAPictureInSightIsMissing)
{
    KPQuickLook looks(setup(MURN_TEST_IMPORTER));
    KPDoc *slow = document(QStringLiteral("now.sleep"), "x");
    looks.want(&m_view, {{slow, 64}});
    EXPECT_EQ(m_pause.reasons(), unsigned{ImportPause::Pictures});
    EXPECT_TRUE(looks.isBusy());
    looks.want(&m_view, {}, {{slow, 64}});
    EXPECT_EQ(m_pause.reasons(), 0U) << "what comes next does not count";
    EXPECT_FALSE(looks.isBusy());
    auto view = std::make_unique<QObject>();
    looks.want(view.get(), {{slow, 64}});
    EXPECT_TRUE(looks.isBusy());
    view.reset();
    EXPECT_FALSE(looks.isBusy());
}

// One that would take for ever holds the slot; what is in sight now gets in all the same.
TEST_F(QuickLook, CutsOffWhatScrolledAway)
{
    KPQuickLook::Setup patient = setup(MURN_TEST_IMPORTER);
    patient.maker.limit = std::chrono::hours(1);
    patient.maker.slots = 1;
    KPQuickLook looks(patient);
    KPDoc *first = document(QStringLiteral("1.sleep"), "x");
    KPDoc *second = document(QStringLiteral("2.exit"), "x");
    KPDoc *third = document(QStringLiteral("3.die"), "x");
    QSignalSpy ready(&looks, &KPQuickLook::looksReady);
    looks.want(&m_view, {{second, 64}, {first, 64}});
    ASSERT_TRUE(ready.wait()); // the next is at work now
    wantAll(looks, {third});
    EXPECT_EQ(looks.look(*third).failure, DocumentFailure::Crashed);
    looks.want(&m_view, {{first, 64}}); // and ends in the middle of it
}

TEST_F(QuickLook, HoldsNoMoreThanTheSettingSays)
{
    UserDefaults::standard().setValue(QStringLiteral("KPCacheSizeMB"),
                                      PropertyValue::real(5 * (64 * 48 * 4 + 512) / 1048576.0));
    KPQuickLook looks(setup());
    QList<KPDoc *> docs;
    for (int number = 0; number < 12; ++number)
        docs.append(document(QStringLiteral("many%1.svg").arg(number), svg("red")));
    for (KPDoc *doc : docs)
        wantAll(looks, {doc});
    const auto kept = std::count_if(docs.begin(), docs.end(), [&](const KPDoc *doc) {
        return !looks.look(*doc).picture.isNull();
    });
    EXPECT_EQ(kept, 5);
    EXPECT_FALSE(looks.look(*docs.last()).picture.isNull());
}

TEST_F(QuickLook, DrawsSmallPicturesAsTheyAreAndBordersAsSet)
{
    KPQuickLook looks(setup());
    QImage tiny(10, 4, QImage::Format_RGB32);
    tiny.fill(Qt::blue);
    ASSERT_TRUE(tiny.save(m_folder.path(QStringLiteral("tiny.png"))));
    KPDoc *doc = KPDocCache::docAtPath(m_folder.path(QStringLiteral("tiny.png")));
    wantAll(looks, {doc});
    QImage canvas(64, 64, QImage::Format_RGB32);
    const auto drawn = [&](double side) {
        canvas.fill(Qt::white);
        QPainter painter(&canvas);
        return looks.draw(painter, QRectF(0, 0, side, side), *doc, Qt::black);
    };
    EXPECT_EQ(drawn(64), QRectF(27, 30, 10, 4));
    EXPECT_EQ(canvas.pixelColor(32, 32), QColor(Qt::blue));
    EXPECT_NE(canvas.pixelColor(26, 32), QColor(Qt::white));
    EXPECT_EQ(drawn(5).width(), 5) << "fits";
    UserDefaults::standard().setValue(QStringLiteral("KPQuicklookBordersImages"),
                                      PropertyValue::boolean(false));
    KPQuickLook without(setup());
    std::vector<KPQuickLook::Wanted> wanted = {{doc, 64}};
    without.want(&m_view, wanted);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !without.isBusy(); }, 30000));
    canvas.fill(Qt::white);
    QPainter painter(&canvas);
    without.draw(painter, QRectF(0, 0, 64, 64), *doc, Qt::black);
    EXPECT_EQ(canvas.pixelColor(26, 32), QColor(Qt::white));
}
