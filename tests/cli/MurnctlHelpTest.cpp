#include "Murnctl.h"

#include "XPAtomicFile.h"

#include <QProcess>
#include <QRegularExpression>
#include <gtest/gtest.h>

static QByteArrayList matches(const QByteArray &text, const char *pattern)
{
    QByteArrayList found;
    const QRegularExpression expression(QString::fromLatin1(pattern),
                                        QRegularExpression::MultilineOption);
    auto each = expression.globalMatch(QString::fromUtf8(text));
    while (each.hasNext())
        found.append(each.next().captured(1).toUtf8());
    return found;
}

static QByteArrayList completed(const QByteArray &command)
{
    QProcess shell;
    shell.start(QStringLiteral("bash"),
                {QStringLiteral("-c"), QStringLiteral(". '" MURNCTL_COMPLETION "'; "
                                                      "_murnctl_options ") +
                                           QString::fromUtf8(command)});
    EXPECT_TRUE(shell.waitForFinished());
    return shell.readAllStandardOutput().split('\n');
}

// What a command's help says, its manual and the completion of its words say too.
TEST(MurnctlHelp, IsWhatManualAndCompletionSay)
{
    const auto manual = XPAtomicFile::read(QStringLiteral(MURNCTL_MANUAL));
    ASSERT_TRUE(manual);
    const QByteArray plain = QByteArray(*manual).replace("\\-", "-");
    const QByteArray help = murnctl({"--help"}, QStringLiteral("/")).out;
    const QByteArrayList commands = matches(help, "^  ([a-z-]+) +\\S");
    EXPECT_GT(commands.size(), 20);
    for (const QByteArray &command : commands) {
        SCOPED_TRACE(command.constData());
        EXPECT_TRUE(plain.contains("\\fBmurnctl " + command + "\\fR") ||
                    plain.contains("\\fBmurnctl " + command + ' '));
        const QByteArrayList offered = completed(command);
        const QByteArray own = murnctl({command, "--help"}, QStringLiteral("/")).out;
        for (const QByteArray &option : matches(own, "^  (--?[a-z0-9-]+)")) {
            if (option == "--")
                continue;
            EXPECT_TRUE(offered.contains(option)) << "no completion of " << option.constData();
            EXPECT_TRUE(plain.contains(option)) << "not in the manual: " << option.constData();
        }
    }
}
