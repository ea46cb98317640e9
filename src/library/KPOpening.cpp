#include "KPOpening.h"

#include "XPPath.h"
#include "XPPrompts.h"

#include <QLocale>
#include <chrono>

// The window's share between two starts.
static constexpr auto betweenStarts = std::chrono::milliseconds(20);

void KPOpening::run(std::vector<Start> starts, QObject *parent)
{
    if (!starts.empty())
        (new KPOpening(std::move(starts), parent))->next();
}

KPOpening::KPOpening(std::vector<Start> starts, QObject *parent)
    : QObject(parent), m_starts(std::move(starts)), m_task(std::make_shared<XPProgressTask>())
{
    m_task->total = static_cast<qint64>(m_starts.size());
    m_task->title = qtTrId("KPOpeningDocuments").arg(QLocale().toString(m_task->total));
    m_task->note = qtTrId("KPOpeningStopNote");
    XPProgress::current().begin(m_task);
    m_timer.setInterval(betweenStarts);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        xpGuiThread.assertHere();
        next();
    });
    m_timer.start();
}

KPOpening::~KPOpening()
{
    XPProgress::current().end(m_task);
}

void KPOpening::next()
{
    if (m_task->isStopAsked) {
        finish();
        return;
    }
    const Start &start = m_starts[static_cast<size_t>(m_task->done++)];
    const auto error = start.open();
    if (error || m_task->done == m_task->total)
        finish();
    if (error)
        XPPrompts::current().alert(qtTrId("KPCannotOpen").arg(XPPath::printable(start.name)),
                                   error->reason());
}

void KPOpening::finish()
{
    m_timer.stop();
    XPProgress::current().end(m_task);
    deleteLater();
}
