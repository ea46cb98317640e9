#include "KPLoginSection.h"

#include "TestHome.h"
#include "XPMutex.h"
#include "XPPrompts.h"

#include <QCheckBox>
#include <QFile>
#include <QTest>
#include <gtest/gtest.h>

namespace {

struct Prompts : public XPPrompts
{
    explicit Prompts(QStringList *list) : m_alerts(list) {}
    void ask(const Question &question, std::function<void(int)> answer) override
    {
        answer(question.cancelButton);
    }
    void alert(const QString &, const QString &text) override { m_alerts->append(text); }
    QStringList *m_alerts;
};

// A systemctl that keeps the unit's state in a file: none, the unit is not installed.
class LoginSection : public testing::Test
{
protected:
    LoginSection()
    {
        xpGuiThread.assertHere();
        XPPrompts::install(std::make_unique<Prompts>(&m_alerts));
        qputenv("PATH", QFile::encodeName(m_folder.path()) + ':' + m_path);
        qputenv("STATE", QFile::encodeName(state()));
        QFile program(m_folder.path(QStringLiteral("systemctl")));
        EXPECT_TRUE(program.open(QIODevice::WriteOnly));
        program.write("#!/bin/sh\n"
                      "[ \"$1 $2\" = '--user --no-pager' ] || exit 9\n"
                      "for unit; do :; done\n"
                      "[ \"$unit\" = murn-index.service ] || exit 9\n"
                      "case $3 in\n"
                      "is-enabled) cat \"$STATE\" ;;\n"
                      "enable|disable)\n"
                      "  [ -w \"$STATE\" ] && [ \"$4\" = --now ] || { echo refused >&2; exit 1; }\n"
                      "  echo \"${3}d\" > \"$STATE\" ;;\n"
                      "esac\n");
        program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    ~LoginSection() override
    {
        xpGuiThread.assertHere();
        XPPrompts::install(nullptr);
        qputenv("PATH", m_path);
    }

    QString state() const { return m_folder.path(QStringLiteral("state")); }
    QByteArray stored() const
    {
        QFile file(state());
        return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed() : QByteArray();
    }
    void store(const QByteArray &text) const
    {
        QFile file(state());
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
    static QCheckBox &box(KPLoginSection &section) { return *section.findChild<QCheckBox *>(); }

    const TestFolder m_folder;
    const QByteArray m_path = qgetenv("PATH");
    QStringList m_alerts;
};

} // namespace

TEST_F(LoginSection, SwitchesTheServiceAndShowsHowItIs)
{
    store("disabled");
    KPLoginSection section;
    section.show();
    ASSERT_TRUE(QTest::qWaitFor([&] { return box(section).isEnabled(); }));
    EXPECT_FALSE(box(section).isChecked());
    QTest::keyClick(&box(section), Qt::Key_Space);
    EXPECT_TRUE(QTest::qWaitFor([&] { return stored() == "enabled"; }));
    // The last of several counts.
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(&box(section), Qt::Key_Space);
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return stored() == "disabled" && !box(section).isChecked(); }));

    // What cannot be switched is said, and the box shows what holds.
    ASSERT_TRUE(QFile::remove(state()));
    QTest::keyClick(&box(section), Qt::Key_Space);
    EXPECT_TRUE(QTest::qWaitFor([&] {
        return m_alerts == QStringList{QStringLiteral("refused")} && !box(section).isEnabled();
    }));
    EXPECT_FALSE(box(section).isChecked());
}

TEST_F(LoginSection, CannotBeSwitchedWithoutTheServiceOrSystemd)
{
    for (const bool isThere : {true, false}) {
        SCOPED_TRACE(isThere);
        if (!isThere)
            qputenv("PATH", "/nowhere");
        KPLoginSection section;
        section.show();
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return box(section).accessibleDescription() == qtTrId("KPPrefLoginAbsent"); }));
        EXPECT_FALSE(box(section).isEnabled());
    }
}
