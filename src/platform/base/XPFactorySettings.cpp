#include "XPFactorySettings.h"

#include "UserDefaults.h"
#include "XPFolders.h"
#include "XPLog.h"

#include <QFile>
#include <QObject>

using Array = PropertyValue::Array;
using Dictionary = PropertyValue::Dictionary;

// Outside every namespace, as the macro asks.
static void initResources()
{
    Q_INIT_RESOURCE(murn_base);
}

namespace {

using Page = XPSetting::Page;
using Choice = XPSetting::Choice;

// A factory value that can be written here, or the kind of a setting that has none.
using Factory = std::variant<bool, int, double, const char *, XPSetting::Kind>;

struct Limits
{
    double lowest = 0;
    double highest = 0;
    const char *unit = "";
};

struct Row
{
    const char *key;
    Factory factory;
    Page page = Page::None;
    const char *group = "";
    const char *text = "";
    const char *hint = "";
    Limits limits = {};
    std::span<const Choice> choices = {};
    bool isInverted = false;
    const char *onlyWhileOff = "";
};

constexpr Choice resolutions[] = {{150, QT_TRID_NOOP("KPScanDotsPerInch")},
                                  {300, QT_TRID_NOOP("KPScanDotsPerInch")},
                                  {400, QT_TRID_NOOP("KPScanDotsPerInch")},
                                  {600, QT_TRID_NOOP("KPScanDotsPerInch")}};
constexpr Choice scanColours[] = {{"Color", QT_TRID_NOOP("KPScanColour")},
                                  {"Gray", QT_TRID_NOOP("KPScanGrey")},
                                  {"Lineart", QT_TRID_NOOP("KPScanBlackAndWhite")}};

constexpr const char *folders = QT_TRID_NOOP("KPPrefFolders");
constexpr const char *searching = QT_TRID_NOOP("KPPrefSearching");
constexpr const char *belonging = QT_TRID_NOOP("KPPrefBelonging");
constexpr const char *sidebar = QT_TRID_NOOP("KPPrefSidebar");
constexpr const char *everywhere = QT_TRID_NOOP("KPPrefEverywhere");
constexpr const char *grid = QT_TRID_NOOP("KPPrefGrid");
constexpr const char *colours = QT_TRID_NOOP("KPPrefColours");
constexpr const char *tagPanel = QT_TRID_NOOP("KPPrefTagPanel");
constexpr const char *pictures = QT_TRID_NOOP("KPPrefPictures");
constexpr const char *entering = QT_TRID_NOOP("KPPrefEntering");
constexpr const char *suggestions = QT_TRID_NOOP("KPPrefSuggestions");
constexpr const char *onFiles = QT_TRID_NOOP("KPPrefOnFiles");
constexpr const char *managedFolder = QT_TRID_NOOP("KPPrefManagedFolder");
constexpr const char *adding = QT_TRID_NOOP("KPPrefAdding");
constexpr const char *moving = QT_TRID_NOOP("KPPrefMoving");
constexpr const char *panel = QT_TRID_NOOP("KPPrefZonePanel");
constexpr const char *webPages = QT_TRID_NOOP("KPPrefWeb");
constexpr const char *newScans = QT_TRID_NOOP("KPPrefNewScans");
constexpr const char *scannedPages = QT_TRID_NOOP("KPPrefScannedPages");
constexpr const char *backup = QT_TRID_NOOP("KPPrefBackup");
constexpr const char *healing = QT_TRID_NOOP("KPPrefHealing");
constexpr const char *indexed = QT_TRID_NOOP("KPPrefIndexed");
constexpr const char *reports = QT_TRID_NOOP("KPPrefReports");

using Kind = XPSetting::Kind;

// clang-format off
constexpr Row rows[] = {
    // --- Library and folders
    {"KPSearchFolders", Kind::Paths, Page::Library, folders},
    {"KPHomeFolder", Kind::Path, Page::Library, folders, QT_TRID_NOOP("KPPrefHomeFolder"), QT_TRID_NOOP("KPPrefHomeFolderHint")},
    {"KPDoSpotlightSearches", true, Page::Library, searching, QT_TRID_NOOP("KPPrefSearchContents")},
    {"KPDoMetaDataSearches", true, Page::Library, searching, QT_TRID_NOOP("KPPrefSearchFacts"), QT_TRID_NOOP("KPPrefSearchFactsHint")},
    {"KPFollowSymLinksGoDeep", false, Page::Library, searching, QT_TRID_NOOP("KPPrefFollowLinks")},
    {"KPSearchStateHiddenFilesInGoDeep", false, Page::Library, searching, QT_TRID_NOOP("KPPrefHiddenFiles")},
    {"KPSpotlightPrefix", "&", Page::Library, searching, QT_TRID_NOOP("KPPrefRawQuery"), QT_TRID_NOOP("KPPrefRawQueryHint")},
    {"KPAutoImportPDFs", true, Page::Library, belonging, QT_TRID_NOOP("KPPrefBelongPDFs"), QT_TRID_NOOP("KPPrefBelongHint")},
    {"KPAutoImportOffice", true, Page::Library, belonging, QT_TRID_NOOP("KPPrefBelongOffice")},
    {"KPAutoImportiWork", true, Page::Library, belonging, QT_TRID_NOOP("KPPrefBelongWork")},
    {"KPShowHiddenItem", false, Page::Library, sidebar, QT_TRID_NOOP("KPPrefShowHidden")},
    {"KPTwistDownStatesKeepTrack", true, Page::Library, sidebar, QT_TRID_NOOP("KPPrefKeepTrack")},
    {"KPTreatSectionsAsRadioButtons", false, Page::Library, sidebar, QT_TRID_NOOP("KPPrefOneSection")},
    {"KPNumberOfRecentLocations", 10, Page::Library, sidebar, QT_TRID_NOOP("KPPrefRecentLocations"), "", {1, 100}},
    {"KPGlobalShortcut", Kind::Key, Page::Library, everywhere, QT_TRID_NOOP("KPPrefGlobalShortcut"), QT_TRID_NOOP("KPPrefGlobalShortcutHint")},
    {"KPShowStatusItem", false, Page::Library, everywhere, QT_TRID_NOOP("KPPrefStatusItem"), QT_TRID_NOOP("KPPrefStatusItemHint")},
    {"KPBadgeUntaggedDocs", false, Page::Library, everywhere, QT_TRID_NOOP("KPPrefBadge"), QT_TRID_NOOP("KPPrefBadgeHint")},
    // --- Appearance
    {"KPShowTitle", true, Page::Appearance, grid, QT_TRID_NOOP("KPPrefShowTitle")},
    {"KPShowTags", true, Page::Appearance, grid, QT_TRID_NOOP("KPPrefShowTags")},
    {"KPShowRating", true, Page::Appearance, grid, QT_TRID_NOOP("KPPrefShowRating")},
    {"KPSizeThumbnailsToFit", true, Page::Appearance, grid, QT_TRID_NOOP("KPPrefSizeToFit")},
    {"KPDefaultGroupState", true, Page::Appearance, grid, QT_TRID_NOOP("KPPrefGroupsOpen")},
    {"KPLibraryBackgroundColour", Kind::Colour, Page::Appearance, colours, QT_TRID_NOOP("KPPrefDesk"), QT_TRID_NOOP("KPPrefDeskHint")},
    {"KPLibraryTextColour", Kind::Colour, Page::Appearance, colours, QT_TRID_NOOP("KPPrefDeskText")},
    {"XPDrawCloudItemsBlack", false, Page::Appearance, colours, QT_TRID_NOOP("KPPrefCloudBlack")},
    {"KPTagGroupUserTags", true, Page::Appearance, tagPanel, QT_TRID_NOOP("KPPrefCloudTags")},
    {"KPTagGroupFileTypes", true, Page::Appearance, tagPanel, QT_TRID_NOOP("KPPrefCloudTypes")},
    {"KPCloudShowFrequency", true, Page::Appearance, tagPanel, QT_TRID_NOOP("KPPrefCloudCounts")},
    {"XPDrawCloudItemsSingleColumn", false, Page::Appearance, tagPanel, QT_TRID_NOOP("KPPrefCloudColumn")},
    {"KPQuicklookBordersImages", true, Page::Appearance, pictures, QT_TRID_NOOP("KPPrefBordersImages")},
    {"KPQuicklookBordersMovies", true, Page::Appearance, pictures, QT_TRID_NOOP("KPPrefBordersMovies")},
    {"KPQuicklookBordersOther", true, Page::Appearance, pictures, QT_TRID_NOOP("KPPrefBordersOther")},
    {"KPQuicklookBordersOnLargeThumbs", false, Page::Appearance, pictures, QT_TRID_NOOP("KPPrefBordersLarge")},
    {"KPQuicklookCacheSlowImages", true, Page::Appearance, pictures, QT_TRID_NOOP("KPPrefCacheSlow"), QT_TRID_NOOP("KPPrefCacheSlowHint")},
    {"KPCacheSizeMB", 40.0, Page::Appearance, pictures, QT_TRID_NOOP("KPPrefCacheSize"), "", {8, 4096, QT_TRID_NOOP("KPPrefMegabytes")}},
    {"KPCacheDaysOld", 360.0, Page::Appearance, pictures, QT_TRID_NOOP("KPPrefCacheDays"), "", {1, 3650, QT_TRID_NOOP("KPPrefDays")}},
    // --- Tags
    {"KPUseCommas", true, Page::Tags, entering, QT_TRID_NOOP("KPPrefUseCommas"), QT_TRID_NOOP("KPPrefUseCommasHint")},
    {"XPSkipTagAutoComplete", false, Page::Tags, entering, QT_TRID_NOOP("KPPrefComplete"), "", {}, {}, true},
    {"KPImportOnlyUpdateCommonTags", true, Page::Tags, entering, QT_TRID_NOOP("KPPrefCommonTags"), QT_TRID_NOOP("KPPrefCommonTagsHint")},
    {"KPShowSuggestionWindow", true, Page::Tags, suggestions, QT_TRID_NOOP("KPPrefSuggest")},
    {"KPScanPDFKeyWords", true, Page::Tags, suggestions, QT_TRID_NOOP("KPPrefSuggestKeywords")},
    {"KPScanPeople", true, Page::Tags, suggestions, QT_TRID_NOOP("KPPrefSuggestPeople")},
    {"KPScanAcademicPapers", true, Page::Tags, suggestions, QT_TRID_NOOP("KPPrefSuggestPapers")},
    {"KPScanTypical", true, Page::Tags, suggestions, QT_TRID_NOOP("KPPrefSuggestTypical")},
    {"KPScanPopular", false, Page::Tags, suggestions, QT_TRID_NOOP("KPPrefSuggestPopular")},
    {"KPScanCustom", true, Page::Tags, suggestions, QT_TRID_NOOP("KPPrefSuggestCustom")},
    {"KPCustomWords", Kind::Lines, Page::Tags, suggestions, QT_TRID_NOOP("KPPrefCustomWords"), QT_TRID_NOOP("KPPrefCustomWordsHint")},
    {"KPRemoveBannedTags", true, Page::Tags, suggestions, QT_TRID_NOOP("KPPrefSuggestNoBanned"), QT_TRID_NOOP("KPPrefSuggestNoBannedHint")},
    {"KPSetModifiyTimeOnTagsChanging", false, Page::Tags, onFiles, QT_TRID_NOOP("KPPrefModified")},
    {"KPMirrorDesktopTags", Kind::Bool, Page::Tags, onFiles, QT_TRID_NOOP("KPPrefMirror"), QT_TRID_NOOP("KPPrefMirrorHint")},
    {"KPShowXMPKeywords", false, Page::Tags, onFiles, QT_TRID_NOOP("KPPrefKeywords")},
    // --- Filing
    {"KPFiledDocumentsPath", Kind::Path, Page::Filing, managedFolder},
    {"KPUseYearMonthFiledDocs", false, Page::Filing, managedFolder, QT_TRID_NOOP("KPPrefYearMonth"), QT_TRID_NOOP("KPPrefYearMonthHint")},
    {"KPFiledDocumentsAsk", true, Page::Filing, adding, QT_TRID_NOOP("KPPrefFilingAsk")},
    {"KPFilesAlwaysPutInFiledDocuments", false, Page::Filing, adding, QT_TRID_NOOP("KPPrefFilingAlways"), QT_TRID_NOOP("KPPrefFilingAlwaysHint"), {}, {}, false, "KPFiledDocumentsAsk"},
    {"KPFinderConfirmMoveorCopy", true, Page::Filing, moving, QT_TRID_NOOP("KPPrefConfirmMove")},
    {"KPConfirmDelete", true, Page::Filing, moving, QT_TRID_NOOP("KPPrefConfirmDelete")},
    {"maxDestinationsToRemember", 10, Page::Filing, moving, QT_TRID_NOOP("KPPrefDestinations"), "", {1, 100}},
    {"KPURLToPDFPaginate", false, Page::Filing, webPages, QT_TRID_NOOP("KPPrefWebPages")},
    {"KPURLToPDFBackgrounds", true, Page::Filing, webPages, QT_TRID_NOOP("KPPrefWebBackgrounds")},
    {"KPURLToPDFWebViewWidth", 1000.0, Page::Filing, webPages, QT_TRID_NOOP("KPPrefWebWidth"), "", {200, 5000, QT_TRID_NOOP("KPPrefPixels")}},
    // --- Drop zone
    {"KPShowDropZone", true, Page::DropZone, panel, QT_TRID_NOOP("KPPrefZoneShow"), QT_TRID_NOOP("KPPrefZoneShowHint")},
    {"KPShowDropZoneEvenWithoutFileDrag", false, Page::DropZone, panel, QT_TRID_NOOP("KPPrefZoneStays"), QT_TRID_NOOP("KPPrefZoneStaysHint")},
    {"KPDropZoneLeftEdge", false, Page::DropZone, panel, QT_TRID_NOOP("KPPrefZoneLeft"), QT_TRID_NOOP("KPPrefZoneLeftHint")},
    {"KPDropZoneOverlapWithScreen", true}, // off at each launch
    {"KPAutoImportTaggedFiles", true},
    // --- Scanning; the document type is the same number as the resolution on purpose
    {"KPScanMode", "Color", Page::Scanning, newScans, QT_TRID_NOOP("KPScanColours"), "", {}, scanColours},
    {"KPScanDPI", 300, Page::Scanning, newScans, QT_TRID_NOOP("KPScanResolution"), "", {}, resolutions},
    {"KPDuplexScanning", false, Page::Scanning, newScans, QT_TRID_NOOP("KPScanDuplex")},
    {"KPCompressionFactor3", 0.35, Page::Scanning, scannedPages, QT_TRID_NOOP("KPPrefQuality"), QT_TRID_NOOP("KPPrefQualityHint"), {0.05, 1}},
    {"KPScanCleanUp", false, Page::Scanning, scannedPages, QT_TRID_NOOP("KPScanCleanUp")},
    {"KPScanTurnUpright", false, Page::Scanning, scannedPages, QT_TRID_NOOP("KPScanTurnUpright")},
    {"KPScanLeaveOutBlank", false, Page::Scanning, scannedPages, QT_TRID_NOOP("KPScanLeaveOutBlank")},
    {"KPScanSeparateByBlank", false, Page::Scanning, scannedPages, QT_TRID_NOOP("KPScanSeparate")},
    {"KPScanRecogniseText", false, Page::Scanning, scannedPages, QT_TRID_NOOP("KPScanRecogniseText")},
    {"KPSelectedPaper", 3},
    {"KPScannerInterface", 2},
    {"KPScanDocumentType", 300},
    // --- Backup and healing
    {"KPSyncTagsForBackup", true, Page::Backup, backup, QT_TRID_NOOP("KPPrefBackupHourly"), QT_TRID_NOOP("KPPrefBackupHourlyHint")},
    {"KPHealLostTags", true, Page::Backup, healing, QT_TRID_NOOP("KPPrefHeal"), QT_TRID_NOOP("KPPrefHealHint")},
    // --- Index; where nothing is set it is the home folder, and rules of its own
    {"KPImportPaused", false, Page::Index, indexed, QT_TRID_NOOP("KPPrefPaused"), QT_TRID_NOOP("KPPrefPausedHint")},
    {"KPIndexRoots", Kind::Paths, Page::Index, indexed},
    {"KPIndexExclusions", Kind::Texts, Page::Index, indexed},
    {"KPRebuildIndex", false},
    // --- Privacy
    {"bugsnagCanSendReports", false, Page::Privacy, reports, QT_TRID_NOOP("KPPrefCrashReports"), QT_TRID_NOOP("KPPrefCrashReportsHint")},
    {"KPDebugLogging", false, Page::Privacy, reports, QT_TRID_NOOP("KPPrefDebugLog"), QT_TRID_NOOP("KPPrefDebugLogHint")},

    // --- Chosen in the window itself; sizes in points, delays in seconds
    {"KPBookmarkBarShown", true},
    {"KPActionBarShown", false},
    {"KPShowKeywordsPanel", true},
    {"KPShowLocationsPanel", false},
    {"KPShowInspectorPanel", true},
    {"KPShowInspector", false},
    {"KPThumbnailSize", 0.2, Page::None, "", "", "", {0, 1}},
    {"KPLibraryMode", 0, Page::None, "", "", "", {0, 2}},
    {"KPSourceListWidth", 210.0},
    {"KPKeywordsAreaWidth", 210.0},
    {"KPLocationsAreaWidth", 210.0},
    {"KPTypeAheadTimeoutDelay", 0.5, Page::None, "", "", "", {0, 60}},
    {"KPCompletionDelay", 0.35, Page::None, "", "", "", {0, 60}},
    {"KPLoupeModifierKey", 0x80000}, // Option
    {"KPLoupeShowEntireImage", false},
    {"KPLoupeMagnification", 0.8},
    {"KPLoupeMinimumMagnification", 0.6},
    {"KPLoupeMaximumMagnification", 3.0},
    {"KPLoupeWidth", 346.0},
    {"KPLoupeMinimumWidth", 200.0},
    {"KPLoupeMaximumWidth", 768.0},
    {"KMDMurn2ShowItemKeywords", false},
    {"KPIncludeTimeInCreationDate", false},
    {"KPPrefEmailWith", "Mail"},
    {"KPMurn2UseGlobalTagTypeStates", true},
    {"KPCloudUserEntered", true},
    {"KPCloudKeywords", false},
    {"KPTagGroupReadOnlyTags", true},
    {"KPSizeByFrequency", false},
    {"KPCloudMagFactor", 2.5},
    {"KPCloudLargestSizeFactor", 2.1},
    {"KPCloudDefaultLineHeight", 14.0},
    {"KPTagsWindowOnlyShowAvailable", false},
    {"KPOpenWithMode", 0},
    {"KPOpenWith", "Preview"},
    {"KPSearchStateAlwaysSearchSystemFiles", false},
    {"KPImageMinSizeBytes", 4096},
    {"KPAutoPositionSuggestionWindow", true},
    {"SUFeedURL", ""}, // updates come with the packages
    // --- What the program remembers
    {"KPVirginLaunch", true},
    {"KPVirginLaunchMurnKX", true},
    {"KPVirginLaunchZelKX", true},
    {"KPIsRunning", false},
    {"KPShowBookmarksPanel", false},
    {"KPShowLoupe", false},
    {"KPShowDebugMenu", false},
    {"bugsnagHaveAsked", false},
    {"askedFiledDocsFormatQuestion", false},
    {"launchCount", 0, Page::None, "", "", "", {0, 1e9}},
    {"KPNumTimesLaunched", 0, Page::None, "", "", "", {0, 1e9}},
    {"maxTagGroupsToRemember", Kind::Integer, Page::None, "", "", "", {1, 100}},
    {"KPBuiltinInspectorWidth", Kind::Real},
    {"KPSelectedScanner", ""},
    {"KPLastBackup", Kind::Real}, // seconds since 1970
    {"KPMainWindowGeometry", Kind::Data},
    {"KPScanWindowFrame", Kind::Data},
    {"KPPreferencesFrame", Kind::Data},
    {"XPTagsWindowFrame", Kind::Data},
    {"XPTagEditorHUDWindowFrame", Kind::Data},
    {"XPTagSearchWindowFrame", Kind::Data},
    {"KPTagsWindowGeometry", Kind::Data},
    {"KPPreviewFrame", Kind::Data},
    {"KPDropZoneY", Kind::Real},
    {"KPSavedSortDescriptorsDataRep", Kind::Data},
    {"KPLeftColumnSplit", Kind::Real},
    {"KPMurnKXToolbar", Kind::Texts},
    {"KPRecentSearches", Kind::Texts},
    {"KPRecentLocations", Kind::List},
    {"KPSourceItem", Kind::Dictionary},
    {"KPLocationItem", Kind::Dictionary},
    {"KPDocsListColumnWidths", Kind::Dictionary},
    {"KPScanProfiles", Kind::Dictionary},
    {"FoundScanners", Kind::Dictionary},
    {"KPPrintInfo", Kind::Dictionary},
    {"recentDestinationPaths", Kind::Dictionary},
    {"recentTagGroups", Kind::Dictionary},
    {"recentlyEnteredTags", Kind::Texts},
    {"KPTwistDownStates", Kind::List},
    {"KPVisibleColumnsInDocsList", Kind::Texts},
    {"KPGroupStates", Kind::Dictionary},
    {"KPCloudAlwaysTags2", Kind::Dictionary},
    {"KPCloudNeverTags2", Kind::Dictionary},
};
// clang-format on

} // namespace

