#pragma once

#include "XPSetting.h"

#include <QWidget>
#include <functional>

class IndexSource;
class KPBackupSection;
class KPIndexMonitor;
class KPPreferencePage;
class QLineEdit;
class QListWidget;
class QStackedWidget;

// The preferences: a page for each XPSetting::Page, made of the table of settings, with places of
// their own for folders, the index, the backup and what the program remembers. A field searches
// all pages. Every change holds at once.
//
// Threads: main. Ownership: what the setup names outlives it.
class KPPreferencesWindow : public QWidget
{
    Q_OBJECT

public:
    struct Setup
    {
        KPIndexMonitor *index = nullptr; // null: no page for the index
        std::function<void()> backUp;
        std::function<void(QWidget *window)> restore;
        std::function<void()> rebuildIndex;
    };

    explicit KPPreferencesWindow(Setup setup, QWidget *parent = nullptr);

    void showPage(XPSetting::Page page);
    void showBackup(const QString &activity, const QString &problem);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void build();
    void addPages();
    void addSettings(KPPreferencePage *page, XPSetting::Page which);
    QWidget *makePlace(const XPSetting &setting);
    void addBackup(KPPreferencePage *page);
    void addIndexTools(KPPreferencePage *page);
    void addPrivacy(KPPreferencePage *page);
    void search(const QString &words);

    const Setup m_setup;
    QLineEdit *m_field;
    QListWidget *m_list;
    QStackedWidget *m_pages;
    KPBackupSection *m_backup = nullptr;
};
