#pragma once

#include "KPSearchState.h"

#include <QTimer>
#include <QWidget>
#include <functional>

class QComboBox;
class QLineEdit;
class XPTagsEditor;

// The criteria above the grid: words, tags, date, rating.
//
// Where words are looked for, the settings "KPDoSpotlightSearches" (contents) and
// "KPDoMetaDataSearches" (other attributes) say; always in names.
// Typed words count after a pause, or at once with Enter. Threads: main.
class KPFilterBar : public QWidget
{
    Q_OBJECT

public:
    explicit KPFilterBar(QWidget *parent = nullptr);

    // The search field, for the toolbar; owned here until somebody else takes it.
    QLineEdit *searchField() const { return m_search; }

    // What was chosen, without folders.
    KPSearchState::Ptr state() const;
    bool isEmpty() const { return state()->isBlank(); }
    void clear();

    void setSuggestions(std::function<QStringList()> suggestions);
    void focusSearch();
    void focusTags();

Q_SIGNALS:
    void stateChanged();
    void left(); // Escape with nothing to clear

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void changed();
    void escape();

    QLineEdit *m_search;
    XPTagsEditor *m_tags;
    QComboBox *m_date;
    QComboBox *m_rating;
    QTimer m_typing;
    KPSearchState::Ptr m_announced;
};
