// The window's searches: how one is applied, remembered, typed and asked for from outside.
#include "KPAppDelegate.h"
#include "KPController.h"
#include "KPCrumbController.h"
#include "KPLibraryController.h"
#include "KPLocationItem.h"
#include "KPSearchField.h"
#include "KPSearchPopup.h"
#include "KPSearcher.h"
#include "KPToolBar.h"
#include "UserDefaults.h"
#include "XPFiledDocuments.h"
#include "XPLog.h"

#include <QApplication>
#include <QClipboard>
#include <QTextBoundaryFinder>
#include <QWindow>

static constexpr auto firstPause = std::chrono::milliseconds(500);
static constexpr auto nextPause = std::chrono::milliseconds(250);
static constexpr qsizetype longestOutsideSearch = 74; // a longer text is no search but a passage
static constexpr qsizetype rememberedSearches = 100;
static const QString spotlightKey = QStringLiteral("KPDoSpotlightSearches");
static const QString metaDataKey = QStringLiteral("KPDoMetaDataSearches");

// --- Applying a search

void KPController::setSearchStateAndUpdateUI(const KPSearchState::Ptr &state, bool addToHistory,
                                             const SourceItem &sourceItem,
                                             const LocationItem &locationItem)
{
    KPSearchState::Ptr wanted = state;
    if (state)
        setSearchFieldString(state->searchString());
    m_crumbs->setSourceItem(sourceItem);
    m_library->setSourceItem(m_crumbs->sourceItem());
    if (locationItem) {
        if (!state && !locationItem->isEqual(*m_crumbs->locationItem()))
            wanted = movedTo(locationItem, currentState());
        m_crumbs->setLocationItem(locationItem);
        m_crumbs->addToRecentLocations(locationItem);
    }
    m_searcher->setSearchState(KPCrumbController::stateInLocation(wanted ? wanted : currentState(),
                                                                  m_crumbs->locationItem()),
                               addToHistory);
    manageWindowTitle();
}

// A folder filter belongs to the place in which it was made.
KPSearchState::Ptr KPController::movedTo(const LocationItem &location,
                                         const KPSearchState::Ptr &state) const
{
    const auto freed = state->postConstraintFolders().isEmpty()
                           ? state
                           : state->searchStateWithNewPostContstraintFolders({});
    return KPCrumbController::stateInLocation(freed, location, true);
}

// What was shown when the program ended last, unless folders are asked for.
void KPController::beginSearching(const QStringList &folders)
{
    if (!folders.isEmpty()) {
        showAllIn(folders);
        return;
    }
    const SourceItem source = m_crumbs->storedSourceItem();
    const KPSearchState::Ptr stored = source ? source->searchState() : nullptr;
    setSearchStateAndUpdateUI(stored ? stored : KPSearchState::blankSearchState(), true,
                              stored ? source : m_crumbs->allDocumentsItem(),
                              m_crumbs->storedLocationItem());
}

KPSearchState::Ptr KPController::currentState() const
{
    const KPSearchState::Ptr state = m_searcher->searchState();
    return state ? state : KPSearchState::blankSearchState();
}

bool KPController::isCurrentSearchSavable() const
{
    return !currentState()->searchStateWithNewContstraintFolders({})->isBlank();
}

// The searcher's state is what every part shows.
void KPController::showStateOfSearch()
{
    if (const bool isSavable = isCurrentSearchSavable();
        std::exchange(m_wasSavable, isSavable) != isSavable)
        Q_EMIT currentSearchSavableChanged(isSavable);
    m_commands->update();
}

// --- History

void KPController::addToHistory(const KPSearchState::Ptr &state)
{
    m_history.addItem(KPHistory::Entry(state, m_crumbs->sourceItem(), m_crumbs->locationItem()));
    m_commands->update();
}

void KPController::historyGoBack()
{
    m_history.goBack();
}

