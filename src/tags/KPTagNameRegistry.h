#pragma once

#include "KPTagName.h"
#include "XPMutex.h"
#include "XPTextTable.h"

#include <vector>

// Every tag ever made, by key. Only KPTagName uses it.
// Threads: any; find() does not lock. Never destroyed: tags are used until the very end.
class KPTagNameRegistry
{
public:
    static KPTagNameRegistry &instance();

    KPTagName *find(QStringView key) const
    {
        return m_byKey.find(key, XPTextTable<KPTagName>::hash(key));
    }
    // The tag that is there already, if one is.
    KPTagName *add(QStringView key, QStringView displayName) XP_EXCLUDES(m_mutex);
    // A copy, oldest first.
    std::vector<KPTagName *> all() XP_EXCLUDES(m_mutex);

private:
    KPTagNameRegistry();

    XPTextTable<KPTagName> m_byKey; // changed under m_mutex
    XPMutex m_mutex;
    std::vector<KPTagName *> m_byAge XP_GUARDED_BY(m_mutex);
};
