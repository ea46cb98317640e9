#include "KPPool.h"

#include "XPMutex.h"
#include "XPTextTable.h"

#include <algorithm>
#include <type_traits>

// Space is taken from the system in blocks; a longer string than a block gets its own.
static constexpr size_t blockSize = 64 * 1024;
static constexpr size_t shardCount = 64;

constinit const KPPooledString::Entry KPPooledString::emptyEntry{0, 0, nullptr, {0}};

struct alignas(64) KPPool::Shard
{
    using Entry = KPPooledString::Entry;

    const Entry *add(QStringView text, quint32 hash) XP_REQUIRES(mutex);

    XPTextTable<const Entry> table;
    XPMutex mutex;
    char *free XP_GUARDED_BY(mutex) = nullptr; // the rest of the newest block
    size_t left XP_GUARDED_BY(mutex) = 0;
    size_t blocks XP_GUARDED_BY(mutex) = 0; // bytes of all blocks
};

// Ready before any constructor runs and never destroyed.
constinit KPPool::Shard KPPool::shards[shardCount];

const KPPool::Shard::Entry *KPPool::Shard::add(QStringView text, quint32 hash)
{
    static_assert(std::is_trivially_destructible_v<Shard>);
    Q_ASSERT(text.size() < std::numeric_limits<qint32>::max());
    const size_t units = static_cast<size_t>(text.size());
    const size_t used = offsetof(Entry, text) + (units + 1) * sizeof(char16_t);
    const size_t bytes = (used + alignof(Entry) - 1) / alignof(Entry) * alignof(Entry);
    char *place = free;
    if (bytes > left) {
        const size_t block = std::max(bytes, blockSize);
        place = static_cast<char *>(XPLastingMemory::pages(block));
        blocks += block;
        if (block - bytes > left) { // keep the larger rest
            free = place;
            left = block;
        }
    }
    if (place == free) {
        free += bytes;
        left -= bytes;
    }
    // The pages are zeroed: that ends the text, and nothing is attached.
    auto *entry = reinterpret_cast<Entry *>(place);
    entry->hash = hash;
    entry->size = static_cast<qint32>(text.size());
    std::copy_n(text.utf16(), units, static_cast<char16_t *>(entry->text));
    table.insert(entry);
    return entry;
}

KPPooledString KPPool::pooledString(QStringView text)
{
    if (text.isEmpty())
        return {};
    const quint32 hash = XPTextTable<const Shard::Entry>::hash(text);
    Shard &shard = shards[hash % shardCount];
    if (const auto *known = shard.table.find(text, hash))
        return KPPooledString(known);
    const XPLocker lock(shard.mutex);
    const auto *known = shard.table.find(text, hash);
    return KPPooledString(known != nullptr ? known : shard.add(text, hash));
}

KPPooledString KPPool::existingString(QStringView text, bool *found)
{
    const quint32 hash = XPTextTable<const Shard::Entry>::hash(text);
    const auto *known = text.isEmpty() ? &KPPooledString::emptyEntry
                                       : shards[hash % shardCount].table.find(text, hash);
    *found = known != nullptr;
    return *found ? KPPooledString(known) : KPPooledString();
}

qsizetype KPPool::count()
{
    size_t count = 1; // the empty string
    for (Shard &shard : shards) {
        const XPLocker lock(shard.mutex);
        count += shard.table.count();
    }
    return static_cast<qsizetype>(count);
}

qsizetype KPPool::memoryUsed()
{
    size_t bytes = sizeof shards;
    for (Shard &shard : shards) {
        const XPLocker lock(shard.mutex);
        bytes += shard.table.memoryUsed() + shard.blocks;
    }
    return static_cast<qsizetype>(bytes);
}