void KPController::goTo(const KPHistory::Entry &entry, void (KPHistory::*step)())
{
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): the step may drop it
    const KPHistory::Entry wanted = entry;
    (m_history.*step)();
    if (wanted.state())
        setSearchStateAndUpdateUI(wanted.state(), false, wanted.sourceItem(),
                                  wanted.locationItem());
    m_commands->update();
}

void KPController::backAction()
{
    if (const KPHistory::Entry *entry = m_history.backItem())
        goTo(*entry, &KPHistory::goBack);
}

void KPController::forwardAction()
{
    if (const KPHistory::Entry *entry = m_history.forwardItem())
        goTo(*entry, &KPHistory::goForward);
}

// What was looked for before is nobody's business; what is shown stays.
void KPController::forgetSearchesAction()
{
    setRecentSearches({});
    m_history.clearList();
    addToHistory(currentState());
}

// --- Typing

void KPController::setSearchFieldString(const QString &text)
{
    m_searchField->setText(text);
    if (m_popup)
        m_popup->field()->setText(text);
}

void KPController::connectSearchField(KPSearchField *field)
{
    m_typingTimer.setSingleShot(true);
    connect(field, &KPSearchField::edited, this, &KPController::fieldEdited);
    connect(field, &KPSearchField::recentChosen, this,
            [this](const QString &text) { doSearch(text, true, false); });
    connect(field, &KPSearchField::recentChanged, this,
            [this, field] { setRecentSearches(field->recentSearches()); });
}

void KPController::fieldEdited(const QString &text)
{
    setSearchFieldString(text);
    if (text.isEmpty())
        userDoneTyping();
    else
        userTypingIntoSearchField();
    doSearch(text, false, false);
}

// The first key gives the results half a second to come before anything else is drawn, each
// further one a quarter.
void KPController::userTypingIntoSearchField()
{
    m_typingTimer.start(m_typingTimer.isActive() ? nextPause : firstPause);
}

void KPController::userDoneTyping()
{
    m_typingTimer.stop();
}

// Whether `text` is `before` and one character as people count them, however accents are written.
static bool extendsByOne(const QString &text, const QString &before)
{
    const QString now = text.normalized(QString::NormalizationForm_D);
    const QString old = before.normalized(QString::NormalizationForm_D);
    if (old.isEmpty() || !now.startsWith(old))
        return false;
    const QString added = now.sliced(old.size());
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, added);
    return !added.isEmpty() && characters.toNextBoundary() == added.size();
}

void KPController::doSearch(const QString &text, bool enterStringIntoControl, bool clearStateFirst)
{
    if (enterStringIntoControl)
        setSearchFieldString(text);
    QStringList recent = m_searchField->recentSearches();
    // A word that is typed leaves one entry, not one for each letter.
    const KPHistory::Entry *current = m_history.currentItem();
    if (current && current->state() && extendsByOne(text, current->state()->searchString())) {
        historyGoBack();
        if (!recent.isEmpty())
            recent.removeLast();
    }
    recent.append(text);
    setRecentSearches(recent);
    const auto from = clearStateFirst ? KPSearchState::blankSearchState() : currentState();
    setSearchStateAndUpdateUI(withWords(from, text), true);
}

void KPController::setRecentSearches(const QStringList &searches)
{
    QStringList kept = searches;
    kept.removeAll(QString());
    kept = kept.mid(std::max<qsizetype>(0, kept.size() - rememberedSearches));
    m_searchField->setRecentSearches(kept);
    if (m_popup)
        m_popup->field()->setRecentSearches(kept);
    UserDefaults::standard().setValue(QStringLiteral("KPRecentSearches"), kept);
}

KPSearchState::Ptr KPController::withWords(const KPSearchState::Ptr &state,
                                           const QString &text) const
{
    return state->searchStateWithNewSearchString(text, KPSearcher::prefSearchContents(),
                                                 KPSearcher::prefUseMetaData(), true);
}

// --- Where words are looked for

void KPController::searchModeSpotlight()
{
    setSearchMode(true);
}

void KPController::searchModeFilenameFilter()
{
    setSearchMode(false);
}

