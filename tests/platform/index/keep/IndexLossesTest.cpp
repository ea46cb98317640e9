#include "IndexLosses.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

const QByteArray path = "/a";

IndexRecord fileWith(const QStringList &attributes, quint64 inode = 1)
{
    IndexRecord record;
    record.info.mode = S_IFREG | 0644;
    record.info.inode = inode;
    for (const QString &name : attributes)
        record.attributes.insert(name, PropertyValue::boolean(true));
    return record;
}

class Losses : public testing::Test
{
protected:
    std::vector<IndexLoss> m_found;
    IndexLosses m_losses{[this](IndexLoss loss) { m_found.push_back(std::move(loss)); }};
    const QStringList m_both = {QStringLiteral("a"), QStringLiteral("b")};
};

} // namespace

TEST_F(Losses, AreFilesMadeWhereAnotherWasShortlyBefore)
{
    m_losses.gone(path, fileWith(m_both), 1000);
    m_losses.made("/b", fileWith({}), 1000);
    EXPECT_TRUE(m_found.empty());
    m_losses.made(path, fileWith({}), 3000);
    ASSERT_EQ(m_found.size(), 1U);
    EXPECT_TRUE(m_found.front().isSeen);
    EXPECT_EQ(m_found.front().attributes.size(), 2);
    m_losses.made(path, fileWith({}), 3000);
    EXPECT_EQ(m_found.size(), 1U) << "told once";
    m_losses.gone(path, fileWith(m_both), 4000);
    m_losses.made(path, fileWith({}), 6001);
    EXPECT_EQ(m_found.size(), 1U) << "too late";
}

TEST_F(Losses, AreFilesThatLackSomethingOfTheOneBefore)
{
    const IndexRecord before = fileWith(m_both);
    m_losses.replaced(path, before, fileWith(m_both, 2), true);
    m_losses.replaced(path, before, fileWith({}), false); // the same file: taken away on purpose
    IndexRecord folder = fileWith({}, 2);
    folder.info.mode = S_IFDIR | 0755;
    m_losses.replaced(path, before, folder, true);
    const IndexRecord desktops =
        fileWith({QStringLiteral("xdg.tags"), QStringLiteral("baloo.rating")});
    m_losses.replaced(path, desktops, fileWith({}, 2), true); // not ours to put back
    EXPECT_TRUE(m_found.empty());
    m_losses.replaced(path, before, fileWith({QStringLiteral("a")}, 2), true);
    EXPECT_EQ(m_found.size(), 1U);
    // A number that was given again, and times of birth as a row keeps them: in whole seconds.
    IndexRecord now = fileWith({});
    now.info.birth = 5'500'000'000;
    IndexRecord old = before;
    old.info.birth = 5'000'000'000;
    m_losses.replaced(path, old, now, false);
    EXPECT_EQ(m_found.size(), 1U);
    old.info.birth = 4'000'000'000;
    m_losses.replaced(path, old, now, false);
    ASSERT_EQ(m_found.size(), 2U);
    EXPECT_FALSE(m_found.back().isSeen);
}
