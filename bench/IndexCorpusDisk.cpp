// IndexCorpus: the files on disk.
#include "IndexCorpus.h"
#include "XPExtendedAttributes.h"
#include "XPPath.h"
#include "XPPropertyList.h"

#include <QDir>
#include <QFile>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <thread>
#include <unistd.h>

[[noreturn]] static void giveUp(const char *what, const QByteArray &name)
{
    std::perror(
        ("murn_bench: cannot make the corpus: " + QByteArray(what) + ' ' + name).constData());
    std::exit(1); // NOLINT(concurrency-mt-unsafe): figures would be of something else
}

static void writeAttributes(int file, const IndexCorpus::File &entry)
{
    for (auto value = entry.attributes.begin(); value != entry.attributes.end(); ++value) {
        const auto bytes = XPPropertyList::writeBinary(value.value());
        const QByteArray name = "user.com.apple.metadata:" + value.key().toUtf8();
        if (!bytes || ::fsetxattr(file, name.constData(), bytes->constData(),
                                  static_cast<size_t>(bytes->size()), 0) != 0)
            giveUp("attribute of", entry.name);
    }
}

void IndexCorpus::makeFolder(int root, quint32 number) const
{
    const QByteArray in = number == 0 ? QByteArray(".") : path(number);
    const int folder = ::openat(root, in.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0)
        giveUp("open", in);
    for (const File &entry : filesIn(number)) {
        const int file =
            ::openat(folder, entry.name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
        if (file < 0)
            giveUp("create", entry.name);
        const QByteArray bytes = body(entry);
        if (!bytes.isEmpty() &&
            ::write(file, bytes.constData(), static_cast<size_t>(bytes.size())) != bytes.size())
            giveUp("write", entry.name);
        writeAttributes(file, entry);
        constexpr qint64 second = 1'000'000'000;
        const timespec times[] = {{0, UTIME_OMIT},
                                  {entry.modified / second, entry.modified % second}};
        ::futimens(file, times);
        ::close(file);
    }
    ::close(folder);
}

void IndexCorpus::writeTo(const QString &target) const
{
    const QByteArray bytes = XPPath::encode(target);
    if (::mkdir(bytes.constData(), 0755) != 0)
        giveUp("create", bytes);
    const int root = ::open(bytes.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (quint32 number = 1; number < m_folders.size(); ++number) {
        if (::mkdirat(root, path(number).constData(), 0755) != 0)
            giveUp("create", path(number));
    }
    std::atomic<quint32> next = 0;
    const auto work = [&] {
        for (quint32 number = next++; number < m_folders.size(); number = next++)
            makeFolder(root, number);
    };
    std::thread other(work);
    work();
    other.join();
    ::close(root);
}

QString IndexCorpus::onDisk(quint32 files, Bodies bodies)
{
    QString target = QDir::currentPath() +
                     QStringLiteral("/corpus-%1%2-v%3")
                         .arg(files)
                         .arg(bodies == Bodies::Prose ? QStringLiteral("-prose") : QString())
                         .arg(version);
    // The stamp comes last: half a corpus has none.
    QFile stamp(target + QStringLiteral(".stamp"));
    if (!stamp.exists()) {
        std::fprintf(stderr, "making %u files in %s\n", files, XPPath::encode(target).constData());
        QDir(target).removeRecursively();
        IndexCorpus(files, bodies).writeTo(target);
        if (!stamp.open(QIODevice::WriteOnly))
            giveUp("write", "the stamp");
    }
    return target;
}
