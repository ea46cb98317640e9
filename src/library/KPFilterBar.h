#pragma once

#include "KPSearchState.h"

#include <QWidget>
#include <functional>

class QComboBox;
class XPTagsEditor;

// Criteria of the search above the grid: tags, date, rating. Shows those of a state and asks for
// another one; what else the state says stays. Threads: main.
class KPFilterBar : public QWidget
{
    Q_OBJECT

public:
    explicit KPFilterBar(QWidget *parent = nullptr);

    void show(const KPSearchState::Ptr &state);
    void setSuggestions(std::function<QStringList()> suggestions);
    void focusTags();

Q_SIGNALS:
    void stateAsked(const KPSearchState::Ptr &state);
    void left(); // Escape with nothing to clear

private:
    void changed();

    XPTagsEditor *m_tags;
    QComboBox *m_date;
    QComboBox *m_rating;
    KPSearchState::Ptr m_state = KPSearchState::blankSearchState(); // shown
};