void KPController::setSearchMode(bool isSpotlight)
{
    for (const QString &key : {spotlightKey, metaDataKey})
        UserDefaults::standard().setValue(key, PropertyValue::boolean(isSpotlight));
    if (!isSpotlight || !KPAppDelegate::isTerminating())
        searchContentsOrFilenamesChanged();
}

void KPController::searchContentsOrFilenamesChanged()
{
    if (const QString text = m_searchField->text(); !text.isEmpty())
        setSearchStateAndUpdateUI(withWords(currentState(), text), true);
}

void KPController::showSearchMode()
{
    const UserDefaults &defaults = UserDefaults::standard();
    const bool inContents = defaults.boolValue(spotlightKey);
    const bool inMetaData = defaults.boolValue(metaDataKey);
    const QString note = inContents   ? qtTrId("KPSearchesContents")
                         : inMetaData ? qtTrId("KPSearchesMetaData")
                                      : qtTrId("KPSearchesNames");
    for (KPSearchField *field : {m_searchField, m_popup ? m_popup->field() : nullptr}) {
        if (!field)
            continue;
        field->setFilterMode(!inContents && !inMetaData);
        field->setNote(note);
    }
    m_commands->update();
}

// --- From outside

void KPController::performSpotlightSearchFromExternalAppWithString(const QString &text)
{
    const bool wasActive = QGuiApplication::applicationState() == Qt::ApplicationActive;
    if (!wasActive || !isVisible()) {
        show();
        raise();
        activateWindow();
    }
    m_crumbs->spotlightSearchAction();
    const bool isSearch = !text.isEmpty() && text.size() <= longestOutsideSearch;
    if (isSearch && (!wasActive || currentState()->searchString().isEmpty()))
        setSearchStateAndUpdateUI(withWords(currentState(), text), true);
}

void KPController::globalHotKeyPressed()
{
    performSpotlightSearchFromExternalAppWithString(QGuiApplication::clipboard()->text());
}

void KPController::spotlightReplacementAction()
{
    if (!m_popup) {
        m_popup = std::make_unique<KPSearchPopup>();
        connectSearchField(m_popup->field());
        connect(m_popup->field(), &KPSearchField::finished, this, [this] {
            const QString text = m_popup->field()->text();
            m_popup->hide();
            performSpotlightSearchFromExternalAppWithString(text);
        });
        m_popup->field()->setRecentSearches(m_searchField->recentSearches());
        showSearchMode();
    }
    m_popup->field()->setText(m_searchField->text());
    m_popup->showOn(screen());
}

// --- Other commands that apply a search

void KPController::allAction()
{
    doSearch({}, true, true);
}

void KPController::showUntaggedDocumentsAction()
{
    const bool wantsTagged = QGuiApplication::keyboardModifiers().testFlag(Qt::AltModifier);
    doSearch({}, true, true);
    if (wantsTagged)
        m_searcher->setShowTaggedDocuments(true, true);
    else
        m_searcher->setShowUntaggedDocuments(true, true);
}

void KPController::goToTodaysFiledDocuments()
{
    xpGuiThread.assertHere();
    setSearchStateAndUpdateUI(
        KPSearchState::blankSearchState(), true, {},
        std::make_shared<KPLocationItem>(QStringList{XPFiledDocuments::currentFiledDocumentsPath()},
                                         qtTrId("Recent Files")));
}

void KPController::showSimilarDocuments(const KPDoc::Docs &documents)
{
    if (documents.size() != 1)
        qCWarning(xpLog) << "We currently only support finding documents similar to a single "
                            "document";
    if (documents.isEmpty())
        return;
    const QStringList tags =
        KPTagName::displayStringsForTagNames(documents.last()->tagNamesOfTypeUserEntered());
    setSearchStateAndUpdateUI(KPSearchState::blankSearchState()->searchStateWithNewTags(tags), true,
                              m_crumbs->taggedItem());
}

void KPController::refreshSearch()
{
    m_searcher->stop();
    m_searcher->restart();
}

void KPController::findDocumentsAction()
{
    m_searchField->focusAndSelect();
}
