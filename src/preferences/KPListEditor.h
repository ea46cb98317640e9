#pragma once

#include <QWidget>
#include <functional>

class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

// A list that a setting keeps, with buttons that add to it, take from it, and give it its factory
// value back. It shows what the setting says and keeps nothing itself.
//
// Threads: main.
class KPListEditor : public QWidget
{
    Q_OBJECT

public:
    struct Hooks
    {
        std::function<QStringList()> entries;
        // Asks with a folder dialog unless `typed`: then a field stands below the list. Returns why
        // an entry cannot be added; empty: it was, or will be.
        std::function<QString(const QString &entry)> add;
        std::function<void(const QStringList &entries)> remove;
        std::function<bool()> isFactory; // absent: there is no such button
        std::function<void()> reset;
        bool isTyped = false;  // entries are typed, no folders
        bool keepsOne = false; // the last one stays
    };

    // `hint` stands above the list; empty: none. `name` for those who do not see it.
    KPListEditor(const QString &name, const QString &hint, Hooks hooks, QWidget *parent = nullptr);

    void refresh();

private:
    void choose();
    void add(const QString &entry);
    void removeSelected();
    void updateButtons();

    const Hooks m_hooks;
    QListWidget *m_list;
    QPushButton *m_remove;
    QPushButton *m_reset;
    QLineEdit *m_field = nullptr;
    QLabel *m_problem;
};
