#pragma once

#include "KPCloudViewController.h"
#include "KPCommandTable.h"
#include "XPNotificationCenter.h"

#include <QTimer>

class QLineEdit;

// The tag panel of the window: a filter field over the cloud of tags and the cloud of file types.
//
// Follows the searcher's results and state, its own size and the settings; a burst of changes is
// shown once. Place it anywhere; what fits is shown. Threads: main. The navigator outlives it.
class KPCloudController : public QWidget
{
    Q_OBJECT

public:
    explicit KPCloudController(KPNavigator &navigator, QWidget *parent = nullptr);
    ~KPCloudController() override;
    // The window's; null while there is none.
    static KPCloudController *singleInstance();

    // Its part of the menu "Tags".
    QList<KPCommand> commands();

    QString filterString() const;
    void setFilterString(const QString &text);
    void bestMatchAction(); // as if the best match had been clicked
    void focusFilter();

    void invalidateTagSet();     // soon
    void buildViewsFromTagSet(); // now

    const KPCloudViewController &userTags() const { return *m_clouds.front(); }
    const KPCloudViewController &fileTypes() const { return *m_clouds.back(); }

Q_SIGNALS:
    void left(); // Escape in the empty filter field: the focus is wanted elsewhere

protected:
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void timerFireRebuildViews();
    void observe();
    void shareHeight();
    void findBestMatch();

    KPNavigator &m_navigator;
    QLineEdit *m_filter;
    std::vector<KPCloudViewController *> m_clouds; // the user's tags, then the types
    QTimer m_rebuild;
    std::vector<XPObservation> m_observations;
};
