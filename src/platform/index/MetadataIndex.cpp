#include "MetadataIndex.h"

#include "UserDefaults.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

static const QString rootsKey = QStringLiteral("KPIndexRoots");

QString MetadataIndex::storePath()
{
    return XPFolders::ourCaches() + QStringLiteral("/index/index.sqlite");
}

QStringList MetadataIndex::roots()
{
    const PropertyValue saved = UserDefaults::standard().value(rootsKey);
    if (!saved.isArray())
        return {XPFolders::home()};
    QStringList roots;
    for (const PropertyValue &root : saved.array()) {
        // A path that is no well-formed text is stored as its bytes.
        roots.append(root.isString() ? XPFolders::expandTilde(root.string())
                                     : XPPath::decode(root.data()));
    }
    return roots;
}

void MetadataIndex::setRoots(const QStringList &roots)
{
    PropertyValue::Array values;
    for (const QString &root : roots) {
        if (root.isValidUtf16())
            values.append(root);
        else
            values.append(XPPath::encode(root));
    }
    UserDefaults::standard().setValue(rootsKey, values);
}

XPResult<std::unique_ptr<MetadataIndex>> MetadataIndex::open()
{
    std::unique_ptr<MetadataIndex> index(new MetadataIndex);
    auto keeper = IndexKeeper::start(storePath(), roots(), IndexRules::fromSettings());
    if (keeper) {
        index->m_keeper = *std::move(keeper);
        index->m_source = index->m_keeper.get();
        return index;
    }
    if (keeper.error().kind != XPError::Kind::NotPermitted)
        return keeper.error();
    auto follower = IndexFollower::start(storePath());
    if (!follower)
        return follower.error();
    index->m_follower = *std::move(follower);
    index->m_source = index->m_follower.get();
    return index;
}

MetadataIndex::~MetadataIndex() = default;

std::optional<XPError> MetadataIndex::remove()
{
    const QString path = storePath();
    const int lock = ::open(XPPath::encode(path + QStringLiteral(".lock")).constData(),
                            O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (lock >= 0 && ::flock(lock, LOCK_EX | LOCK_NB) != 0) {
        ::close(lock);
        return XPError::make(XPError::Kind::NotPermitted,
                             QStringLiteral("another process keeps the index; quit it first"));
    }
    IndexStore::remove(path);
    IndexStore::remove(path + QStringLiteral(".text"));
    if (lock >= 0)
        ::close(lock);
    return {};
}
