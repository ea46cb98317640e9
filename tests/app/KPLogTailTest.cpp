#include "KPLogTail.h"

#include "XPLog.h"

#include <QString>
#include <gtest/gtest.h>

TEST(LogTail, KeepsWordsButNoNames)
{
    const struct
    {
        const char16_t *message;
        const char *kept; // the end of the line
    } cases[] = {
        {u"a thread failed to quit", "a thread failed to quit"},
        {u"/home/me/Secret.pdf cannot be read", "f.cpp:7  ..."},
        {u"cannot read \"Secret.pdf\"", "cannot read ..."},
        {u"cannot read “Secret.pdf”", "cannot read ..."},
        {u"Not moved: Secret.pdf", "Not moved ..."},
        {u"two\nlines", "two ..."},
    };
    for (const auto &each : cases) {
        std::array<char, KPLogTail::lineLength> line = {};
        KPLogTail::write(line, QtWarningMsg, "/builder/src/f.cpp", 7,
                         QString::fromUtf16(each.message));
        const QString text = QString::fromUtf8(line.data());
        EXPECT_TRUE(text.endsWith(QLatin1String(each.kept))) << text.toStdString();
        EXPECT_FALSE(text.contains(u"Secret"));
        EXPECT_TRUE(text.contains(u"warning f.cpp:7"));
    }
    std::array<char, KPLogTail::lineLength> line = {};
    KPLogTail::write(line, QtInfoMsg, nullptr, 0, QString(100'000, u'ä')); // cut, and ended
    EXPECT_EQ(line.back(), '\0');
}

TEST(LogTail, HoldsTheLastLinesInTheirOrder)
{
    KPLogTail::install();
    for (size_t number = 0; number < KPLogTail::lineCount + 5; ++number)
        qCDebug(xpLog) << "unseen" << number; // switched off: not logged at all
    for (size_t number = 0; number < KPLogTail::lineCount + 5; ++number)
        qCInfo(xpLog) << "line" << number;
    EXPECT_TRUE(QString::fromUtf8(KPLogTail::line(0)).endsWith(u"line 5"));
    EXPECT_TRUE(QString::fromUtf8(KPLogTail::line(KPLogTail::lineCount - 1))
                    .endsWith(QStringLiteral("line %1").arg(KPLogTail::lineCount + 4)));
    EXPECT_EQ(KPLogTail::line(KPLogTail::lineCount), nullptr);
    qInstallMessageHandler(nullptr);
}
