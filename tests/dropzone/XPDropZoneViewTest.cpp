#include "XPDropZoneView.h"

#include "KPDocIcons.h"
#include "KPDocPasteboard.h"
#include "XPTranslations.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

using Kind = XPDropZoneChoices::Kind;

namespace {

class DropZone : public testing::Test
{
protected:
    DropZone()
    {
        XPTranslations::install(QLocale(QLocale::English));
        KPDocIcons::registerIcons();
        QObject::connect(&view, &XPDropZoneView::dropped, &view,
                         [this](const QMimeData *, const XPDropZoneDestination &to) {
                             destinations.append(to);
                         });
        view.setChoices({{QStringLiteral("/home/a/Bills"), QStringLiteral("/home/a/Letters")},
                         {{QStringLiteral("tax"), QStringLiteral("2026")}},
                         QStringLiteral("2026/11/25"),
                         view.sizeHint()});
        text.setText(QStringLiteral("twenty-one characters"));
    }
    QPoint middle(int row) const { return view.choices().rows().at(row).place.center(); }
    bool enters(const QMimeData &data, const QPoint &at)
    {
        QDragEnterEvent enter(at, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(&view, &enter);
        EXPECT_TRUE(!enter.isAccepted() || enter.dropAction() == Qt::CopyAction);
        return enter.isAccepted();
    }
    void drop(const QPoint &at)
    {
        EXPECT_TRUE(enters(text, at));
        QDropEvent event(at, Qt::CopyAction | Qt::MoveAction, &text, Qt::LeftButton, {});
        QApplication::sendEvent(&view, &event);
        EXPECT_EQ(event.dropAction(), Qt::CopyAction);
    }
    // Stays over a row until it springs.
    void hold(int row)
    {
        enters(text, middle(row));
        const auto before = view.choices().rows().first().kind;
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return view.choices().rows().first().kind != before; }, 20'000));
    }

    XPDropZoneView view;
    QMimeData text;
    QList<XPDropZoneDestination> destinations;
};

} // namespace

TEST_F(DropZone, SpringsOpenWhereADragStays)
{
    ASSERT_EQ(view.choices().rows().size(), 3);
    drop(middle(0));
    hold(1);
    ASSERT_EQ(view.choices().rows().size(), 3);
    EXPECT_EQ(view.choices().rows().at(2).text, u"Letters");
    drop(middle(2));
    EXPECT_EQ(view.choices().rows().first().kind, Kind::Today);
    hold(2);
    drop(middle(1));
    drop(middle(2)); // did not wait
    drop({1, 1});    // beside the rows
    const QList<XPDropZoneDestination> expected = {
        {},
        {QStringLiteral("/home/a/Letters"), {}},
        {{}, {QStringLiteral("tax"), QStringLiteral("2026")}},
        {},
        {}};
    EXPECT_EQ(destinations, expected);
}

TEST_F(DropZone, LeadsBackAndForgetsWhenTheDragLeaves)
{
    hold(1);
    hold(0);
    EXPECT_EQ(view.choices().rows().first().kind, Kind::Today);
    hold(2);
    QDragLeaveEvent leave;
    QApplication::sendEvent(&view, &leave);
    EXPECT_EQ(view.choices().rows().first().kind, Kind::Today);
}

TEST_F(DropZone, TakesWhatCouldBeADocumentOfAnotherProgram)
{
    QMimeData promise, own, strange;
    promise.setData(QStringLiteral("XdndDirectSave0"), {});
    own.setText(QStringLiteral("a document of the library"));
    KPDocPasteboard::setPaths(own, {QStringLiteral("/a")});
    strange.setData(QStringLiteral("application/x-strange"), "?");
    EXPECT_TRUE(enters(text, middle(0)));
    EXPECT_TRUE(enters(promise, middle(0)));
    EXPECT_FALSE(enters(own, middle(0)));
    EXPECT_FALSE(enters(strange, middle(0)));
}

TEST_F(DropZone, EveryRowLiesInTheZone)
{
    QList<QStringList> many;
    QStringList folders;
    for (int i = 0; i < 20; ++i) {
        many.append({QString::number(i)});
        folders.append(QStringLiteral("/f/%1").arg(i));
    }
    XPDropZoneChoices choices(folders, many, QString(), view.sizeHint());
    const QRect all(QPoint(), view.sizeHint());
    for (const int row : {0, 1, 0, 2}) {
        choices.spring(row);
        for (const auto &shown : choices.rows())
            EXPECT_TRUE(all.contains(shown.place) && shown.place.height() >= 40);
    }
    const XPDropZoneChoices none({}, {}, QString(), view.sizeHint());
    EXPECT_EQ(none.rows().size(), 1);
}

TEST_F(DropZone, IsMovedOrClicked)
{
    QSignalSpy clicked(&view, &XPDropZoneView::clicked);
    QSignalSpy moved(&view, &XPDropZoneView::moved);
    QTest::mouseClick(&view, Qt::LeftButton, {}, {20, 20});
    EXPECT_EQ(clicked.count(), 1);
    QTest::mousePress(&view, Qt::LeftButton, {}, {20, 20});
    QMouseEvent move(QEvent::MouseMove, QPointF(20, 60), view.mapToGlobal(QPointF(20, 60)),
                     Qt::LeftButton, Qt::LeftButton, {});
    QApplication::sendEvent(&view, &move);
    QTest::mouseRelease(&view, Qt::LeftButton, {}, {20, 60});
    ASSERT_EQ(moved.count(), 1);
    EXPECT_EQ(moved.first().first().toInt(), 40);
    EXPECT_EQ(clicked.count(), 1);
}
