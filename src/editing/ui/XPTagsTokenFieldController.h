#pragma once

#include "KPTagCompletion.h"
#include "XPTagsEditor.h"

#include <QObject>

// What a field of tags knows of the library: completes what is typed (KPTagCompletion), shows the
// hint that goes with the separators, and has the conversions between tags and typed text.
//
// The library's tags are read behind the user's back when the field gets the focus, and again for
// the tags that stand in it; until then the field completes what it knows by itself.
// Threads: main. Ownership: the field's child.
class XPTagsTokenFieldController : public QObject
{
    Q_OBJECT

public:
    explicit XPTagsTokenFieldController(XPTagsEditor *field);

    // What is typed counts too.
    QStringList tags() const;

    // Between a tag and its text in a field: one with a blank stands in double quotes.
    static QString displayStringToUserString(const QString &tag);
    static QString userStringToDisplayString(const QString &text);
    // Tags of what was typed, empty ones left out. With `changeCaseOK` the last spelling counts.
    static QStringList tagDisplayNamesForEditingStrings(const QStringList &texts,
                                                        bool removeDuplicates, bool changeCaseOK);
    // The search text for documents that have all of these.
    static QString grepStringForTags(const QStringList &tags);
    static QStringList customTags(); // the user's own words, "KPCustomWords"

    // Fills a row with a button for each of the tag groups used lately; each can be forgotten by
    // its menu. `target` is called with the group's tags.
    using ButtonTarget = std::function<void(const QStringList &tags)>;
    static void rebuildFavoriteTagButtons(QWidget *row, const ButtonTarget &target);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void readLibrary();
    void complete(const KPTagCompletion::Ptr &completion);
    void readCompany();

    XPTagsEditor *m_field;
    KPTagCompletion::Counts m_together;
    QStringList m_companyOf; // the tags that m_together is of, or is being read for
};
