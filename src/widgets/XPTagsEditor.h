#pragma once

#include <QFrame>
#include <QStringListModel>
#include <functional>

class QLineEdit;
class XPFlowLayout;
class XPTagChip;

// A field of tags: each a chip that can be removed, then an entry in which a comma, Enter or
// leaving the field makes what was typed a tag. Completes known tags.
//
// As a filter, a click on a chip turns it into "none with this tag" and back.
// Threads: main. Knows nothing of files.
class XPTagsEditor : public QFrame
{
    Q_OBJECT

public:
    enum class Purpose { Edit, Filter };
    explicit XPTagsEditor(Purpose purpose, QWidget *parent = nullptr);

    // Shows these; says nothing. What is being typed stays.
    void setTags(const QStringList &tags);
    QStringList tags() const;         // as shown, without the excluded ones
    QStringList excludedTags() const; // filters only
    void addTag(const QString &tag);  // as if it had been typed

    // Asked for when the entry gets the focus; most likely tags first.
    void setSuggestions(std::function<QStringList()> suggestions);

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
    void takeEntry();
    void takeFinishedTags(const QString &text);
    bool entryKey(int key);
    void refreshKnown();
    void resized();

    const Purpose m_purpose;
    XPFlowLayout *m_layout;
    QLineEdit *m_entry;
    QStringListModel m_completions;
    QList<XPTagChip *> m_chips;
    QStringList m_known;
    std::function<QStringList()> m_suggestions;
    QString m_hint;
};
