#include "CagedImporter.h"

#include "IndexImporters.h"
#include "KPContentTypes.h"
#include "XPPath.h"
#include "XPPrograms.h"

CagedImporter::CagedImporter(const ImportWorker::Setup &setup, const QString &attempts)
    : m_worker(setup), m_attempts(attempts)
{
}

QString CagedImporter::attemptsOf(const QString &storePath)
{
    return storePath + QStringLiteral(".importing");
}

void CagedImporter::install(const QString &storePath, ImportManners *manners)
{
    IndexImporters::install([attempts = attemptsOf(storePath), manners](bool idle) {
        const ImportWorker::Setup setup = {.program = XPPrograms::helper("murn-importer"),
                                           .idle = idle,
                                           .manners = idle ? manners : nullptr};
        return std::make_unique<CagedImporter>(setup, attempts);
    });
}

XPResult<ImportHello> CagedImporter::hello() const
{
    const XPLocker lock(m_mutex);
    if (!m_hello)
        m_hello = m_worker.hello();
    return *m_hello;
}

bool CagedImporter::accepts(const QString &type) const
{
    const auto known = hello();
    return !known || known->reads(KPContentTypes::typeTree(type));
}

static IndexImporter::Content contentWith(const ImportDocument &document, QByteArray text,
                                          PropertyValue::Dictionary attributes)
{
    return {.text = std::move(text),
            .attributes = std::move(attributes),
            .modified = document.modified,
            .size = document.size,
            .inode = static_cast<quint64>(document.inode)};
}

XPResult<IndexImporter::Content> CagedImporter::contentOf(const ImportDocument &document,
                                                          const ImportFrame &frame)
{
    const auto answer = documentAnswerFrom(frame);
    if (!answer) {
        m_attempts.broke(document, {DocumentFailure::Crashed, answer.error().message});
        return answer.error();
    }
    m_attempts.succeeded(document);
    if (answer->failure == DocumentFailure::Unreadable)
        return XPError::make(XPError::Kind::Io, QStringLiteral("cannot be read"),
                             XPPath::decode(document.path));
    return contentWith(document, answer->text.utf8(), answer->allAttributes());
}

XPResult<IndexImporter::Content> CagedImporter::import(const QByteArray &path, const QString &type,
                                                       const std::stop_token &stop)
{
    if (const auto known = hello(); !known)
        return known.error();
    const auto document = ImportDocument::open(path, type, stop);
    if (!document)
        return document.error();
    for (;;) {
        const ImportAttempts::Case *held = m_attempts.caseOf(*document);
        if (held && held->isLeftAlone())
            return contentWith(*document, {}, {});
        m_attempts.begin(*document);
        const auto outcome = m_worker.run(document->job(), document->descriptor.get(), stop);
        if (const auto *frame = std::get_if<ImportFrame>(&outcome))
            return contentOf(*document, *frame);
        if (const auto *error = std::get_if<XPError>(&outcome)) {
            m_attempts.gaveUp();
            return *error;
        }
        const auto &how = std::get<ImportWorker::Break>(outcome);
        m_attempts.broke(*document, how);
        const auto *now = m_attempts.caseOf(*document);
        if (how.failure == DocumentFailure::TimedOut && now && !now->isLeftAlone())
            return XPError::make(XPError::Kind::Io, how.reason, XPPath::decode(path));
    }
}
