#include "KPProgramDialog.h"

#include <QLineEdit>
#include <QTest>
#include <gtest/gtest.h>

TEST(ProgramDialog, OpensWithTheFirstOneFoundByReturn)
{
    const auto program = [](const char *name) {
        XPApplications::Application made;
        made.name = QLatin1String(name);
        made.desktopEntry = made.name + QStringLiteral(".desktop");
        return made;
    };
    KPProgramDialog dialog({program("Painter"), program("Viewer")});
    dialog.show();
    auto *field = dialog.findChild<QLineEdit *>();
    field->setFocus();
    QTest::keyClicks(field, QStringLiteral("view"));
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(dialog.desktopEntry(), u"Viewer.desktop");
}
