#include "KPContentTypes.h"
#include "KPFileType.h"

#include <QProcess>
#include <QSet>
#include <TestHome.h>
#include <atomic>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

using namespace KPContentTypes;

TEST(KPContentTypes, EveryTypeIsFoundByItsNamesAndEndsInARoot)
{
    ASSERT_GE(count(), 500);
    const Number item = numberOf(u"public.item");
    const Number content = numberOf(u"public.content");
    for (Number type = 1; type <= count(); ++type) {
        const QString name = identifier(type);
        EXPECT_EQ(numberOf(name), type) << qPrintable(name);
        EXPECT_EQ(numberOf(name.toUpper()), type);
        EXPECT_FALSE(description(type).isEmpty());
        EXPECT_TRUE(conforms(type, item) || conforms(type, content)) << qPrintable(name);
        EXPECT_TRUE(conforms(type, type));
        EXPECT_FALSE(conforms(none, type));
        EXPECT_FALSE(conforms(type, none));
        for (const QString &extension : extensions(type)) {
            const auto types = typesForExtension(extension);
            EXPECT_NE(std::ranges::find(types, type), types.end()) << qPrintable(extension);
        }
        for (const QString &mimeType : mimeTypes(type)) {
            const auto types = typesForMimeType(mimeType);
            EXPECT_NE(std::ranges::find(types, type), types.end()) << qPrintable(mimeType);
        }
    }
    EXPECT_EQ(numberOf(u""), none);
    EXPECT_EQ(numberOf(u"public.ite"), none);
    EXPECT_EQ(typeForOSType(u"PDF "), numberOf(u"com.adobe.pdf"));
    EXPECT_EQ(typeForOSType(u"----"), none);
    EXPECT_EQ(typeForOSType(u"PDF"), none);
}

TEST(KPContentTypes, PooledIdentifiersAreFoundFromManyThreads)
{
    std::atomic<int> wrong = 0;
    std::vector<std::jthread> threads;
    threads.reserve(4);
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&wrong] {
            for (Number type = 1; type <= count(); ++type) {
                for (const QString &name : {identifier(type), identifier(type).toUpper()})
                    wrong += numberOf(KPPool::pooledString(name)) != type;
                const QString other = QStringLiteral("com.example.t%1").arg(type);
                wrong += numberOf(KPPool::pooledString(other)) != none;
            }
        });
    }
    threads.clear();
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(numberOf(KPPooledString()), none);
}

// The matrix must agree with walking the parents, for every pair.
TEST(KPContentTypes, ConformanceIsReachabilityOverParents)
{
    for (Number type = 1; type <= count(); ++type) {
        QSet<Number> reached{type};
        QList<Number> queue{type};
        while (!queue.isEmpty()) {
            for (const Number parent : parents(queue.takeFirst())) {
                if (!reached.contains(parent)) {
                    reached.insert(parent);
                    queue.append(parent);
                }
            }
        }
        EXPECT_EQ(qsizetype(ancestors(type).size()) + 1, reached.size());
        for (Number other = 1; other <= count(); ++other)
            ASSERT_EQ(conforms(type, other), reached.contains(other));
    }
}

TEST(KPContentTypes, TreesOfRealTypesAreNearestFirst)
{
    const auto tree = [](const char *text) { return typeTree(QLatin1String(text)).join(u' '); };
    EXPECT_EQ(tree("com.adobe.pdf"),
              QStringLiteral("com.adobe.pdf public.data public.composite-content "
                             "public.item public.content"));
    EXPECT_EQ(tree("public.jpeg"), QStringLiteral("public.jpeg public.image public.data "
                                                  "public.content public.item"));
    EXPECT_EQ(tree("public.item"), QStringLiteral("public.item"));
    EXPECT_EQ(tree("com.example.unheard-of"), QStringLiteral("com.example.unheard-of"));
    EXPECT_EQ(tree(""), QString());
    EXPECT_TRUE(
        conformsTo(QStringLiteral("com.canon.cr2-raw-image"), QStringLiteral("public.image")));
    EXPECT_TRUE(conformsTo(QStringLiteral("org.oasis-open.opendocument.presentation"),
                           QStringLiteral("public.presentation")));
    EXPECT_FALSE(
        conformsTo(QStringLiteral("public.image"), QStringLiteral("com.canon.cr2-raw-image")));
    EXPECT_TRUE(conformsTo(QStringLiteral("com.example.unheard-of"),
                           QStringLiteral("com.example.unheard-of")));
}

