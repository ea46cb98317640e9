#pragma once

#include <QList>
#include <optional>
#include <vector>

// Which rows of a list of documents are selected, and what clicks and keys make of it.
//
// One row is the anchor, from which clicks with Shift count, and one the current one, which the
// keyboard is at; -1: none. A bit a row: every change costs at most a pass over those.
// Threads: a value.
class KPSelection
{
public:
    struct Run
    {
        int first = 0;
        int last = 0; // included
        bool operator==(const Run &) const = default;
    };

    int rowCount() const { return m_rowCount; }
    // Nothing is selected then.
    void reset(int rowCount);

    bool isSelected(int row) const;
    qsizetype count() const { return m_count; }
    bool isEmpty() const { return m_count == 0; }
    int first() const; // -1: none
    int last() const;
    int anchor() const { return m_anchor; }
    int current() const { return m_current; }
    void setAnchor(int row) { m_anchor = row; }
    void setCurrent(int row) { m_current = row; }
    QList<Run> runs() const;

    void clear();
    void selectAll();
    void add(const Run &run);
    void remove(const Run &run);
    // The one row alone; the anchor too.
    void select(int row);
    void toggle(int row); // with the anchor on it

    // A click with Shift: joins the rows between `row` and the selection's nearer end to it, so
    // that it never gets smaller. Only with two rows or more.
    void extendByShiftClicking(int row);
    // The arrow keys: from the first selected row for a negative offset, else from the last.
    // Nothing selected: the last row is. The row to bring into sight; nothing: none changed.
    std::optional<int> modify(int offset, bool extends, bool wraps);
    std::optional<int> selectFirst(bool extends);
    std::optional<int> selectLast(bool extends);

private:
    using Word = quint64;
    static constexpr int bits = 64;

    std::optional<int> goTo(int row, bool extends);
    void set(const Run &run, bool isSelected);

    std::vector<Word> m_words;
    int m_rowCount = 0;
    qsizetype m_count = 0;
    int m_anchor = -1;
    int m_current = -1;
};
