#include "KarvexRestore.h"

#include "MDItem.h"
#include "MDQuery.h"
#include "XPFileInfo.h"
#include "XPFolders.h"
#include "XPLog.h"
#include "XPPath.h"
#include "XPText.h"

#include <QMap>

KarvexRestore::KarvexRestore(IndexSource &source, Options options)
    : m_source(source), m_options(std::move(options))
{
}

KarvexRestore::Result KarvexRestore::readSingleFile(const QString &path)
{
    const auto bytes = KarvexBackupFile::readBytes(path);
    auto records = bytes ? KarvexBackupFile::decode(*bytes, path)
                         : XPResult<KarvexBackupFile::Records>(bytes.error());
    if (!records) {
        m_result.error = records.error();
        m_result.status = QStringLiteral("no restore data found");
        return m_result;
    }
    m_records = *std::move(records);
    m_result.records = m_records.size();
    // In the order of their paths, so that two runs say the same.
    QStringList paths = m_records.keys();
    paths.sort();
    for (const QString &recorded : paths) {
        if (!m_options.progress.goesOn(m_done++, m_records.size())) {
            m_result.stopped = true;
            break;
        }
        const KarvexBackupRecord record = m_records.value(recorded);
        const QString file = XPFolders::expandTilde(recorded);
        const auto info = XPFileInfo::read(file);
        if (info)
            restore(record, file);
        else if (info.error().kind == XPError::Kind::NotFound)
            m_missing.append(record);
        else
            m_result.failures.append(info.error());
    }
    if (!m_result.stopped)
        findMissing();
    m_result.status = QStringLiteral("%1 restores done").arg(m_result.changes.size());
    return m_result;
}

void KarvexRestore::restore(const KarvexBackupRecord &record, const QString &path)
{
    if (m_options.only && !m_options.only->contains(record.path))
        return;
    const KarvexMerge::Result merge = KarvexMerge::apply(record, path, m_options.dryRun);
    m_result.failures += merge.failures;
    if (merge.changes)
        m_result.changes.append({merge, path, record.path});
}

// --- By name

// Records of one name stand together: if they differ, nobody can say which one is meant.
void KarvexRestore::findMissing()
{
    QMap<QString, QList<KarvexBackupRecord>> byName;
    for (const KarvexBackupRecord &record : m_missing)
        byName[decomposed(XPPath::fileName(record.path))].append(record);
    m_done = m_records.size() - m_missing.size();
    for (const QList<KarvexBackupRecord> &records : byName) {
        m_done += records.size();
        if (!m_options.progress.goesOn(m_done, m_records.size())) {
            m_result.stopped = true;
            return;
        }
        searchAndRestore(records);
    }
}

void KarvexRestore::searchAndRestore(const QList<KarvexBackupRecord> &records)
{
    const KarvexBackupRecord &first = records.first();
    const auto files = filesNamed(XPPath::fileName(first.path));
    if (!files) {
        qCWarning(xpLog).noquote()
            << "Exception on Tag restore by File Name:" << XPPath::printable(first.path);
        m_result.missing += records.size();
        return;
    }
    QStringList candidates;
    for (const QString &file : *files) {
        if (!m_records.contains(file) && !m_records.contains(XPFolders::abbreviateWithTilde(file)))
            candidates.append(file);
    }
    const bool agree = std::all_of(records.begin(), records.end(), [&](const auto &each) {
        return KarvexBackupRecord::backupDictsTheSame(each, first);
    });
    if (candidates.isEmpty()) {
        m_result.missing += records.size();
    } else if (candidates.size() == 1 && agree) {
        restore(first, candidates.first());
    } else {
        for (const KarvexBackupRecord &record : records)
            m_result.several.append({record.path, candidates});
    }
}

static QString escaped(const QString &name)
{
    QString text;
    for (const QChar unit : name) {
        if (unit == u'"' || unit == u'\\' || unit == u'*' || unit == u'?')
            text += u'\\';
        text += unit;
    }
    return text;
}

// The files of just this name, composed or not. The name of a file is its display name; the
// second spelling is the one in which another system stores it.
std::optional<QStringList> KarvexRestore::filesNamed(const QString &name) const
{
    const QString text =
        QStringLiteral("((kMDItemDisplayName == \"%1\") || (kMDItemDisplayName == \"%2\"))")
            .arg(escaped(name), escaped(decomposed(name)));
    const auto query = MDQuery::create(m_source, text);
    if (!query)
        return {};
    (*query)->execute(MDQuery::Synchronous);
    QStringList files;
    for (qsizetype i = 0; i < (*query)->resultCount(); ++i) {
        const QString path = (*query)->resultAt(i)->path();
        if (decomposed(XPPath::fileName(path)) == decomposed(name))
            files.append(path);
    }
    files.sort();
    return files;
}
