#pragma once

#include "KPCommonTags.h"
#include "KPFileEdit.h"

#include <QDialog>

class QLabel;
class XPFlowLayout;
class XPStarsEditor;
class XPTagsEditor;

// The tag editor: the tags that all documents of a selection share, those that only some have, and
// the rating. What the user changed is written when he is done, and nothing else.
//
// A tag that some have is given to all by its button, and taken from all by its menu. With the
// setting "KPImportOnlyUpdateCommonTags" off, the tags shown replace all that the documents have.
// Documents whose tags cannot be read are left out, and that is said. Return in the empty field is
// "done", Escape cancels. Threads: main; files are read on the thread of file calls.
class XPTagEditorController : public QDialog
{
    Q_OBJECT

public:
    explicit XPTagEditorController(QWidget *window);
    ~XPTagEditorController() override;

    // Shows the window for these once they are read. What was typed for others is written first.
    void editTagsForFilePaths(const QStringList &paths);
    void editFiles(const KPCommonTags &files);
    // What the user changed; false: nothing.
    bool writeCommonTags();

    static QString windowTitleForFileCount(qsizetype count, const QString &withFirstFileNamed);
    static QString ratingString(std::optional<double> rating); // none: they differ

Q_SIGNALS:
    void edited(const KPFileEdit &edit);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void build();
    void showSome();
    void showSuggestions(const QStringList &suggestions);
    void showGroups();
    void showRating();
    void suggest(const QStringList &paths);
    void finish();

    KPCommonTags m_files;
    QStringList m_takenFromAll; // of the tags that some have
    std::optional<double> m_newRating;
    int m_asked = 0; // answers to earlier questions are too late
    QLabel *m_names;
    QLabel *m_note;
    QLabel *m_rating;
    XPStarsEditor *m_stars;
    XPTagsEditor *m_tags;
    QWidget *m_some;
    QWidget *m_suggestions;
    QWidget *m_groups;
};
