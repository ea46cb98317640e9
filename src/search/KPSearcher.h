#pragma once

#include "KPSortOrder.h"
#include "KPThreadedSearcher.h"
#include "XPNotificationCenter.h"

#include <QTimer>

// The search of a window or of the shell: owns the state that is shown, takes the requests to
// change it, hands it to its threaded searcher, and keeps what that delivers.
//
// Notifications (posted with no object, on the main thread): see the constants. The signals say
// the same to those who have this object, with what changed.
// A request "addToHistory" is passed on by stateToRemember(): the history belongs to the window.
// Threads: main. Ownership: the source must outlive it.
class KPSearcher : public QObject, private KPThreadedSearcher::Delegate
{
    Q_OBJECT

public:
    explicit KPSearcher(IndexSource &source, const KPThreadedSearcher::Setup &setup = {},
                        QObject *parent = nullptr);
    ~KPSearcher() override;

    // --- The state

    KPSearchState::Ptr searchState() const { return m_searchState; } // null before the first
    void setSearchState(const KPSearchState::Ptr &state, bool addToHistory);
    void setSearchStateAddToHistoryIfChanged(const KPSearchState::Ptr &state);
    // Answers as a view does (see shownOf()); else a state without any criterion shows nothing.
    void setAnswersForView(bool forView) { m_answersForView = forView; }

    // A state without any criterion asks the index for nothing; this one is the same and asks for
    // all documents of its folders.
    static KPSearchState::Ptr allDocumentsOf(const KPSearchState::Ptr &state);
    // What a view shows for a state: allDocumentsOf() it, without the documents that the user has
    // hidden, unless the state asks for these or names its files. The state that is remembered,
    // compared and saved stays the user's own.
    static KPSearchState::Ptr shownOf(const KPSearchState::Ptr &state);

    void addWithTag(const QString &tag, bool addToHistory);
    void addExcludeTag(const QString &tag, bool addToHistory);
    void clearTagName(const QString &tag, bool addToHistory);
    void setFileTypeFilter(const KPSearchState::Tags &types, bool addToHistory,
                           bool clearStateFirst);
    void setConstraintFolders(const QStringList &folders, bool addToHistory, bool clearStateFirst);
    void setPostConstraintFolders(const QStringList &folders, bool addToHistory,
                                  bool clearStateFirst);
    void setShowTaggedDocuments(bool on, bool addToHistory);
    void setShowUntaggedDocuments(bool on, bool addToHistory);

    // --- Control

    void stop(); // what was found stays
    void restart();
    void refresh(); // afresh, whether or not anything changed
    bool isStopped() const { return m_isStopped; }
    bool isSearching() const { return m_isSearching; }
    void restartSearchAction();
    void restartSearchFromScratch(); // leaves a stop
    void forceNewSearchNextTime();
    // How the results are sorted and grouped from now on; as they are found before the first call.
    void setResultsOrder(const KPSortOrder &order);
    // Tags of documents changed: where no query watches them they are judged again.
    void metaDataHasChanged();
    // A record moved with its file; a document was deleted.
    void pathChanged(const QString &oldPath, const QString &newPath);
    void documentDeleted(const QString &path);

    // --- Results

    // The last delivery that was taken; null before the first of a search.
    const KPResultsDelivery::Ptr &currentDelivery() const { return m_current; }
    const KPDocArray &currentSearchResults() const;
    bool currentSearchIsMaxxedOut() const;
    bool currentSearchIsMaxxedOutGoDeepSearch() const;
    bool bigGoDeepSearchInProgress() const;
    qint64 filesScanned() const { return m_filesScanned; }
    const QStringList &problems() const { return m_problems; }
    // Documents below each folder that has any.
    qsizetype numberOfItemsInFolder(const QString &folder) const;
    // The search as something to be kept: its name, "untitled" by default, and its saved form.
    struct Bookmark
    {
        QString title;
        KPSearchState::SavedDictionary state;
    };
    Bookmark currentSearchAsBookmark(const QString &title = QStringLiteral("untitled")) const;

