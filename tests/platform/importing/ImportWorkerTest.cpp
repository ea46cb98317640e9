#include "ImportWorker.h"
#include "ImportDocument.h"

#include "TestHome.h"
#include "XPPath.h"

#include <fcntl.h>
#include <future>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace std::chrono_literals;
using Outcome = ImportWorker::Outcome;

static ImportWorker::Setup hostile(std::chrono::milliseconds limit = 200ms)
{
    return {.program = MURN_TEST_IMPORTER, .idle = false, .limit = limit};
}

static ImportDocument documentAt(const QString &path)
{
    auto document = ImportDocument::open(XPPath::encode(path), QStringLiteral("public.data"));
    if (!document)
        qFatal("cannot open a test document");
    return std::move(document).value();
}

static Outcome run(ImportWorker &worker, const QString &path, const std::stop_token &stop = {})
{
    const ImportDocument document = documentAt(path);
    return worker.run(document.job(), document.descriptor.get(), stop);
}

static QByteArray contentsOf(const QByteArray &path)
{
    const XPFileDescriptor file(::open(path.constData(), O_RDONLY | O_CLOEXEC));
    char buffer[1024];
    const ssize_t size = ::read(file.get(), buffer, sizeof buffer);
    return QByteArray(buffer, std::max<ssize_t>(size, 0));
}

static QByteArray textOf(const Outcome &outcome)
{
    const auto *frame = std::get_if<ImportFrame>(&outcome);
    const auto answer = frame ? documentAnswerFrom(*frame) : XPError{};
    return answer ? answer->text.utf8() : "none";
}

// Whatever it does, the client goes on, and the next document is read well.
TEST(ImportWorker, SurvivesWhatAnImporterDoes)
{
    const TestFolder folder;
    const QString good = folder.file(QStringLiteral("good.txt"));
    const struct
    {
        const char *extension = nullptr;
        std::optional<DocumentFailure> failure; // none: an answer, which may be nonsense
    } rows[] = {
        {"die", DocumentFailure::Crashed},
        {"exit", DocumentFailure::Crashed},
        {"mid", DocumentFailure::Crashed},
        {"sleep", DocumentFailure::TimedOut},
        {"stall", DocumentFailure::TimedOut},
        {"compute", DocumentFailure::TimedOut},
        {"flood", DocumentFailure::Crashed},
        {"long", DocumentFailure::Crashed},
        {"short", DocumentFailure::TimedOut},
        {"hello", {}},
        {"rubbish", {}},
        {"twice", {}},
    };
    ImportWorker worker(hostile());
    for (const auto &row : rows) {
        const Outcome outcome =
            run(worker, folder.file(QStringLiteral("file.") + QLatin1String(row.extension)));
        const auto *end = std::get_if<ImportWorker::Break>(&outcome);
        ASSERT_EQ(end != nullptr, row.failure.has_value()) << row.extension;
        if (end) {
            EXPECT_EQ(end->failure, *row.failure) << row.extension;
            EXPECT_FALSE(end->reason.isEmpty()) << row.extension;
        }
        EXPECT_EQ(textOf(run(worker, good)), "well read") << "after " << row.extension;
    }
}

TEST(ImportWorker, SaysHowAnImporterDied)
{
    const TestFolder folder;
    ImportWorker worker(hostile());
    const Outcome outcome = run(worker, folder.file(QStringLiteral("file.die")));
    ASSERT_TRUE(std::holds_alternative<ImportWorker::Break>(outcome));
    EXPECT_EQ(std::get<ImportWorker::Break>(outcome).reason,
              u"killed by signal 11 (Segmentation fault)");
}

TEST(ImportWorker, ReportsAnImporterThatDoesNotStart)
{
    const TestFolder folder;
    const QString path = folder.file(QStringLiteral("file.txt"));
    for (const QByteArray &program :
         {QByteArray(), QByteArray("/nowhere"), QByteArray("/bin/true"), QByteArray("/bin/echo")}) {
        ImportWorker worker({.program = program});
        const Outcome outcome = run(worker, path);
        ASSERT_TRUE(std::holds_alternative<XPError>(outcome)) << program.constData();
        EXPECT_FALSE(std::get<XPError>(outcome).message.isEmpty());
    }
}

TEST(ImportWorker, StopsAtOnce)
{
    const TestFolder folder;
    ImportWorker worker(hostile(1h));
    std::stop_source stop;
    auto outcome = std::async(std::launch::async, [&] {
        return run(worker, folder.file(QStringLiteral("file.sleep")), stop.get_token());
    });
    stop.request_stop();
    ASSERT_EQ(outcome.wait_for(60s), std::future_status::ready);
    const Outcome ended = outcome.get();
    ASSERT_TRUE(std::holds_alternative<XPError>(ended));
    EXPECT_EQ(std::get<XPError>(ended).kind, XPError::Kind::Cancelled);
}

// Whether the importer that this thread started is stopped in the kernel's eyes.
static bool hasStoppedChild()
{
    QByteArray child = contentsOf("/proc/thread-self/children").trimmed();
    const QByteArray facts = contentsOf("/proc/" + child + "/stat");
    return facts.mid(facts.lastIndexOf(')') + 2, 1) == "T";
}

