#include "XPFilePromise.h"

#include "XPFileDescriptor.h"
#include "XPFileInfo.h"
#include "XPFileUrls.h"
#include "XPFolderNames.h"
#include "XPFolders.h"
#include "XPFreeNames.h"
#include "XPLog.h"
#include "XPPasteboardSupport.h"
#include "XPPath.h"
#include "XPRename.h"

#include <QCoreApplication>
#include <QRandomGenerator>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

using Clock = std::chrono::steady_clock;

static constexpr mode_t newFile = 0666;   // less what the user's mask takes
static constexpr mode_t newFolder = 0777; // likewise: other programs of the user write there
static constexpr int mostRaces = 16;      // somebody else takes the name meanwhile
static constexpr int asking = 100;        // milliseconds between looks at whether to stop

static const QString hiddenPrefix = QStringLiteral(".murn-promise-");

static QString newHiddenFolder(const QString &folder)
{
    const QString hidden = folder + u'/' + hiddenPrefix +
                           QString::number(QRandomGenerator::global()->generate64(), 16);
    return ::mkdir(XPPath::encode(hidden).constData(), newFolder) == 0 ? hidden : QString();
}

XPFilePromise::XPFilePromise(const QString &folder, const QString &name, const QString &hidden)
    : m_folder(folder), m_name(name), m_hidden(hidden)
{
}

XPFilePromise::XPFilePromise(XPFilePromise &&other) noexcept
    : m_folder(std::move(other.m_folder)), m_name(std::move(other.m_name)),
      m_hidden(std::exchange(other.m_hidden, {})), m_patience(other.m_patience)
{
}

// A folder that holds something stays: its file may be the only one that there is.
XPFilePromise::~XPFilePromise()
{
    if (!m_hidden.isEmpty())
        ::rmdir(XPPath::encode(m_hidden).constData());
}

QString XPFilePromise::nameOf(const QByteArray &said)
{
    constexpr qsizetype longest = 200; // bytes
    QByteArray leaf = said.mid(said.lastIndexOf('/') + 1);
    if (leaf.size() > longest) { // less what a cut would leave of a character
        qsizetype end = longest;
        while (end > 0 && (static_cast<uchar>(leaf[end]) & 0xc0) == 0x80)
            --end;
        leaf.truncate(end);
    }
    const QString name = XPPasteboardSupport::cleanupDocTitle(XPPath::decode(leaf)).trimmed();
    return name.isEmpty() ? qtTrId("KPDocumentTitle") : name;
}

static std::optional<XPError> writeFile(const QString &path, const QByteArray &bytes)
{
    XPFileDescriptor file(
        ::open(XPPath::encode(path).constData(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, newFile));
    if (!file.isOpen())
        return XPError::fromErrno(errno, path);
    for (QByteArrayView left(bytes); !left.isEmpty();) {
        const ssize_t count = ::write(file.get(), left.data(), static_cast<size_t>(left.size()));
        if (count < 0 && errno != EINTR) {
            const int error = errno;
            ::unlink(XPPath::encode(path).constData());
            return XPError::fromErrno(error, path);
        }
        if (count > 0)
            left = left.sliced(count);
    }
    return {};
}

XPResult<std::optional<XPFilePromise>>
XPFilePromise::ask(XPDataOffer &sender, const QByteArray &said, const QString &folder)
{
    using Answer = XPDataOffer::Answer;
    if (auto error = XPFolders::create(folder))
        return *error;
    XPFilePromise promise(folder, nameOf(said), newHiddenFolder(folder));
    if (promise.m_hidden.isEmpty())
        return XPError::fromErrno(errno, folder);
    const auto answer = sender.save(XPFileUrls::encoded(promise.staged()));
    if (!answer)
        return answer.error();
    if (*answer == Answer::WantsToBeRead) {
        const auto bytes = sender.read(XPDataOffer::anyBytesFormat);
        if (!bytes)
            return bytes.error();
        if (auto error = writeFile(promise.staged(), *bytes))
            return *error;
    } else if (*answer == Answer::Refuses) {
        return XPError::make(XPError::Kind::NotFound, qtTrId("XPPromiseRefused"));
    }
    return std::optional<XPFilePromise>(std::move(promise));
}

// --- Waiting

namespace {

// What happens to one file, as inotify(7) tells it.
class FileWatch
{
public:
    FileWatch(const QString &folder, const QString &name)
        : m_name(XPPath::encode(name)), m_notices(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK))
    {
        ::inotify_add_watch(m_notices.get(), XPPath::encode(folder).constData(),
                            IN_CREATE | IN_MODIFY | IN_CLOSE_WRITE | IN_MOVED_TO);
    }
    enum class Heard { Nothing, Activity, Finished };
    Heard wait(int milliseconds)
    {
        pollfd waiting{m_notices.get(), POLLIN, 0};
        if (::poll(&waiting, 1, milliseconds) <= 0)
            return Heard::Nothing;
        alignas(inotify_event) std::array<char, 4096> bytes; // NOLINT(*-member-init): read into
        const ssize_t size = ::read(m_notices.get(), bytes.data(), bytes.size());
        Heard heard = Heard::Activity;
        for (ssize_t at = 0; at < size;) {
            const auto *event = reinterpret_cast<const inotify_event *>(bytes.data() + at);
            const bool isIt = event->len > 0 && m_name == event->name;
            if (isIt && (event->mask & (IN_CLOSE_WRITE | IN_MOVED_TO)) != 0)
                heard = Heard::Finished;
            at += static_cast<ssize_t>(sizeof(inotify_event)) + event->len;
        }
        return heard;
    }

private:
    QByteArray m_name;
    XPFileDescriptor m_notices;
};

} // namespace

