#pragma once

#include "XPFileLock.h"
#include "XPPageEdit.h"

#include <QObject>
#include <QStringList>
#include <QUndoStack>
#include <functional>
#include <optional>

// The pages of the document that is being scanned: their pictures in the work folder, their order
// and what is done to each.
//
// The list is on disk after every change, and pictures are kept as they came until the document is
// filed, so that neither a crash nor a wrong step loses a page. One program at a time has the
// folder. Threads: main, save where said; a change writes a small file.
class XPScannedPages : public QObject
{
    Q_OBJECT

public:
    // Takes the folder and finds what an earlier run left in it. `error()`: another program has
    // it, or it cannot be made; nothing can be added then.
    explicit XPScannedPages(const QString &folder = folderStoragePath());
    ~XPScannedPages() override;

    // "scans" in the program's folder.
    static QString folderStoragePath();
    const std::optional<XPError> &error() const { return m_error; }
    const QString &folder() const { return m_folder; }

    // A name for the next picture: the seconds since 1970 and a counter, which no two pages of a
    // run share.
    QString scanToImagePath() const;

    QStringList scannedImages() const; // as they came, in order
    int numberOfPages() const { return static_cast<int>(m_pages.size()); }
    // From 1; 0: none.
    int currentPageNumber() const { return m_current; }
    void setCurrentPageNumber(int number);
    QString currentPagePath() const;

    // A picture in the folder, or one that is written into it. The last page becomes the current
    // one.
    std::optional<XPError> addPageImagePath(const QString &path);
    std::optional<XPError> addPageImage(const QImage &image);
    void deletePage(int index);
    void movePage(int from, int to);
    // Front sides came first and back sides after, last page first, as a stack turned over gives
    // them: brings them into reading order.
    void interleave();
    XPPageEdit edit(int index) const { return m_pages.at(index).edit; }
    void setEdit(int index, const XPPageEdit &edit);
    void markBlank(int index, bool blank);
    QUndoStack &undoStack() { return m_undo; }

    // The picture with its changes. Any thread, given values of this object.
    static QImage rendered(const QString &path, const XPPageEdit &edit);
    // Files of the pages as they are to be filed: those that are changed are made anew. Any
    // thread, given the pages; `progress` as for the PDF.
    struct Page
    {
        QString path;
        XPPageEdit edit;
        bool isBlank = false;
        bool operator==(const Page &) const = default;
    };
    const QList<Page> &pages() const { return m_pages; }
    static XPResult<QStringList> filesOf(const QList<Page> &pages, const QString &folder,
                                         const std::function<bool(int)> &progress = {});

    // Forgets all pages and removes their pictures: they are filed, or the user gave them up.
    void clearAllImages();
    // The same for the first ones alone.
    void forgetFirst(int count);

Q_SIGNALS:
    void changed();

private:
    class Step;

    void find();
    void push(const QString &text, QList<Page> pages, int current);
    void take(const QList<Page> &pages, int current);
    void save();

    const QString m_folder;
    std::optional<XPFileLock> m_lock;
    std::optional<XPError> m_error;
    QList<Page> m_pages;
    int m_current = 0;
    QUndoStack m_undo;
};