// In the middle of a file, and without running into its time limit.
TEST(ImportWorker, StandsStillWhilePaused)
{
    const TestFolder folder;
    ImportManners manners({[] { return false; }, [] { return std::nullopt; }});
    ImportPause &pause = manners.pause();
    auto setup = hostile(100ms);
    setup.manners = &manners;
    ImportWorker worker(setup);
    ASSERT_TRUE(worker.hello());
    pause.set(ImportPause::Pictures, true);
    pause.set(ImportPause::Asked, true);
    auto outcome = std::async(std::launch::async, [&] {
        return run(worker, folder.file(QStringLiteral("file.compute")));
    });
    const auto deadline = std::chrono::steady_clock::now() + 60s;
    while (!hasStoppedChild() && std::chrono::steady_clock::now() < deadline)
        std::this_thread::yield();
    EXPECT_TRUE(hasStoppedChild());
    pause.set(ImportPause::Pictures, false);
    EXPECT_TRUE(hasStoppedChild());
    pause.set(ImportPause::Asked, false);
    ASSERT_EQ(outcome.wait_for(60s), std::future_status::ready);
    const Outcome ended = outcome.get();
    ASSERT_TRUE(std::holds_alternative<ImportWorker::Break>(ended));
    EXPECT_EQ(std::get<ImportWorker::Break>(ended).failure, DocumentFailure::TimedOut);
}

TEST(ImportWorker, ReadsThroughTheCage)
{
    const TestFolder folder;
    ImportWorker worker({.program = MURN_IMPORTER});
    const auto hello = worker.hello();
    ASSERT_TRUE(hello) << hello.error().message.toStdString();
    EXPECT_TRUE(hello->seccomp);
    EXPECT_FALSE(hello->types.isEmpty());
    const ImportDocument document =
        std::move(ImportDocument::open(
                      XPPath::encode(folder.file(QStringLiteral("a.md"), "# Title\ntext\n")),
                      QStringLiteral("net.daringfireball.markdown")))
            .value();
    for (int i = 0; i < 3; ++i) {
        const Outcome outcome = worker.run(document.job(), document.descriptor.get());
        ASSERT_TRUE(std::holds_alternative<ImportFrame>(outcome));
        const auto answer = documentAnswerFrom(std::get<ImportFrame>(outcome));
        ASSERT_TRUE(answer);
        EXPECT_EQ(answer->title, u"Title");
        EXPECT_EQ(answer->text.utf8(), "# Title\ntext\n");
    }
}

// Scaled by several threads at once, which each want a dispatcher of their own.
TEST(ImportWorker, DrawsLargePicturesInTheCage)
{
    const TestFolder folder;
    const QByteArray samples(3 * 1200 * 1200, '\x40');
    const QString path = folder.file(QStringLiteral("a.ppm"), "P6 1200 1200 255\n" + samples);
    const auto document =
        ImportDocument::open(XPPath::encode(path), QStringLiteral("public.image"));
    ASSERT_TRUE(document);
    ImportJob job = document->job();
    job.page = 1;
    job.pixels = 600;
    ImportWorker worker({.program = MURN_IMPORTER});
    const Outcome outcome = worker.run(job, document->descriptor.get());
    ASSERT_TRUE(std::holds_alternative<ImportFrame>(outcome));
    const auto picture = ImportPicture::from(std::get<ImportFrame>(outcome));
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->width, 600);
    EXPECT_EQ(picture->pixels.left(4), QByteArray("\x40\x40\x40\xFF"));
}

TEST(ImportDocument, OpensRegularFilesOnly)
{
    const TestFolder folder;
    const QString file = folder.file(QStringLiteral("file.tXt"), "12345");
    const QByteArray link = XPPath::encode(folder.path(QStringLiteral("link")));
    const QByteArray pipe = XPPath::encode(folder.path(QStringLiteral("pipe")));
    ASSERT_EQ(::symlink(XPPath::encode(file).constData(), link.constData()), 0);
    ASSERT_EQ(::mkfifo(pipe.constData(), 0600), 0);
    for (const QByteArray &odd : {link, pipe, QByteArray("/dev/zero"), QByteArray("/nowhere"),
                                  XPPath::encode(folder.path())})
        EXPECT_FALSE(ImportDocument::open(odd, QStringLiteral("public.data"))) << odd.constData();
    const auto document = documentAt(file);
    EXPECT_EQ(document.size, 5);
    EXPECT_EQ(document.job().extension, u"txt");
    const QByteArray odd = XPPath::encode(folder.path()) + "/name.\xFF";
    ASSERT_EQ(::rename(XPPath::encode(file).constData(), odd.constData()), 0);
    const auto same = ImportDocument::open(odd, QStringLiteral("public.data"));
    ASSERT_TRUE(same);
    EXPECT_EQ(same->job().extension, QString());
    EXPECT_TRUE(ImportJob::from(same->job().frame()));
}
