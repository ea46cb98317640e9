// Tags of 10,000 files, written and read, beside the bare system calls on ready-made bytes.
#include "Karvex.h"
#include "MurnBench.h"
#include "XPExtendedAttributes.h"
#include "XPPath.h"
#include "XPPropertyList.h"

#include <QDir>
#include <QTemporaryDir>
#include <cstdlib>
#include <fcntl.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

static constexpr int fileCount = 10'000;

namespace {

// Files on the disk of the build, made once.
class Files
{
public:
    Files() : m_folder(QDir::currentPath() + QStringLiteral("/karvex-bench-XXXXXX"))
    {
        for (int i = 0; i < fileCount; ++i) {
            const QString path = m_folder.filePath(QStringLiteral("document %1.pdf").arg(i));
            const QByteArray bytes = XPPath::encode(path);
            ::close(::open(bytes.constData(), O_CREAT | O_WRONLY | O_CLOEXEC, S_IRUSR | S_IWUSR));
            if (Karvex::setUserTags(nextTags(), path))
                std::abort(); // the figures would be of failures
            paths.append(path);
            encoded.push_back(bytes);
        }
    }

    // Never what the files have: writing the value that is there already costs less.
    static QStringList nextTags()
    {
        static int round = 0;
        return {QStringLiteral("Invoice"), QStringLiteral("Taxes %1").arg(++round % 10),
                QStringLiteral("to read")};
    }

    QStringList paths;
    std::vector<QByteArray> encoded;

private:
    QTemporaryDir m_folder;
};

struct Bare
{
    QByteArray tagsName =
        XPExtendedAttributes::nameOnDisk(Karvex::spotlightKey(Karvex::userTagsKey));
    QByteArray timeName =
        XPExtendedAttributes::nameOnDisk(Karvex::spotlightKey(Karvex::userTagTimeKey));
};

} // namespace

static const Files &files()
{
    static const Files files;
    return files;
}

static QByteArray binary(const PropertyValue &value)
{
    return XPPropertyList::writeBinary(value).valueOr({});
}

static void setTags(benchmark::State &state)
{
    const QStringList &paths = files().paths;
    for (auto _ : state) {
        const PropertyValue tags = Files::nextTags();
        for (const QString &path : paths) {
            if (Karvex::setUserTags(tags, path))
                state.SkipWithError("a write failed");
        }
    }
    XPBench::timeAtMost(state, 1.5);
}
BENCHMARK(setTags)->Unit(benchmark::kMillisecond)->UseRealTime();

// The old time is read too, as it must be to put it back.
static void setTagsBare(benchmark::State &state)
{
    const Bare bare;
    for (auto _ : state) {
        const QByteArray tags = binary(Files::nextTags());
        const QByteArray time = binary(PropertyValue::Date::now());
        for (const QByteArray &path : files().encoded) {
            char old[Karvex::maximumValueSize];
            ::lgetxattr(path.constData(), bare.timeName.constData(), old, sizeof old);
            if (::lsetxattr(path.constData(), bare.timeName.constData(), time.constData(),
                            static_cast<size_t>(time.size()), 0) != 0 ||
                ::lsetxattr(path.constData(), bare.tagsName.constData(), tags.constData(),
                            static_cast<size_t>(tags.size()), 0) != 0)
                state.SkipWithError("a write failed");
        }
    }
}
BENCHMARK(setTagsBare)->Name("setTags/baseline")->Unit(benchmark::kMillisecond)->UseRealTime();

static void getTags(benchmark::State &state)
{
    for (auto _ : state) {
        for (const QString &path : files().paths) {
            const auto tags = Karvex::getUserTags(path);
            if (!tags || tags->size() != 3)
                state.SkipWithError("a read failed");
        }
    }
    XPBench::timeAtMost(state, 1.5);
}
BENCHMARK(getTags)->Unit(benchmark::kMillisecond)->UseRealTime();

static void getTagsBare(benchmark::State &state)
{
    const Bare bare;
    for (auto _ : state) {
        for (const QByteArray &path : files().encoded) {
            char value[Karvex::maximumValueSize];
            if (::lgetxattr(path.constData(), bare.tagsName.constData(), value, sizeof value) <= 0)
                state.SkipWithError("a read failed");
        }
    }
}
BENCHMARK(getTagsBare)->Name("getTags/baseline")->Unit(benchmark::kMillisecond)->UseRealTime();
