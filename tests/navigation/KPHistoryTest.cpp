#include "KPHistory.h"

#include <gtest/gtest.h>

namespace {

// Items are opaque to the history.
KPNavigator::SourceItem source()
{
    static int something;
    return {std::shared_ptr<void>(), reinterpret_cast<KPBaseItem *>(&something)};
}

KPNavigator::LocationItem location()
{
    static int something;
    return {std::shared_ptr<void>(), reinterpret_cast<KPLocationItem *>(&something)};
}

KPSearchState::Ptr words(const char *text)
{
    return KPSearchState::blankSearchState()->searchStateWithNewSearchString(
        QString::fromLatin1(text), true, true, true);
}

QString shown(const KPHistory::Entry *entry)
{
    return entry ? entry->state()->searchString() : QStringLiteral("-");
}

// "back (present) forward", and the two counts.
QString standing(const KPHistory &history)
{
    return QStringLiteral("%1 (%2) %3, %4 %5")
        .arg(shown(history.backItem()), shown(history.currentItem()), shown(history.forwardItem()))
        .arg(history.backListCount())
        .arg(history.forwardListCount());
}

} // namespace

TEST(History, GoesBackAndForthAndDropsWhatWasAhead)
{
    KPHistory history;
    EXPECT_EQ(standing(history), u"- (-) -, -1 0");
    history.goBack();
    history.goForward();
    EXPECT_EQ(standing(history), u"- (-) -, -1 0");
    for (const char *text : {"a", "b", "c"})
        history.addItem(KPHistory::Entry(words(text)));
    EXPECT_EQ(standing(history), u"b (c) -, 2 0");
    for (int steps = 0; steps < 4; ++steps)
        history.goBack();
    EXPECT_EQ(standing(history), u"- (a) b, 0 2");
    history.goForward();
    EXPECT_EQ(standing(history), u"a (b) c, 1 1");
    history.addItem(KPHistory::Entry(words("d")));
    EXPECT_EQ(standing(history), u"b (d) -, 2 0");
    history.goForward();
    EXPECT_EQ(standing(history), u"b (d) -, 2 0");
    history.clearList();
    EXPECT_EQ(standing(history), u"- (-) -, -1 0");
    history.addItem(KPHistory::Entry(words("e")));
    EXPECT_EQ(standing(history), u"- (e) -, 0 0");
}

// Nothing stands behind what is absent.
TEST(History, AnEntryEndsWhereSomethingIsAbsent)
{
    const auto state = words("a");
    EXPECT_EQ(KPHistory::Entry(state, source(), location()).count(), 3);
    EXPECT_EQ(KPHistory::Entry(state, source()).count(), 2);
    const KPHistory::Entry withoutSource(state, {}, location());
    EXPECT_EQ(withoutSource.count(), 1);
    EXPECT_FALSE(withoutSource.locationItem());
    EXPECT_EQ(KPHistory::Entry(nullptr, source(), location()).count(), 0);
}
