#pragma once

#include <QPointer>
#include <QWidget>

class QAction;
class QProgressBar;
class QPushButton;

// What is said where there is no document: a heading, a help text, what runs, and a button for the
// one thing to do about it.
//
// The texts are chosen in this order: while the program's first search runs, while another one
// does, what went wrong, those of the source that is looked at, and the general ones.
// Threads: main. Never takes the pointer away from the grid below it, save by its button.
class KPEmptyPlace : public QWidget
{
    Q_OBJECT

public:
    struct Texts
    {
        QString title;
        QString hint;
        bool operator==(const Texts &) const = default;
    };
    struct Facts
    {
        bool isStarting = false; // the search of the program's start still runs
        bool isSearching = false;
        // Something hides what is there: the state is neither blank nor a fresh one.
        bool isNarrowed = false;
        std::optional<Texts> reason = std::nullopt; // why there is nothing
        std::optional<Texts> source = std::nullopt; // without a source item: none
        std::optional<Texts> sourceNarrowed = std::nullopt;
        bool operator==(const Facts &) const = default;
    };

    explicit KPEmptyPlace(QWidget *parent);

    static Texts texts(const Facts &facts);
    void setFacts(const Facts &facts);
    const Facts &facts() const { return m_facts; }
    // A command that helps instead of clearing the filters; null: none.
    void setRemedy(QAction *remedy);
    void setColours(const QColor &text);
    // Over the whole of a viewport.
    void place(const QRect &room, bool isWanted);

Q_SIGNALS:
    void clearFiltersRequested();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    struct Layout;
    Layout layOut() const;
    void arrange();

    Facts m_facts;
    QPointer<QAction> m_remedy;
    QColor m_text;
    QProgressBar *m_progressIndicator;
    QPushButton *m_clearFiltersButton;
    QPushButton *m_remedyButton;
};
