#include "KPInspector.h"

#include "KPDocIcons.h"
#include "KPTagName.h"
#include "ShownSearch.h"
#include "TestHome.h"
#include "XPStarsEditor.h"
#include "XPTagChip.h"
#include "XPTagsEditor.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace {

class Inspector : public testing::Test
{
protected:
    void SetUp() override
    {
        KPTagName::intializeGlobals();
        KPDocIcons::registerIcons();
        m_inspector.resize(260, 600);
        static_cast<QWidget &>(m_inspector).show();
        QApplication::setActiveWindow(&m_inspector);
    }
    KPDoc *document(const char *name, const QStringList &tags, double rating)
    {
        return shownDoc(m_folder.file(QString::fromUtf8(name)), tags, rating);
    }
    KPDoc *unreadable(const char *name, const QString &reason)
    {
        KPDoc *doc = document(name, {}, 0);
        XPError error;
        error.message = reason;
        KPDocMetaData::fill(KPDocMetaData::UserTags, doc->pooledPath(), error,
                            KPDocMetaData::Known::Replaced);
        return doc;
    }
    QString texts() const
    {
        QStringList all;
        for (const QLabel *label : m_inspector.findChildren<QLabel *>()) {
            if (label->isVisible())
                all.append(label->text().remove(QChar(0x200B)));
        }
        return all.join(u'\n');
    }
    XPTagsEditor *tags() const { return m_inspector.findChild<XPTagsEditor *>(); }
    XPStarsEditor *stars() const { return m_inspector.findChild<XPStarsEditor *>(); }
    KPFileEdit asked() { return m_asked.takeFirst().first().value<KPFileEdit>(); }

    TestFolder m_folder;
    KPInspector m_inspector;
    QSignalSpy m_asked{&m_inspector, &KPInspector::editRequested};
};

const QString work = QStringLiteral("work");
const QString home = QStringLiteral("home");

} // namespace

// Somebody else takes the document away while its tag is being typed: the next one is selected.
TEST_F(Inspector, TakesWhatIsBeingTypedForTheDocumentsItWasMeantFor)
{
    KPDoc *first = document("a", {work}, 0);
    m_inspector.show(KPSelectionFacts({first}), {});
    m_inspector.focusTags();
    QTest::keyClicks(tags()->entry(), QStringLiteral("tax"));
    m_inspector.show(KPSelectionFacts({document("b", {home}, 0)}), {});
    ASSERT_EQ(m_asked.count(), 1);
    const KPFileEdit edit = asked();
    EXPECT_EQ(edit.paths, QStringList{first->filePath()});
    ASSERT_TRUE(edit.tags);
    EXPECT_EQ(edit.tags->after, (QStringList{work, QStringLiteral("tax")}));
    EXPECT_EQ(tags()->entry()->text(), QString());
    EXPECT_EQ(tags()->tags(), QStringList{home});
}

TEST_F(Inspector, SaysSoWhenNothingIsSelected)
{
    EXPECT_EQ(texts(), qtTrId("KPNothingSelected"));
    EXPECT_FALSE(tags()->isVisible());
}

TEST_F(Inspector, EditsWhatAllHaveInCommonAndAsksForNothingElse)
{
    m_inspector.show(KPSelectionFacts({document("a", {work, home}, 3), document("b", {home}, 4)}),
                     {});
    EXPECT_EQ(tags()->tags(), QStringList{home});
    EXPECT_TRUE(texts().contains(qtTrId("KPRatingsDiffer")));
    EXPECT_TRUE(texts().contains(qtTrId("KPCommonTagsOnly")));

    m_inspector.focusTags();
    QTest::keyClicks(tags()->entry(), QStringLiteral("tax"));
    QTest::keyClick(tags()->entry(), Qt::Key_Return);
    const KPFileEdit edit = asked();
    EXPECT_EQ(edit.paths.size(), 2);
    EXPECT_FALSE(edit.rating);
    ASSERT_TRUE(edit.tags);
    EXPECT_EQ(edit.tags->before, QStringList{home});
    EXPECT_EQ(edit.tags->after, (QStringList{home, QStringLiteral("tax")}));

    // The next change starts from what was asked for, though no file tells of it yet.
    QTest::keyClick(tags()->findChild<XPTagChip *>(), Qt::Key_Delete);
    EXPECT_EQ(asked().tags->after, QStringList{QStringLiteral("tax")});

    QTest::keyClick(stars(), Qt::Key_5);
    const KPFileEdit rated = asked();
    EXPECT_EQ(rated.rating, 5);
    EXPECT_FALSE(rated.tags);
    EXPECT_FALSE(texts().contains(qtTrId("KPRatingsDiffer")));
}

TEST_F(Inspector, UnreadableTagsCannotBeWrittenOver)
{
    const QString reason = QStringLiteral("not a property list");
    m_inspector.show(KPSelectionFacts({unreadable("bad", reason)}), {});
    EXPECT_FALSE(tags()->isEnabled());
    EXPECT_FALSE(stars()->isEnabled());
    EXPECT_TRUE(texts().contains(reason));
    // With a readable one beside it the edit is possible, and the other is told of.
    m_inspector.show(KPSelectionFacts({unreadable("bad", reason), document("good", {work}, 0)}),
                     {});
    EXPECT_TRUE(tags()->isEnabled());
    EXPECT_TRUE(texts().contains(qtTrId("KPSomeTagsUnreadable", 1)));
}

TEST_F(Inspector, NamesNeitherWidenItNorAreTakenForMarkup)
{
    const QByteArray endless = "<b>" + QByteArray(180, 'x') + ".pdf";
    m_inspector.show(KPSelectionFacts({document(endless.constData(), {}, 0)}), {});
    EXPECT_TRUE(texts().contains(QString::fromUtf8(endless)));
    EXPECT_LE(m_inspector.minimumSizeHint().width(), 260);
    for (const QLabel *label : m_inspector.findChildren<QLabel *>()) {
        if (label->text().contains(u"<b>")) {
            EXPECT_EQ(label->textFormat(), Qt::PlainText);
        }
    }
}
