#include "KPSettingRow.h"

#include "KPPreferencesWindow.h"
#include "UserDefaults.h"
#include "XPFactorySettings.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QKeySequenceEdit>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QSpinBox>
#include <QStackedWidget>
#include <QTest>
#include <QToolButton>
#include <gtest/gtest.h>

namespace {

class Preferences : public testing::Test
{
protected:
    void SetUp() override { XPFactorySettings::registerAll(); }
    void TearDown() override
    {
        for (const XPSetting &setting : XPFactorySettings::all())
            UserDefaults::standard().remove(setting.key);
    }

    static const XPSetting &named(const char *key)
    {
        return *XPFactorySettings::find(QString::fromLatin1(key));
    }
    static UserDefaults &defaults() { return UserDefaults::standard(); }
};

template <typename Widget>
Widget *in(const QWidget &parent)
{
    return parent.findChild<Widget *>();
}

} // namespace

// Every setting that has a control: it can be made, shows a value of its own, takes one back, and
// survives any other kind of value in the file.
TEST_F(Preferences, EveryRowFollowsItsSetting)
{
    for (const XPSetting &setting : XPFactorySettings::all()) {
        if (setting.page == XPSetting::Page::None || !*setting.text)
            continue;
        SCOPED_TRACE(qPrintable(setting.key));
        KPSettingRow row(setting);
        row.show();
        auto *reset = in<QToolButton>(row);
        EXPECT_FALSE(reset->isVisible());
        EXPECT_FALSE(defaults().isSaved(setting.key)) << "showing is no change";
        for (const PropertyValue &value :
             {PropertyValue::boolean(true), PropertyValue::boolean(false),
              PropertyValue::integer(7), PropertyValue::real(1e300), PropertyValue::real(-1),
              PropertyValue(QStringLiteral("x")), PropertyValue(QByteArray("\xff")),
              PropertyValue(PropertyValue::Array{PropertyValue::integer(9)}),
              PropertyValue(PropertyValue::Dictionary())}) {
            defaults().setValue(setting.key, value);
            EXPECT_EQ(reset->isVisible(), defaults().value(setting.key) != setting.factory);
        }
        if (reset->isVisible())
            QTest::mouseClick(reset, Qt::LeftButton);
        else
            defaults().remove(setting.key);
        EXPECT_EQ(defaults().value(setting.key), setting.factory);
        EXPECT_FALSE(reset->isVisible());
    }
}

TEST_F(Preferences, ControlsWriteAtOnce)
{
    KPSettingRow commas(named("KPUseCommas"));
    in<QCheckBox>(commas)->click();
    EXPECT_FALSE(defaults().boolValue(QStringLiteral("KPUseCommas")));
    in<QCheckBox>(commas)->click();
    EXPECT_FALSE(defaults().isSaved(QStringLiteral("KPUseCommas"))) << "the factory value again";

    KPSettingRow completes(named("XPSkipTagAutoComplete")); // its text says the opposite
    EXPECT_TRUE(in<QCheckBox>(completes)->isChecked());
    in<QCheckBox>(completes)->click();
    EXPECT_TRUE(defaults().boolValue(QStringLiteral("XPSkipTagAutoComplete")));

    KPSettingRow colours(named("KPScanMode"));
    auto *list = in<QComboBox>(colours);
    list->setCurrentIndex(1);
    Q_EMIT list->activated(1);
    EXPECT_EQ(defaults().stringValue(QStringLiteral("KPScanMode")), QStringLiteral("Gray"));

    KPSettingRow places(named("KPNumberOfRecentLocations"));
    in<QSpinBox>(places)->setValue(3);
    EXPECT_EQ(defaults().integerValue(QStringLiteral("KPNumberOfRecentLocations")), 3);

    KPSettingRow size(named("KPCacheSizeMB"));
    in<QDoubleSpinBox>(size)->setValue(100);
    EXPECT_EQ(defaults().value(QStringLiteral("KPCacheSizeMB")), PropertyValue::real(100));

    KPSettingRow prefix(named("KPSpotlightPrefix"));
    auto *field = in<QLineEdit>(prefix);
    field->setText(QStringLiteral("#"));
    Q_EMIT field->editingFinished();
    EXPECT_EQ(defaults().stringValue(QStringLiteral("KPSpotlightPrefix")), QStringLiteral("#"));
    field->clear();
    Q_EMIT field->editingFinished();
    EXPECT_EQ(field->text(), QStringLiteral("&")) << "nothing would make all words queries";

    KPSettingRow words(named("KPCustomWords"));
    in<QPlainTextEdit>(words)->setPlainText(QStringLiteral("one\ntwo"));
    EXPECT_EQ(defaults().stringValue(QStringLiteral("KPCustomWords")), QStringLiteral("one\ntwo"));

    KPSettingRow key(named("KPGlobalShortcut"));
    auto *keys = in<QKeySequenceEdit>(key);
    keys->setKeySequence(QKeySequence(QStringLiteral("Ctrl+Alt+M, Ctrl+B")));
    Q_EMIT keys->editingFinished();
    EXPECT_EQ(defaults().stringValue(QStringLiteral("KPGlobalShortcut")),
              QStringLiteral("Ctrl+Alt+M"));
}

