#include "KPIndexSession.h"

#include "KPProgressLine.h"

#include <QLocale>

KPIndexSession::KPIndexSession(KPCommandOutput &output)
    : m_output(output), m_index(MetadataIndex::open())
{
}

QString KPIndexSession::describe(const IndexKeeper::Status &status)
{
    using Phase = IndexKeeper::Status::Phase;
    const QString folders = QLocale::c().toString(status.foldersRead);
    switch (status.phase) {
    case Phase::Opening:
        return QStringLiteral("opening");
    case Phase::Crawling:
        return QStringLiteral("reading folders: %1 read, %2 files")
            .arg(folders, QLocale::c().toString(status.items));
    case Phase::Verifying:
        return QStringLiteral("comparing with the disk: %1 folders").arg(folders);
    case Phase::Live:
        break;
    }
    if (status.contentsWaiting > 0)
        return QStringLiteral("reading contents: %1 files wait")
            .arg(QLocale::c().toString(status.contentsWaiting));
    return QStringLiteral("up to date");
}

bool KPIndexSession::catchUp(bool contents)
{
    KPProgressLine progress;
    const auto error = m_index->sync(contents, [&] {
        if (progress.isDue())
            progress.show(QStringLiteral("murnctl: ") + describe(status()));
        return m_interrupt.happened();
    });
    if (!error)
        return true;
    if (error->kind == XPError::Kind::Cancelled)
        return false;
    m_output.fail(error->message);
    return true;
}

IndexKeeper::Status KPIndexSession::status()
{
    if (const auto status = m_index->status([this] { return m_interrupt.happened(); }))
        return *status;
    IndexKeeper::Status status;
    status.phase = IndexKeeper::Status::Phase::Live;
    const IndexCatalog::Reading reading(m_index->catalog());
    status.items = m_index->catalog().count();
    return status;
}
