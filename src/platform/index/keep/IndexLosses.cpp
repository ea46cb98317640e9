#include "IndexLosses.h"

#include "IndexBytesKey.h"
#include "IndexDesktopKeys.h"

#include <algorithm>
#include <chrono>

using namespace std::chrono_literals;

static constexpr qint64 longestGap = std::chrono::milliseconds(2s).count();

qint64 IndexLosses::now()
{
    const auto time = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(time).count();
}

bool IndexLosses::isSameFile(const XPFileInfo &one, const XPFileInfo &other)
{
    constexpr qint64 second = 1'000'000'000;
    return one.inode == other.inode && one.birth / second == other.birth / second;
}

void IndexLosses::gone(const QByteArray &path, const IndexRecord &record, qint64 time)
{
    if (record.attributes.isEmpty() || !record.info.isRegular())
        return;
    for (; !m_inOrder.empty() && m_inOrder.front().second < time - longestGap;
         m_inOrder.pop_front()) {
        const auto &[oldest, when] = m_inOrder.front();
        if (const auto known = m_gone.constFind(oldest);
            known != m_gone.cend() && known->time == when)
            m_gone.erase(known);
    }
    m_gone.insert(path, {record, time});
    m_inOrder.emplace_back(path, time);
}

void IndexLosses::made(const QByteArray &path, const IndexRecord &record, qint64 time)
{
    if (m_gone.isEmpty())
        return;
    const auto gone = m_gone.constFind(path);
    if (gone == m_gone.cend())
        return;
    if (time - gone->time <= longestGap)
        replaced(path, gone->record, record, true);
    m_gone.erase(gone);
}

void IndexLosses::replaced(const QByteArray &path, const IndexRecord &before,
                           const IndexRecord &now, bool isSeen) const
{
    if (!now.info.isRegular() || (isSameFile(before.info, now.info) && !isSeen))
        return;
    // What the desktop keeps is its own business.
    IndexRecord::Attributes had = before.attributes;
    had.removeIf([](std::pair<const QString &, PropertyValue &> entry) {
        return isIndexDesktopKey(entry.first);
    });
    for (auto attribute = had.begin(); attribute != had.end(); ++attribute) {
        if (!IndexBytesKey::is(attribute.key()) && !now.attributes.contains(attribute.key())) {
            m_report({path, had, now.attributes.keys(), before.type, now.type, isSeen});
            return;
        }
    }
}