static Kind kindOf(const Factory &factory)
{
    constexpr Kind byAlternative[] = {Kind::Bool, Kind::Integer, Kind::Real, Kind::Text};
    const auto *kind = std::get_if<Kind>(&factory);
    return kind ? *kind : byAlternative[factory.index()];
}

static PropertyValue plainValue(const Factory &factory)
{
    if (const bool *flag = std::get_if<bool>(&factory))
        return PropertyValue::boolean(*flag);
    if (const int *number = std::get_if<int>(&factory))
        return PropertyValue::integer(*number);
    if (const double *number = std::get_if<double>(&factory))
        return PropertyValue::real(*number);
    if (const char *const *text = std::get_if<const char *>(&factory))
        return QString::fromUtf8(*text);
    return {};
}

static PropertyValue colour(double red, double green, double blue, double alpha)
{
    return Array{PropertyValue::real(red), PropertyValue::real(green), PropertyValue::real(blue),
                 PropertyValue::real(alpha)};
}

// As the settings keep them: "~/Documents" unless the desktop calls it something else.
static QStringList searchFolders()
{
    QStringList paths;
    for (const QString &folder :
         {XPFolders::documents(), XPFolders::desktop(), XPFolders::downloads()})
        paths.append(XPFolders::abbreviateWithTilde(folder));
    return paths;
}

