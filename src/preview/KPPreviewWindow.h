#pragma once

#include "KPContentsReader.h"
#include "KPDocumentFacts.h"

#include <QWidget>
#include <functional>

class KPDoc;
class KPFactsView;
class KPIconButton;
class KPPageTurner;
class KPPreviewPicture;
class KPPreviewSheet;
class KPPreviewText;
class KPQuickLook;
class QLabel;
class QScrollArea;
class QStackedWidget;
class XPStarsEditor;
class XPTagsEditor;

// The window of the quick preview: one document in its middle, as pages, words or facts, or the
// sheet of several; its name and what one can do above, rating and tags below.
//
// Knows what keys mean and says what the user wants; what is shown is given to it.
// Threads: main.
class KPPreviewWindow : public QWidget
{
    Q_OBJECT

public:
    KPPreviewWindow(KPQuickLook &pictures, QWidget *window);
    ~KPPreviewWindow() override;

    enum class Shows { Picture, Words, Facts, Sheet };
    Shows shows() const;
    void setShows(Shows shows);

    KPPreviewPicture &picture() const { return *m_picture; }
    KPPreviewText &words() const { return *m_words; }
    KPPreviewSheet &sheet() const { return *m_sheet; }
    KPPageTurner &turner() const { return *m_turner; }
    XPTagsEditor &tags() const { return *m_tags; }
    XPStarsEditor &stars() const { return *m_stars; }

    // `position`: "3 of 12"; empty: there is one only.
    void setDocument(const QString &name, const QString &position, bool hasSheet);
    // Above the words, or below the picture of what is seen by its facts.
    void setFacts(const QList<KPDocumentFacts::Fact> &facts, const QPixmap &picture);
    // Why there is less than all; empty: nothing to say.
    void setNote(const QString &note);
    void setCanEdit(bool canEdit);

Q_SIGNALS:
    void stepRequested(int documents); // to the next, or the previous one
    void sheetRequested(bool isWanted);
    void openRequested();
    void ratingRequested(int stars);
    void closed();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void buildHeader();
    void buildFooter();
    void connectKeys();
    bool handleKey(const QKeyEvent &event);
    bool handleArrow(int key);
    bool handleZoom(int key);
    void zoom(bool isLarger);
    void toggleFullScreen();
    QWidget *view() const;

    QStackedWidget *m_stack;
    KPPreviewPicture *m_picture;
    QWidget *m_wordsPage;
    KPFactsView *m_heads; // of a message, above its words
    KPPreviewText *m_words;
    QScrollArea *m_factsPage;
    QLabel *m_factsPicture;
    KPFactsView *m_facts;
    KPPreviewSheet *m_sheet;
    QWidget *m_header;
    QLabel *m_name;
    QLabel *m_position;
    KPPageTurner *m_turner;
    KPIconButton *m_previous, *m_next, *m_zoomOut, *m_zoomIn, *m_sheetButton, *m_open, *m_full;
    QLabel *m_note;
    QWidget *m_footer;
    XPStarsEditor *m_stars;
    XPTagsEditor *m_tags;
    QString m_fullName;
};
