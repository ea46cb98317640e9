#include "XPDropZoneController.h"

#include "KPDocIcons.h"
#include "TestHome.h"
#include "UserDefaults.h"
#include "XPTagEditorController.h"
#include "XPTranslations.h"

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QTest>
#include <gtest/gtest.h>

namespace {

const QString showKey = QStringLiteral("KPShowDropZone");
const QString alwaysKey = QStringLiteral("KPShowDropZoneEvenWithoutFileDrag");
const QString yKey = QStringLiteral("KPDropZoneY");

class Delegate : public XPDropZoneDelegate
{
public:
    void prepareForDrag() override { ++prepared; }
    bool performDragOperation(const QMimeData *data, const XPDropZoneDestination &) override
    {
        taken.append(data->text());
        return takes;
    }
    void zoneClicked() override { ++clicked; }
    int prepared = 0;
    int clicked = 0;
    bool takes = true;
    QStringList taken;
};

// Where no program hears of drags over others: the zone is an ordinary window.
class DropZoneController : public testing::Test
{
protected:
    DropZoneController()
    {
        XPTranslations::install(QLocale(QLocale::English));
        KPDocIcons::registerIcons();
        set(showKey, true);
        set(alwaysKey, false);
        UserDefaults::standard().remove(yKey);
    }
    static void set(const QString &key, bool on)
    {
        UserDefaults::standard().setValue(key, PropertyValue::boolean(on));
    }
    static void drag(QWidget &window, const QMimeData &data)
    {
        QDragEnterEvent enter(QPoint(30, 90), Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(&window, &enter);
        QDropEvent drop(QPointF(30, 90), Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(&window, &drop);
    }
    Delegate delegate;
};

} // namespace

TEST_F(DropZoneController, FollowsItsSettings)
{
    XPDropZoneController zone(&delegate);
    EXPECT_EQ(XPDropZoneController::singleInstance(), &zone);
    EXPECT_FALSE(zone.window()->isVisible());
    set(alwaysKey, true);
    EXPECT_TRUE(zone.window()->isVisible());
    set(showKey, false);
    EXPECT_FALSE(zone.window()->isVisible());
    set(showKey, true);
    QTest::mouseClick(zone.window(), Qt::LeftButton, {}, {20, 20});
    EXPECT_EQ(delegate.clicked, 1);
}

TEST_F(DropZoneController, HandsADropOnAndGoesWhenItIsRefused)
{
    XPDropZoneController zone(&delegate);
    QMimeData text;
    text.setText(QStringLiteral("dropped"));
    zone.slideOnscreen();
    drag(*zone.window(), text);
    EXPECT_EQ(delegate.prepared, 1);
    EXPECT_TRUE(zone.dragWasToDropZone());
    EXPECT_TRUE(zone.isSlidOnscreen());
    delegate.takes = false;
    drag(*zone.window(), text);
    EXPECT_EQ(delegate.taken.size(), 2);
    EXPECT_FALSE(zone.isSlidOnscreen());
    EXPECT_FALSE(zone.dragWasToDropZone());
}

TEST_F(DropZoneController, WithoutADelegateNothingIsTaken)
{
    XPDropZoneController zone(nullptr);
    QMimeData text;
    text.setText(QStringLiteral("dropped"));
    zone.slideOnscreen();
    drag(*zone.window(), text);
    EXPECT_FALSE(zone.isSlidOnscreen());
}

TEST_F(DropZoneController, RemembersWhereItWasMovedAlone)
{
    {
        XPDropZoneController zone(&delegate);
        zone.writeOutStateWhenQuiting();
        EXPECT_FALSE(UserDefaults::standard().isSaved(yKey));
        Q_EMIT static_cast<XPDropZoneView *>(zone.window())->moved(-40);
        zone.writeOutStateWhenQuiting();
    }
    const double y = UserDefaults::standard().doubleValue(yKey);
    XPDropZoneController again(&delegate);
    EXPECT_EQ(again.dropZoneY(), y);
}

TEST_F(DropZoneController, OpensTheTagEditorAndGoesWithIt)
{
    const TestFolder folder;
    XPDropZoneController zone(&delegate);
    zone.editTagsForFilePaths({});
    EXPECT_FALSE(zone.isSlidOnscreen());
    zone.editTagsForFilePaths({folder.file(QStringLiteral("a")), folder.file(QStringLiteral("b"))});
    EXPECT_TRUE(zone.isSlidOnscreen());
    EXPECT_EQ(zone.window()->accessibleDescription(), u"2 documents filed");
    QWidget *editor = nullptr;
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (qobject_cast<XPTagEditorController *>(window) != nullptr)
            editor = window;
    }
    ASSERT_TRUE(editor && editor->isVisible());
    editor->close();
    EXPECT_FALSE(zone.isSlidOnscreen());
    EXPECT_FALSE(UserDefaults::standard().isSaved(QStringLiteral("XPTagsWindowFrame")))
        << "where the window's own editor stands";
}
