#include "KPCombineDialog.h"
#include "KPDoc.h"
#include "KPDocCache.h"
#include "KPFailures.h"
#include "KPPrintInfo.h"
#include "KPPrintedPages.h"
#include "KPResultsExport.h"
#include "Karvex.h"
#include "TestHome.h"
#include "XPFactorySettings.h"
#include "XPPath.h"

#include <QApplication>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QPrinter>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

namespace {

class DocumentsUi : public testing::Test
{
protected:
    DocumentsUi()
    {
        KPTagName::intializeGlobals();
        KPDocCache::intializeGlobals();
        XPFactorySettings::registerAll();
    }
    KPDoc *doc(const QString &name) const { return KPDocCache::docAtPath(m_folder.file(name)); }
    static QString nameOf(const QString &path) { return path.mid(path.lastIndexOf(u'/') + 1); }

    const TestFolder m_folder;
};

} // namespace

TEST_F(DocumentsUi, CombinesInTheOrderThatIsChosen)
{
    KPCombineDialog dialog({doc(QStringLiteral("page 10.pdf")), doc(QStringLiteral("page 9.pdf")),
                            doc(QStringLiteral("appendix.pdf"))},
                           1);
    const auto names = [&] {
        QStringList found;
        for (const QString &path : dialog.paths())
            found.append(nameOf(path));
        return found;
    };
    const auto click = [&](const char *id) {
        for (QPushButton *button : dialog.findChildren<QPushButton *>()) {
            if (button->text() == qtTrId(id))
                button->click();
        }
    };
    EXPECT_EQ(dialog.name(), u"page 10 combined");
    click("KPCombineDown");
    EXPECT_EQ(names().value(1), u"page 10.pdf");
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    for (int i = 0; i < 2; ++i)
        QTest::keyClick(&dialog, Qt::Key_Up, Qt::AltModifier);
    QTest::keyClick(&dialog, Qt::Key_Down, Qt::AltModifier);
    QTest::keyClick(&dialog, Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(names().value(2), u"page 10.pdf") << "keys pressed at once count one by one";
    click("KPCombineSort");
    EXPECT_EQ(names(), (QStringList{QStringLiteral("appendix.pdf"), QStringLiteral("page 9.pdf"),
                                    QStringLiteral("page 10.pdf")}));
    click("KPCombineRemove");
    click("KPCombineRemove"); // two stay
    EXPECT_EQ(names().size(), 2);
    dialog.findChild<QLineEdit *>()->setText(QStringLiteral(" a/b.PDF "));
    EXPECT_EQ(dialog.name(), u"a:b");

    QStringList stops;
    while (stops.size() < 12 && stops.count(qtTrId("KPCombineButton")) < 2) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        const auto *stop = qobject_cast<QPushButton *>(QApplication::focusWidget());
        stops.append(stop ? stop->text() : QString());
    }
    EXPECT_TRUE(stops.contains(QStringLiteral("Cancel"))) << stops.join(u'|').toStdString();
}

TEST_F(DocumentsUi, ListsAreTablesWhateverTheNames)
{
    struct Row
    {
        QString name;
        QByteArray cell;
    };
    for (const Row &row : {Row{QStringLiteral("plain.txt"), "\"plain.txt\""},
                           Row{QStringLiteral("a, \"b\".txt"), "\"a, \"\"b\"\".txt\""},
                           Row{QStringLiteral("=1+1.txt"), "\"'=1+1.txt\""},
                           Row{QStringLiteral("ä.txt"), "\"ä.txt\""},
                           Row{QStringLiteral("a\r\nb.txt"), "\"a\\r\\nb.txt\""},
                           Row{XPPath::decode("a\xFF.txt"), "\"a\\xff.txt\""}}) {
        const QByteArray line = KPResultsExport::lineOf(*doc(row.name));
        EXPECT_TRUE(line.startsWith(row.cell + ",0,")) << line.constData();
        EXPECT_TRUE(line.endsWith("\"\r\n")) << line.constData();
    }
    EXPECT_EQ(KPResultsExport::header().count("\","), 11);
}

TEST_F(DocumentsUi, AListIsWrittenWholeOrNotAtAll)
{
    const KPDoc::Docs docs{doc(QStringLiteral("a.txt")), doc(QStringLiteral("b.txt"))};
    const QString path = m_folder.path(QStringLiteral("list.csv"));
    const auto task = std::make_shared<XPProgressTask>();
    task->isStopAsked = true;
    EXPECT_TRUE(KPResultsExport::write(docs, path, task));
    EXPECT_FALSE(QFile::exists(path));
    task->isStopAsked = false;
    EXPECT_FALSE(KPResultsExport::write(docs, path, task));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll().count("\r\n"), 3);
    EXPECT_TRUE(KPResultsExport::write(docs, m_folder.path(QStringLiteral("no/list.csv")), task));
}

TEST_F(DocumentsUi, ThePaperIsRemembered)
{
    QPrinter chosen;
    chosen.setOutputFormat(QPrinter::PdfFormat);
    chosen.setPageSize(QPageSize(QPageSize::A5));
    chosen.setPageOrientation(QPageLayout::Landscape);
    chosen.setPageMargins(QMarginsF(20, 21, 22, 23), QPageLayout::Millimeter);
    chosen.setColorMode(QPrinter::GrayScale);
    KPPrintInfo::save(chosen);
    QPrinter next;
    next.setOutputFormat(QPrinter::PdfFormat);
    KPPrintInfo::restore(&next);
    EXPECT_EQ(next.pageLayout().pageSize().id(), QPageSize::A5);
    EXPECT_EQ(next.pageLayout().orientation(), QPageLayout::Landscape);
    EXPECT_NEAR(next.pageLayout().margins(QPageLayout::Millimeter).bottom(), 23, 0.5);
    EXPECT_EQ(next.colorMode(), QPrinter::GrayScale);
}

TEST_F(DocumentsUi, WhatIsNotPrintedIsKnown)
{
    const auto task = std::make_shared<XPProgressTask>();
    const QString gone = m_folder.path(QStringLiteral("gone.pdf"));
    const auto pages = KPPrintedPages::make({gone}, task);
    EXPECT_TRUE(pages->isEmpty());
    ASSERT_EQ(pages->failures().size(), 1);
    EXPECT_EQ(pages->failures().first().path, gone);
    const auto paints = [&](const QString &to) {
        QPrinter printer;
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(to);
        return pages->paint(&printer, false, task);
    };
    EXPECT_TRUE(paints(m_folder.path(QStringLiteral("paper.pdf"))));
    EXPECT_FALSE(paints(m_folder.path(QStringLiteral("absent/paper.pdf"))));
}

// Nobody is there to ask, which is a no.
TEST_F(DocumentsUi, GoesOnWithoutTheOthersOnlyWhenToldTo)
{
    xpGuiThread.assertHere();
    int gone = 0;
    KPFailures::ask("KPCannotPrint", {}, [&] { ++gone; });
    EXPECT_EQ(gone, 1);
    const auto failure = XPError::make(XPError::Kind::Io, QStringLiteral("unreadable"));
    KPFailures::ask("KPCannotPrint", {failure}, [&] { ++gone; });
    EXPECT_EQ(gone, 1);
}
