#include "XPTagChip.h"

#include "XPFlowLayout.h"

#include <QSignalSpy>
#include <QTest>
#include <QWidget>
#include <gtest/gtest.h>

TEST(TagChip, ItsCrossRemovesAndTheRestAsksForTheOtherState)
{
    XPTagChip chip(QStringLiteral("invoice"));
    chip.resize(chip.sizeHint());
    chip.show();
    QSignalSpy removed(&chip, &XPTagChip::removeRequested);
    QSignalSpy clicked(&chip, &XPTagChip::clicked);
    const QPoint cross(chip.width() - chip.height() / 2, chip.height() / 2);
    const QPoint name(8, chip.height() / 2);
    QTest::mouseClick(&chip, Qt::LeftButton, {}, name);
    EXPECT_EQ(clicked.size(), 1);
    QTest::mousePress(&chip, Qt::LeftButton, {}, cross);
    QTest::mouseRelease(&chip, Qt::LeftButton, {}, name);
    EXPECT_EQ(removed.size(), 0) << "taken back by moving away";
    QTest::mouseClick(&chip, Qt::LeftButton, {}, cross);
    EXPECT_EQ(removed.size(), 1);
    EXPECT_EQ(clicked.size(), 1);
    for (const auto key : {Qt::Key_Delete, Qt::Key_Backspace})
        QTest::keyClick(&chip, key);
    EXPECT_EQ(removed.size(), 3);
}

TEST(TagChip, ShowsHostileNamesPlainlyAndNoWiderThanALine)
{
    const XPTagChip mnemonic(QStringLiteral("R&D"));
    EXPECT_EQ(mnemonic.tag(), QStringLiteral("R&D"));
    EXPECT_TRUE(mnemonic.accessibleName().contains(u"R&D"));
    const QString turned = QStringLiteral("a") + QChar(0x202E) + QStringLiteral("b");
    EXPECT_FALSE(XPTagChip(turned).accessibleName().contains(QChar(0x202E)));
    const XPTagChip endless(QString(4000, u'x'));
    EXPECT_LE(endless.sizeHint().width(), 220);
}

TEST(TagChip, SaysWhenItExcludes)
{
    XPTagChip chip(QStringLiteral("draft"));
    chip.resize(chip.sizeHint());
    chip.setTogglable(true);
    const QString with = chip.accessibleName();
    const QImage look = chip.grab().toImage();
    chip.setExcluded(true);
    EXPECT_NE(chip.accessibleName(), with);
    EXPECT_NE(chip.grab().toImage(), look);
}

// Lines of at most `width`, the widths in each.
static QList<QList<int>> lines(const QWidget &parent)
{
    QMap<int, QMap<int, int>> byPlace;
    for (const QObject *child : parent.children()) {
        if (const auto *widget = qobject_cast<const QWidget *>(child))
            byPlace[widget->y()].insert(widget->x(), widget->width());
    }
    QList<QList<int>> result;
    for (const auto &line : byPlace)
        result.append(line.values());
    return result;
}

TEST(FlowLayout, WrapsLikeWordsAndGivesTheLastTheRest)
{
    const struct
    {
        int width = 0;
        QList<int> widths;
        QList<QList<int>> expected;
    } cases[] = {
        {200, {50, 50, 20}, {{50, 50, 92}}},    {108, {50, 50, 20}, {{50, 50}, {108}}},
        {104, {50, 50, 20}, {{50, 50}, {104}}}, {103, {50, 50, 20}, {{50}, {50, 49}}},
        {30, {50, 10}, {{30}, {30}}}, // never wider than there is room
    };
    for (const auto &each : cases) {
        QWidget parent;
        auto *layout = new XPFlowLayout(&parent, 4);
        layout->setContentsMargins(0, 0, 0, 0);
        for (const int width : each.widths) {
            auto *widget = new QWidget(&parent);
            widget->setFixedHeight(10);
            widget->setMinimumWidth(1);
            widget->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
            struct Item : QWidgetItem
            {
                Item(QWidget *shown, int wide) : QWidgetItem(shown), m_wide(wide) {}
                QSize sizeHint() const override { return {m_wide, 10}; }
                int m_wide;
            };
            layout->addItem(new Item(widget, width));
        }
        const int height = layout->heightForWidth(each.width);
        layout->setGeometry({0, 0, each.width, height});
        EXPECT_EQ(lines(parent), each.expected) << each.width;
        EXPECT_EQ(height, each.expected.size() * 10 + (each.expected.size() - 1) * 4);
    }
}

TEST(FlowLayout, LeavesTheLastAsWideAsItIsWhereItDoesNotExpand)
{
    QWidget row;
    auto *layout = new XPFlowLayout(&row);
    auto *chip = new XPTagChip(QStringLiteral("invoice"));
    layout->addWidget(chip);
    layout->setGeometry({0, 0, 400, 100});
    EXPECT_EQ(chip->width(), chip->sizeHint().width());
}
