#pragma once

#include "KPDirectoryListing.h"

#include <QMenu>
#include <atomic>
#include <memory>

// The folders that lie in a folder, to go into one of them. They are read when the menu opens, on a
// thread of their own, as the folder may be on a disk that is slow or gone; until then the menu
// says so. Threads: main.
class KPFolderMenu : public QMenu
{
    Q_OBJECT

public:
    explicit KPFolderMenu(const QString &folder, QWidget *parent = nullptr);
    ~KPFolderMenu() override;

Q_SIGNALS:
    void chosen(const QString &folder);

private:
    void read();
    void show(const XPResult<KPDirectoryListing> &listing);

    const QString m_folder;
    std::shared_ptr<std::atomic<bool>> m_isGone; // null: not begun to read
};
