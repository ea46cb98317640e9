#pragma once

#include "KPCommandTable.h"
#include "KPContentsReader.h"
#include "KPFileEdit.h"
#include "KPQuickLook.h"
#include "XPNotificationCenter.h"

#include <QTimer>
#include <functional>
#include <vector>

class KPLibraryController;
class KPPreviewWindow;
class QWidget;

// The quick preview: a window over the library's that shows what is selected there, without any
// other program, until space, w or Escape close it.
//
// A single document is followed by the selection: the arrows select the next one there. Of several
// that are selected a sheet is shown first, and the arrows go through these. Pages and pictures are
// drawn by the importer in its cage, the next ones ahead; words, tables and facts are what it says.
// What is there stays until the next is ready.
// Threads: main. The library's controller and the pictures outlive it.
class KPPreviewController : public QObject
{
    Q_OBJECT

public:
    KPPreviewController(KPLibraryController &library, KPQuickLook &pictures, QWidget *window,
                        const QByteArray &importer = KPContentsReader::usualImporter());
    ~KPPreviewController() override;

    bool isVisible() const;
    void toggle() { isVisible() ? close() : open(); }
    void open();
    void close();
    QList<KPCommand> commands();
    void setSuggestions(std::function<QStringList()> suggestions);
    KPPreviewWindow *window() const { return m_window; } // null: it was never open
    KPDoc *document() const { return m_doc; }            // that is looked at

Q_SIGNALS:
    void editRequested(const KPFileEdit &edit);
    void visibleChanged();
    void shown(); // the document, its page or what is known of it

private:
    enum class Kind { Pages, Message, Media, Words };

    void makeWindow();
    void takeSelection();
    void step(int documents);
    void setSheet(bool isWanted);
    void showDocument(KPDoc *doc);
    void show();
    void showPage();
    void showWords();
    void showFacts();
    void showEditors();
    void want();
    void take(const KPContentsReader::ContentsPtr &contents);
    QString position() const;
    QString note() const;
    int pages() const;
    int side() const;
    Kind kind() const;
    bool isSet() const; // of several
    KPDoc *neighbour(int offset) const;
    QImage pictureOfType() const;
    void requestTags();

    KPLibraryController &m_library;
    KPQuickLook &m_pictures;
    QWidget *m_parent;
    KPPreviewWindow *m_window = nullptr; // the parent's
    std::function<QStringList()> m_suggestions;
    KPDoc *m_doc = nullptr;
    QString m_uti;
    int m_page = 1;
    bool m_isSheet = false;
    bool m_isNew = false; // nothing of this document was shown yet
    QStringList m_tags;   // as they were shown last
    QString m_asked;      // the state of the file whose contents were asked for
    KPContentsReader::ContentsPtr m_contents;
    KPContentsReader::ContentsPtr m_shownWords;
    KPContentsReader m_reader;
    QTimer m_showing; // a burst of changes is shown once
    std::vector<XPObservation> m_observations;
};
