#pragma once

#include "XPDataOffer.h"

#include <QStringList>
#include <chrono>
#include <functional>
#include <optional>

// A file that the source of a drag promised, and writes itself where it was told to: into a hidden
// folder beside its final place, so that a torn file, one that comes late or one with the name of
// another never stands among the documents.
//
// ask() answers at once; some programs begin to write only when the drop is over. wait() tells one
// that writes from one that never does, and take() gives the file its name. What was not taken is
// removed with the promise, unless it may still be wanted: a file that came too late stays.
// Threads: any, one at a time; blocking file calls. Move-only.
class XPFilePromise
{
public:
    // `said`: the source's name for it. A source that would rather be read is read here.
    // NotFound: it refuses. NoSpace and so on: the folder takes no file.
    static XPResult<std::optional<XPFilePromise>> ask(XPDataOffer &sender, const QByteArray &said,
                                                      const QString &folder);
    ~XPFilePromise();
    XPFilePromise(XPFilePromise &&other) noexcept;
    XPFilePromise &operator=(XPFilePromise &&other) = delete;

    // Until the file is there and its writer is done, or has written nothing for `settled`.
    // NotFound: it never came in `patience`. Cancelled: `isStopped` said so, which is asked every
    // 100 ms while there is something to wait for.
    std::optional<XPError> wait(const std::function<bool()> &isStopped);
    // The file under the first name that is free, as a document of the library.
    XPResult<QString> take();

    // Files that came too late, or when the program had ended: takes them out of the hidden folders
    // in which nothing happened for `age`, as documents of the library. Answers their paths.
    static QStringList takeLeftBehind(const QString &folder,
                                      std::chrono::seconds age = std::chrono::minutes(2));

    const QString &name() const { return m_name; }

    // The name of a file, of what a source says: no folder, never hidden, no control characters.
    static QString nameOf(const QByteArray &said);

    static constexpr std::chrono::milliseconds settled{1500};
    static constexpr std::chrono::seconds usualPatience{30};
    void setPatience(std::chrono::milliseconds patience) { m_patience = patience; }

private:
    XPFilePromise(const QString &folder, const QString &name, const QString &hidden);
    QString staged() const { return m_hidden + u'/' + m_name; }

    QString m_folder;
    QString m_name;
    QString m_hidden; // empty: moved from
    std::chrono::milliseconds m_patience = usualPatience;
};
