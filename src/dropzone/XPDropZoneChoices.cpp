#include "XPDropZoneChoices.h"

#include "XPFolders.h"
#include "XPPath.h"

#include <QCoreApplication>
#include <algorithm>

using Row = XPDropZoneChoices::Row;

static constexpr int rowHeight = 44;
static constexpr int gap = 6;
static constexpr qsizetype mostBelow = 4; // and the row that leads back

XPDropZoneChoices::XPDropZoneChoices(const QStringList &folders,
                                     const QList<QStringList> &tagGroups, const QString &today,
                                     const QSize &size)
    : m_size(size)
{
    const Row back{Kind::Back, qtTrId("KPDropZoneBack"), {}, {}, {}};
    for (const QString &folder : folders.first(std::min(folders.size(), mostBelow)))
        m_folders.append({Kind::Folder,
                          XPPath::printable(XPPath::fileName(folder)),
                          XPPath::printable(XPFolders::abbreviateWithTilde(XPPath::folder(folder))),
                          {folder, {}},
                          {}});
    for (const QStringList &tags : tagGroups.first(std::min(tagGroups.size(), mostBelow)))
        m_groups.append({Kind::TagGroup,
                         XPPath::printable(tags.join(QStringLiteral(", "))),
                         {},
                         {{}, tags},
                         {}});
    m_first.append({Kind::Today, qtTrId("KPDropZoneToday"), today, {}, {}});
    if (!m_folders.isEmpty())
        m_first.append({Kind::Folders, qtTrId("KPDropZoneFolders"), {}, {}, {}});
    if (!m_groups.isEmpty())
        m_first.append({Kind::TagGroups, qtTrId("KPDropZoneTagGroups"), {}, {}, {}});
    m_folders.prepend(back);
    m_groups.prepend(back);
    reset();
}

// The first of the first rows, which most drops are meant for, gets the room that is left.
void XPDropZoneChoices::show(const QList<Row> &rows)
{
    m_rows = rows;
    const int width = m_size.width() - 2 * margin;
    int y = headHeight;
    for (Row &row : m_rows) {
        int tall = rowHeight;
        if (row.kind == Kind::Today)
            tall = m_size.height() - y - margin -
                   static_cast<int>(m_rows.size() - 1) * (rowHeight + gap);
        row.place = QRect(margin, y, width, tall);
        y += tall + gap;
    }
}

int XPDropZoneChoices::rowAt(const QPoint &point) const
{
    const auto found = std::find_if(m_rows.begin(), m_rows.end(), [&point](const Row &row) {
        return row.place.adjusted(0, -gap / 2, 0, gap / 2).contains(point);
    });
    return found == m_rows.end() ? -1 : static_cast<int>(std::distance(m_rows.begin(), found));
}

void XPDropZoneChoices::spring(int row)
{
    const Kind kind = m_rows.value(row).kind;
    if (kind == Kind::Folders)
        show(m_folders);
    else if (kind == Kind::TagGroups)
        show(m_groups);
    else if (kind == Kind::Back)
        reset();
}

void XPDropZoneChoices::reset()
{
    show(m_first);
}

XPDropZoneDestination XPDropZoneChoices::destinationOf(int row) const
{
    return m_rows.value(row).destination;
}
