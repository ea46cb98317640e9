#include "IndexRecents.h"

#include "XPAtomicFile.h"
#include "XPPath.h"

#include <QDateTime>
#include <QXmlStreamReader>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <unistd.h>

static constexpr qint64 largestList = 16 << 20;
static constexpr qsizetype longestPath = 64 * 1024;

IndexRecents::IndexRecents(const QString &file, std::function<void(Times)> changed)
    : m_file(XPPath::encode(file)), m_changed(std::move(changed)),
      m_inotify(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)), m_stop(::eventfd(0, EFD_CLOEXEC))
{
    // Its folder, as the list is replaced by a new file each time.
    ::inotify_add_watch(m_inotify.get(), XPPath::encode(XPPath::folder(file)).constData(),
                        IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE);
    m_thread = std::thread([this] { loop(); });
}

IndexRecents::~IndexRecents()
{
    const quint64 one = 1;
    (void)!::write(m_stop.get(), &one, sizeof one);
    m_thread.join();
}

void IndexRecents::loop()
{
    bool changed = true;
    for (;;) {
        if (changed) {
            const auto bytes = XPAtomicFile::read(XPPath::decode(m_file), largestList);
            m_changed(parse(bytes.valueOr({})).valueOr({}));
        }
        pollfd waiting[] = {{m_stop.get(), POLLIN, 0}, {m_inotify.get(), POLLIN, 0}};
        if (::poll(waiting, 2, -1) < 0 && errno != EINTR)
            return;
        if (waiting[0].revents)
            return;
        changed = isConcerned();
    }
}

bool IndexRecents::isConcerned() const
{
    const QByteArray name = m_file.mid(m_file.lastIndexOf('/') + 1);
    alignas(inotify_event) char bytes[4096];
    bool concerned = false;
    ssize_t size = 0;
    while ((size = ::read(m_inotify.get(), bytes, sizeof bytes)) > 0) {
        for (ssize_t at = 0; at < size;) {
            const auto *event = reinterpret_cast<const inotify_event *>(bytes + at);
            at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
            concerned = concerned || (event->len > 0 && name == event->name) ||
                        (event->mask & IN_Q_OVERFLOW);
        }
    }
    return concerned;
}

// The path of a local file's URL, in its own bytes; empty for anything else.
static QByteArray pathOf(QStringView url)
{
    if (!url.startsWith(u"file://") || url.size() > longestPath)
        return {};
    const QByteArray path = QByteArray::fromPercentEncoding(url.mid(7).toUtf8());
    return path.startsWith('/') && !path.contains('\0') ? path : QByteArray();
}

XPResult<IndexRecents::Times> IndexRecents::parse(const QByteArray &xbel)
{
    Times times;
    QXmlStreamReader in(xbel);
    while (!xbel.isEmpty() && !in.atEnd()) {
        const auto token = in.readNext();
        if (token == QXmlStreamReader::DTD)
            return XPError::malformed(QStringLiteral("a list of recent files declares entities"));
        if (token != QXmlStreamReader::StartElement || in.name() != u"bookmark")
            continue;
        const QXmlStreamAttributes attributes = in.attributes();
        const QByteArray path = pathOf(attributes.value(QStringLiteral("href")));
        double &time = times[path];
        for (const QString &name : {QStringLiteral("visited"), QStringLiteral("modified")}) {
            const auto when =
                QDateTime::fromString(attributes.value(name).toString(), Qt::ISODateWithMs);
            if (when.isValid())
                time = std::max(time, static_cast<double>(when.toMSecsSinceEpoch()) / 1000);
        }
        if (path.isEmpty() || time == 0)
            times.remove(path);
    }
    if (in.hasError())
        return XPError::malformed(in.errorString(), in.characterOffset());
    return times;
}