// The identifier of an undeclared extension is made from the extension alone; the machine's MIME
// database only adds ancestors.
TEST(KPContentTypes, UndeclaredExtensionsGetAncestorsFromTheMimeDatabase)
{
    const QString game = KPFileType::preferredUTIForExtension(QStringLiteral("pgn"));
    ASSERT_TRUE(game.startsWith(u"dyn."));
    EXPECT_TRUE(conformsTo(game, QStringLiteral("public.plain-text")));
    EXPECT_TRUE(conformsTo(game, QStringLiteral("public.data")));
    EXPECT_NE(KPFileType::displayNameForUTI(game), QStringLiteral("pgn file"));

    const QString unheard = KPFileType::preferredUTIForExtension(QStringLiteral("xq-none"));
    EXPECT_EQ(typeTree(unheard),
              (QStringList{unheard, QStringLiteral("public.data"), QStringLiteral("public.item")}));
    EXPECT_EQ(KPFileType::displayNameForUTI(unheard), QStringLiteral("xq-none file"));
}

static QByteArray complaints(const QByteArray &table)
{
    const TestFolder folder;
    QProcess process;
    process.start(QStringLiteral(MURN_PYTHON),
                  {QStringLiteral(MURN_TYPES_GENERATOR),
                   folder.file(QStringLiteral("table"), table),
                   folder.path(QStringLiteral("out.cpp")), folder.path(QStringLiteral("out.h"))});
    EXPECT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    return process.exitCode() == 0 ? QByteArray("none") : process.readAllStandardError();
}

TEST(ContentTypeTable, FaultsStopTheBuildAndNameTheLine)
{
    const QByteArray root = "public.item | | | | | Item\n";
    const struct
    {
        const char *line;
        const char *complaint;
    } faults[] = {
        {"a.a | public.item | x | a/b | 'ABCD' | A", "none"},
        {"a.a | public.item | | | | A\nA.A | public.item | | | | A",
         ":3: A.A is declared in line 2"},
        {"a.a | b.b | | | | A", ":2: a.a conforms to unknown b.b"},
        {"a.a | b.b | | | | A\nb.b | a.a | | | | B", ":2: a.a conforms to itself"},
        {"a.a | | | | | A", ":2: a.a conforms to nothing"},
        {"a.a | public.item | x | | | A\nb.b | public.item | x | | | B",
         ":2: extension x is declared in lines 2, 3"},
        {"a.a | public.item | *x | | | A\nb.b | public.item | *x | | | B",
         ":2: extension x is declared"},
        {"a.a | public.item | *x | | | A\nb.b | public.item | x | | | B", "none"},
        {"a.a | public.item | *x | | | A", ":2: extension x has one type only"},
        {"a.a | public.item | X | | | A", ":2: no lower-case extension: 'X'"},
        {"a.a | public.item | | ab | | A", ":2: no lower-case MIME type"},
        {"a.a | public.item | | | 'ABC' | A", ":2: file type codes"},
        {"a.a | public.item | | | | ", ":2: no description"},
        {"a.a | public.item | | | A", ":2: 5 fields instead of 6"},
        {"dyn.a | public.item | | | | A", ":2: dynamic"},
    };
    for (const auto &fault : faults) {
        const QByteArray said = complaints(root + fault.line + "\n");
        EXPECT_TRUE(said.contains(fault.complaint)) << fault.line << "\n" << said.constData();
    }
}
