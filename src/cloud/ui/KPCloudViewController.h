#pragma once

#include "KPCloudContents.h"
#include "KPNavigator.h"
#include "XPTextCloudView.h"

#include <QLabel>
#include <QToolButton>

// One cloud with its heading: of the user's tags and keywords, or of file types. Turns the
// searcher's counts into words, and clicks on them into searches. Threads: main.
class KPCloudViewController : public QObject, public XPCloudViewDelegate
{
    Q_OBJECT

public:
    // `tagType`: KPCloudContents::userTags or fileTypes. The widgets become `superView`'s.
    KPCloudViewController(const char *titleKey, QWidget *superView, int tagType,
                          KPNavigator &navigator);

    int tagType() const { return m_tagType; }
    // The setting that shows the section, and its list in the always and never shown tags.
    QString groupKey() const;
    bool hidden() const;

    XPTextCloudView *view() const { return m_view; }
    QWidget *heading() const { return m_heading; }
    QString descriptionString() const { return m_description->text(); }

    void setFilterString(const QString &text) { m_filterString = text; }
    KPSearcher::TagSets getSortedTags() const;
    // Fits the cloud into the view's height, or one of the height given. Nothing is drawn yet.
    void repopulateTagCloud();
    double heightForAll() const;             // of all candidates, at the view's width
    bool hasTag(const KPTagName *tag) const; // it is part of the search

    static QString calculateDescriptionString(const XPCloudView::StatusTemplates &templates,
                                              qsizetype shown, qsizetype total);

    QString cloudViewFilterString() const override { return m_filterString; }
    void cloudViewItemClicked(const XPCloudItem &item, Qt::KeyboardModifiers modifiers) override;
    bool cloudViewAcceptsDrop(const XPCloudItem &item) const override;
    void cloudViewPerformDragOperation(const XPCloudItem &item, const QStringList &paths) override;
    QMenu *cloudViewMenuForItem(const XPCloudItem &item) override;
    QMimeData *cloudViewMimeDataForItem(const XPCloudItem &item) override;
    QString cloudViewTipForItem(const XPCloudItem &item) const override;
    void cloudViewShowStatus(const QString &text) override;

private:
    KPTagName::Tags listed(const QString &setting) const;
    void list(KPTagName *tag, const QString &setting, bool on) const;
    KPCloudContents contents() const;
    static KPTagName *tagOf(const XPCloudItem &item);
    void show(const KPSearchState::Ptr &state);

    KPNavigator &m_navigator;
    const int m_tagType;
    QString m_filterString;
    QString m_countText; // what the description says while nothing is pointed at
    QWidget *m_heading;
    QToolButton *m_title;
    QLabel *m_description;
    XPTextCloudView *m_view;
};
