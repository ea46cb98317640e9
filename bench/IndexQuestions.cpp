#include "IndexQuestions.h"

#include "IndexCorpus.h"
#include "XPText.h"

namespace IndexQuestions {

using IndexCorpusWords::Random;

const IndexCatalog &MillionSource::catalog() const
{
    return IndexCorpus::million();
}

// A word as somebody would look for it: frequent ones more often.
static QString word(Random &random)
{
    QString word;
    do
        word = IndexCorpusWords::vocabulary()[random.zipf(IndexCorpusWords::vocabularySize)];
    while (word.size() < 3);
    return word;
}

const QStringList &nameParts()
{
    static const QStringList parts = [] {
        QStringList list{QStringLiteral("2019-0"), QStringLiteral("img_"), QStringLiteral("(7)"),
                         QStringLiteral(".pdf"),   QStringLiteral("201"),  QStringLiteral("größ"),
                         QStringLiteral("xqz"),    QStringLiteral("отч"),  QStringLiteral("写真"),
                         QStringLiteral("straße"), QStringLiteral("ing_1")};
        Random random(3);
        while (list.size() < 200) {
            const QString whole = word(random);
            const qsizetype length = 3 + random.below(6);
            const qsizetype start = whole.size() > length && random.percent(30)
                                        ? random.below(static_cast<quint32>(whole.size() - length))
                                        : 0;
            list.append(whole.mid(start, length));
        }
        for (QString &part : list)
            part = foldText(part);
        return list;
    }();
    return parts;
}

static QString typeClause(Random &random)
{
    static const QStringList clauses{
        QStringLiteral("(kMDItemContentTypeTree == \"public.image\")"),
        QStringLiteral("(kMDItemContentType == \"com.adobe.pdf\")"),
        QStringLiteral("(kMDItemContentTypeTree == \"public.text\")"),
        QStringLiteral("(kMDItemContentTypeTree == \"public.audio\" || "
                       "kMDItemContentTypeTree == \"public.movie\")"),
        QStringLiteral("(kMDItemContentType == \"public.jpeg\" || "
                       "kMDItemContentType == \"public.png\")"),
        QStringLiteral("(kMDItemContentTypeTree == \"public.source-code\")"),
        QStringLiteral("(kMDItemFSName == \"*.docx\"c)"),
    };
    return clauses[random.below(static_cast<quint32>(clauses.size()))];
}

static QString dateClause(Random &random)
{
    // The corpus ends with 2024; days are counted from its end, whatever today is.
    const quint32 year = 2016 + random.below(9);
    const QString after = QStringLiteral("(kMDItemContentModificationDate > "
                                         "$time.iso(%1-0%2-01T00:00:00Z)")
                              .arg(year)
                              .arg(1 + random.below(9));
    return random.percent(50) ? after + u')'
                              : after + QStringLiteral(" && kMDItemContentModificationDate < "
                                                       "$time.iso(%1-12-01T00:00:00Z))")
                                            .arg(year);
}

static QString tagClause(Random &random, const char *op)
{
    return QStringLiteral("((kMDItemKXUserTags %1 \"%2\"cd) || (kMDItemKeywords %1 \"%2\"cd))")
        .arg(QLatin1String(op),
             IndexCorpusWords::tag(random.zipf(IndexCorpusWords::tagCount)).toLower());
}

static QString wordClause(Random &random)
{
    const QString text = word(random).left(2 + random.below(7));
    switch (random.below(4)) {
    case 0:
        return QStringLiteral("((kMDItemDisplayName == \"*%1*\"cd || * == \"%1*\"cdw))").arg(text);
    case 1:
        return QStringLiteral("(kMDItemDisplayName == \"%1*\"cd)").arg(text.left(1));
    case 2:
        return QStringLiteral("(!(kMDItemDisplayName == \"*%1*\"cd))").arg(text);
    default:
        return QStringLiteral("((kMDItemDisplayName == \"*%1*\"cd))").arg(text);
    }
}

const QStringList &wholeViews()
{
    static const QString library =
        QStringLiteral("(((kMDItemKXManaged == 1) || (kMDItemKXUserTags == *) || "
                       "(kMDItemStarRating == *)) && !(kMDItemKXManaged == 0))");
    static const QStringList queries = [] {
        QStringList list;
        Random random(5);
        while (list.size() < 300) {
            QStringList clauses;
            if (random.percent(65))
                clauses.append(wordClause(random));
            if (random.percent(25))
                clauses.append(wordClause(random));
            if (random.percent(35))
                clauses.append(dateClause(random));
            if (random.percent(45))
                clauses.append(typeClause(random));
            if (random.percent(15))
                clauses.append(QStringLiteral("(kMDItemKXUserTags != *)"));
            if (random.percent(25))
                clauses.append(library);
            if (random.percent(25))
                clauses.append(tagClause(random, "=="));
            if (random.percent(8))
                clauses.append(QStringLiteral("(kMDItemKXUserTags != \"invoice\"cd)"));
            if (random.percent(8))
                clauses.append(QStringLiteral("(kMDItemContentTypeTree != public.image)"));
            if (random.percent(15))
                clauses.append(QStringLiteral("(kMDItemStarRating >= 3)"));
            if (random.percent(70))
                clauses.append(QStringLiteral("(kMDItemSupportFileType != MDSystemFile)"));
            if (!clauses.isEmpty())
                list.append(clauses.join(QStringLiteral(" && ")));
        }
        return list;
    }();
    return queries;
}

} // namespace IndexQuestions
