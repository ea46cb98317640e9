#include "KPIndexSession.h"

#include "ImportProgress.h"
#include "KPProgressLine.h"
#include "XPTranslations.h"

KPIndexSession::KPIndexSession(KPCommandOutput &output, bool waitedFor)
    : m_output(output), m_index(MetadataIndex::open(waitedFor)), m_types(m_index->source()),
      m_healer(*m_index), m_mirror(*m_index)
{
    XPTranslations::install(QLocale::c()); // everything that murnctl says is English
}

QString KPIndexSession::describe(const IndexStatus &status)
{
    using Phase = IndexStatus::Phase;
    switch (status.phase) {
    case Phase::Opening:
        return QStringLiteral("opening");
    case Phase::Crawling:
        return QStringLiteral("reading folders: %1 read, %2 files")
            .arg(status.foldersRead)
            .arg(status.items);
    case Phase::Verifying:
        return QStringLiteral("comparing with the disk: %1 folders").arg(status.foldersRead);
    case Phase::Live:
        break;
    }
    if (status.contentsWaiting > 0)
        return QStringLiteral("reading contents: %1 files wait").arg(status.contentsWaiting);
    return QStringLiteral("up to date");
}

// " (120 a second, about 3 min left)"; empty while nothing can be said.
static QString describe(const ImportProgress &reading)
{
    const auto left = reading.left();
    if (!left)
        return {};
    const qint64 minutes = (left->count() + 59) / 60;
    const QString time = left->count() < 60 ? QStringLiteral("%1 s").arg(left->count())
                         : minutes < 120    ? QStringLiteral("%1 min").arg(minutes)
                                            : QStringLiteral("%1 h").arg((minutes + 59) / 60);
    return QStringLiteral(" (%1 a second, about %2 left)")
        .arg(*reading.filesPerSecond(), 0, 'f', *reading.filesPerSecond() < 10 ? 1 : 0)
        .arg(time);
}

bool KPIndexSession::catchUp(bool contents)
{
    KPProgressLine progress;
    ImportProgress reading;
    const auto isInterrupted = [this] { return m_interrupt.happened(); };
    const auto stop = [&] {
        if (progress.isDue()) {
            if (const auto status = m_index->status(isInterrupted)) {
                reading.note(status->contentsWaiting, ImportProgress::Clock::now());
                progress.show(QStringLiteral("murnctl: ") + describe(*status) +
                              ::describe(reading));
            }
        }
        return isInterrupted();
    };
    if (!m_index->waitUntilLoaded(stop))
        return false;
    const auto error = m_index->sync(contents, stop);
    progress.clear();
    if (m_interrupt.happened())
        return false;
    if (error)
        m_output.fail(QStringLiteral("the index may not be up to date: ") + error->message);
    return true;
}

std::optional<IndexStatus> KPIndexSession::status()
{
    const auto status = m_index->status([this] { return m_interrupt.happened(); });
    if (status)
        return *status;
    m_output.fail(QStringLiteral("the index does not tell its status: ") + status.error().message);
    return {};
}
