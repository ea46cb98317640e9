#include "KPFindRun.h"

#include "KPFolderWalker.h"

#include <QCoreApplication>
#include <QLocale>
#include <QSocketNotifier>
#include <csignal>
#include <sys/signalfd.h>

KPFindRun::KPFindRun(const Options &options, KPCommandOutput &output)
    : m_options(options), m_output(output)
{
}

int KPFindRun::run(const KPSearchRequest &request)
{
    if (m_options.live)
        endOnInterrupt(); // before the walk's thread starts: it takes over which signals wait
    KPFolderWalk::Options walk;
    walk.live = m_options.live;
    KPFolderWalker walker(walk);
    connectTo(walker);
    walker.setRequest(request);
    QCoreApplication::exec();
    walker.stop();
    if (m_options.count)
        m_output.write(QByteArray::number(m_count) + '\n');
    else if (m_output.isJson())
        m_output.write(m_count ? "\n]\n" : "[]\n");
    return m_output.exitStatus();
}

void KPFindRun::connectTo(KPResultSource &source)
{
    connect(&source, &KPResultSource::documentsAdded, this, &KPFindRun::added);
    connect(&source, &KPResultSource::documentsChanged, this,
            [this](const QList<KPFoundDocument> &documents) {
                for (const KPFoundDocument &document : documents) {
                    printChange('~', document.path);
                    reportError(document);
                }
                if (!m_output.flush())
                    end();
            });
    connect(&source, &KPResultSource::documentsRemoved, this, [this](const QStringList &paths) {
        for (const QString &path : paths)
            printChange('-', path);
        if (!m_output.flush())
            end();
    });
    connect(&source, &KPResultSource::finished, this, &KPFindRun::finished);
}

// The signals become readable instead of ending the process in the middle of a line.
void KPFindRun::endOnInterrupt()
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaddset(&signals, signal);
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    const int descriptor = ::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
    auto *notifier = new QSocketNotifier(descriptor, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] { end(); });
}

void KPFindRun::end()
{
    m_isEnded = true;
    QCoreApplication::exit();
}

void KPFindRun::added(const QList<KPFoundDocument> &documents)
{
    for (const KPFoundDocument &document : documents) {
        if (m_isEnded)
            return;
        ++m_count;
        if (m_options.live)
            printChange('+', document.path);
        else if (!m_options.count)
            printDocument(document);
        reportError(document);
        if (m_count == m_options.limit)
            end();
    }
    if (!m_output.flush())
        end();
}

void KPFindRun::printDocument(const KPFoundDocument &document)
{
    if (!m_output.isJson()) {
        m_output.writeRecord(m_output.name(document.path));
        return;
    }
    m_output.write((m_count == 1 ? "[\n  {\"path\": " : ",\n  {\"path\": ") +
                   KPCommandOutput::json(document.path) +
                   ", \"tags\": " + KPCommandOutput::json(document.tags) + ", \"rating\": " +
                   QByteArray::number(document.rating, 'g', QLocale::FloatingPointShortest) + '}');
}

void KPFindRun::printChange(char sign, const QString &path)
{
    m_output.writeRecord(sign + (' ' + m_output.name(path)));
}

void KPFindRun::reportError(const KPFoundDocument &document)
{
    if (!document.error.isEmpty())
        m_output.fail(document.path, document.error);
}

void KPFindRun::finished(const QStringList &problems)
{
    // A live walk says it again when its problems change.
    for (const QString &problem : problems) {
        if (!m_problems.contains(problem))
            m_output.fail(problem);
    }
    m_problems = problems;
    if (!m_options.live)
        end();
}
