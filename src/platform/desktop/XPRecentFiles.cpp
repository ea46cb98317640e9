#include "XPRecentFiles.h"

#include "XPAtomicFile.h"
#include "XPFileInfo.h"
#include "XPFileUrls.h"
#include "XPLog.h"
#include "XPMutex.h"
#include "XPPath.h"

#include <QLockFile>
#include <QMimeDatabase>
#include <QSettings>
#include <QStandardPaths>
#include <QThreadPool>
#include <chrono>
#include <gio/gio.h>
#include <memory>
#include <sys/stat.h>
#include <utility>

static constexpr qint64 largestList = 16 << 20;
static constexpr std::chrono::seconds mostWaiting{10}; // for another program
static constexpr int mostAttempts = 5;
static const char *const program = "Murn";
static const char *const command = "murn %u";

namespace {

struct Free
{
    void operator()(GBookmarkFile *file) const { g_bookmark_file_free(file); }
    void operator()(GDateTime *time) const { g_date_time_unref(time); }
    void operator()(GError *error) const { g_error_free(error); }
    void operator()(gchar *text) const { g_free(text); }
    void operator()(GSettingsSchema *schema) const { g_settings_schema_unref(schema); }
    void operator()(GSettings *settings) const { g_object_unref(settings); }
};

template <typename Type>
using Owned = std::unique_ptr<Type, Free>;

// What tells one state of the list from the next.
struct State
{
    ino_t inode = 0;
    off_t size = 0;
    timespec modified = {};

    explicit State(const QString &path)
    {
        struct stat facts = {};
        if (::stat(XPPath::encode(path).constData(), &facts) == 0) {
            inode = facts.st_ino;
            size = facts.st_size;
            modified = facts.st_mtim;
        }
    }
    bool operator==(const State &other) const
    {
        return inode == other.inode && size == other.size &&
               modified.tv_sec == other.modified.tv_sec &&
               modified.tv_nsec == other.modified.tv_nsec;
    }
};

} // namespace

static bool isWanted()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    const QSettings kde(folder + QStringLiteral("/kdeglobals"), QSettings::IniFormat);
    if (!kde.value(QStringLiteral("RecentDocuments/UseRecent"), true).toBool())
        return false;
    GSettingsSchemaSource *source = g_settings_schema_source_get_default();
    if (source == nullptr)
        return true;
    const char *const key = "remember-recent-files";
    const Owned<GSettingsSchema> schema(
        g_settings_schema_source_lookup(source, "org.gnome.desktop.privacy", TRUE));
    if (!schema || !g_settings_schema_has_key(schema.get(), key))
        return true;
    const Owned<GSettings> privacy(g_settings_new_full(schema.get(), nullptr, nullptr));
    return g_settings_get_boolean(privacy.get(), key) != FALSE;
}

static XPError errorFrom(GError *error, const QString &path)
{
    const Owned<GError> owned(error);
    XPError made = XPError::malformed(QString::fromUtf8(error->message));
    made.path = path;
    return made;
}

// The list with the files in it, from the bytes of the one that is there.
static XPResult<QByteArray> withFiles(const QByteArray &list, const QString &path,
                                      const QStringList &files)
{
    const Owned<GBookmarkFile> marks(g_bookmark_file_new());
    GError *error = nullptr;
    if (!list.isEmpty() && !g_bookmark_file_load_from_data(marks.get(), list.constData(),
                                                           static_cast<gsize>(list.size()), &error))
        return errorFrom(error, path);
    const Owned<GDateTime> now(g_date_time_new_now_utc());
    const QMimeDatabase types;
    for (const QString &file : files) {
        const QByteArray url = XPFileUrls::encoded(file);
        const QByteArray type =
            types.mimeTypeForFile(file, QMimeDatabase::MatchExtension).name().toUtf8();
        g_bookmark_file_set_mime_type(marks.get(), url.constData(), type.constData());
        g_bookmark_file_add_application(marks.get(), url.constData(), program, command);
        g_bookmark_file_set_visited_date_time(marks.get(), url.constData(), now.get());
    }
    gsize size = 0;
    const Owned<gchar> made(g_bookmark_file_to_data(marks.get(), &size, &error));
    if (!made)
        return errorFrom(error, path);
    return QByteArray(made.get(), static_cast<qsizetype>(size));
}

std::optional<XPError> XPRecentFiles::add(const QStringList &paths)
{
    QStringList files;
    for (const QString &path : paths) {
        if (const auto info = XPFileInfo::read(path); info && S_ISREG(info->mode))
            files.append(path);
    }
    if (files.isEmpty() || !isWanted())
        return {};
    const QString list = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                         QStringLiteral("/recently-used.xbel");
    // Threads of this process take turns; the lock of processes is asked for now and then only.
    static XPMutex mutex;
    const XPLocker turn(mutex);
    QLockFile lock(list + QStringLiteral(".lock"));
    if (!lock.tryLock(mostWaiting))
        return XPError::make(XPError::Kind::Io, QStringLiteral("is locked"), list);
    // Not all who write it take the lock: what came meanwhile is read again.
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        const State before(list);
        const auto bytes = XPAtomicFile::read(list, largestList);
        if (!bytes && bytes.error().kind != XPError::Kind::NotFound)
            return bytes.error();
        const auto made = withFiles(bytes.valueOr({}), list, files);
        if (!made)
            return made.error();
        if (State(list) == before)
            return XPAtomicFile::write(list, *made);
    }
    return XPError::make(XPError::Kind::Io, QStringLiteral("is written to all the time"), list);
}

// --- Later

namespace {

struct Waiting
{
    XPMutex mutex;
    QStringList paths XP_GUARDED_BY(mutex);
    bool isAtWork XP_GUARDED_BY(mutex) = false;

    static Waiting &instance()
    {
        static Waiting waiting;
        return waiting;
    }
    // Empty: there is no more to do, and the next one begins anew.
    QStringList take()
    {
        const XPLocker lock(mutex);
        isAtWork = !paths.isEmpty();
        return std::exchange(paths, {});
    }
};

} // namespace

void XPRecentFiles::note(const QStringList &paths)
{
    {
        Waiting &waiting = Waiting::instance();
        const XPLocker lock(waiting.mutex);
        waiting.paths += paths;
        if (std::exchange(waiting.isAtWork, true))
            return;
    }
    QThreadPool::globalInstance()->start([] {
        for (;;) {
            const QStringList taken = Waiting::instance().take();
            if (taken.isEmpty())
                return;
            if (const auto error = add(taken))
                qCWarning(xpLog).noquote() << XPPath::printable(error->path) << error->reason();
        }
    });
}
