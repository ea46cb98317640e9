#pragma once

#include "XPError.h"
#include "XPMutex.h"

#include <QByteArrayList>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <sys/types.h>

struct XPFileInfo;

// Administrator's rights for writing the metadata convention's attributes, and for moving one file
// to the trash or removing it; for nothing else.
//
// The first need runs murn-attribute-writer through pkexec, which asks the user; the writer then
// stays for the rest of the process (or until it has been idle for minutes), so that one
// confirmation serves a whole batch of attributes. A file that goes is asked for each time. After a
// refusal nobody is asked again for 20 seconds.
// The question's text is that of the polkit action (packaging/), not the caller's.
// Threads: any. One at a time asks, the others wait for that answer; requests go to the writer one
// after the other. Blocks as long as the user takes; needs no event loop.
class XPAuthorisation
{
public:
    struct Programs
    {
        QByteArray launcher; // pkexec, or what stands for it: runs its argument with rights
        QByteArray writer;   // absolute: pkexec knows no other way
    };
    using Clock = std::function<std::chrono::steady_clock::time_point()>;

    // pkexec of the system; the writer as installed, else beside the program (build tree).
    static Programs systemPrograms();

    explicit XPAuthorisation(Programs programs = systemPrograms(),
                             Clock clock = &std::chrono::steady_clock::now);
    ~XPAuthorisation();
    XPAuthorisation(const XPAuthorisation &) = delete;
    XPAuthorisation &operator=(const XPAuthorisation &) = delete;

    // The one of the process. Replacing it is for start-up and tests: no other thread may use it.
    static XPAuthorisation &shared();
    static void installShared(std::unique_ptr<XPAuthorisation> authorisation);

    // Rights are there, or the user gave them now. Fails with Kind::Cancelled (also in the quiet
    // time after a refusal), NotPermitted, or Unsupported where there is nothing to ask with.
    // `reason` goes to the log, for whoever wonders what asked.
    std::optional<XPError> obtain(const QString &reason) XP_EXCLUDES(m_mutex);

    // Sets the attribute (full name without the `user.` namespace), or removes it when there is
    // no value. Asks as obtain() does when there are no rights (any more). Fails with the POSIX
    // error of the call, or Kind::InvalidArgument for what the writer refuses: names that are
    // not com.apple.metadata:kMDItem… nor the desktop's three, values over 4096 bytes, paths that
    // are not absolute.
    std::optional<XPError> writeAttribute(const QString &path, const QString &name,
                                          const std::optional<QByteArray> &value,
                                          const QString &reason) XP_EXCLUDES(m_mutex);
    // The same with the rights that are there just now; without any, or while the user is being
    // asked, Kind::Cancelled at once.
    std::optional<XPError> writeAttributeWithoutAsking(const QString &path, const QString &name,
                                                       const std::optional<QByteArray> &value)
        XP_EXCLUDES(m_mutex);

    // Moves the file that the user confirmed into `trashFiles`, the folder "files" of a trash of
    // the user's, under a name that is free there. ESTALE when another file is at the path now.
    std::optional<XPError> moveToTrash(const QString &path, const XPFileInfo &confirmed,
                                       const QString &trashFiles, const QString &name,
                                       const QString &reason) XP_EXCLUDES(m_mutex);
    // Removes the file that the user confirmed, a folder with everything in it, for good.
    std::optional<XPError> remove(const QString &path, const XPFileInfo &confirmed,
                                  const QString &reason) XP_EXCLUDES(m_mutex);

private:
    struct Writer
    {
        int socket = -1; // our end; -1: it does not run
        pid_t process = -1;
    };

    std::optional<XPError> mayAsk() const XP_REQUIRES(m_mutex);
    XPResult<Writer> ask(const QByteArrayList &words) const;
    void endAsking(const XPResult<Writer> &writer) XP_REQUIRES(m_mutex);
    std::optional<Writer> launch(const QByteArrayList &words) const;
    // One file, in a writer of its own.
    std::optional<XPError> runOnce(const QString &path, const XPFileInfo &confirmed,
                                   const QByteArray &verb, const QByteArrayList &arguments,
                                   const QString &reason) XP_EXCLUDES(m_mutex);
    static int stop(Writer &writer);
    static std::optional<qint32> request(const Writer &writer, const QByteArray &frame);
    std::optional<XPError> write(const QString &path, const QString &name,
                                 const std::optional<QByteArray> &value,
                                 const std::optional<QString> &reasonToAsk) XP_EXCLUDES(m_mutex);

    const Programs m_programs;
    const Clock m_clock;
    XPMutex m_mutex;
    std::condition_variable_any m_answered;
    bool m_isAsking XP_GUARDED_BY(m_mutex) = false; // with the lock let go
    Writer m_writer XP_GUARDED_BY(m_mutex);
    std::optional<std::chrono::steady_clock::time_point> m_quietUntil XP_GUARDED_BY(m_mutex);
};
