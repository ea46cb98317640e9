#pragma once

#include "XPCloudItem.h"

#include <optional>

// The word that fits best what was typed into a cloud's filter. Threads: a value.
class XPBestMatch
{
public:
    // Begins afresh, for another text.
    explicit XPBestMatch(const QString &filterText = {});

    // Offers a word: it is taken if it begins with the filter text and the present one does not,
    // or when there is none. A selected word never is.
    void setBestMatchIfBetter(const XPCloudItem &item);
    const std::optional<XPCloudItem> &item() const { return m_item; }
    // By name: the words of other clouds of that name are meant too.
    bool is(const XPCloudItem &item) const;

private:
    QString m_filter; // lower case
    std::optional<XPCloudItem> m_item;
};
