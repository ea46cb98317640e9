#include "XPSelectionOffer.h"

#include "SelectionProgram.h"

#include <gtest/gtest.h>

using Kind = XPError::Kind;
using namespace std::chrono_literals;

namespace {

using Manner = SelectionProgram::Manner;

class SelectionOffer : public testing::Test
{
protected:
    static void SetUpTestSuite() { server = new VirtualServer; }
    static void TearDownTestSuite() { delete server; }
    void SetUp() override
    {
        if (!server->isThere())
            GTEST_SKIP() << "no Xvfb here";
    }
    // What comes, or the kind of the failure as a number.
    static QByteArray read(Manner manner, const QByteArray &bytes)
    {
        const SelectionProgram program("CLIPBOARD", manner, bytes);
        XPSelectionOffer offer({}, {QStringLiteral("image/png")});
        if (manner == Manner::Silent)
            offer.setPatience(1ms);
        const auto answer = offer.read(QStringLiteral("image/png"));
        if (answer)
            return *answer;
        EXPECT_FALSE(offer.read(QStringLiteral("image/png"))); // not asked again
        return "error " + QByteArray::number(static_cast<int>(answer.error().kind));
    }
    static QByteArray failed(Kind kind)
    {
        return "error " + QByteArray::number(static_cast<int>(kind));
    }
    static VirtualServer *server;
};

VirtualServer *SelectionOffer::server = nullptr;

} // namespace

TEST_F(SelectionOffer, IsReadInOneOrInPiecesAndSurvivesItsSource)
{
    QByteArray large(3'000'001, 'x');
    large[2'999'999] = 'y';
    EXPECT_EQ(read(Manner::Gives, "bytes"), "bytes");
    EXPECT_EQ(read(Manner::Pieces, large), large);
    EXPECT_EQ(read(Manner::Refuses, "bytes"), "");
    EXPECT_EQ(read(Manner::DiesInPieces, large), failed(Kind::NotFound));
    EXPECT_EQ(read(Manner::Silent, "bytes"), failed(Kind::Io));
    XPSelectionOffer nobody({}, {});
    EXPECT_EQ(nobody.read(QStringLiteral("image/png")).error().kind, Kind::NotFound);
}

TEST_F(SelectionOffer, IsGivenUpWhenItIsCancelled)
{
    const SelectionProgram program("CLIPBOARD", Manner::Silent, {});
    XPSelectionOffer offer({}, {});
    std::thread stopper([&offer] { offer.cancel(); });
    EXPECT_EQ(offer.read(QStringLiteral("image/png")).error().kind, Kind::Cancelled);
    stopper.join();
}

TEST_F(SelectionOffer, HasItsSourceWriteAFile)
{
    using Answer = XPDataOffer::Answer;
    struct Row
    {
        QByteArray says;
        Answer answer;
    };
    for (const Row &row : {Row{"S", Answer::Writes}, Row{"F", Answer::WantsToBeRead},
                           Row{"E", Answer::Refuses}, Row{"", Answer::Refuses}}) {
        const SelectionProgram program("XdndSelection", Manner::SavesFile, row.says);
        XPSelectionOffer offer({"XdndSelection", program.window, 0},
                               {XPDataOffer::directSaveFormat, XPDataOffer::anyBytesFormat});
        EXPECT_EQ(offer.promisedName(), QByteArray("promise.x"));
        const auto answer = offer.save("file:///wanted");
        ASSERT_TRUE(answer);
        EXPECT_EQ(*answer, row.answer) << row.says.toStdString();
    }
}
