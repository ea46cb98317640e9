#include "XPFactorySettings.h"

#include "UserDefaults.h"
#include "XPFolders.h"
#include "XPLog.h"

using Array = PropertyValue::Array;
using Dictionary = PropertyValue::Dictionary;

namespace {

struct Setting
{
    const char *key;
    std::variant<bool, int, double, const char *> value;
};

} // namespace

// One setting a line.
// clang-format off
static constexpr Setting plainSettings[] = {
    // The window and the first launches.
    {"KPBookmarkBarShown", true},
    {"KPActionBarShown", false},
    {"KPUseCommas", true},
    {"KPVirginLaunch", true},
    {"KPVirginLaunchMurnKX", true},
    {"KPVirginLaunchZelKX", true},
    // Web pages to PDF.
    {"KPURLToPDFPaginate", false},
    {"KPURLToPDFBackgrounds", true},
    {"KPURLToPDFWebViewWidth", 1000.0},
    // Thumbnail cache; age in days.
    {"KPCacheSizeMB", 40.0},
    {"KPCacheDaysOld", 360.0},
    // Loupe: the Option key; widths in points.
    {"KPLoupeModifierKey", 0x80000},
    {"KPLoupeShowEntireImage", false},
    {"KPLoupeMagnification", 0.8},
    {"KPLoupeMinimumMagnification", 0.6},
    {"KPLoupeMaximumMagnification", 3.0},
    {"KPLoupeWidth", 346.0},
    {"KPLoupeMinimumWidth", 200.0},
    {"KPLoupeMaximumWidth", 768.0},
    // The grid.
    {"KPThumbnailSize", 0.2},
    {"KPSizeThumbnailsToFit", true},
    // Tags and keywords.
    {"KPSetModifiyTimeOnTagsChanging", false},
    {"KPShowXMPKeywords", false},
    {"KMDMurn2ShowItemKeywords", false},
    {"KPSpotlightPrefix", "&"},
    // Tag suggestions.
    {"KPScanPopular", false},
    {"KPScanPDFKeyWords", true},
    {"KPScanPeople", true},
    {"KPScanAcademicPapers", true},
    {"KPScanTypical", true},
    {"KPScanCustom", true},
    {"KPRemoveBannedTags", true},
    // Documents.
    {"KPIncludeTimeInCreationDate", false},
    {"KPPrefEmailWith", "Mail"},
    // Tag cloud and sidebar; sizes in points.
    {"KPMurn2UseGlobalTagTypeStates", true},
    {"KPCloudUserEntered", true},
    {"KPCloudKeywords", false},
    {"KPTreatSectionsAsRadioButtons", false},
    {"KPTagGroupUserTags", true},
    {"KPTagGroupFileTypes", true},
    {"KPTagGroupReadOnlyTags", true},
    {"KPSizeByFrequency", false},
    {"KPCloudShowFrequency", true},
    {"KPCloudMagFactor", 2.5},
    {"KPCloudLargestSizeFactor", 2.1},
    {"KPCloudDefaultLineHeight", 14.0},
    {"KPSourceListWidth", 210.0},
    {"KPKeywordsAreaWidth", 210.0},
    {"KPLocationsAreaWidth", 210.0},
    {"KPTagsWindowOnlyShowAvailable", false},
    {"KPTwistDownStatesKeepTrack", true},
    // Library and search.
    {"KPLibraryMode", 0},
    {"KPOpenWithMode", 0},
    {"KPOpenWith", "Preview"},
    {"KPSearchStateAlwaysSearchSystemFiles", false},
    {"KPDoSpotlightSearches", true},
    {"KPDoMetaDataSearches", true},
    {"KPImageMinSizeBytes", 4096},
    // What is shown with a document.
    {"KPShowTitle", true},
    {"KPShowTags", true},
    {"KPShowRating", true},
    {"KPShowKeywordsPanel", true},
    {"KPShowLocationsPanel", false},
    {"KPShowInspectorPanel", true},
    {"KPShowInspector", false},
    // Thumbnails.
    {"KPQuicklookBordersImages", true},
    {"KPQuicklookBordersMovies", true},
    {"KPQuicklookBordersOther", true},
    {"KPQuicklookBordersOnLargeThumbs", false},
    {"KPQuicklookCacheSlowImages", true},
    // Navigation and questions.
    {"KPNumberOfRecentLocations", 10},
    {"KPDefaultGroupState", true},
    {"KPConfirmDelete", true},
    {"KPFinderConfirmMoveorCopy", true},
    {"KPBadgeUntaggedDocs", false},
    // Tag editor; delays in seconds.
    {"KPImportOnlyUpdateCommonTags", true},
    {"KPShowSuggestionWindow", true},
    {"XPSkipTagAutoComplete", false},
    {"XPDrawCloudItemsBlack", false},
    {"KPCompletionDelay", 0.35},
    {"KPAutoPositionSuggestionWindow", true},
    {"KPIsRunning", false},
    {"KPTypeAheadTimeoutDelay", 0.5},
    // Scanning; the document type is the same number as the resolution on purpose.
    {"KPScannerInterface", 2},
    {"KPScanDPI", 300},
    {"KPCompressionFactor3", 0.35},
    {"KPScanDocumentType", 300},
    {"KPSelectedPaper", 3},
    // Filing and the drop zone.
    {"KPFiledDocumentsAsk", true},
    {"KPFilesAlwaysPutInFiledDocuments", false},
    {"maxDestinationsToRemember", 10},
    {"KPAutoImportOffice", true},
    {"KPAutoImportiWork", true},
    {"KPAutoImportPDFs", true},
    {"KPAutoImportTaggedFiles", true},
    {"KPShowDropZone", true},
    {"KPDropZoneLeftEdge", false},
    {"KPShowDropZoneEvenWithoutFileDrag", false},
    {"KPDropZoneOverlapWithScreen", true},
    // The program itself; updates come with the packages, so there is no feed.
    {"KPDebugLogging", false},
    {"KPSyncTagsForBackup", true},
    {"SUFeedURL", ""},
};
// clang-format on

static PropertyValue plainValue(const Setting &setting)
{
    if (const bool *flag = std::get_if<bool>(&setting.value))
        return PropertyValue::boolean(*flag);
    if (const int *number = std::get_if<int>(&setting.value))
        return PropertyValue::integer(*number);
    if (const double *number = std::get_if<double>(&setting.value))
        return PropertyValue::real(*number);
    return QString::fromUtf8(std::get<const char *>(setting.value));
}

static PropertyValue colour(double red, double green, double blue, double alpha)
{
    return Array{PropertyValue::real(red), PropertyValue::real(green), PropertyValue::real(blue),
                 PropertyValue::real(alpha)};
}

// As the settings keep them: "~/Documents" unless the desktop calls it something else.
static QStringList searchFolders()
{
    QStringList folders;
    for (const QString &folder :
         {XPFolders::documents(), XPFolders::desktop(), XPFolders::downloads()})
        folders.append(XPFolders::abbreviateWithTilde(folder));
    return folders;
}

static Dictionary allValues()
{
    Dictionary values = {
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
    };
    for (const Setting &setting : plainSettings)
        values.insert(QString::fromLatin1(setting.key), plainValue(setting));
    return values;
}

const Dictionary &XPFactorySettings::values()
{
    static const Dictionary values = allValues();
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
