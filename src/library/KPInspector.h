#pragma once

#include "KPFileEdit.h"
#include "KPSelectionFacts.h"

#include <QPixmap>
#include <QWidget>
#include <functional>

class QFormLayout;
class QLabel;
class XPStarsEditor;
class XPTagsEditor;

// The pane beside the grid: what the selected documents are, and their tags and rating to edit.
//
// Says what the user wants changed (editRequested) and shows what it is given; touches no file.
// Threads: main.
class KPInspector : public QWidget
{
    Q_OBJECT

public:
    static constexpr int pictureSide = 160; // points

    explicit KPInspector(QWidget *parent = nullptr);

    // What the one document looks like, besides what its record says.
    struct Appearance
    {
        QPixmap picture;
        QString uti;
    };
    void show(const KPSelectionFacts &facts, const Appearance &appearance);

    void setSuggestions(std::function<QStringList()> suggestions);
    void focusTags();

Q_SIGNALS:
    void editRequested(const KPFileEdit &edit);
    void left(); // Escape

private:
    void showNames(const KPDoc::Docs &documents);
    void showFacts(const KPSelectionFacts &facts, const QString &uti);
    void showEditors(const KPSelectionFacts &facts);
    void addFact(const char *id, const QString &value);
    void requestTags();
    void requestRating(int stars);
    QStringList paths() const;
    QLabel *makeLabel();

    KPDoc::Docs m_documents;
    QStringList m_commonTags; // as asked for last
    QLabel *m_picture;
    QLabel *m_name;
    XPStarsEditor *m_stars;
    QLabel *m_ratingNote;
    XPTagsEditor *m_tags;
    QLabel *m_tagsNote;
    QFormLayout *m_details;
    QWidget *m_nothing;
    QWidget *m_content;
};
