#include "XPBestMatch.h"

#include "XPText.h"

XPBestMatch::XPBestMatch(const QString &filterText) : m_filter(lowerCase(decomposed(filterText)))
{
}

bool XPBestMatch::is(const XPCloudItem &item) const
{
    return m_item && m_item->itemDisplayName(false) == item.itemDisplayName(false);
}

void XPBestMatch::setBestMatchIfBetter(const XPCloudItem &item)
{
    if (item.clickRemoves || is(item))
        return;
    const auto begins = [this](const XPCloudItem &each) {
        return lowerCase(decomposed(each.itemDisplayName(false))).startsWith(m_filter);
    };
    if (!m_item || (begins(item) && !begins(*m_item)))
        m_item = item;
}