TEST_F(Preferences, IdleWhileAnotherSettingIsOn)
{
    KPSettingRow always(named("KPFilesAlwaysPutInFiledDocuments"));
    EXPECT_FALSE(always.isEnabled());
    defaults().setValue(QStringLiteral("KPFiledDocumentsAsk"), PropertyValue::boolean(false));
    EXPECT_TRUE(always.isEnabled());
}

TEST_F(Preferences, SearchFindsAcrossPages)
{
    KPPreferencesWindow window({});
    window.show();
    auto *pages = in<QStackedWidget>(window);
    auto *list = in<QListWidget>(window);
    auto *field = in<QLineEdit>(window);
    const auto visibleRows = [&] {
        int count = 0;
        for (const KPSettingRow *row : pages->currentWidget()->findChildren<KPSettingRow *>())
            count += row->isVisible() ? 1 : 0;
        return count;
    };
    const int all = visibleRows();
    EXPECT_GT(all, 5);
    field->setText(qtTrId("KPPrefUseCommas").toUpper());
    EXPECT_EQ(list->currentItem()->text(), qtTrId("KPPrefPageTags"));
    EXPECT_EQ(visibleRows(), 1);
    field->setText(QStringLiteral("nothing of this kind"));
    for (int row = 0; row < list->count(); ++row)
        EXPECT_TRUE(list->item(row)->isHidden());
    field->clear();
    window.showPage(XPSetting::Page::Library);
    EXPECT_EQ(visibleRows(), all);
    window.showPage(XPSetting::Page::Privacy);
    EXPECT_EQ(list->currentItem()->text(), qtTrId("KPPrefPagePrivacy"));
}

// Whatever takes the focus says what it is; no text is an id that nobody translated.
TEST_F(Preferences, EverythingHasAName)
{
    KPPreferencesWindow window({});
    for (const QWidget *control : window.findChildren<QWidget *>()) {
        const auto *button = qobject_cast<const QAbstractButton *>(control);
        const bool isControl = button || qobject_cast<const QComboBox *>(control) ||
                               qobject_cast<const QAbstractSpinBox *>(control) ||
                               qobject_cast<const QKeySequenceEdit *>(control) ||
                               qobject_cast<const QPlainTextEdit *>(control) ||
                               qobject_cast<const QListWidget *>(control);
        const QString text = button ? button->text() : QString();
        if (isControl && control->focusPolicy() != Qt::NoFocus) {
            EXPECT_FALSE(control->accessibleName().isEmpty() && text.isEmpty())
                << control->metaObject()->className() << " in "
                << control->parentWidget()->metaObject()->className();
        }
    }
    for (const QLabel *label : window.findChildren<QLabel *>())
        EXPECT_FALSE(label->text().startsWith(u"KP")) << qPrintable(label->text());
}
