#include "KPPasteboardFetch.h"

#include "FiledFolder.h"
#include "SelectionProgram.h"

#include <QPointer>
#include <QTest>

using Manner = SelectionProgram::Manner;
using Fetched = KPPasteboardFetch::Fetched;

namespace {

class PasteboardFetch : public FiledFolder
{
protected:
    void SetUp() override
    {
        if (!server.isThere())
            GTEST_SKIP() << "no Xvfb here";
    }
    QPointer<KPPasteboardFetch> begin(const XPSelectionOffer::Source &source,
                                      const QStringList &formats)
    {
        return new KPPasteboardFetch(
            std::make_unique<XPSelectionOffer>(source, formats),
            m_folder.path(QStringLiteral("in")), [this](const Fetched &fetched) { got = fetched; },
            &parent);
    }
    bool comes()
    {
        return QTest::qWaitFor([this] { return got.has_value(); }, 20'000);
    }

    VirtualServer server;
    QObject parent;
    std::optional<Fetched> got;
    const QStringList picture{QStringLiteral("image/png")};
    const QStringList promise{XPDataOffer::directSaveFormat, XPDataOffer::anyBytesFormat};
};

} // namespace

TEST_F(PasteboardFetch, BringsWhatIsOfferedOrSaysWhyNot)
{
    using Kind = XPError::Kind;
    const QByteArray large(3'000'000, 'x');
    const struct
    {
        Manner manner = {};
        std::optional<Kind> failure;
    } cases[] = {{Manner::Gives, {}},
                 {Manner::Pieces, {}},
                 {Manner::Refuses, {}}, // nothing is there, which is no error
                 {Manner::DiesInPieces, Kind::NotFound}};
    for (const auto &each : cases) {
        const SelectionProgram program("CLIPBOARD", each.manner, large);
        got.reset();
        const auto fetch = begin({}, picture);
        ASSERT_TRUE(comes());
        EXPECT_EQ(got->failure ? std::optional(got->failure->kind) : std::nullopt, each.failure);
        const bool isGiven = each.manner == Manner::Gives || each.manner == Manner::Pieces;
        EXPECT_EQ(got->pb.data(XPPasteboard::Kind::Png), isGiven ? large : QByteArray());
        EXPECT_TRUE(QTest::qWaitFor([&] { return fetch.isNull(); }, 20'000));
    }
}

TEST_F(PasteboardFetch, LeavesNothingOfAPromiseThatIsRefused)
{
    const SelectionProgram program("XdndSelection", Manner::SavesFile, "F");
    const auto fetch = begin({"XdndSelection", program.window, 0}, promise);
    fetch->waitForSource();
    ASSERT_TRUE(comes());
    EXPECT_TRUE(got->failure);
    EXPECT_EQ(QDir(m_folder.path(QStringLiteral("in")))
                  .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList());
}

// The window is closed, or the program quits, while another program is asked.
TEST_F(PasteboardFetch, EndsAtOnceWithItsWindow)
{
    const SelectionProgram program("CLIPBOARD", Manner::Silent, {});
    {
        const auto fetch = begin({}, picture);
        delete fetch;
    }
    EXPECT_FALSE(got) << "nobody is there to be told";
    const auto dropped = begin({}, picture);
    QTimer::singleShot(0, dropped, [dropped] { delete dropped; });
    dropped->waitForSource();
    EXPECT_TRUE(dropped.isNull());
    EXPECT_FALSE(got);
}

TEST_F(PasteboardFetch, IsStoppedByTheUser)
{
    struct Progress : XPProgress
    {
        void begin(const Task &task) override { task->isStopAsked = true; }
        void end(const Task &) override {}
    };
    XPProgress::install(std::make_unique<Progress>());
    const SelectionProgram program("CLIPBOARD", Manner::Silent, {});
    begin({}, picture);
    ASSERT_TRUE(comes());
    ASSERT_TRUE(got->failure);
    EXPECT_EQ(got->failure->kind, XPError::Kind::Cancelled);
    XPProgress::install(nullptr);
}