static QString customWords()
{
    initResources();
    QFile file(QStringLiteral(":/DefaultTagsShort.txt"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// Those that take more than a word to write.
static Dictionary compoundValues()
{
    return {
        {QStringLiteral("KPLibraryBackgroundColour"), colour(0.92, 0.92, 0.89, 1)},
        {QStringLiteral("KPLibraryTextColour"), colour(0, 0, 0, 1)},
        {QStringLiteral("KPGroupStates"), Dictionary()},
        {QStringLiteral("KPCloudAlwaysTags2"), Dictionary()},
        {QStringLiteral("KPCloudNeverTags2"), Dictionary()},
        {QStringLiteral("KPTwistDownStates"), Array()},
        {QStringLiteral("KPVisibleColumnsInDocsList"),
         QStringList{QStringLiteral("flag"), QStringLiteral("name"), QStringLiteral("type"),
                     QStringLiteral("fileSize"), QStringLiteral("tags")}},
        {QStringLiteral("KPSearchFolders"), searchFolders()},
        {QStringLiteral("KPCustomWords"), customWords()},
    };
}

static QList<XPSetting> allSettings()
{
    const Dictionary compound = compoundValues();
    QList<XPSetting> settings;
    for (const Row &row : rows) {
        const QString key = QString::fromLatin1(row.key);
        settings.append({.key = key,
                         .kind = kindOf(row.factory),
                         .factory = compound.value(key, plainValue(row.factory)),
                         .page = row.page,
                         .group = row.group,
                         .text = row.text,
                         .hint = row.hint,
                         .unit = row.limits.unit,
                         .lowest = row.limits.lowest,
                         .highest = row.limits.highest,
                         .choices = row.choices,
                         .isInverted = row.isInverted,
                         .onlyWhileOff = row.onlyWhileOff});
    }
    return settings;
}

const QList<XPSetting> &XPFactorySettings::all()
{
    static const QList<XPSetting> settings = allSettings();
    return settings;
}

const XPSetting *XPFactorySettings::find(const QString &key)
{
    for (const XPSetting &setting : all()) {
        if (setting.key == key)
            return &setting;
    }
    return nullptr;
}

const Dictionary &XPFactorySettings::values()
{
    static const Dictionary values = [] {
        Dictionary factory;
        for (const XPSetting &setting : all()) {
            if (!setting.factory.isNull())
                factory.insert(setting.key, setting.factory);
        }
        return factory;
    }();
    return values;
}

void XPFactorySettings::registerAll()
{
    UserDefaults &defaults = UserDefaults::standard();
    defaults.registerDefaults(values());
    const QString key = QStringLiteral("KPDebugLogging");
    const auto follow = [](const PropertyValue &on) { setXpDebugLogging(on.boolValue()); };
    follow(defaults.value(key));
    // For the process: never taken away.
    static auto &observation = *new XPObservation;
    observation = defaults.addObserver(QStringLiteral("values.") + key, follow);
}
