#pragma once

#include "XPNotificationCenter.h"

#include <QTimer>
#include <QWidget>
#include <functional>
#include <memory>

class KPFileTypeGroup;
class QLabel;
class QLineEdit;
class QListWidget;
class QListWidgetItem;
class QPushButton;

// The groups of types that stand in the sidebar below Kinds: switched on and off, renamed, made,
// deleted; types are added by extension, by name and by dropping a file, and removed. Shows what
// KPFileTypeRegistry holds and keeps nothing itself; what is changed is written a moment later.
// Threads: main.
class KPFileTypesSection : public QWidget
{
    Q_OBJECT

public:
    explicit KPFileTypesSection(QWidget *parent = nullptr);
    ~KPFileTypesSection() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    using GroupPtr = std::shared_ptr<KPFileTypeGroup>;

    QWidget *makeGroups();
    QWidget *makeTypes();
    void offerNames();
    GroupPtr group() const; // the one whose types are shown; null: none
    void refresh();
    void showTypes();
    void updateButtons();
    void changed(QListWidgetItem *item);
    void addGroup();
    void deleteGroup();
    void resetGroup();
    void addTyped();
    void addFiles(const QStringList &paths);
    void addFound(std::function<QStringList()> find, const QString &typed);
    void addEntries(KPFileTypeGroup &to, const QStringList &entries, const QString &typed);
    void removeTypes();
    void save();
    void say(const QString &problem);

    QListWidget *m_groups;
    QListWidget *m_types;
    QLineEdit *m_field;
    QPushButton *m_delete;
    QPushButton *m_reset;
    QPushButton *m_remove;
    QLabel *m_problem;
    bool m_isFilling = false;
    QString m_renameNext; // the group just made
    QTimer m_refreshing;  // not while a row is being edited
    QTimer m_saving;
    XPObservation m_observation;
};
