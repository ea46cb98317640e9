#include "KPAllTags.h"

#include "KPDoc.h"
#include "KPDocMetaData.h"
#include "KPIndexSession.h"
#include "KPTagDocuments.h"
#include "XPText.h"

#include <algorithm>

using UsedTag = KPTagDocuments::UsedTag;

// A parent stands right before what is below it.
static QString sortKey(const QString &tag)
{
    return foldText(tag).replace(u'/', QChar(1));
}

static QByteArray json(const UsedTag &tag)
{
    return "{\"tag\": " + KPCommandOutput::json(tag.tag) +
           ", \"count\": " + QByteArray::number(tag.count) +
           ", \"branchCount\": " + QByteArray::number(tag.branchCount) + '}';
}

static void print(const QList<UsedTag> &tags, const KPCommandLine &line, KPCommandOutput &output)
{
    const bool isTree = line.has("--tree");
    if (output.isJson()) {
        QByteArrayList objects;
        for (const UsedTag &tag : tags)
            objects.append(json(tag));
        output.write('[' + objects.join(",\n ") + "]\n");
        return;
    }
    for (const UsedTag &tag : tags) {
        QByteArray record = output.name(tag.tag);
        if (isTree)
            record =
                QByteArray(2 * tag.tag.count(u'/'), ' ') + output.name(tag.tag.section(u'/', -1));
        if (isTree || line.has("--count"))
            record += '\t' + QByteArray::number(isTree ? tag.branchCount : tag.count);
        output.writeRecord(record);
    }
}

int KPAllTags::print(const KPCommandLine &line, KPCommandOutput &output)
{
    xpGuiThread.assertHere();
    for (const auto &options :
         {std::vector{"--json", "--print0"}, {"--count", "--tree"}, {"--all", "--recent"}}) {
        if (const auto error = line.onlyOneOf(options))
            return kpReportUsage(&kpTagsCommand, error->message);
    }
    if (!line.operands().isEmpty())
        return kpReportUsage(&kpTagsCommand, QStringLiteral("--all takes no files"));
    KPIndexSession session(output);
    if (!session.catchUp(false))
        return KPExitInterrupted;
    KPDocMetaData::useIndex(session.index().source());
    QList<UsedTag> tags = KPTagDocuments::allUserTags();
    KPDoc::stopMetaDataSearching();
    if (!line.has("--tree") && !output.isJson())
        tags.removeIf([](const UsedTag &tag) { return tag.count == 0; });
    std::sort(tags.begin(), tags.end(), [](const UsedTag &a, const UsedTag &b) {
        const QString left = sortKey(a.tag);
        const QString right = sortKey(b.tag);
        return left != right ? left < right : a.tag < b.tag;
    });
    ::print(tags, line, output);
    return output.exitStatus();
}
