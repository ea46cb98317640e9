#pragma once

#include "XPSuggestionWindow.h"

#include <QFrame>
#include <QTimer>
#include <functional>

class QKeyEvent;
class QLineEdit;
class XPFlowLayout;
class XPTagChip;

// A field of tags: each a chip that can be removed, then an entry in which a separator
// (XPTagEntry), Enter or leaving the field makes what was typed a tag.
//
// Known tags are suggested in a window below ("KPShowSuggestionWindow"; where the typing stands, or
// with "KPAutoPositionSuggestionWindow" off at the field's left edge) once nothing was typed for
// "KPCompletionDelay" seconds; Tab takes the first, or the one chosen with the arrow keys, which
// Enter takes too. Without the window the first is completed in the entry. "XPSkipTagAutoComplete"
// switches both off.
//
// As a filter, a click on a chip turns it into "none with this tag" and back.
// Threads: main. Knows nothing of files.
class XPTagsEditor : public QFrame
{
    Q_OBJECT

public:
    enum class Purpose { Edit, Filter };
    explicit XPTagsEditor(Purpose purpose, QWidget *parent = nullptr);
    ~XPTagsEditor() override;

    // Shows these; says nothing. What is being typed stays.
    void setTags(const QStringList &tags);
    QStringList tags() const;         // as shown, without the excluded ones
    QStringList excludedTags() const; // filters only
    void addTag(const QString &tag);  // as if it had been typed
    void takeTyped();                 // what stands in the entry becomes tags

    // Asked for when the entry gets the focus; most likely tags first.
    void setSuggestions(std::function<QStringList()> suggestions);
    // What may be meant by what is typed, the best first; instead of the suggestions that begin so.
    using Completion = std::function<QList<XPTagSuggestion>(const QString &typed)>;
    void setCompletion(Completion completion) { m_completion = std::move(completion); }

    // What the entry shows while there is nothing to see, and its name for assistive programs.
    void setHint(const QString &hint, const QString &accessibleName);
    void focusEntry();
    QLineEdit *entry() const { return m_entry; }

Q_SIGNALS:
    void tagsEdited(); // by the user
    void left();       // Escape in the entry

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    XPTagChip *appendChip(const QString &tag);
    void removeChip(XPTagChip *chip);
    void leaveChip(XPTagChip *chip, int direction);
    void takeFinishedTags(const QString &text);
    void take(const QString &suggestion);
    void suggest();
    QList<XPTagSuggestion> completions(const QString &typed) const;
    bool entryKey(const QKeyEvent &event);
    bool suggestionKey(int key);
    void refreshKnown();
    void resized();

    const Purpose m_purpose;
    XPFlowLayout *m_layout;
    QLineEdit *m_entry;
    XPSuggestionWindow *m_window;
    QTimer m_pause; // of the typing
    Completion m_completion;
    QList<XPTagChip *> m_chips;
    QStringList m_known;
    std::function<QStringList()> m_suggestions;
    QString m_hint;
};
