#pragma once

#include <QString>

// The keys of a search state's dictionary. A state is stored under these names (bookmarks, saved
// searches, history): they never change.
namespace KPSearchStateKey {

// Arrays of texts.
inline const QString withTags = QStringLiteral("SaveStateKey_WithTags");
inline const QString excludeTags = QStringLiteral("SaveStateKey_ExcludeTags");
inline const QString searchStrings = QStringLiteral("SaveStateKey_SearchStrings"); // one text
inline const QString constraintFolders = QStringLiteral("SaveStateKey_ConstraintFolders");
inline const QString postConstraintFolders = QStringLiteral("SaveStateKey_PostConstraintFolders");
inline const QString excludeFolders = QStringLiteral("SaveStateKey_ExcludeFolders");
inline const QString fileList = QStringLiteral("SaveStateKey_FileList");
// File types: tags in a state, identifiers where it is stored.
inline const QString fileUTIs = QStringLiteral("SaveStateKey_FileUTIs");
inline const QString fileUTIsToExclude = QStringLiteral("SaveStateKey_FileUTIsToExclude");
// Texts: a date key (KPSearchDates), a condition on the rating ("!= *", ">= 3", "<= 3").
inline const QString dateSearch = QStringLiteral("SaveStateKey_DateSearch");
inline const QString ratingSearch = QStringLiteral("SaveStateKey_RatingSearch");
// Arrays of further ones of these, which must be fulfilled too: where states are combined of which
// no single key or condition says both.
inline const QString dateSearchAlso = QStringLiteral("SaveStateKey_DateSearchAlso");
inline const QString ratingSearchAlso = QStringLiteral("SaveStateKey_RatingSearchAlso");
// Numbers: days before now. Of states stored elsewhere.
inline const QString relativeStart = QStringLiteral("SaveStateKey_DaysBeforeNow_RelativeStart");
inline const QString relativeEnd = QStringLiteral("SaveStateKey_DaysBeforeNow_RelativeEnd");
// Booleans.
inline const QString searchContents = QStringLiteral("SaveStateKey_SearchString_Contents");
inline const QString searchMetaData = QStringLiteral("SaveStateKey_SearchString_MetaData");
inline const QString searchFileNames = QStringLiteral("SaveStateKey_SearchString_FileNames");
inline const QString fileListGoDeep = QStringLiteral("SaveStateKey_FileListGoDeep");
inline const QString fileListShowBundleContents =
    QStringLiteral("SaveStateKey_FileListShowBundleContents");
// Written by the combination of two states alone, and read by nobody: not the key above.
inline const QString showBundleContents = QStringLiteral("SaveStateKey_ShowBundleContents");
inline const QString finderListingMode = QStringLiteral("SaveStateKey_FinderListingMode");
inline const QString alwaysSearchSystemFiles =
    QStringLiteral("SaveStateKey_AlwaysSearchSystemFiles");
inline const QString showTaggedDocuments = QStringLiteral("SaveStateKey_ShowTaggedDocuments");
inline const QString documentsWithNoTagsOnly =
    QStringLiteral("SaveStateKey_DocumentsWithNoTagsOnly");
inline const QString showManagedDocuments = QStringLiteral("SaveStateKey_ShowManagedDocuments");
inline const QString searchUserTags = QStringLiteral("SaveStateKey_SearchUserTags");
inline const QString searchReadOnlyKeywords = QStringLiteral("SaveStateKey_SearchReadOnlyKeywords");

} // namespace KPSearchStateKey
