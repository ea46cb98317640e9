#pragma once

#include <QScrollArea>
#include <vector>

class QLabel;
class QVBoxLayout;

// A page of the preferences: its title, and below headings what belongs together.
//
// Everything on it is found by the words that it shows. Threads: main.
class KPPreferencePage : public QScrollArea
{
    Q_OBJECT

public:
    explicit KPPreferencePage(const QString &title, QWidget *parent = nullptr);

    // Below the heading of that name, made the first time.
    void add(const QString &heading, QWidget *part);
    // Shows what has all these words, or everything below a heading that has them; whether there
    // is any. No words: everything.
    bool filter(const QString &words);
    const QString &title() const { return m_title; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Group
    {
        QString name;
        QLabel *heading;
        QVBoxLayout *layout;
        std::vector<QWidget *> parts;
    };

    Group &groupNamed(const QString &name);

    const QString m_title;
    QVBoxLayout *m_column = nullptr;
    std::vector<Group> m_groups;
};