std::optional<XPError> XPFilePromise::wait(const std::function<bool()> &isStopped)
{
    FileWatch watch(m_hidden, m_name);
    const Clock::time_point latest = Clock::now() + m_patience;
    Clock::time_point quietSince = Clock::now();
    for (;;) {
        const bool isThere = XPFileInfo::read(staged()).hasValue();
        const auto now = Clock::now();
        if (isThere && now - quietSince >= settled)
            return {};
        if (!isThere && now >= latest)
            return XPError::make(XPError::Kind::NotFound, qtTrId("XPPromiseNotWritten"),
                                 m_folder + u'/' + m_name);
        if (isStopped())
            return XPError::make(XPError::Kind::Cancelled, QStringLiteral("stopped"));
        const auto heard = watch.wait(asking);
        if (heard == FileWatch::Heard::Finished)
            return {};
        if (heard == FileWatch::Heard::Activity)
            quietSince = Clock::now();
    }
}

// --- Its name

XPResult<QString> XPFilePromise::take()
{
    const auto info = XPFileInfo::read(staged());
    if (!info)
        return info.error();
    if (!info->isRegular() && !info->isDirectory()) // a link may lead anywhere
        return XPError::malformed(qtTrId("XPPromiseNoFile"));
    if (info->isRegular()) {
        const XPFileDescriptor file(
            ::open(XPPath::encode(staged()).constData(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
        (void)::fsync(file.get()); // where this cannot be done there is no better way
    }
    XPFreeNames names(m_folder);
    for (int race = 0; race < mostRaces; ++race) {
        QString path = names.take(m_name);
        const auto error = XPRename::toFreeName(staged(), path);
        if (!error) {
            const XPFileDescriptor folder(
                ::open(XPPath::encode(m_folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
            (void)::fsync(folder.get());
            if (const auto mark = XPPasteboardSupport::markManaged(path))
                qCWarning(xpLog).noquote() << XPPath::printable(path) << mark->reason();
            return path;
        }
        if (error->code != EEXIST)
            return *error;
    }
    return XPError::fromErrno(EEXIST, m_folder);
}

// --- What came too late

static QStringList pathsIn(const QString &folder, const QString &prefix)
{
    QStringList paths;
    XPFolderNames::forEach(AT_FDCWD, XPPath::encode(folder).constData(), [&](QByteArrayView name) {
        if (name.startsWith(prefix.toLatin1()))
            paths.append(folder + u'/' + XPPath::decode(name));
        return true;
    });
    return paths;
}

QStringList XPFilePromise::takeLeftBehind(const QString &folder, std::chrono::seconds age)
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const auto isQuiet = [&](const QString &path) {
        const auto info = XPFileInfo::read(path);
        return info && now - std::chrono::nanoseconds(info->changed) >= age;
    };
    QStringList taken;
    for (const QString &hidden : pathsIn(folder, hiddenPrefix)) {
        if (!isQuiet(hidden))
            continue;
        const QStringList files = pathsIn(hidden, {});
        for (const QString &file : files) {
            XPFilePromise promise(folder, XPPath::fileName(file), hidden);
            const auto path = isQuiet(file) ? promise.take() : XPResult<QString>(QString());
            if (path && !path->isEmpty())
                taken.append(*path);
        }
        if (files.isEmpty())
            ::rmdir(XPPath::encode(hidden).constData());
    }
    return taken;
}
