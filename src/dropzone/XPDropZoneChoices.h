#pragma once

#include <QList>
#include <QRect>
#include <QString>
#include <QStringList>

// Where what is dropped on the zone goes.
struct XPDropZoneDestination
{
    QString folder;   // empty: today's
    QStringList tags; // the documents get

    bool operator==(const XPDropZoneDestination &) const = default;
};

// The rows of the drop zone: today's folder; the folders used lately and the groups of tags set
// lately, which spring open when the drag stays over them, and a row that leads back.
// Threads: a value.
class XPDropZoneChoices
{
public:
    enum class Kind { Today, Folders, TagGroups, Back, Folder, TagGroup };
    struct Row
    {
        Kind kind = Kind::Today;
        QString text;
        QString detail; // small, below the text
        XPDropZoneDestination destination;
        QRect place; // in the zone

        // Shows other rows when the drag stays over it.
        bool springs() const
        {
            return kind == Kind::Folders || kind == Kind::TagGroups || kind == Kind::Back;
        }
    };

    // Newest first; as many are shown as there is room for.
    XPDropZoneChoices(const QStringList &folders, const QList<QStringList> &tagGroups,
                      const QString &today, const QSize &size);

    const QList<Row> &rows() const { return m_rows; }
    int rowAt(const QPoint &point) const; // -1: none
    void spring(int row);
    void reset(); // to the first rows
    // Of a row that would spring: today's, as the drop did not wait.
    XPDropZoneDestination destinationOf(int row) const;

    static constexpr int margin = 12;
    static constexpr int headHeight = 40; // above the rows

private:
    void show(const QList<Row> &rows);

    QList<Row> m_first;
    QList<Row> m_folders;
    QList<Row> m_groups;
    QList<Row> m_rows;
    QSize m_size;
};
