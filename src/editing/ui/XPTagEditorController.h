#pragma once

#include "KPCommonTags.h"
#include "KPFileEdit.h"

#include <QDialog>

class KPButtonRow;
class QLabel;
class QVBoxLayout;
class XPStarsEditor;
class XPTagsEditor;
class XPTagsTokenFieldController;

// The tag editor: the tags that all documents of a selection share, those that only some have, and
// the rating. What the user changed is written when he is done, and nothing else.
//
// It comes as a window for one selection; as a panel that stays and follows the selection, where
// Return writes and goes on to the next document; and as a search for tags, which edits nothing.
//
// A tag that some have is given to all by its button, and taken from all by its menu. With the
// setting "KPImportOnlyUpdateCommonTags" off, the tags shown replace all that the documents have.
// Documents whose tags cannot be read are left out, and that is said. Return in the empty field is
// "done", Escape cancels. Threads: main; files are read on the thread of file calls.
class XPTagEditorController : public QDialog
{
    Q_OBJECT

public:
    enum class Form { Window, Panel, Search };
    explicit XPTagEditorController(QWidget *window, Form form = Form::Window);
    ~XPTagEditorController() override;

    // Shows the window for these once they are read. What was typed for others is written first.
    void editTagsForFilePaths(const QStringList &paths);
    // A panel that is shown goes over to these and leaves the focus where it is.
    void follow(const QStringList &paths);
    void editFiles(const KPCommonTags &files);
    void askForTags(); // shows the search
    // What the user changed; false: nothing.
    bool writeCommonTags();

    static QString windowTitleForFileCount(qsizetype count, const QString &withFirstFileNamed);
    static QString ratingString(std::optional<double> rating); // none: they differ

Q_SIGNALS:
    void edited(const KPFileEdit &edit);
    void nextWanted(); // the panel: the next document
    void searchWanted(const QStringList &tags);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    // One that is placed by others does not.
    void setRemembersPlace(bool on) { m_remembersPlace = on; }
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void build();
    void buildRating(QVBoxLayout *column);
    void read(const QStringList &paths, bool takesFocus);
    void showFiles(const KPCommonTags &files);
    void takeFocus();
    QString frameKey() const;
    void showSome();
    void showSuggestions(const QStringList &suggestions);
    void showGroups();
    void showRating();
    void suggest(const QStringList &paths);
    void finish();

    const Form m_form;
    bool m_remembersPlace = true; // between one time and the next
    KPCommonTags m_files;
    QStringList m_takenFromAll; // of the tags that some have
    std::optional<double> m_newRating;
    struct
    {
        int number = 0; // answers to earlier questions are too late
        QStringList paths;
    } m_asked;
    QLabel *m_names;
    QLabel *m_note;
    QLabel *m_rating;
    XPStarsEditor *m_stars;
    XPTagsEditor *m_tags;
    XPTagsTokenFieldController *m_field;
    KPButtonRow *m_some;
    KPButtonRow *m_suggestions;
    KPButtonRow *m_groups;
};
