#pragma once

#include <QFrame>
#include <QList>

class QTreeWidget;

// A tag that may be meant by what is being typed, with how many documents have it.
struct XPTagSuggestion
{
    QString tag;
    qsizetype count = 0;
};

// The window of suggestions below a field of tags. It never takes the focus: the field hands it the
// keys that move in it. Threads: main. Ownership: its field's.
class XPSuggestionWindow : public QFrame
{
    Q_OBJECT

public:
    explicit XPSuggestionWindow(QWidget *field);

    // Below what is being typed, or above where there is no room below. Empty: hides. `word`: in
    // the field's own coordinates.
    void showSuggestions(const QList<XPTagSuggestion> &suggestions, const QRect &word);
    // The one that a key would take: the first, until another is chosen; empty while hidden.
    QString current() const;
    bool isChosen() const { return m_isChosen && isVisible(); } // by the arrow keys
    void choose(int step);

Q_SIGNALS:
    void taken(const QString &tag); // by the mouse

private:
    void place(const QRect &word);
    int rowHeight() const;

    QWidget *m_field;
    QTreeWidget *m_list;
    bool m_isChosen = false;
};
