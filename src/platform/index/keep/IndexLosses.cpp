#include "IndexLosses.h"

#include "IndexBytesKey.h"

#include <algorithm>
#include <chrono>

using namespace std::chrono_literals;

static constexpr qint64 longestGap = std::chrono::milliseconds(2s).count();

qint64 IndexLosses::now()
{
    const auto time = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(time).count();
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
    const auto &had = before.attributes;
    // The index keeps times of birth in whole seconds.
    const bool isSame = before.info.inode == now.info.inode &&
                        before.info.birth / 1'000'000'000 == now.info.birth / 1'000'000'000;
    if (!now.info.isRegular() || (isSame && !isSeen))
        return;
    for (auto attribute = had.begin(); attribute != had.end(); ++attribute) {
        if (!IndexBytesKey::is(attribute.key()) && !now.attributes.contains(attribute.key())) {
            m_report({path, had, now.attributes.keys(), before.type, now.type, isSeen});
            return;
        }
    }
}
