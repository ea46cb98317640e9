#pragma once

#include "KPContentsReader.h"
#include "KPFileEdit.h"
#include "KPSelectionFacts.h"

#include <QPixmap>
#include <QWidget>
#include <functional>

class KPCommentField;
class KPFactsView;
class KPIconButton;
class KPNameField;
class KPPageTurner;
class QLabel;
class QPushButton;
class QToolButton;
class QVBoxLayout;
class XPStarsEditor;
class XPTagsEditor;

// The pane beside the grid: what the selected documents are, and what of them can be edited: the
// name, rating, flag, tags and comment. Of a single one it shows the pages, what the file says of
// itself, and what became of attributes that were lost or cannot be read.
//
// Says what the user wants changed and shows what it is given; touches no file.
// Threads: main.
class KPInspector : public QWidget
{
    Q_OBJECT

public:
    static constexpr int pictureSide = 176; // points

    explicit KPInspector(QWidget *parent = nullptr);

    // What the one document looks like, besides what its record says.
    struct Appearance
    {
        QPixmap picture;
        QString uti;
        int page = 1;
        KPContentsReader::ContentsPtr contents = nullptr; // null: not read (yet)
    };
    void show(const KPSelectionFacts &facts, const Appearance &appearance);

    void setSuggestions(std::function<QStringList()> suggestions);
    void focusTags();
    void editName();

Q_SIGNALS:
    void editRequested(const KPFileEdit &edit);
    void renameRequested(KPDoc *doc, const QString &name);
    void flagRequested(const QStringList &paths, bool flagged);
    void pageRequested(int page);
    void healingDecided(const KPHealing &healing, bool accepts);
    void repairRequested(const QStringList &paths);
    void left(); // Escape

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void build();
    void buildNotes(QVBoxLayout *column);
    void connectEditors();
    void showPicture(const Appearance &appearance);
    void showNames(const KPDoc::Docs &documents);
    void showFacts(const KPSelectionFacts &facts, const Appearance &appearance);
    void showEditors(const KPSelectionFacts &facts);
    void showSomeTags(const KPSelectionFacts &facts);
    void showComment(bool canEdit);
    void showNotes(const KPSelectionFacts &facts, const KPContentsReader::Contents *contents);
    void requestTags();
    void requestTagsOfAll(const QStringList &before, const QStringList &after);
    void requestRating(int stars);
    QStringList paths() const;

    KPDoc::Docs m_documents;
    QStringList m_commonTags; // as asked for last
    QList<KPSelectionFacts::Some> m_someTags;
    std::optional<KPHealing> m_healing; // the one that is spoken of
    QLabel *m_picture;
    KPPageTurner *m_turner;
    QLabel *m_name;
    KPNameField *m_nameField;
    KPIconButton *m_flag;
    XPStarsEditor *m_stars;
    QLabel *m_ratingNote;
    XPTagsEditor *m_tags;
    QWidget *m_some;
    QLabel *m_tagsNote;
    QPushButton *m_repair;
    QWidget *m_healingNote;
    QLabel *m_healingText;
    QPushButton *m_heal;
    QPushButton *m_unheal;
    KPCommentField *m_comment;
    KPFactsView *m_facts;
    KPFactsView *m_stated;
    KPFactsView *m_origins;
    QToolButton *m_attributesHeading;
    KPFactsView *m_attributes;
    QWidget *m_nothing;
    QWidget *m_content;
};