    // --- Tags of the results

    struct TagSet
    {
        KPTagName *tag = nullptr;
        qsizetype count = 0; // documents that have it
    };
    using TagSets = QList<TagSet>;
    void buildTagSets();
    // The types of the documents, by name; each document's own alone.
    const TagSets &fileTypeTagsSorted() const { return m_fileTypeTags; }
    // The tags of the kinds that are switched on, by name.
    const TagSets &zenTagsSorted() const { return m_zenTags; }
    // Tags met on documents that have this one, most often met first.
    TagSets relatedTags(KPTagName *tag) const;
    // The documents of the tag in the dictionary, in its order, that are among the others too.
    static KPDoc::Docs relatedDocs(KPTagName *tag,
                                   const QHash<KPTagName *, KPDoc::Docs> &dictionary,
                                   const KPDoc::Docs &constrainedTo);
    // The tags that a comment holds by the convention of other programs: words that begin with "@"
    // or "&", or with the setting "KPSpotlightPrefix".
    static QStringList spotlightCommentToTagsArray(const QString &comment);

    // --- Settings

    bool tagTypeUserEntered() const;
    void setTagTypeUserEntered(bool on);
    bool tagTypeKeywords() const;
    void setTagTypeKeywords(bool on);
    static bool prefSearchContents();
    static bool prefUseMetaData();

    static const QString resultsChanged;       // "KPNotificationSearchResultsChanged"
    static const QString stateChanged;         // "KPNotificationSearchStateChanged"
    static const QString lookMayHaveChanged;   // "KPNotificationSearchStateMayHaveChangedLook"
    static const QString done;                 // "KPNotificationSearchDone"
    static const QString folderNumbersChanged; // "KPNotificationNumberOfItems…DidChange"
    static const QString tagSetsChanged;       // "KPTagSetsChanged"

Q_SIGNALS:
    void searchStarted();
    // Each delivery, in order: its difference is to the one before. Null: nothing is searched.
    void delivered(const KPResultsDelivery::Ptr &delivery);
    void finished(const QStringList &problems);
    void fileListProgress(qint64 filesScanned);
    void stateToRemember(const KPSearchState::Ptr &state);

private:
    KPSearchState::Ptr stateToChange(bool clearFirst) const;
    void setSearchStateObject(const KPSearchState::Ptr &state); // stores it, no more
    // With the settings of the kinds of tags put in; null without a state.
    KPSearchState::Ptr entireSearchState() const;
    // The state is answered by looking at the disk.
    bool needToRedoNonLiveSearches() const;
    void clearSearchTimers();
    void observeSettings();
    void updatedResults(const KPResultsDelivery::Ptr &delivery) override;
    std::chrono::milliseconds restBeforeDone() const override;
    void actuallySetResults();
    void setTheCurrentSearchResults(const KPResultsDelivery::Ptr &delivery);
    void searchDone(const QStringList &problems) override;
    void foldersDone();
    void fileListSearchProgress(qint64 filesScanned) override;
    bool tagType(const QString &setting, bool own) const;

    KPSearchState::Ptr m_searchState;
    KPSearchState::Ptr m_searched; // the entire state last handed over
    std::optional<KPSortOrder> m_order;
    bool m_answersForView = false;
    bool m_isStopped = false;
    bool m_isSearching = false;
    bool m_forceNewSearch = false;
    std::vector<KPResultsDelivery::Ptr> m_onDeck;
    KPResultsDelivery::Ptr m_current;
    QStringList m_problems;
    qint64 m_filesScanned = 0;
    TagSets m_fileTypeTags, m_zenTags;
    bool m_tagTypeUserEntered = true;
    bool m_tagTypeKeywords = true;
    QTimer m_setResults;
    QTimer m_buildTags;
    std::vector<XPObservation> m_observations;
    std::unique_ptr<KPThreadedSearcher> m_threaded; // last: its thread ends first
};
