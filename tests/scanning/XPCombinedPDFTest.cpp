#include "XPCombinedPDF.h"

#include "Karvex.h"
#include "TestHome.h"
#include "XPQpdf.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

using XPCombinedPDF::Failure;
using XPCombinedPDF::Made;

namespace {

// PDF documents whose pages are known by their widths.
class CombinedPDF : public testing::Test
{
protected:
    QString document(const char *name, const QList<int> &widths, bool isEncrypted = false) const
    {
        QPDF pdf;
        pdf.emptyPDF();
        for (const int width : widths) {
            pdf.addPage(pdf.makeIndirectObject(QPDFObjectHandle::parse(
                            "<< /Type /Page /MediaBox [0 0 " + std::to_string(width) +
                            " 100] /Resources << >> >>")),
                        false);
        }
        QString path = m_folder.path(QString::fromLatin1(name));
        const QByteArray file = QFile::encodeName(path); // the writer keeps no copy
        QPDFWriter writer(pdf, file.constData());
        if (isEncrypted)
            writer.setR6EncryptionParameters("user", "owner", true, true, true, true, true, true,
                                             qpdf_r3p_full, true);
        writer.write();
        return path;
    }
    QList<int> widthsOf(const QString &path) const
    {
        QPDF pdf;
        pdf.processFile(QFile::encodeName(path).constData());
        QList<int> widths;
        for (QPDFPageObjectHelper &page : QPDFPageDocumentHelper(pdf).getAllPages())
            widths.append(static_cast<int>(page.getMediaBox().getArrayAsRectangle().urx));
        return widths;
    }
    QStringList names() const
    {
        return QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }

    const TestFolder m_folder;
    const QString m_to = m_folder.path(QStringLiteral("to.pdf"));
};

} // namespace

TEST_F(CombinedPDF, HasThePagesInOrderAndTheTagsOfAll)
{
    const QString one = document("one.pdf", {11, 12});
    const QString two = document("two \xC3\xA4.pdf", {21});
    EXPECT_FALSE(Karvex::addUserTags({QStringLiteral("tax"), QStringLiteral("2024")}, one));
    EXPECT_FALSE(Karvex::addUserTags({QStringLiteral("tax")}, two));
    const auto result = XPCombinedPDF::combine({two, one, two}, m_to);
    const auto *made = std::get_if<Made>(&result);
    ASSERT_TRUE(made);
    EXPECT_EQ(made->pages, 4);
    EXPECT_EQ(widthsOf(m_to), (QList<int>{21, 11, 12, 21}));
    EXPECT_EQ(Karvex::getUserTags(m_to).valueOr({}), QStringList{QStringLiteral("tax")});
    EXPECT_EQ(widthsOf(one), (QList<int>{11, 12}));
}

// Nothing is left of it, not even a part, and every document that is to blame is named.
TEST_F(CombinedPDF, IsNotMadeOfWhatCannotBeRead)
{
    const QString good = document("good.pdf", {11});
    const QString secret = document("secret.pdf", {12}, true);
    const QString junk = m_folder.file(QStringLiteral("junk.pdf"), "%PDF-1.4 nothing");
    const QString gone = m_folder.path(QStringLiteral("gone.pdf"));
    const QString empty = m_folder.file(QStringLiteral("empty.pdf"), "");
    const QString pageless = document("pageless.pdf", {});
    const QStringList before = names();
    const auto result =
        XPCombinedPDF::combine({good, secret, junk, gone, empty, pageless, good}, m_to);
    const auto *failure = std::get_if<Failure>(&result);
    ASSERT_TRUE(failure);
    QStringList refused;
    for (const XPError &error : failure->refused)
        refused.append(error.path);
    ASSERT_EQ(refused, (QStringList{secret, junk, gone, empty, pageless}));
    const auto textOf = [&](qsizetype number) { return failure->refused.at(number).message; };
    EXPECT_EQ(textOf(1), qtTrId("KPDocumentDamaged"));
    EXPECT_EQ(textOf(3), qtTrId("KPDocumentEmpty"));
    EXPECT_EQ(textOf(4), qtTrId("KPDocumentWithoutPages"));
    EXPECT_EQ(failure->refused.first().kind, XPError::Kind::NotPermitted);
    EXPECT_EQ(names(), before);
}

TEST_F(CombinedPDF, NeverReplacesAFileAndStopsWhenTold)
{
    const QString good = document("good.pdf", {11});
    (void)m_folder.file(QStringLiteral("to.pdf"), "theirs");
    const QStringList before = names();
    EXPECT_TRUE(std::holds_alternative<Failure>(XPCombinedPDF::combine({good, good}, m_to)));
    EXPECT_EQ(QFile(m_to).size(), 6);
    const auto stopped =
        XPCombinedPDF::combine({good, good}, m_folder.path(QStringLiteral("x.pdf")),
                               [](qsizetype done) { return done == 0; });
    ASSERT_TRUE(std::holds_alternative<Failure>(stopped));
    EXPECT_EQ(std::get<Failure>(stopped).error->kind, XPError::Kind::Cancelled);
    EXPECT_EQ(names(), before);
}

TEST_F(CombinedPDF, TakesMoreDocumentsThanMayBeOpen)
{
    const QString good = document("good.pdf", {11});
    const auto result = XPCombinedPDF::combine(QStringList(300, good), m_to);
    const auto *made = std::get_if<Made>(&result);
    ASSERT_TRUE(made);
    EXPECT_EQ(made->pages, 300);
}
