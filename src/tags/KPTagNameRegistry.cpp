#include "KPTagNameRegistry.h"

static constexpr size_t expectedTags = 5000;

KPTagNameRegistry::KPTagNameRegistry()
{
    m_byKey.reserve(expectedTags);
    m_byAge.reserve(expectedTags);
}

KPTagNameRegistry &KPTagNameRegistry::instance()
{
    static auto *const registry = new KPTagNameRegistry;
    return *registry;
}

KPTagName *KPTagNameRegistry::add(QStringView key, QStringView displayName)
{
    const KPPooledString pooledKey = KPPool::pooledString(key);
    const KPPooledString pooledName = KPPool::pooledString(displayName);
    const int type = KPTagName::tagTypeFromKeyName(pooledKey.toString());
    const XPLocker lock(m_mutex);
    if (KPTagName *known = find(key))
        return known;
    auto *tag = new KPTagName(pooledKey, pooledName, type);
    m_byKey.insert(tag);
    m_byAge.push_back(tag);
    return tag;
}

std::vector<KPTagName *> KPTagNameRegistry::all()
{
    const XPLocker lock(m_mutex);
    return m_byAge;
}
