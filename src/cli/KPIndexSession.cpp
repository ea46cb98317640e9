#include "KPIndexSession.h"

#include "KPProgressLine.h"

#include <QLocale>

KPIndexSession::KPIndexSession(KPCommandOutput &output)
{
    auto index = MetadataIndex::open();
    if (index)
        m_index = *std::move(index);
    else
        output.fail(QStringLiteral("the index cannot be opened: ") + index.error().message);
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
    IndexKeeper *keeper = m_index->keeper();
    if (!keeper)
        return true;
    KPProgressLine progress;
    return keeper->sync(contents, [&] {
        if (progress.isDue())
            progress.show(QStringLiteral("murnctl: ") + describe(keeper->status()));
        return m_interrupt.happened();
    });
}

IndexKeeper::Status KPIndexSession::status()
{
    if (IndexKeeper *keeper = m_index->keeper())
        return keeper->status();
    IndexKeeper::Status status;
    status.phase = IndexKeeper::Status::Phase::Live;
    const IndexCatalog &catalog = m_index->source().catalog();
    const IndexCatalog::Reading reading(catalog);
    status.items = catalog.count();
    return status;
}
