#pragma once

#include <QWidget>

class KPIconButton;
class QLabel;
class QLineEdit;
class QMenu;

// A search field: what is looked for, the searches made before, and where is looked.
//
// Holds text and list; whoever owns it decides what they mean. Threads: main.
class KPSearchField : public QWidget
{
    Q_OBJECT

public:
    explicit KPSearchField(QWidget *parent = nullptr);

    QString text() const;
    // Shows the text unless it is the one shown, however its accents are written: the cursor of
    // somebody who is typing stays.
    void setText(const QString &text);
    void focusAndSelect();
    QLineEdit *entry() const { return m_entry; }

    // Oldest first. The menu shows the newest, each once.
    const QStringList &recentSearches() const { return m_recent; }
    void setRecentSearches(const QStringList &searches);
    // Stands below the recent searches in the menu.
    void setModeActions(const QList<QAction *> &actions);

    // Names alone are looked at: brown text, another placeholder.
    void setFilterMode(bool isFilter);
    // Where words are looked for, in a few words.
    void setNote(const QString &note);

    QSize sizeHint() const override;

Q_SIGNALS:
    void edited(const QString &text); // by the user
    void recentChosen(const QString &text);
    void recentChanged(); // cleared by the user
    void finished();      // Return
    void left();          // Escape with nothing to clear, or down to the results
    void pageRequested(int direction);
    void editingEnded(); // the focus went elsewhere

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    bool keyPressed(int key);
    void showMenu();
    void adaptColours();

    QLineEdit *m_entry;
    QLabel *m_note;
    KPIconButton *m_button;
    QList<QAction *> m_modes;
    QStringList m_recent;
    bool m_isFilter = false;
    bool m_isShowing = false; // a text that is not the user's
};
