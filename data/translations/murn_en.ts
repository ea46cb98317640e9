<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- What the program says, by id: qtTrId("id") in the code. Kept in order of the ids.
     tools/check compares the ids with those used under src/. -->
<TS version="2.1" language="en">
<context>
    <name></name>
    <message id=" but not ">
        <translation> but not </translation>
    </message>
    <message id=" or ">
        <translation> or </translation>
    </message>
    <message id="KPAbout">
        <translation>&amp;About Murn</translation>
    </message>
    <message id="KPAboutLicence">
        <translation>Licence</translation>
    </message>
    <message id="KPAboutPart">
        <translation>Part</translation>
    </message>
    <message id="KPAboutParts">
        <translation>Made with</translation>
    </message>
    <message id="KPAboutText">
        <translation>Tags, rates and finds your documents where they lie. Nothing is copied or moved: tags and ratings are kept on the files themselves.

Free software under the GNU General Public License, version 3 or later.</translation>
    </message>
    <message id="KPAboutTitle">
        <translation>Murn %1</translation>
    </message>
    <message id="KPAboutVersion">
        <translation>Version</translation>
    </message>
    <message id="KPAboutWindowTitle">
        <translation>About Murn</translation>
    </message>
    <message id="KPAcademicPaperTag">
        <translation>paper</translation>
    </message>
    <message id="KPAccessiblePosition">
        <translation>%1 of %2</translation>
    </message>
    <message id="KPAccessibleTags">
        <translation>tags %1</translation>
    </message>
    <message id="KPActionBar">
        <translation>Action Bar</translation>
    </message>
    <message id="KPAddTag">
        <translation>Add a tag</translation>
    </message>
    <message id="KPAllDocuments">
        <translation>&amp;All Documents</translation>
    </message>
    <message id="KPAllDocumentsItemsSourceListItem">
        <translation>All Documents</translation>
    </message>
    <message id="KPAllTags">
        <translation>All Tags</translation>
    </message>
    <message id="KPAllTagsReplaced">
        <translation>These tags will replace all tags of the documents.</translation>
    </message>
    <message id="KPAndMore" numerus="yes">
        <translation>
            <numerusform>and %n more</numerusform>
            <numerusform>and %n more</numerusform>
        </translation>
    </message>
    <message id="KPAndOthers" numerus="yes">
        <translation>
            <numerusform>and %n other</numerusform>
            <numerusform>and %n others</numerusform>
        </translation>
    </message>
    <message id="KPAnyRating">
        <translation>Any rating</translation>
    </message>
    <message id="KPApplicationName">
        <translation>Murn</translation>
    </message>
    <message id="KPApplicationSummary">
        <translation>Tags, rates and finds documents where they lie.</translation>
    </message>
    <message id="KPArchiveFilter">
        <translation>Archives of documents</translation>
    </message>
    <message id="KPArchiveName">
        <translation>Documents %1</translation>
    </message>
    <message id="KPAttributeUnreadable" numerus="yes">
        <translation>
            <numerusform>cannot be read (%n byte)</numerusform>
            <numerusform>cannot be read (%n bytes)</numerusform>
        </translation>
    </message>
    <message id="KPAttributes">
        <translation>Attributes</translation>
    </message>
    <message id="KPAttributesUnreadable" numerus="yes">
        <translation>
            <numerusform>%n attribute of the file cannot be understood.</numerusform>
            <numerusform>%n attributes of the file cannot be understood.</numerusform>
        </translation>
    </message>
    <message id="KPBack">
        <translation>&amp;Back</translation>
    </message>
    <message id="KPBadColourScheme">
        <translation>“%1” is no colour scheme: dark or light</translation>
    </message>
    <message id="KPBookmarkAdd">
        <translation>Save Search</translation>
    </message>
    <message id="KPBookmarkBar">
        <translation>Saved Searches</translation>
    </message>
    <message id="KPBookmarkBarEmpty">
        <translation>Searches that you keep, and tags and folders used last, stand here.</translation>
    </message>
    <message id="KPBookmarkBarMore">
        <translation>More saved searches</translation>
    </message>
    <message id="KPBookmarkBarTags">
        <translation>Documents tagged %1</translation>
    </message>
    <message id="KPBookmarkCombine">
        <translation>Combine with Current Search</translation>
    </message>
    <message id="KPBookmarkDelete">
        <translation>Delete</translation>
    </message>
    <message id="KPBookmarkEmptyFolder">
        <translation>Empty</translation>
    </message>
    <message id="KPBookmarkExport">
        <translation>Export…</translation>
    </message>
    <message id="KPBookmarkExportFile">
        <translation>Export Saved Searches…</translation>
    </message>
    <message id="KPBookmarkFiles">
        <translation>Saved searches (*.plist)</translation>
    </message>
    <message id="KPBookmarkGone">
        <translation>the saved search is not there any more</translation>
    </message>
    <message id="KPBookmarkImport">
        <translation>Import…</translation>
    </message>
    <message id="KPBookmarkImportFile">
        <translation>Import Saved Searches…</translation>
    </message>
    <message id="KPBookmarkIntoItself">
        <translation>a folder cannot be moved into itself</translation>
    </message>
    <message id="KPBookmarkLooksFor">
        <translation>Looks for</translation>
    </message>
    <message id="KPBookmarkMove">
        <translation>Move Saved Search</translation>
    </message>
    <message id="KPBookmarkNarrow">
        <translation>Narrow Current Search</translation>
    </message>
    <message id="KPBookmarkNewFolder">
        <translation>New Folder</translation>
    </message>
    <message id="KPBookmarkNewFolderName">
        <translation>New Folder</translation>
    </message>
    <message id="KPBookmarkRename">
        <translation>Rename</translation>
    </message>
    <message id="KPBookmarkShow">
        <translation>Show</translation>
    </message>
    <message id="KPBookmarkTitle">
        <translation>Name</translation>
    </message>
    <message id="KPBookmarkUpdate">
        <translation>Update to Current Search</translation>
    </message>
    <message id="KPBookmarksEmpty">
        <translation>Nothing is saved yet. “Save Search” keeps the search that is shown.</translation>
    </message>
    <message id="KPBookmarksNewer">
        <translation>the saved searches were stored by a newer program</translation>
    </message>
    <message id="KPBookmarksNoList">
        <translation>no list of saved searches</translation>
    </message>
    <message id="KPBookmarksNotChanged">
        <translation>The bookmarks could not be changed</translation>
    </message>
    <message id="KPBuiltInString">
        <translation>built-in</translation>
    </message>
    <message id="KPCancel">
        <translation>Cancel</translation>
    </message>
    <message id="KPCannotCombine" numerus="yes">
        <translation>
            <numerusform>Nothing was combined: %n document cannot be taken</numerusform>
            <numerusform>Nothing was combined: %n documents cannot be taken</numerusform>
        </translation>
    </message>
    <message id="KPCannotExportList">
        <translation>The list was not exported</translation>
    </message>
    <message id="KPCannotMail" numerus="yes">
        <translation>
            <numerusform>%n document cannot be mailed</numerusform>
            <numerusform>%n documents cannot be mailed</numerusform>
        </translation>
    </message>
    <message id="KPCannotOpen">
        <translation>“%1” could not be opened</translation>
    </message>
    <message id="KPCannotPaste">
        <translation>The document could not be made</translation>
    </message>
    <message id="KPCannotPrint" numerus="yes">
        <translation>
            <numerusform>%n document cannot be printed</numerusform>
            <numerusform>%n documents cannot be printed</numerusform>
        </translation>
    </message>
    <message id="KPCannotRecognise" numerus="yes">
        <translation>
            <numerusform>The text of %n document could not be recognised</numerusform>
            <numerusform>The text of %n documents could not be recognised</numerusform>
        </translation>
    </message>
    <message id="KPCannotRename">
        <translation>“%1” could not be renamed</translation>
    </message>
    <message id="KPCannotReveal">
        <translation>“%1” could not be shown in the file manager</translation>
    </message>
    <message id="KPCannotTakeBack" numerus="yes">
        <translation>
            <numerusform>%1 document was left as it is</numerusform>
            <numerusform>%1 documents were left as they are</numerusform>
        </translation>
    </message>
    <message id="KPCannotTrash">
        <translation>“%1” could not be moved to the trash</translation>
    </message>
    <message id="KPCannotTrashSome" numerus="yes">
        <translation>
            <numerusform>%1 document could not be moved to the trash</numerusform>
            <numerusform>%1 documents could not be moved to the trash</numerusform>
        </translation>
    </message>
    <message id="KPCannotUnrecognise" numerus="yes">
        <translation>
            <numerusform>%n document was left as it is</numerusform>
            <numerusform>%n documents were left as they are</numerusform>
        </translation>
    </message>
    <message id="KPCaptureAddress">
        <translation>Address of the page:</translation>
    </message>
    <message id="KPCaptureButton">
        <translation>Capture</translation>
    </message>
    <message id="KPCaptureFailed">
        <translation>The web page was not captured</translation>
    </message>
    <message id="KPCaptureNoBrowser">
        <translation>No web browser that can draw pages as PDF is installed. Install the package “chromium”.</translation>
    </message>
    <message id="KPCaptureProgress">
        <translation>Capturing the web page</translation>
    </message>
    <message id="KPCaptureTitle">
        <translation>Capture Web Page</translation>
    </message>
    <message id="KPCaptureWebPage">
        <translation>Capture Web Page…</translation>
    </message>
    <message id="KPChangeExtensionText">
        <translation>If you make this change, your document may not open properly anymore.</translation>
    </message>
    <message id="KPChangeExtensionTitle">
        <translation>Are you sure you want to change the extension from ".%1" to ".%2"?</translation>
    </message>
    <message id="KPChangedMeanwhile">
        <translation>it was changed by another program since</translation>
    </message>
    <message id="KPCheckForUpdates">
        <translation>Check for &amp;Updates</translation>
    </message>
    <message id="KPChipExcluded">
        <translation>without tag %1</translation>
    </message>
    <message id="KPChipFilterHint">
        <translation>Click to leave out documents with this tag, and again to ask for them</translation>
    </message>
    <message id="KPChipHint">
        <translation>Press Delete to remove this tag</translation>
    </message>
    <message id="KPChipPartial">
        <translation>%1 of %2 documents. Click to give it to all; the cross takes it off.</translation>
    </message>
    <message id="KPChipTag">
        <translation>tag %1</translation>
    </message>
    <message id="KPClearFilters">
        <translation>Clear Filters</translation>
    </message>
    <message id="KPClearRecentSearches">
        <translation>Clear Recent Searches</translation>
    </message>
    <message id="KPClose">
        <translation>Close</translation>
    </message>
    <message id="KPCloseQuickPreview">
        <translation>Close Quick Preview</translation>
    </message>
    <message id="KPCloseWindow">
        <translation>&amp;Close Window</translation>
    </message>
    <message id="KPCloudAlwaysShow">
        <translation>Always Show in the Cloud</translation>
    </message>
    <message id="KPCloudBlackCommand">
        <translation>Tags Without Colours</translation>
    </message>
    <message id="KPCloudClear">
        <translation>Remove from the Search</translation>
    </message>
    <message id="KPCloudCopyName">
        <translation>Copy Name</translation>
    </message>
    <message id="KPCloudFileTypes">
        <translation>Kinds</translation>
    </message>
    <message id="KPCloudFilter">
        <translation>Filter for tags and kinds</translation>
    </message>
    <message id="KPCloudFilterCommand">
        <translation>Filter Tags</translation>
    </message>
    <message id="KPCloudFilterHint">
        <translation>Filter tags…</translation>
    </message>
    <message id="KPCloudItemCount" numerus="yes">
        <translation>
            <numerusform>%1: %2 document</numerusform>
            <numerusform>%1: %2 documents</numerusform>
        </translation>
    </message>
    <message id="KPCloudNeverShow">
        <translation>Never Show in the Cloud</translation>
    </message>
    <message id="KPCloudSectionTip">
        <translation>Show or hide this section</translation>
    </message>
    <message id="KPCloudShowWith">
        <translation>Show Documents with This Tag</translation>
    </message>
    <message id="KPCloudShowWithout">
        <translation>Show Documents Without This Tag</translation>
    </message>
    <message id="KPCloudSingleColumnCommand">
        <translation>One Tag per Line</translation>
    </message>
    <message id="KPCloudTags">
        <translation>Tags</translation>
    </message>
    <message id="KPCloudTagsAll">
        <translation>%1</translation>
    </message>
    <message id="KPCloudTagsNone">
        <translation>no tags</translation>
    </message>
    <message id="KPCloudTagsOne">
        <translation>1 tag</translation>
    </message>
    <message id="KPCloudTagsSome">
        <translation>%1 of %2</translation>
    </message>
    <message id="KPCloudTypesAll">
        <translation>%1</translation>
    </message>
    <message id="KPCloudTypesNone">
        <translation>no kinds</translation>
    </message>
    <message id="KPCloudTypesOne">
        <translation>1 kind</translation>
    </message>
    <message id="KPCloudTypesSome">
        <translation>%1 of %2</translation>
    </message>
    <message id="KPColumnAdded">
        <translation>Added</translation>
    </message>
    <message id="KPColumnCreated">
        <translation>Created</translation>
    </message>
    <message id="KPColumnFlag">
        <translation>Flag</translation>
    </message>
    <message id="KPColumnFolder">
        <translation>Folder</translation>
    </message>
    <message id="KPColumnModified">
        <translation>Modified</translation>
    </message>
    <message id="KPColumnName">
        <translation>Name</translation>
    </message>
    <message id="KPColumnPath">
        <translation>Path</translation>
    </message>
    <message id="KPColumnRating">
        <translation>Rating</translation>
    </message>
    <message id="KPColumnSize">
        <translation>Size</translation>
    </message>
    <message id="KPColumnTags">
        <translation>Tags</translation>
    </message>
    <message id="KPColumnTitle">
        <translation>Title</translation>
    </message>
    <message id="KPColumnType">
        <translation>Type</translation>
    </message>
    <message id="KPCombine">
        <translation>&amp;Combine PDFs…</translation>
    </message>
    <message id="KPCombineButton">
        <translation>&amp;Combine</translation>
    </message>
    <message id="KPCombineDown">
        <translation>Move &amp;Down</translation>
    </message>
    <message id="KPCombineHint">
        <translation>The pages come in the order of this list. The documents themselves stay as they are.</translation>
    </message>
    <message id="KPCombineLeftOut" numerus="yes">
        <translation>
            <numerusform>%n selected document is left out, as it is no PDF.</numerusform>
            <numerusform>%n selected documents are left out, as they are no PDFs.</numerusform>
        </translation>
    </message>
    <message id="KPCombineName">
        <translation>Name</translation>
    </message>
    <message id="KPCombineNeedsTwo">
        <translation>Select at least two PDF documents.</translation>
    </message>
    <message id="KPCombineRemove">
        <translation>&amp;Leave Out</translation>
    </message>
    <message id="KPCombineSort">
        <translation>&amp;Sort by Name</translation>
    </message>
    <message id="KPCombineStopNote">
        <translation>When you stop, no new document is made.</translation>
    </message>
    <message id="KPCombineTitle">
        <translation>Combine PDF Documents</translation>
    </message>
    <message id="KPCombineTooMany">
        <translation>At most %1 documents can be combined at once.</translation>
    </message>
    <message id="KPCombineUp">
        <translation>Move &amp;Up</translation>
    </message>
    <message id="KPCombinedName">
        <translation>%1 combined</translation>
    </message>
    <message id="KPCombinedNotMarked">
        <translation>“%1” was made, but is no document of the library</translation>
    </message>
    <message id="KPCombiningItems" numerus="yes">
        <translation>
            <numerusform>Combining %n document</numerusform>
            <numerusform>Combining %n documents</numerusform>
        </translation>
    </message>
    <message id="KPComment">
        <translation>Comment</translation>
    </message>
    <message id="KPCommentHint">
        <translation>Write a comment</translation>
    </message>
    <message id="KPCommentsDiffer">
        <translation>Comments differ; what you write replaces them</translation>
    </message>
    <message id="KPCommonTagsOnly">
        <translation>Tags that all selected documents share. Their other tags stay.</translation>
    </message>
    <message id="KPConfirmExternalOpenComments">
        <translation>Each opens in a window of its own.</translation>
    </message>
    <message id="KPConfirmExternalOpenOK">
        <translation>Open</translation>
    </message>
    <message id="KPConfirmExternalOpenTitle">
        <translation>Open %1 documents?</translation>
    </message>
    <message id="KPContinueWithOthers">
        <translation>Continue</translation>
    </message>
    <message id="KPCopyDocSingle">
        <translation>Copy “%1”?</translation>
    </message>
    <message id="KPCopyDocs">
        <translation>Copy %1 documents?</translation>
    </message>
    <message id="KPCopyDocsComments">
        <translation>Copies are made in “%1”, with tags and ratings.</translation>
    </message>
    <message id="KPCopyFiles">
        <translation>&amp;Copy</translation>
    </message>
    <message id="KPCopyOK">
        <translation>Copy</translation>
    </message>
    <message id="KPCopySingleDocComments">
        <translation>A copy is made in “%1”, with tags and rating.</translation>
    </message>
    <message id="KPCopyTo">
        <translation>Copy to Folder…</translation>
    </message>
    <message id="KPCopyToOpenButton">
        <translation>Copy</translation>
    </message>
    <message id="KPCopyToOpenText">
        <translation>These documents lie where they cannot be part of your library: among files of other programs, or on a disk that keeps no tags or takes no changes.</translation>
    </message>
    <message id="KPCopyToOpenTitle">
        <translation>Copy into the managed folder?</translation>
    </message>
    <message id="KPCopyToRecent">
        <translation>Copy to Recent Folder</translation>
    </message>
    <message id="KPCopyToTitle">
        <translation>Copy Documents to</translation>
    </message>
    <message id="KPCountsSelected">
        <translation>%1 of %2 selected</translation>
    </message>
    <message id="KPCrashReportsFolder">
        <translation>Crash Reports</translation>
    </message>
    <message id="KPCrashReportsText">
        <translation>Despite our best efforts and testing, sometimes a bug makes it's way to you. Please help us out by sending us crash reports. 
Your confidentiality is assured.

Allow crash reporting?</translation>
    </message>
    <message id="KPCrashReportsTitle">
        <translation>Crash Reports</translation>
    </message>
    <message id="KPCrashedClose">
        <translation>Not Now</translation>
    </message>
    <message id="KPCrashedShow">
        <translation>Show Report</translation>
    </message>
    <message id="KPCrashedText">
        <translation>A report of what happened lies on this computer. It names the program, the system and the place of the fault, none of your documents. Nothing was sent; whether you send it to anyone is up to you.</translation>
    </message>
    <message id="KPCrashedTitle">
        <translation>Murn ended unexpectedly</translation>
    </message>
    <message id="KPCrumbAdd">
        <translation>Narrow the search</translation>
    </message>
    <message id="KPCrumbAddDate">
        <translation>Date</translation>
    </message>
    <message id="KPCrumbAddKind">
        <translation>Kind</translation>
    </message>
    <message id="KPCrumbAddRating">
        <translation>Rating</translation>
    </message>
    <message id="KPCrumbAddTag">
        <translation>Tag</translation>
    </message>
    <message id="KPCrumbClearRecent">
        <translation>Forget Recent Places</translation>
    </message>
    <message id="KPCrumbDateRange">
        <translation>Other Dates…</translation>
    </message>
    <message id="KPCrumbDocuments" numerus="yes">
        <translation>
            <numerusform>%1 document</numerusform>
            <numerusform>%1 documents</numerusform>
        </translation>
    </message>
    <message id="KPCrumbExclude">
        <translation>Exclude Instead</translation>
    </message>
    <message id="KPCrumbFileList" numerus="yes">
        <translation>
            <numerusform>%n chosen document</numerusform>
            <numerusform>%n chosen documents</numerusform>
        </translation>
    </message>
    <message id="KPCrumbHint">
        <translation>Return opens its menu, Delete removes it, minus turns it into its opposite.</translation>
    </message>
    <message id="KPCrumbIn">
        <translation>in %1</translation>
    </message>
    <message id="KPCrumbInclude">
        <translation>Show Only These</translation>
    </message>
    <message id="KPCrumbListing">
        <translation>This Folder Only</translation>
    </message>
    <message id="KPCrumbListingDeep">
        <translation>With Folders Inside</translation>
    </message>
    <message id="KPCrumbMore" numerus="yes">
        <translation>
            <numerusform>%n more</numerusform>
            <numerusform>%n more</numerusform>
        </translation>
    </message>
    <message id="KPCrumbNegateHint">
        <translation>Click to turn it into its opposite</translation>
    </message>
    <message id="KPCrumbNothing">
        <translation>Impossible Kind</translation>
    </message>
    <message id="KPCrumbPackages">
        <translation>Inside of Packages</translation>
    </message>
    <message id="KPCrumbPlaceHint">
        <translation>Return opens its menu.</translation>
    </message>
    <message id="KPCrumbRemove">
        <translation>Remove</translation>
    </message>
    <message id="KPCrumbSearching">
        <translation>Searching… %1</translation>
    </message>
    <message id="KPCrumbSystemFiles">
        <translation>System Files</translation>
    </message>
    <message id="KPCrumbTagged">
        <translation>tagged %1</translation>
    </message>
    <message id="KPCrumbTrailAnyDate">
        <translation>Any date</translation>
    </message>
    <message id="KPCrumbTrailBeforeYear">
        <translation>Before %1</translation>
    </message>
    <message id="KPCrumbTrailDays">
        <translation>Last %1 days</translation>
    </message>
    <message id="KPCrumbTrailDaysBefore">
        <translation>Older than %1 days</translation>
    </message>
    <message id="KPCrumbTrailDaysBetween">
        <translation>%1 to %2 days ago</translation>
    </message>
    <message id="KPCrumbTrailLast30Days">
        <translation>Last 30 days</translation>
    </message>
    <message id="KPCrumbTrailLast365Days">
        <translation>Last 365 days</translation>
    </message>
    <message id="KPCrumbTrailLast7Days">
        <translation>Last 7 days</translation>
    </message>
    <message id="KPCrumbTrailToday">
        <translation>Last 24 hours</translation>
    </message>
    <message id="KPCrumbTrailYesterday">
        <translation>The 24 hours before</translation>
    </message>
    <message id="KPCrumbWithout">
        <translation>without %1</translation>
    </message>
    <message id="KPCrumbWordsAll">
        <translation>In Names, Contents and Details</translation>
    </message>
    <message id="KPCrumbWordsContents">
        <translation>In Names and Contents</translation>
    </message>
    <message id="KPCrumbWordsDetails">
        <translation>In Names and Details</translation>
    </message>
    <message id="KPCrumbWordsNames">
        <translation>In Names</translation>
    </message>
    <message id="KPCurrentlyScanning">
        <translation>This document is being scanned.</translation>
    </message>
    <message id="KPCustomiseToolbar">
        <translation>Customize Tool&amp;bar…</translation>
    </message>
    <message id="KPCustomiseToolbarHint">
        <translation>Drag items into the toolbar's list, out of it, or up and down in it. Return adds, Delete removes.</translation>
    </message>
    <message id="KPCustomiseToolbarTitle">
        <translation>Customize Toolbar</translation>
    </message>
    <message id="KPDateRangeFrom">
        <translation>From</translation>
    </message>
    <message id="KPDateRangeShow">
        <translation>Show</translation>
    </message>
    <message id="KPDateRangeTitle">
        <translation>Documents Changed Between</translation>
    </message>
    <message id="KPDateRangeTo">
        <translation>To</translation>
    </message>
    <message id="KPDeleteFileComments">
        <translation>It can be put back from there.</translation>
    </message>
    <message id="KPDeleteFileOKButton">
        <translation>Move to Trash</translation>
    </message>
    <message id="KPDeleteFileTitle">
        <translation>Move “%1” to the trash?</translation>
    </message>
    <message id="KPDeleteMultipleFileComments">
        <translation>They can be put back from there.</translation>
    </message>
    <message id="KPDeleteMultipleFileTitle">
        <translation>Move %1 documents to the trash?</translation>
    </message>
    <message id="KPDetails">
        <translation>Details</translation>
    </message>
    <message id="KPDocumentCount" numerus="yes">
        <translation>
            <numerusform>%1 document</numerusform>
            <numerusform>%1 documents</numerusform>
        </translation>
    </message>
    <message id="KPDocumentDamaged">
        <translation>The document is damaged.</translation>
    </message>
    <message id="KPDocumentEmpty">
        <translation>The document is empty.</translation>
    </message>
    <message id="KPDocumentEncrypted">
        <translation>The document is encrypted.</translation>
    </message>
    <message id="KPDocumentEndsReader">
        <translation>Reading the document fails each time: it is probably damaged.</translation>
    </message>
    <message id="KPDocumentTimedOut">
        <translation>Reading the document takes too long.</translation>
    </message>
    <message id="KPDocumentTitle">
        <translation>document</translation>
    </message>
    <message id="KPDocumentTooLarge">
        <translation>The document is too large.</translation>
    </message>
    <message id="KPDocumentUnreadable">
        <translation>The file cannot be read.</translation>
    </message>
    <message id="KPDocumentUnsupported">
        <translation>Documents of this kind cannot be read.</translation>
    </message>
    <message id="KPDocumentWithoutPage">
        <translation>There is no picture of page %1.</translation>
    </message>
    <message id="KPDocumentWithoutPages">
        <translation>The document has no pages.</translation>
    </message>
    <message id="KPDocuments">
        <translation>Documents</translation>
    </message>
    <message id="KPDone">
        <translation>Done</translation>
    </message>
    <message id="KPDropZone">
        <translation>Drop zone</translation>
    </message>
    <message id="KPDropZoneBack">
        <translation>Back</translation>
    </message>
    <message id="KPDropZoneFiled" numerus="yes">
        <translation>
            <numerusform>%n document filed</numerusform>
            <numerusform>%n documents filed</numerusform>
        </translation>
    </message>
    <message id="KPDropZoneFiling">
        <translation>Taking it in …</translation>
    </message>
    <message id="KPDropZoneFolders">
        <translation>Recent folder</translation>
    </message>
    <message id="KPDropZoneTagGroups">
        <translation>With tags</translation>
    </message>
    <message id="KPDropZoneTitle">
        <translation>Drop to file</translation>
    </message>
    <message id="KPDropZoneToday">
        <translation>Today’s folder</translation>
    </message>
    <message id="KPDroppedOnIcon">
        <translation>Opened on %1</translation>
    </message>
    <message id="KPDuplicate">
        <translation>&amp;Duplicate</translation>
    </message>
    <message id="KPDuplicatesFound" numerus="yes">
        <translation>
            <numerusform>%n group of documents of the same contents. One of each would do, and free %1.</numerusform>
            <numerusform>%n groups of documents of the same contents. One of each would do, and free %1.</numerusform>
        </translation>
    </message>
    <message id="KPDuplicatesGroup" numerus="yes">
        <translation>
            <numerusform>%n × %1, %2 each</numerusform>
            <numerusform>%n × %1, %2 each</numerusform>
        </translation>
    </message>
    <message id="KPDuplicatesNone">
        <translation>No two of the shown documents have the same contents.</translation>
    </message>
    <message id="KPDuplicatesSearching">
        <translation>Comparing the shown documents</translation>
    </message>
    <message id="KPDuplicatesShow">
        <translation>Show in Library</translation>
    </message>
    <message id="KPDuplicatesTitle">
        <translation>Duplicates</translation>
    </message>
    <message id="KPDuplicatesUnread" numerus="yes">
        <translation>
            <numerusform>%n document could not be read.</numerusform>
            <numerusform>%n documents could not be read.</numerusform>
        </translation>
    </message>
    <message id="KPEditFailedLine">
        <translation>%1: %2</translation>
    </message>
    <message id="KPEditFailedMany" numerus="yes">
        <translation>
            <numerusform>%n of %1 documents could not be changed</numerusform>
            <numerusform>%n of %1 documents could not be changed</numerusform>
        </translation>
    </message>
    <message id="KPEditFailedOne">
        <translation>“%1” could not be changed</translation>
    </message>
    <message id="KPEditStopped" numerus="yes">
        <translation>
            <numerusform>Stopped after %n document</numerusform>
            <numerusform>Stopped after %n documents</numerusform>
        </translation>
    </message>
    <message id="KPEditTags">
        <translation>Edit &amp;Tags</translation>
    </message>
    <message id="KPEditing">
        <translation>Changing %1 of %2</translation>
    </message>
    <message id="KPEditingName">
        <translation>Changing documents</translation>
    </message>
    <message id="KPExportDocuments">
        <translation>Export Documents…</translation>
    </message>
    <message id="KPExportDone" numerus="yes">
        <translation>
            <numerusform>%n document was exported</numerusform>
            <numerusform>%n documents were exported</numerusform>
        </translation>
    </message>
    <message id="KPExportFailed">
        <translation>The documents were not exported</translation>
    </message>
    <message id="KPExportLeftOut" numerus="yes">
        <translation>
            <numerusform>%n document was left out:</numerusform>
            <numerusform>%n documents were left out:</numerusform>
        </translation>
    </message>
    <message id="KPExportList">
        <translation>E&amp;xport List…</translation>
    </message>
    <message id="KPExportListFilter">
        <translation>Comma-separated values</translation>
    </message>
    <message id="KPExportListName">
        <translation>Documents</translation>
    </message>
    <message id="KPExportListTitle">
        <translation>Export List of Results</translation>
    </message>
    <message id="KPExportProgress">
        <translation>Exporting documents</translation>
    </message>
    <message id="KPExportSearchResults">
        <translation>Export All Shown Documents…</translation>
    </message>
    <message id="KPExportStopNote">
        <translation>When you stop, no file is written.</translation>
    </message>
    <message id="KPExportTitle">
        <translation>Export Documents</translation>
    </message>
    <message id="KPExportingList" numerus="yes">
        <translation>
            <numerusform>Exporting the list of %n document</numerusform>
            <numerusform>Exporting the list of %n documents</numerusform>
        </translation>
    </message>
    <message id="KPExtensionTypeTemplate">
        <translation>%1 file</translation>
    </message>
    <message id="KPFactAddress">
        <translation>Address</translation>
    </message>
    <message id="KPFactAlbum">
        <translation>Album</translation>
    </message>
    <message id="KPFactAperture">
        <translation>Aperture</translation>
    </message>
    <message id="KPFactAttachments">
        <translation>Attachments</translation>
    </message>
    <message id="KPFactAuthors">
        <translation>From</translation>
    </message>
    <message id="KPFactBitRate">
        <translation>Bit rate</translation>
    </message>
    <message id="KPFactBytes" numerus="yes">
        <translation>
            <numerusform>%n byte</numerusform>
            <numerusform>%n bytes</numerusform>
        </translation>
    </message>
    <message id="KPFactCamera">
        <translation>Camera</translation>
    </message>
    <message id="KPFactChannels">
        <translation>Channels</translation>
    </message>
    <message id="KPFactCity">
        <translation>City</translation>
    </message>
    <message id="KPFactComposer">
        <translation>Composer</translation>
    </message>
    <message id="KPFactCopyright">
        <translation>Copyright</translation>
    </message>
    <message id="KPFactCountry">
        <translation>Country</translation>
    </message>
    <message id="KPFactCreated">
        <translation>Created</translation>
    </message>
    <message id="KPFactDescription">
        <translation>Description</translation>
    </message>
    <message id="KPFactDuration">
        <translation>Duration</translation>
    </message>
    <message id="KPFactEntries" numerus="yes">
        <translation>
            <numerusform>%n entry</numerusform>
            <numerusform>%n entries</numerusform>
        </translation>
    </message>
    <message id="KPFactExposure">
        <translation>Exposure</translation>
    </message>
    <message id="KPFactFocalLength">
        <translation>Focal length</translation>
    </message>
    <message id="KPFactFolder">
        <translation>Folder</translation>
    </message>
    <message id="KPFactFromTo">
        <translation>%1 to %2</translation>
    </message>
    <message id="KPFactGenre">
        <translation>Genre</translation>
    </message>
    <message id="KPFactKeywords">
        <translation>Keywords</translation>
    </message>
    <message id="KPFactKilobits">
        <translation>%1 kbit/s</translation>
    </message>
    <message id="KPFactKilohertz">
        <translation>%1 kHz</translation>
    </message>
    <message id="KPFactLens">
        <translation>Lens</translation>
    </message>
    <message id="KPFactMillimetres">
        <translation>%1 mm</translation>
    </message>
    <message id="KPFactModified">
        <translation>Modified</translation>
    </message>
    <message id="KPFactPages">
        <translation>Pages</translation>
    </message>
    <message id="KPFactPixels">
        <translation>Pixels</translation>
    </message>
    <message id="KPFactProgram">
        <translation>Made with</translation>
    </message>
    <message id="KPFactRecipients">
        <translation>To</translation>
    </message>
    <message id="KPFactSampleRate">
        <translation>Sample rate</translation>
    </message>
    <message id="KPFactSeconds">
        <translation>%1 s</translation>
    </message>
    <message id="KPFactSensitivity">
        <translation>ISO</translation>
    </message>
    <message id="KPFactSize">
        <translation>Size</translation>
    </message>
    <message id="KPFactSubject">
        <translation>Subject</translation>
    </message>
    <message id="KPFactTitle">
        <translation>Title</translation>
    </message>
    <message id="KPFactTotalSize">
        <translation>Total size</translation>
    </message>
    <message id="KPFactType">
        <translation>Type</translation>
    </message>
    <message id="KPFactWhereFrom">
        <translation>Where from</translation>
    </message>
    <message id="KPFactWritten">
        <translation>Written</translation>
    </message>
    <message id="KPFactYear">
        <translation>Year</translation>
    </message>
    <message id="KPFetchingTitle">
        <translation>Fetching from the other program</translation>
    </message>
    <message id="KPFileClipboardButton">
        <translation>File</translation>
    </message>
    <message id="KPFileClipboardText">
        <translation>Another program asks Murn to add what was copied to your library.</translation>
    </message>
    <message id="KPFileClipboardTitle">
        <translation>File what was copied?</translation>
    </message>
    <message id="KPFileDocuments">
        <translation>Add to Library…</translation>
    </message>
    <message id="KPFileTypeGroupArchives">
        <translation>Archives</translation>
    </message>
    <message id="KPFileTypeGroupAudio">
        <translation>Audio</translation>
    </message>
    <message id="KPFileTypeGroupEBooks">
        <translation>E-books</translation>
    </message>
    <message id="KPFileTypeGroupEMail">
        <translation>E-mail</translation>
    </message>
    <message id="KPFileTypeGroupFonts">
        <translation>Fonts</translation>
    </message>
    <message id="KPFileTypeGroupIWork">
        <translation>iWork</translation>
    </message>
    <message id="KPFileTypeGroupImages">
        <translation>Images</translation>
    </message>
    <message id="KPFileTypeGroupMovies">
        <translation>Movies</translation>
    </message>
    <message id="KPFileTypeGroupOffice">
        <translation>Office</translation>
    </message>
    <message id="KPFileTypeGroupPDF">
        <translation>PDF</translation>
    </message>
    <message id="KPFileTypeGroupPresentations">
        <translation>Presentations</translation>
    </message>
    <message id="KPFileTypeGroupRawPhotos">
        <translation>Raw photos</translation>
    </message>
    <message id="KPFileTypeGroupSourceCode">
        <translation>Source code</translation>
    </message>
    <message id="KPFileTypeGroupSpreadsheets">
        <translation>Spreadsheets</translation>
    </message>
    <message id="KPFileTypeGroupText">
        <translation>Text</translation>
    </message>
    <message id="KPFileTypeGroupWebPages">
        <translation>Web pages</translation>
    </message>
    <message id="KPFind">
        <translation>&amp;Find</translation>
    </message>
    <message id="KPFindDuplicates">
        <translation>Find Duplicates…</translation>
    </message>
    <message id="KPFlag">
        <translation>Flag</translation>
    </message>
    <message id="KPFlagged">
        <translation>Flagged</translation>
    </message>
    <message id="KPFolderMenu">
        <translation>Folders in It</translation>
    </message>
    <message id="KPFolderMenuNone">
        <translation>No folders</translation>
    </message>
    <message id="KPFolderMenuReading">
        <translation>Reading the folder…</translation>
    </message>
    <message id="KPForgetSearches">
        <translation>For&amp;get Earlier Searches</translation>
    </message>
    <message id="KPForward">
        <translation>&amp;Forward</translation>
    </message>
    <message id="KPFullScreen">
        <translation>&amp;Full Screen</translation>
    </message>
    <message id="KPGetInfo">
        <translation>Get Infor&amp;mation</translation>
    </message>
    <message id="KPGoHome">
        <translation>&amp;Home</translation>
    </message>
    <message id="KPGoUp">
        <translation>&amp;Enclosing Folder</translation>
    </message>
    <message id="KPGroupMode">
        <translation>As Groups</translation>
    </message>
    <message id="KPGroupNameDigits">
        <translation>0–9</translation>
    </message>
    <message id="KPGroupNameFiveStars">
        <translation>Five stars</translation>
    </message>
    <message id="KPGroupNameFolder">
        <translation>Folders</translation>
    </message>
    <message id="KPGroupNameFourStars">
        <translation>Four stars</translation>
    </message>
    <message id="KPGroupNameLastYear">
        <translation>Last year</translation>
    </message>
    <message id="KPGroupNameLater">
        <translation>In the future</translation>
    </message>
    <message id="KPGroupNameLessThan100MB">
        <translation>50 MB to 100 MB</translation>
    </message>
    <message id="KPGroupNameLessThan100k">
        <translation>10 kB to 100 kB</translation>
    </message>
    <message id="KPGroupNameLessThan10k">
        <translation>Less than 10 kB</translation>
    </message>
    <message id="KPGroupNameLessThan1GB">
        <translation>100 MB to 1 GB</translation>
    </message>
    <message id="KPGroupNameLessThan1MB">
        <translation>100 kB to 1 MB</translation>
    </message>
    <message id="KPGroupNameLessThan20MB">
        <translation>1 MB to 20 MB</translation>
    </message>
    <message id="KPGroupNameLessThan50MB">
        <translation>20 MB to 50 MB</translation>
    </message>
    <message id="KPGroupNameMoreThan1GB">
        <translation>1 GB and more</translation>
    </message>
    <message id="KPGroupNameNoDate">
        <translation>No date</translation>
    </message>
    <message id="KPGroupNameNoTags">
        <translation>No tags</translation>
    </message>
    <message id="KPGroupNameOlder">
        <translation>Older</translation>
    </message>
    <message id="KPGroupNameOneStar">
        <translation>One star</translation>
    </message>
    <message id="KPGroupNameOtherCharacters">
        <translation>Other</translation>
    </message>
    <message id="KPGroupNamePackage">
        <translation>Packages</translation>
    </message>
    <message id="KPGroupNamePast30Days">
        <translation>Past 30 days</translation>
    </message>
    <message id="KPGroupNamePast7Days">
        <translation>Past 7 days</translation>
    </message>
    <message id="KPGroupNameThisYear">
        <translation>This year</translation>
    </message>
    <message id="KPGroupNameThreeStars">
        <translation>Three stars</translation>
    </message>
    <message id="KPGroupNameToday">
        <translation>Today</translation>
    </message>
    <message id="KPGroupNameTwoStars">
        <translation>Two stars</translation>
    </message>
    <message id="KPGroupNameUnrated">
        <translation>Not rated</translation>
    </message>
    <message id="KPGroupNameYearBeforeLastYear">
        <translation>The year before last</translation>
    </message>
    <message id="KPGroupNameYesterday">
        <translation>Yesterday</translation>
    </message>
    <message id="KPGroupNameZeroLength">
        <translation>Empty</translation>
    </message>
    <message id="KPHealAccept">
        <translation>Put Back</translation>
    </message>
    <message id="KPHealFailed">
        <translation>The tags could not be put back or taken off</translation>
    </message>
    <message id="KPHealPending">
        <translation>A program dropped tags on %1. Do they belong to this document? %2</translation>
    </message>
    <message id="KPHealRefuse">
        <translation>No</translation>
    </message>
    <message id="KPHealUndo">
        <translation>Take Off Again</translation>
    </message>
    <message id="KPHealed">
        <translation>A program dropped the tags; they were put back on %1: %2</translation>
    </message>
    <message id="KPHealedAccept">
        <translation>Put the Tags Back</translation>
    </message>
    <message id="KPHealedAllDone">
        <translation>These files lost their tags to a program.</translation>
    </message>
    <message id="KPHealedDone">
        <translation>given back</translation>
    </message>
    <message id="KPHealedFailed">
        <translation>failed</translation>
    </message>
    <message id="KPHealedFile">
        <translation>File</translation>
    </message>
    <message id="KPHealedHasTags">
        <translation>it has tags again</translation>
    </message>
    <message id="KPHealedLeft">
        <translation>changed since, and left: %1</translation>
    </message>
    <message id="KPHealedList">
        <translation>Files that lost their tags</translation>
    </message>
    <message id="KPHealedNoLog">
        <translation>not a log of healed files</translation>
    </message>
    <message id="KPHealedNone">
        <translation>So far no file lost its tags to a program.</translation>
    </message>
    <message id="KPHealedPending">
        <translation>put aside</translation>
    </message>
    <message id="KPHealedState">
        <translation>State</translation>
    </message>
    <message id="KPHealedTags">
        <translation>Tags</translation>
    </message>
    <message id="KPHealedTime">
        <translation>Noticed</translation>
    </message>
    <message id="KPHealedUndo">
        <translation>Leave Without Tags</translation>
    </message>
    <message id="KPHealedUndone">
        <translation>left without</translation>
    </message>
    <message id="KPHealedWaiting" numerus="yes">
        <translation>
            <numerusform>The tags of %n file were put aside, as it may be another one now. Put them back?</numerusform>
            <numerusform>The tags of %n files were put aside, as they may be other ones now. Put them back?</numerusform>
        </translation>
    </message>
    <message id="KPHide">
        <translation>&amp;Hide</translation>
    </message>
    <message id="KPHideActionBar">
        <translation>Hide Action Bar</translation>
    </message>
    <message id="KPHideBookmarkBar">
        <translation>Hide Bookmark Bar</translation>
    </message>
    <message id="KPHideBookmarksPanel">
        <translation>Hide &amp;Bookmarks</translation>
    </message>
    <message id="KPHideLoupeMenuItem">
        <translation>Hide Loupe</translation>
    </message>
    <message id="KPHistoryBack">
        <translation>Go Back to Here</translation>
    </message>
    <message id="KPHistoryBeginning">
        <translation>Before all of this</translation>
    </message>
    <message id="KPHistoryForward">
        <translation>Go Forward to Here</translation>
    </message>
    <message id="KPHistoryHint">
        <translation>Choose a step to go back to. What others changed since is left alone.</translation>
    </message>
    <message id="KPHistoryList">
        <translation>History…</translation>
    </message>
    <message id="KPHistoryNow">
        <translation>This is where you are</translation>
    </message>
    <message id="KPHistoryStopped">
        <translation>Stopped here: something could not be taken back as it was.</translation>
    </message>
    <message id="KPHistoryTitle">
        <translation>History</translation>
    </message>
    <message id="KPHistoryUndone">
        <translation>%1 (undone)</translation>
    </message>
    <message id="KPHistoryWillRedo" numerus="yes">
        <translation>
            <numerusform>%n step is done again.</numerusform>
            <numerusform>%n steps are done again.</numerusform>
        </translation>
    </message>
    <message id="KPHistoryWillUndo" numerus="yes">
        <translation>
            <numerusform>%n step is undone.</numerusform>
            <numerusform>%n steps are undone.</numerusform>
        </translation>
    </message>
    <message id="KPHome">
        <translation>Home</translation>
    </message>
    <message id="KPHotKeyDescription">
        <translation>Search Murn for the copied text</translation>
    </message>
    <message id="KPImageTitle">
        <translation>Image</translation>
    </message>
    <message id="KPImportAdded" numerus="yes">
        <translation>
            <numerusform>%n document was added.</numerusform>
            <numerusform>%n documents were added.</numerusform>
        </translation>
    </message>
    <message id="KPImportButton">
        <translation>Import</translation>
    </message>
    <message id="KPImportChanged" numerus="yes">
        <translation>
            <numerusform>%n document got other tags or another rating.</numerusform>
            <numerusform>%n documents got other tags or another rating.</numerusform>
        </translation>
    </message>
    <message id="KPImportCheckProgress">
        <translation>Checking the archive</translation>
    </message>
    <message id="KPImportDocuments">
        <translation>Import Documents…</translation>
    </message>
    <message id="KPImportDone">
        <translation>The archive was imported</translation>
    </message>
    <message id="KPImportFailed">
        <translation>The archive was not imported</translation>
    </message>
    <message id="KPImportFailedCount" numerus="yes">
        <translation>
            <numerusform>%n document cannot be imported.</numerusform>
            <numerusform>%n documents cannot be imported.</numerusform>
        </translation>
    </message>
    <message id="KPImportFolderTitle">
        <translation>Folder for the Imported Documents</translation>
    </message>
    <message id="KPImportKept" numerus="yes">
        <translation>
            <numerusform>%n document is left as it is: the one in the archive is not newer.</numerusform>
            <numerusform>%n documents are left as they are: those in the archive are not newer.</numerusform>
        </translation>
    </message>
    <message id="KPImportProgress">
        <translation>Importing documents</translation>
    </message>
    <message id="KPImportQuestion" numerus="yes">
        <translation>
            <numerusform>Import %n document to “%1”?</numerusform>
            <numerusform>Import %n documents to “%1”?</numerusform>
        </translation>
    </message>
    <message id="KPImportReplaced" numerus="yes">
        <translation>
            <numerusform>%n document replaced an older one, which is in the trash.</numerusform>
            <numerusform>%n documents replaced older ones, which are in the trash.</numerusform>
        </translation>
    </message>
    <message id="KPImportReplacedLine">
        <translation>%1: the older one goes to the trash</translation>
    </message>
    <message id="KPImportSame" numerus="yes">
        <translation>
            <numerusform>%n document is there already.</numerusform>
            <numerusform>%n documents are there already.</numerusform>
        </translation>
    </message>
    <message id="KPImportStopped">
        <translation>The import was stopped</translation>
    </message>
    <message id="KPImportTitle">
        <translation>Import Documents</translation>
    </message>
    <message id="KPImportWouldAdd" numerus="yes">
        <translation>
            <numerusform>%n document is new.</numerusform>
            <numerusform>%n documents are new.</numerusform>
        </translation>
    </message>
    <message id="KPImportWouldChange" numerus="yes">
        <translation>
            <numerusform>%n document gets other tags or another rating.</numerusform>
            <numerusform>%n documents get other tags or another rating.</numerusform>
        </translation>
    </message>
    <message id="KPImportWouldReplace" numerus="yes">
        <translation>
            <numerusform>%n document replaces an older one, which goes to the trash.</numerusform>
            <numerusform>%n documents replace older ones, which go to the trash.</numerusform>
        </translation>
    </message>
    <message id="KPImportedPDFTitle">
        <translation>imported PDF</translation>
    </message>
    <message id="KPIndexChecking">
        <translation>Looking for changes: %1 folders</translation>
    </message>
    <message id="KPIndexContents" numerus="yes">
        <translation>
            <numerusform>Reading text: %1 file left</numerusform>
            <numerusform>Reading text: %1 files left</numerusform>
        </translation>
    </message>
    <message id="KPIndexContentsNotSaved">
        <translation>What was found inside files cannot be saved at the moment: %1.</translation>
    </message>
    <message id="KPIndexContentsRate" numerus="yes">
        <translation>
            <numerusform>(%1 a second, about %n minute left)</numerusform>
            <numerusform>(%1 a second, about %n minutes left)</numerusform>
        </translation>
    </message>
    <message id="KPIndexContentsUnsearchable">
        <translation>Contents cannot be searched: %1.</translation>
    </message>
    <message id="KPIndexEventsLost">
        <translation>Too much changed at once: everything is being compared with the disk.</translation>
    </message>
    <message id="KPIndexFolder">
        <translation>&amp;Index This Folder</translation>
    </message>
    <message id="KPIndexFolderLeftOut">
        <translation>%1 is left out of the index by a rule.</translation>
    </message>
    <message id="KPIndexFolderNotIndexed">
        <translation>%1 is not indexed.</translation>
    </message>
    <message id="KPIndexFoldersUnreadable" numerus="yes">
        <translation>
            <numerusform>%n folder cannot be read.</numerusform>
            <numerusform>%n folders cannot be read.</numerusform>
        </translation>
    </message>
    <message id="KPIndexFoldersUnwatched" numerus="yes">
        <translation>
            <numerusform>%n folder is looked at every %1 seconds only: the system can watch no more.</numerusform>
            <numerusform>%n folders are looked at every %1 seconds only: the system can watch no more.</numerusform>
        </translation>
    </message>
    <message id="KPIndexNoRequests">
        <translation>Other programs cannot ask for anything of the index: %1.</translation>
    </message>
    <message id="KPIndexNoWatches">
        <translation>Changes are found only by looking again: the system tells of none.</translation>
    </message>
    <message id="KPIndexNotAnswering">
        <translation>The program that keeps the index does not answer.</translation>
    </message>
    <message id="KPIndexNothingSaved">
        <translation>The index is not saved and is made anew at the next start: %1.</translation>
    </message>
    <message id="KPIndexOpening">
        <translation>Opening the index…</translation>
    </message>
    <message id="KPIndexReading">
        <translation>Reading folders: %1 files so far</translation>
    </message>
    <message id="KPIndexReasonDamaged">
        <translation>the file is damaged</translation>
    </message>
    <message id="KPIndexReasonNoSpace">
        <translation>the disk is full</translation>
    </message>
    <message id="KPIndexReasonNotFound">
        <translation>there is no such file or folder</translation>
    </message>
    <message id="KPIndexReasonNotPermitted">
        <translation>that is not allowed</translation>
    </message>
    <message id="KPIndexReasonOther">
        <translation>the system reports a failure</translation>
    </message>
    <message id="KPIndexReasonReadOnly">
        <translation>the disk cannot be written to</translation>
    </message>
    <message id="KPIndexReasonTooLarge">
        <translation>the name is too long or the file too large</translation>
    </message>
    <message id="KPIndexRemedyConnect">
        <translation>Connect the volume, or remove the folder below.</translation>
    </message>
    <message id="KPIndexRemedyLimit">
        <translation>An administrator can raise the limit %1.</translation>
    </message>
    <message id="KPIndexRemedyOtherProgram">
        <translation>End the other program of Murn, or wait until it is done.</translation>
    </message>
    <message id="KPIndexRemedyRebuild">
        <translation>Rebuild the index.</translation>
    </message>
    <message id="KPIndexRemedyRights">
        <translation>Give yourself the right to read, or leave the folder out below.</translation>
    </message>
    <message id="KPIndexRemedyRoom">
        <translation>Make room on the volume of your home folder.</translation>
    </message>
    <message id="KPIndexRootDistant">
        <translation>%1: changes made by other machines are found every %2 seconds only.</translation>
    </message>
    <message id="KPIndexRootHoldsStore">
        <translation>%1 is not indexed: the index itself is kept there.</translation>
    </message>
    <message id="KPIndexRootKept">
        <translation>%1 What was found there stays in the index.</translation>
    </message>
    <message id="KPIndexRootMissing">
        <translation>%1 is not there.</translation>
    </message>
    <message id="KPIndexRootSilent">
        <translation>%1 does not answer.</translation>
    </message>
    <message id="KPIndexRootUnmounted">
        <translation>%1: its volume %2 is not mounted.</translation>
    </message>
    <message id="KPIndexRootUnreadable">
        <translation>%1 cannot be read: %2.</translation>
    </message>
    <message id="KPIndexSavingFails">
        <translation>The index cannot be saved at the moment: %1.</translation>
    </message>
    <message id="KPIndexSearchWithoutFolder">
        <translation>This search has no folder to look in.</translation>
    </message>
    <message id="KPInfoWindowTitle">
        <translation>Information: %1</translation>
    </message>
    <message id="KPInspectorShown">
        <translation>&amp;Inspector</translation>
    </message>
    <message id="KPInstallWorkflows">
        <translation>Add Actions to the File Manager</translation>
    </message>
    <message id="KPKeepDropZone">
        <translation>Keep drop zone visible</translation>
    </message>
    <message id="KPKeepExtension">
        <translation>Keep .%1</translation>
    </message>
    <message id="KPKindsAddHint">
        <translation>Extension, name or dropped file</translation>
    </message>
    <message id="KPKindsDelete">
        <translation>Delete</translation>
    </message>
    <message id="KPKindsDeleteText">
        <translation>Only the group goes. The documents stay as they are.</translation>
    </message>
    <message id="KPKindsDeleteTitle">
        <translation>Delete the group “%1”?</translation>
    </message>
    <message id="KPKindsGroups">
        <translation>Groups</translation>
    </message>
    <message id="KPKindsHeading">
        <translation>Groups of types</translation>
    </message>
    <message id="KPKindsHint">
        <translation>Groups that are switched on stand in the sidebar below Kinds. Each may have any types.</translation>
    </message>
    <message id="KPKindsKnown">
        <translation>“%1” belongs to this group already.</translation>
    </message>
    <message id="KPKindsNew">
        <translation>New Group</translation>
    </message>
    <message id="KPKindsNewName">
        <translation>New Kind</translation>
    </message>
    <message id="KPKindsNotSaved">
        <translation>The groups could not be saved: %1</translation>
    </message>
    <message id="KPKindsTypes">
        <translation>Types in this group</translation>
    </message>
    <message id="KPKindsUnknown">
        <translation>“%1” is neither an extension nor a type that is known.</translation>
    </message>
    <message id="KPLibraryFlaggedItem">
        <translation>Flagged</translation>
    </message>
    <message id="KPLibraryHiddenItem">
        <translation>Hidden</translation>
    </message>
    <message id="KPLibraryLastImportItem">
        <translation>Last Import</translation>
    </message>
    <message id="KPLibraryTaggedFolder">
        <translation>Tagged</translation>
    </message>
    <message id="KPLibraryUntaggedFolder">
        <translation>Untagged</translation>
    </message>
    <message id="KPListingNotFollowed">
        <translation>Changes in some folders cannot be followed: the system gives no more watches.</translation>
    </message>
    <message id="KPLocationsFolders">
        <translation>Folders with results</translation>
    </message>
    <message id="KPLocationsGo">
        <translation>Search in This Folder</translation>
    </message>
    <message id="KPLocationsLeaveOut">
        <translation>Leave Out This Folder</translation>
    </message>
    <message id="KPLocationsPanelShown">
        <translation>&amp;Locations Panel</translation>
    </message>
    <message id="KPLocationsRecent">
        <translation>Recent Places</translation>
    </message>
    <message id="KPLocationsReveal">
        <translation>Show in File Manager</translation>
    </message>
    <message id="KPLocationsUp">
        <translation>Folder Above</translation>
    </message>
    <message id="KPLooking">
        <translation>Looking…</translation>
    </message>
    <message id="KPLoupeEntireImage">
        <translation>Whole Picture in Loupe</translation>
    </message>
    <message id="KPLoupeNarrower">
        <translation>Smaller Loupe</translation>
    </message>
    <message id="KPLoupeStronger">
        <translation>Magnify More</translation>
    </message>
    <message id="KPLoupeWeaker">
        <translation>Magnify Less</translation>
    </message>
    <message id="KPLoupeWider">
        <translation>Larger Loupe</translation>
    </message>
    <message id="KPMail">
        <translation>&amp;Mail…</translation>
    </message>
    <message id="KPMailManyButton">
        <translation>Attach</translation>
    </message>
    <message id="KPMailManyText">
        <translation>Together they have %1. Many mail servers refuse large messages.</translation>
    </message>
    <message id="KPMailManyTitle" numerus="yes">
        <translation>
            <numerusform>Attach %n document to a message?</numerusform>
            <numerusform>Attach %n documents to a message?</numerusform>
        </translation>
    </message>
    <message id="KPMailNobody">
        <translation>No mail program was found.</translation>
    </message>
    <message id="KPMailNotAFile">
        <translation>only files can be attached, not folders or packages</translation>
    </message>
    <message id="KPMailPreparing" numerus="yes">
        <translation>
            <numerusform>Attaching %n document</numerusform>
            <numerusform>Attaching %n documents</numerusform>
        </translation>
    </message>
    <message id="KPMailRefused">
        <translation>The mail program did not take the documents.</translation>
    </message>
    <message id="KPMailTooMany">
        <translation>At most %1 documents can be mailed at once.</translation>
    </message>
    <message id="KPManage">
        <translation>&amp;Mark as Document of the Library</translation>
    </message>
    <message id="KPMangedItemsSourceLabel">
        <translation>Managed</translation>
    </message>
    <message id="KPMenuDocuments">
        <translation>&amp;Documents</translation>
    </message>
    <message id="KPMenuEdit">
        <translation>&amp;Edit</translation>
    </message>
    <message id="KPMenuFile">
        <translation>&amp;File</translation>
    </message>
    <message id="KPMenuGo">
        <translation>&amp;Go</translation>
    </message>
    <message id="KPMenuHelp">
        <translation>&amp;Help</translation>
    </message>
    <message id="KPMenuTags">
        <translation>&amp;Tags</translation>
    </message>
    <message id="KPMenuView">
        <translation>&amp;View</translation>
    </message>
    <message id="KPMenuWindow">
        <translation>&amp;Window</translation>
    </message>
    <message id="KPMinimise">
        <translation>&amp;Minimize</translation>
    </message>
    <message id="KPMirrorQuestionNo">
        <translation>Keep Apart</translation>
    </message>
    <message id="KPMirrorQuestionText">
        <translation>Other programs on this computer put tags and ratings of their own on files. Murn can write yours there too, and take over what is changed there. You can change this at any time in the preferences.</translation>
    </message>
    <message id="KPMirrorQuestionTitle">
        <translation>Keep your tags and those of the file manager the same?</translation>
    </message>
    <message id="KPMirrorQuestionYes">
        <translation>Keep the Same</translation>
    </message>
    <message id="KPMoveDocSingle">
        <translation>Move “%1”?</translation>
    </message>
    <message id="KPMoveDocs">
        <translation>Move %1 documents?</translation>
    </message>
    <message id="KPMoveDocsComments">
        <translation>They go to “%1”, with tags and ratings.</translation>
    </message>
    <message id="KPMoveOK">
        <translation>Move</translation>
    </message>
    <message id="KPMoveSingleDocComments">
        <translation>It goes to “%1”, with tags and rating.</translation>
    </message>
    <message id="KPMoveTo">
        <translation>Move to Folder…</translation>
    </message>
    <message id="KPMoveToFiledDocuments">
        <translation>Mo&amp;ve to Filed Documents</translation>
    </message>
    <message id="KPMoveToRecent">
        <translation>Move to Recent Folder</translation>
    </message>
    <message id="KPMoveToTitle">
        <translation>Move Documents to</translation>
    </message>
    <message id="KPMoveToTrash">
        <translation>Move to T&amp;rash</translation>
    </message>
    <message id="KPNameHint">
        <translation>Double-click to rename</translation>
    </message>
    <message id="KPNameIsDots">
        <translation>“%1” is no name for a file</translation>
    </message>
    <message id="KPNameIsTaken">
        <translation>another file has this name now</translation>
    </message>
    <message id="KPNameMissing">
        <translation>a file needs a name</translation>
    </message>
    <message id="KPNameNotEncodable">
        <translation>the name holds characters that a file name cannot hold</translation>
    </message>
    <message id="KPNameTooLong">
        <translation>the name is longer than 255 bytes</translation>
    </message>
    <message id="KPNextDocument">
        <translation>Next document</translation>
    </message>
    <message id="KPNextPage">
        <translation>Next page</translation>
    </message>
    <message id="KPNo">
        <translation>No</translation>
    </message>
    <message id="KPNoApplication">
        <translation>No Application</translation>
    </message>
    <message id="KPNoDocuments">
        <translation>No documents here</translation>
    </message>
    <message id="KPNoDocumentsAfterSearch">
        <translation>No documents fit this search</translation>
    </message>
    <message id="KPNoDocumentsAfterSearchHelp">
        <translation>Take away a step above, or look in another place.</translation>
    </message>
    <message id="KPNoDocumentsHelpZel">
        <translation>Documents appear here as soon as there are any.</translation>
    </message>
    <message id="KPNoFileManager">
        <translation>there is no file manager</translation>
    </message>
    <message id="KPNoImporter">
        <translation>Documents cannot be read: the program murn-importer is missing or does not start. Contents and new pictures are not available.</translation>
    </message>
    <message id="KPNoPostScriptConverter">
        <translation>Converting PostScript needs the package “ghostscript”.</translation>
    </message>
    <message id="KPNoProgramToOpen">
        <translation>no program to open files with was found</translation>
    </message>
    <message id="KPNoScannerAvailable">
        <translation>No Scanner Available</translation>
    </message>
    <message id="KPNoScannerInstructions">
        <translation>No scanner was found. Switch one on and press ‘Scan Page’ to look again. Pictures and PDF files dropped here become pages, too.</translation>
    </message>
    <message id="KPNoStars">
        <translation>No Rating</translation>
    </message>
    <message id="KPNoSuchFile">
        <translation>%1: no such file or folder</translation>
    </message>
    <message id="KPNoSuchFolder">
        <translation>there is no folder “%1”</translation>
    </message>
    <message id="KPNoSuchProgram">
        <translation>no such program is installed: %1</translation>
    </message>
    <message id="KPNoTagsToDelete">
        <translation>No Tags to Delete</translation>
    </message>
    <message id="KPNoTextRecognition">
        <translation>Recognising text needs the package “tesseract-ocr”.</translation>
    </message>
    <message id="KPNotAPDF">
        <translation>no PDF document</translation>
    </message>
    <message id="KPNotAPicture">
        <translation>This is no picture.</translation>
    </message>
    <message id="KPNotAnswering">
        <translation>Murn is running but does not answer: %1</translation>
    </message>
    <message id="KPNotCombined">
        <translation>The documents were not combined</translation>
    </message>
    <message id="KPNotIndexed">
        <translation>“%1” is not indexed</translation>
    </message>
    <message id="KPNotIndexedHint">
        <translation>Documents are found in indexed folders. Once added, this one stays up to date by itself.</translation>
    </message>
    <message id="KPNotMailed">
        <translation>The documents were not handed to a mail program</translation>
    </message>
    <message id="KPNotRecognised">
        <translation>No text was recognised</translation>
    </message>
    <message id="KPNothingSelected">
        <translation>Select documents to see and change their tags and rating.</translation>
    </message>
    <message id="KPNothingToFile">
        <translation>Nothing was copied that could be filed.</translation>
    </message>
    <message id="KPOnlyShowSelected">
        <translation>Show Only These Documents</translation>
    </message>
    <message id="KPOpen">
        <translation>&amp;Open</translation>
    </message>
    <message id="KPOpenFolder">
        <translation>&amp;Open Folder…</translation>
    </message>
    <message id="KPOpenFolderTitle">
        <translation>Open Folder</translation>
    </message>
    <message id="KPOpenWith">
        <translation>Open With</translation>
    </message>
    <message id="KPOpenWithOther">
        <translation>&amp;Other…</translation>
    </message>
    <message id="KPOpeningDocuments">
        <translation>Opening %1 documents</translation>
    </message>
    <message id="KPOpeningStopNote">
        <translation>When you stop, no more documents are opened.</translation>
    </message>
    <message id="KPOptionFile">
        <translation>File the files, after asking</translation>
    </message>
    <message id="KPOptionFileClipboard">
        <translation>File what was copied, once you agree.</translation>
    </message>
    <message id="KPOptionFiles">
        <translation>Files, folders and addresses (murn://tags/a/b) to open.</translation>
    </message>
    <message id="KPOptionFolder">
        <translation>Shows the documents of this folder instead of the home folder; may be given several times.</translation>
    </message>
    <message id="KPOptionHelp">
        <translation>Shows this help.</translation>
    </message>
    <message id="KPOptionNeedsFiles">
        <translation>--show, --tag and --file need files</translation>
    </message>
    <message id="KPOptionNewInstance">
        <translation>Open a window of its own, beside one that is open already.</translation>
    </message>
    <message id="KPOptionSearch">
        <translation>Search for this text.</translation>
    </message>
    <message id="KPOptionSearchSelection">
        <translation>Search for the text that is selected, or else copied.</translation>
    </message>
    <message id="KPOptionShow">
        <translation>Show the files in Murn</translation>
    </message>
    <message id="KPOptionTag">
        <translation>Edit the tags of the files</translation>
    </message>
    <message id="KPOptionVersion">
        <translation>Shows the version.</translation>
    </message>
    <message id="KPPageCount">
        <translation>Page %1 of %2</translation>
    </message>
    <message id="KPPageCountNone">
        <translation>No pages</translation>
    </message>
    <message id="KPPageOf">
        <translation>%1 of %2</translation>
    </message>
    <message id="KPPaste">
        <translation>&amp;Paste</translation>
    </message>
    <message id="KPPictureOfDocument">
        <translation>Picture of the document</translation>
    </message>
    <message id="KPPlacesAllFiles">
        <translation>All in %1</translation>
    </message>
    <message id="KPPlacesAllFilesShallow">
        <translation>In %1</translation>
    </message>
    <message id="KPPlacesComputer">
        <translation>This Computer</translation>
    </message>
    <message id="KPPlacesEverywhere">
        <translation>Everywhere</translation>
    </message>
    <message id="KPPlacesFiledDocuments">
        <translation>Filed Documents</translation>
    </message>
    <message id="KPPlacesFiledPast7Days">
        <translation>Filed in the Past 7 Days</translation>
    </message>
    <message id="KPPlacesFiledThisMonth">
        <translation>Filed This Month</translation>
    </message>
    <message id="KPPlacesFiledToday">
        <translation>Filed Today</translation>
    </message>
    <message id="KPPlacesHome">
        <translation>Home</translation>
    </message>
    <message id="KPPlacesSearchFolders">
        <translation>Search Folders</translation>
    </message>
    <message id="KPPostScriptFailed">
        <translation>The PostScript file could not be converted.</translation>
    </message>
    <message id="KPPrefAdd">
        <translation>Add…</translation>
    </message>
    <message id="KPPrefAddFolder">
        <translation>Add a Folder</translation>
    </message>
    <message id="KPPrefAddRule">
        <translation>Add</translation>
    </message>
    <message id="KPPrefAdding">
        <translation>Adding documents</translation>
    </message>
    <message id="KPPrefBackUpNow">
        <translation>Back Up Now</translation>
    </message>
    <message id="KPPrefBackup">
        <translation>Backup of tags and ratings</translation>
    </message>
    <message id="KPPrefBackupHolds" numerus="yes">
        <translation>
            <numerusform>The backup holds %1 document.</numerusform>
            <numerusform>The backup holds %1 documents.</numerusform>
        </translation>
    </message>
    <message id="KPPrefBackupHourly">
        <translation>Back up tags and ratings every hour</translation>
    </message>
    <message id="KPPrefBackupHourlyHint">
        <translation>In a file of their own, beside those on the documents.</translation>
    </message>
    <message id="KPPrefBackupUnreadable">
        <translation>The backup cannot be read: %1</translation>
    </message>
    <message id="KPPrefBadge">
        <translation>Show the number of untagged documents at the program’s icon</translation>
    </message>
    <message id="KPPrefBadgeHint">
        <translation>Where the desktop has a dock or taskbar that can.</translation>
    </message>
    <message id="KPPrefBelongHint">
        <translation>Beside what is tagged, rated or filed.</translation>
    </message>
    <message id="KPPrefBelongOffice">
        <translation>Texts, spreadsheets and presentations of office programs</translation>
    </message>
    <message id="KPPrefBelongPDFs">
        <translation>PDF documents</translation>
    </message>
    <message id="KPPrefBelongWork">
        <translation>Pages, Numbers and Keynote documents</translation>
    </message>
    <message id="KPPrefBelonging">
        <translation>What belongs to the library</translation>
    </message>
    <message id="KPPrefBordersImages">
        <translation>Borders around images</translation>
    </message>
    <message id="KPPrefBordersLarge">
        <translation>Borders around large pictures too</translation>
    </message>
    <message id="KPPrefBordersMovies">
        <translation>Borders around films</translation>
    </message>
    <message id="KPPrefBordersOther">
        <translation>Borders around other documents</translation>
    </message>
    <message id="KPPrefCacheDays">
        <translation>Pictures are made anew after</translation>
    </message>
    <message id="KPPrefCacheSize">
        <translation>Memory for pictures</translation>
    </message>
    <message id="KPPrefCacheSlow">
        <translation>Keep pictures that took long to make</translation>
    </message>
    <message id="KPPrefCacheSlowHint">
        <translation>In the thumbnails that all programs of this desktop share.</translation>
    </message>
    <message id="KPPrefChooseColour">
        <translation>Choose…</translation>
    </message>
    <message id="KPPrefChooseFolder">
        <translation>Choose a Folder…</translation>
    </message>
    <message id="KPPrefCloudBlack">
        <translation>Show the tag cloud in one colour</translation>
    </message>
    <message id="KPPrefCloudColumn">
        <translation>One word in each line</translation>
    </message>
    <message id="KPPrefCloudCounts">
        <translation>Show how many documents have each</translation>
    </message>
    <message id="KPPrefCloudTags">
        <translation>Show tags</translation>
    </message>
    <message id="KPPrefCloudTypes">
        <translation>Show kinds of documents</translation>
    </message>
    <message id="KPPrefColours">
        <translation>Colours</translation>
    </message>
    <message id="KPPrefCommonTags">
        <translation>Of several documents only change the tags that all have</translation>
    </message>
    <message id="KPPrefCommonTagsHint">
        <translation>Off: all get exactly the tags that are entered.</translation>
    </message>
    <message id="KPPrefComplete">
        <translation>Complete tags while they are typed</translation>
    </message>
    <message id="KPPrefConfirmDelete">
        <translation>Ask before documents go to the trash</translation>
    </message>
    <message id="KPPrefConfirmMove">
        <translation>Ask before documents are moved or copied</translation>
    </message>
    <message id="KPPrefCrashReports">
        <translation>Write a report when Murn crashes</translation>
    </message>
    <message id="KPPrefCrashReportsHint">
        <translation>It stays on this computer. Nothing is ever sent by itself.</translation>
    </message>
    <message id="KPPrefCustomWords">
        <translation>Your own words</translation>
    </message>
    <message id="KPPrefCustomWordsHint">
        <translation>One in each line.</translation>
    </message>
    <message id="KPPrefDays">
        <translation>%1 days</translation>
    </message>
    <message id="KPPrefDebugLog">
        <translation>Write more into the log</translation>
    </message>
    <message id="KPPrefDebugLogHint">
        <translation>For the search of faults; names of documents stand in it.</translation>
    </message>
    <message id="KPPrefDesk">
        <translation>Background</translation>
    </message>
    <message id="KPPrefDeskHint">
        <translation>With the factory colours a dark desktop has a dark background.</translation>
    </message>
    <message id="KPPrefDeskText">
        <translation>Names</translation>
    </message>
    <message id="KPPrefDestinations">
        <translation>Recent destinations</translation>
    </message>
    <message id="KPPrefEntering">
        <translation>Entering tags</translation>
    </message>
    <message id="KPPrefEverywhere">
        <translation>From every program</translation>
    </message>
    <message id="KPPrefFiledIn">
        <translation>Documents are filed in %1.</translation>
    </message>
    <message id="KPPrefFilingAlways">
        <translation>File them without asking</translation>
    </message>
    <message id="KPPrefFilingAlwaysHint">
        <translation>Off: they stay where they are and only become part of the library.</translation>
    </message>
    <message id="KPPrefFilingAsk">
        <translation>Ask each time whether to file them</translation>
    </message>
    <message id="KPPrefFolderNotMade">
        <translation>The folder was not made</translation>
    </message>
    <message id="KPPrefFolders">
        <translation>Where Murn looks</translation>
    </message>
    <message id="KPPrefFollowLinks">
        <translation>Folders behind links are listed with all folders in them</translation>
    </message>
    <message id="KPPrefForget">
        <translation>Forget</translation>
    </message>
    <message id="KPPrefForgetDestinations">
        <translation>Recent destinations of moves and copies</translation>
    </message>
    <message id="KPPrefForgetNamed">
        <translation>Forget: %1</translation>
    </message>
    <message id="KPPrefForgetSearches">
        <translation>Recent searches</translation>
    </message>
    <message id="KPPrefForgetTagGroups">
        <translation>Recent groups of tags</translation>
    </message>
    <message id="KPPrefForgetTags">
        <translation>Tags entered lately</translation>
    </message>
    <message id="KPPrefGlobalShortcut">
        <translation>Search for the copied text with</translation>
    </message>
    <message id="KPPrefGlobalShortcutHint">
        <translation>A key that works in every program.</translation>
    </message>
    <message id="KPPrefGrid">
        <translation>Documents</translation>
    </message>
    <message id="KPPrefGroupsOpen">
        <translation>Groups are open at first</translation>
    </message>
    <message id="KPPrefHeal">
        <translation>Give files back the tags that a program dropped</translation>
    </message>
    <message id="KPPrefHealHint">
        <translation>Many programs save by writing a new file in the place of the old one.</translation>
    </message>
    <message id="KPPrefHealing">
        <translation>Healing</translation>
    </message>
    <message id="KPPrefHiddenFiles">
        <translation>Hidden files are listed when a folder is shown with all folders in it</translation>
    </message>
    <message id="KPPrefHomeFolder">
        <translation>Start folder</translation>
    </message>
    <message id="KPPrefHomeFolderHint">
        <translation>The Home button shows it, and the window the first time.</translation>
    </message>
    <message id="KPPrefIndexHolds" numerus="yes">
        <translation>
            <numerusform>The index holds %1 file.</numerusform>
            <numerusform>The index holds %1 files and folders.</numerusform>
        </translation>
    </message>
    <message id="KPPrefIndexState">
        <translation>State</translation>
    </message>
    <message id="KPPrefIndexUpToDate">
        <translation>Everything is up to date.</translation>
    </message>
    <message id="KPPrefIndexed">
        <translation>What is indexed</translation>
    </message>
    <message id="KPPrefKeepTrack">
        <translation>Remember which rows are open</translation>
    </message>
    <message id="KPPrefKeywords">
        <translation>Show keywords inside documents as tags</translation>
    </message>
    <message id="KPPrefLastBackup">
        <translation>Last backup: %1</translation>
    </message>
    <message id="KPPrefLogin">
        <translation>At Login</translation>
    </message>
    <message id="KPPrefLoginAbsent">
        <translation>This needs Murn's package to be installed, and a session that systemd runs.</translation>
    </message>
    <message id="KPPrefLoginFailed">
        <translation>The service could not be switched.</translation>
    </message>
    <message id="KPPrefLoginHint">
        <translation>What comes, changes or moves while the window is closed is found at once when it opens, and the desktop's own search answers sooner.</translation>
    </message>
    <message id="KPPrefLoginKeep">
        <translation>Keep the index from login on</translation>
    </message>
    <message id="KPPrefMakeFolder">
        <translation>Make “%1”</translation>
    </message>
    <message id="KPPrefManagedFolder">
        <translation>Managed folder</translation>
    </message>
    <message id="KPPrefMegabytes">
        <translation>%1 MB</translation>
    </message>
    <message id="KPPrefMirror">
        <translation>Keep tags, rating and comment the same as the desktop’s own</translation>
    </message>
    <message id="KPPrefMirrorHint">
        <translation>Both ways: other programs of the desktop see them, and what is changed there is taken over.</translation>
    </message>
    <message id="KPPrefModified">
        <translation>A document counts as modified when its tags change</translation>
    </message>
    <message id="KPPrefMoving">
        <translation>Moving and deleting</translation>
    </message>
    <message id="KPPrefNewScans">
        <translation>New scans</translation>
    </message>
    <message id="KPPrefNoBackup">
        <translation>There is no backup yet.</translation>
    </message>
    <message id="KPPrefNotFiled">
        <translation>There is no managed folder yet: documents that are filed go to the desktop.</translation>
    </message>
    <message id="KPPrefOnFiles">
        <translation>On the files</translation>
    </message>
    <message id="KPPrefOneSection">
        <translation>Opening a section closes the others</translation>
    </message>
    <message id="KPPrefPageAppearance">
        <translation>Appearance</translation>
    </message>
    <message id="KPPrefPageBackup">
        <translation>Backup and Healing</translation>
    </message>
    <message id="KPPrefPageDropZone">
        <translation>Drop Zone</translation>
    </message>
    <message id="KPPrefPageFiling">
        <translation>Filing</translation>
    </message>
    <message id="KPPrefPageIndex">
        <translation>Index</translation>
    </message>
    <message id="KPPrefPageKinds">
        <translation>Kinds of Documents</translation>
    </message>
    <message id="KPPrefPageLibrary">
        <translation>Library and Folders</translation>
    </message>
    <message id="KPPrefPagePrivacy">
        <translation>Privacy</translation>
    </message>
    <message id="KPPrefPageScanning">
        <translation>Scanning</translation>
    </message>
    <message id="KPPrefPageTags">
        <translation>Tags</translation>
    </message>
    <message id="KPPrefPages">
        <translation>Pages</translation>
    </message>
    <message id="KPPrefPaused">
        <translation>Do not read documents for the moment</translation>
    </message>
    <message id="KPPrefPausedHint">
        <translation>Names, tags and ratings are still followed; contents are not.</translation>
    </message>
    <message id="KPPrefPictures">
        <translation>Pictures of documents</translation>
    </message>
    <message id="KPPrefPixels">
        <translation>%1 pixels</translation>
    </message>
    <message id="KPPrefQuality">
        <translation>Quality of pictures</translation>
    </message>
    <message id="KPPrefQualityHint">
        <translation>From 0.05 for small files to 1 for large ones.</translation>
    </message>
    <message id="KPPrefRawQuery">
        <translation>A query begins with</translation>
    </message>
    <message id="KPPrefRawQueryHint">
        <translation>What follows this sign in the search field is a metadata query as it is.</translation>
    </message>
    <message id="KPPrefRebuild">
        <translation>Rebuild Index…</translation>
    </message>
    <message id="KPPrefRebuildHint">
        <translation>Everything is read once more. Your files, their tags and ratings are not touched: the index only remembers what stands on them.</translation>
    </message>
    <message id="KPPrefRebuildTitle">
        <translation>Building it anew</translation>
    </message>
    <message id="KPPrefRecentLocations">
        <translation>Recent places</translation>
    </message>
    <message id="KPPrefRemembered">
        <translation>What Murn remembers</translation>
    </message>
    <message id="KPPrefRemove">
        <translation>Remove</translation>
    </message>
    <message id="KPPrefReports">
        <translation>Reports</translation>
    </message>
    <message id="KPPrefReset">
        <translation>Factory Setting</translation>
    </message>
    <message id="KPPrefResetNamed">
        <translation>Factory setting of: %1</translation>
    </message>
    <message id="KPPrefRestore">
        <translation>Restore…</translation>
    </message>
    <message id="KPPrefRoots">
        <translation>Indexed folders</translation>
    </message>
    <message id="KPPrefRootsHint">
        <translation>Murn keeps track of the names, tags and contents of what lies in these folders.</translation>
    </message>
    <message id="KPPrefRuleHint">
        <translation>Name of a folder, or a path that begins with / or ~/</translation>
    </message>
    <message id="KPPrefRuleWrong">
        <translation>A rule is the name of a folder, or a path that begins with / or ~/.</translation>
    </message>
    <message id="KPPrefRules">
        <translation>Rules</translation>
    </message>
    <message id="KPPrefRulesHint">
        <translation>Folders that are left out. A rule with “!” before it takes a folder back in; the last one that fits decides.</translation>
    </message>
    <message id="KPPrefScannedPages">
        <translation>Scanned pages</translation>
    </message>
    <message id="KPPrefSearch">
        <translation>Search preferences</translation>
    </message>
    <message id="KPPrefSearchContents">
        <translation>Words search the contents of documents too</translation>
    </message>
    <message id="KPPrefSearchFacts">
        <translation>Words search facts too</translation>
    </message>
    <message id="KPPrefSearchFactsHint">
        <translation>Titles, authors, keywords and whatever else documents state of themselves.</translation>
    </message>
    <message id="KPPrefSearchFolders">
        <translation>Search folders</translation>
    </message>
    <message id="KPPrefSearchFoldersHint">
        <translation>Documents in these folders are shown, wherever they lie there. Nothing is moved or copied.</translation>
    </message>
    <message id="KPPrefSearching">
        <translation>Searching</translation>
    </message>
    <message id="KPPrefShowHidden">
        <translation>Show hidden documents as a row</translation>
    </message>
    <message id="KPPrefShowRating">
        <translation>Show ratings</translation>
    </message>
    <message id="KPPrefShowTags">
        <translation>Show tags</translation>
    </message>
    <message id="KPPrefShowTitle">
        <translation>Show names</translation>
    </message>
    <message id="KPPrefSidebar">
        <translation>Sidebar</translation>
    </message>
    <message id="KPPrefSizeToFit">
        <translation>Make pictures fill each row</translation>
    </message>
    <message id="KPPrefStatusItem">
        <translation>Show an icon in the tray</translation>
    </message>
    <message id="KPPrefStatusItemHint">
        <translation>With it, closing the window only hides it.</translation>
    </message>
    <message id="KPPrefSuggest">
        <translation>Suggest tags in the tag editor</translation>
    </message>
    <message id="KPPrefSuggestCustom">
        <translation>Words of your own</translation>
    </message>
    <message id="KPPrefSuggestKeywords">
        <translation>Keywords that the document states</translation>
    </message>
    <message id="KPPrefSuggestNoBanned">
        <translation>Leave out words that say nothing</translation>
    </message>
    <message id="KPPrefSuggestNoBannedHint">
        <translation>Such as “untitled” or “author”.</translation>
    </message>
    <message id="KPPrefSuggestPapers">
        <translation>Words for academic papers</translation>
    </message>
    <message id="KPPrefSuggestPeople">
        <translation>People</translation>
    </message>
    <message id="KPPrefSuggestPopular">
        <translation>The tags used most</translation>
    </message>
    <message id="KPPrefSuggestTypical">
        <translation>Typical words</translation>
    </message>
    <message id="KPPrefSuggestions">
        <translation>Suggestions</translation>
    </message>
    <message id="KPPrefTagPanel">
        <translation>Tag panel</translation>
    </message>
    <message id="KPPrefTitle">
        <translation>Preferences</translation>
    </message>
    <message id="KPPrefUseCommas">
        <translation>Commas separate tags</translation>
    </message>
    <message id="KPPrefUseCommasHint">
        <translation>Off: only the return key ends a tag, so that it can hold commas.</translation>
    </message>
    <message id="KPPrefWeb">
        <translation>Web pages that are captured</translation>
    </message>
    <message id="KPPrefWebBackgrounds">
        <translation>With the colours and pictures behind the text</translation>
    </message>
    <message id="KPPrefWebPages">
        <translation>In pages of A4 instead of one long page</translation>
    </message>
    <message id="KPPrefWebWidth">
        <translation>Width that pages are laid out for</translation>
    </message>
    <message id="KPPrefYearMonth">
        <translation>Folders for months instead of days</translation>
    </message>
    <message id="KPPrefYearMonthHint">
        <translation>“2026/6” instead of “2026/6/14”. What is filed already is moved after asking.</translation>
    </message>
    <message id="KPPrefZoneLeft">
        <translation>At the left edge instead of the right</translation>
    </message>
    <message id="KPPrefZoneLeftHint">
        <translation>Of several screens, at the outermost one.</translation>
    </message>
    <message id="KPPrefZonePanel">
        <translation>Panel at the edge of the screen</translation>
    </message>
    <message id="KPPrefZoneShow">
        <translation>Show the drop zone while something is dragged</translation>
    </message>
    <message id="KPPrefZoneShowHint">
        <translation>It slides out at the edge of the screen, takes what is dropped, and asks for its tags.</translation>
    </message>
    <message id="KPPrefZoneStays">
        <translation>Keep it in sight between drags</translation>
    </message>
    <message id="KPPrefZoneStaysHint">
        <translation>As a narrow strip; where the desktop does not let programs place their windows, as a small window.</translation>
    </message>
    <message id="KPPreferences">
        <translation>Preferences…</translation>
    </message>
    <message id="KPPreviewDamaged">
        <translation>The document is damaged; this is what could be read of it.</translation>
    </message>
    <message id="KPPreviewSheet">
        <translation>All selected at a glance</translation>
    </message>
    <message id="KPPreviewTooLarge">
        <translation>The document is too large to be shown as a whole.</translation>
    </message>
    <message id="KPPreviewUnreadable">
        <translation>The file cannot be read.</translation>
    </message>
    <message id="KPPreviousDocument">
        <translation>Previous document</translation>
    </message>
    <message id="KPPreviousPage">
        <translation>Previous page</translation>
    </message>
    <message id="KPPrint">
        <translation>&amp;Print…</translation>
    </message>
    <message id="KPPrintManyButton">
        <translation>Show Them</translation>
    </message>
    <message id="KPPrintManyText">
        <translation>The documents have more pages. Print the others afterwards.</translation>
    </message>
    <message id="KPPrintManyTitle">
        <translation>Print the first %1 pages?</translation>
    </message>
    <message id="KPPrintNoSpace">
        <translation>there is no room for its pages</translation>
    </message>
    <message id="KPPrintPreparing" numerus="yes">
        <translation>
            <numerusform>Drawing the pages of %n document</numerusform>
            <numerusform>Drawing the pages of %n documents</numerusform>
        </translation>
    </message>
    <message id="KPPrintStopNote">
        <translation>When you stop, nothing more is printed.</translation>
    </message>
    <message id="KPPrintTitle">
        <translation>Print</translation>
    </message>
    <message id="KPPrinterFailed">
        <translation>The printer takes no more pages</translation>
    </message>
    <message id="KPPrinterFailedText">
        <translation>It may be switched off or have been removed, or there is no room for the file. Pages that it took before may have been printed.</translation>
    </message>
    <message id="KPPrintingPages">
        <translation>Printing</translation>
    </message>
    <message id="KPProblemCount" numerus="yes">
        <translation>
            <numerusform>%n problem</numerusform>
            <numerusform>%n problems</numerusform>
        </translation>
    </message>
    <message id="KPProblemsTitle">
        <translation>Not everything is found or up to date</translation>
    </message>
    <message id="KPProgramFilter">
        <translation>Find a program</translation>
    </message>
    <message id="KPProgramOpen">
        <translation>&amp;Open</translation>
    </message>
    <message id="KPProgramTitle">
        <translation>Open With</translation>
    </message>
    <message id="KPPutInFiledDocuments">
        <translation>&amp;Put in Filed Documents</translation>
    </message>
    <message id="KPQuickPreview">
        <translation>Quick Preview</translation>
    </message>
    <message id="KPQuickSearch">
        <translation>&amp;Quick Search</translation>
    </message>
    <message id="KPQuit">
        <translation>&amp;Quit</translation>
    </message>
    <message id="KPRate">
        <translation>&amp;Rate</translation>
    </message>
    <message id="KPRating">
        <translation>Rating</translation>
    </message>
    <message id="KPRatingAtLeast" numerus="yes">
        <translation>
            <numerusform>%1 star or more</numerusform>
            <numerusform>%1 stars or more</numerusform>
        </translation>
    </message>
    <message id="KPRatingAtMost" numerus="yes">
        <translation>
            <numerusform>Unrated to %1 star</numerusform>
            <numerusform>Unrated to %1 stars</numerusform>
        </translation>
    </message>
    <message id="KPRatingExactly">
        <translation>%1 stars</translation>
    </message>
    <message id="KPRatingHint">
        <translation>0 to 5 stars; the digits set them</translation>
    </message>
    <message id="KPRatingNotReadable">
        <translation>its rating cannot be read</translation>
    </message>
    <message id="KPRatingUnrated">
        <translation>Unrated</translation>
    </message>
    <message id="KPRatingsDiffer">
        <translation>The ratings differ.</translation>
    </message>
    <message id="KPReasonCancelled">
        <translation>you did not allow it</translation>
    </message>
    <message id="KPReasonGone">
        <translation>it is not there any more</translation>
    </message>
    <message id="KPReasonNoSpace">
        <translation>there is no room left for tags on this file or its disk</translation>
    </message>
    <message id="KPReasonNotPermitted">
        <translation>you may not change this file</translation>
    </message>
    <message id="KPReasonReadOnly">
        <translation>it lies on a disk that cannot be written to</translation>
    </message>
    <message id="KPReasonTooLarge">
        <translation>these are more tags than a file can hold</translation>
    </message>
    <message id="KPReasonUnreadable">
        <translation>its tags cannot be read, so they were left alone</translation>
    </message>
    <message id="KPReasonUnsupported">
        <translation>its disk cannot hold tags</translation>
    </message>
    <message id="KPRebuildAllThumbnails">
        <translation>Redraw All Pictures</translation>
    </message>
    <message id="KPRebuildLater">
        <translation>At the Next Start</translation>
    </message>
    <message id="KPRebuildNow">
        <translation>Restart Now</translation>
    </message>
    <message id="KPRebuildText">
        <translation>That happens when Murn starts. Until everything is read once more, searches find less.</translation>
    </message>
    <message id="KPRebuildThumbnails">
        <translation>Redraw Pictures</translation>
    </message>
    <message id="KPRebuildTitle">
        <translation>Build the index anew?</translation>
    </message>
    <message id="KPRecentSearches">
        <translation>Recent Searches</translation>
    </message>
    <message id="KPRecogniseNoPDF">
        <translation>None of the documents is a PDF.</translation>
    </message>
    <message id="KPRecogniseStopNote">
        <translation>You can go on working. When you stop, the document at work stays as it was.</translation>
    </message>
    <message id="KPRecogniseText">
        <translation>&amp;Recognise Text</translation>
    </message>
    <message id="KPRecognised" numerus="yes">
        <translation>
            <numerusform>Text was recognised on %n page</numerusform>
            <numerusform>Text was recognised on %n pages</numerusform>
        </translation>
    </message>
    <message id="KPRecognisedNothing">
        <translation>There was no page without text</translation>
    </message>
    <message id="KPRecognising" numerus="yes">
        <translation>
            <numerusform>Recognising text in %n document</numerusform>
            <numerusform>Recognising text in %n documents</numerusform>
        </translation>
    </message>
    <message id="KPRedo">
        <translation>&amp;Redo</translation>
    </message>
    <message id="KPRedoNamed">
        <translation>&amp;Redo: %1</translation>
    </message>
    <message id="KPRedoing">
        <translation>Redoing: %1</translation>
    </message>
    <message id="KPRefresh">
        <translation>&amp;Refresh Search</translation>
    </message>
    <message id="KPRemoveConfirmationCancel">
        <translation>Cancel</translation>
    </message>
    <message id="KPRemoveConfirmationComments">
        <translation>“%1” cannot be moved to the trash. It will be removed at once and cannot be put back.</translation>
    </message>
    <message id="KPRemoveConfirmationContinue">
        <translation>Remove</translation>
    </message>
    <message id="KPRemoveConfirmationTitle">
        <translation>Remove the item for good?</translation>
    </message>
    <message id="KPRemoveFromRecents">
        <translation>Remove from Recents</translation>
    </message>
    <message id="KPRemoveImmediateAuthComment">
        <translation>You need to authorize to remove a file for good.</translation>
    </message>
    <message id="KPRenameFile">
        <translation>Re&amp;name…</translation>
    </message>
    <message id="KPRenameLabel">
        <translation>New name:</translation>
    </message>
    <message id="KPRepairAttributes">
        <translation>Repair…</translation>
    </message>
    <message id="KPRepairButton">
        <translation>Take Off</translation>
    </message>
    <message id="KPRepairText">
        <translation>Tags, ratings or comments there are written in a way that nobody can read. They are taken off, so that new ones can be given. This can be undone.</translation>
    </message>
    <message id="KPRepairTitle" numerus="yes">
        <translation>
            <numerusform>Take off what cannot be understood from %n document?</numerusform>
            <numerusform>Take off what cannot be understood from %n documents?</numerusform>
        </translation>
    </message>
    <message id="KPReport">
        <translation>&amp;Feedback…</translation>
    </message>
    <message id="KPReportCopied">
        <translation>Copied.</translation>
    </message>
    <message id="KPReportCopy">
        <translation>Copy</translation>
    </message>
    <message id="KPReportFileName">
        <translation>Report on Murn.txt</translation>
    </message>
    <message id="KPReportHint">
        <translation>This is all that the report says. Change it as you like, then send it yourself: Murn sends nothing.</translation>
    </message>
    <message id="KPReportMail">
        <translation>Write an E-Mail</translation>
    </message>
    <message id="KPReportNoMail">
        <translation>There is no program for e-mail.</translation>
    </message>
    <message id="KPReportNoRatingsChanges">
        <translation>No ratings changed</translation>
    </message>
    <message id="KPReportNoTagsChanges">
        <translation>No tags changed</translation>
    </message>
    <message id="KPReportNoTagsOrRatingsChanges">
        <translation>No tags or ratings changed</translation>
    </message>
    <message id="KPReportQuestions">
        <translation>What did you do?

What happened, and what did you expect?
</translation>
    </message>
    <message id="KPReportRatingsChanges" numerus="yes">
        <translation>
            <numerusform>Rating of %1 document changed</numerusform>
            <numerusform>Ratings of %1 documents changed</numerusform>
        </translation>
    </message>
    <message id="KPReportSave">
        <translation>Save…</translation>
    </message>
    <message id="KPReportSaved">
        <translation>Saved.</translation>
    </message>
    <message id="KPReportTagsAndRatingsChanges" numerus="yes">
        <translation>
            <numerusform>Tags and rating of %1 document changed</numerusform>
            <numerusform>Tags and ratings of %1 documents changed</numerusform>
        </translation>
    </message>
    <message id="KPReportTagsChanges" numerus="yes">
        <translation>
            <numerusform>Tags of %1 document changed</numerusform>
            <numerusform>Tags of %1 documents changed</numerusform>
        </translation>
    </message>
    <message id="KPReportTitle">
        <translation>A report to those who make Murn</translation>
    </message>
    <message id="KPRestoreAfter">
        <translation>Restored</translation>
    </message>
    <message id="KPRestoreAll">
        <translation>All</translation>
    </message>
    <message id="KPRestoreBadBackup">
        <translation>This backup cannot be used: %1</translation>
    </message>
    <message id="KPRestoreBefore">
        <translation>Now</translation>
    </message>
    <message id="KPRestoreDone" numerus="yes">
        <translation>
            <numerusform>%n document got its tags and rating back.</numerusform>
            <numerusform>%n documents got their tags and ratings back.</numerusform>
        </translation>
    </message>
    <message id="KPRestoreDoneTitle">
        <translation>Tags were restored</translation>
    </message>
    <message id="KPRestoreFile">
        <translation>File</translation>
    </message>
    <message id="KPRestoreFiles" numerus="yes">
        <translation>
            <numerusform>Restore %n File</numerusform>
            <numerusform>Restore %n Files</numerusform>
        </translation>
    </message>
    <message id="KPRestoreFilter">
        <translation>Backups of tags and ratings</translation>
    </message>
    <message id="KPRestoreFolder">
        <translation>Folder</translation>
    </message>
    <message id="KPRestoreList">
        <translation>What would change</translation>
    </message>
    <message id="KPRestoreLooking">
        <translation>Comparing the files with the backup %1…</translation>
    </message>
    <message id="KPRestoreMissing" numerus="yes">
        <translation>
            <numerusform>%n file of the backup is nowhere to be found.</numerusform>
            <numerusform>%n files of the backup are nowhere to be found.</numerusform>
        </translation>
    </message>
    <message id="KPRestoreNoBackup">
        <translation>There is no backup yet.</translation>
    </message>
    <message id="KPRestoreNoDifference">
        <translation>All files have what the backup says, or something newer. There is nothing to restore.</translation>
    </message>
    <message id="KPRestoreNoRating">
        <translation>no rating</translation>
    </message>
    <message id="KPRestoreNoTags">
        <translation>no tags</translation>
    </message>
    <message id="KPRestoreNothing">
        <translation>Restore</translation>
    </message>
    <message id="KPRestoreOther">
        <translation>Another Backup…</translation>
    </message>
    <message id="KPRestorePreview" numerus="yes">
        <translation>
            <numerusform>%n file has other tags or another rating than the backup, set earlier. Nothing has been changed yet.</numerusform>
            <numerusform>%n files have other tags or ratings than the backup, set earlier. Nothing has been changed yet.</numerusform>
        </translation>
    </message>
    <message id="KPRestoreSame">
        <translation>the same, set at another time</translation>
    </message>
    <message id="KPRestoreSeveral">
        <translation>“%1” was moved, and several files have its name: left alone.</translation>
    </message>
    <message id="KPRestoreTitle">
        <translation>Restore Tags and Ratings</translation>
    </message>
    <message id="KPRestoreWorking">
        <translation>Restoring…</translation>
    </message>
    <message id="KPResultsSortOrderLabel">
        <translation>Sort</translation>
    </message>
    <message id="KPResultsViewModeLabel">
        <translation>View</translation>
    </message>
    <message id="KPReveal">
        <translation>Show in File &amp;Manager</translation>
    </message>
    <message id="KPSaveScanAlternate">
        <translation>Discard</translation>
    </message>
    <message id="KPSaveScanComments">
        <translation>Its pages are lost if it is not saved.</translation>
    </message>
    <message id="KPSaveScanOK">
        <translation>Save</translation>
    </message>
    <message id="KPSaveScanTitle">
        <translation>Save the scanned document?</translation>
    </message>
    <message id="KPScanAction">
        <translation>Scan…</translation>
    </message>
    <message id="KPScanAnyProportion">
        <translation>Any Shape</translation>
    </message>
    <message id="KPScanApply">
        <translation>Apply</translation>
    </message>
    <message id="KPScanBlackAndWhite">
        <translation>Black and White</translation>
    </message>
    <message id="KPScanBlankPage">
        <translation>%1 (empty)</translation>
    </message>
    <message id="KPScanChangePage">
        <translation>Changing a Page</translation>
    </message>
    <message id="KPScanCleanUp">
        <translation>Crop and straighten</translation>
    </message>
    <message id="KPScanColour">
        <translation>Colour</translation>
    </message>
    <message id="KPScanColours">
        <translation>Colours</translation>
    </message>
    <message id="KPScanDelete">
        <translation>Delete Page</translation>
    </message>
    <message id="KPScanDeletePage">
        <translation>Deleting a Page</translation>
    </message>
    <message id="KPScanDeleteProfile">
        <translation>Delete “%1”</translation>
    </message>
    <message id="KPScanDone">
        <translation>Done</translation>
    </message>
    <message id="KPScanDotsPerInch">
        <translation>%1 dpi</translation>
    </message>
    <message id="KPScanDrawLine">
        <translation>Draw a line along something that should be level.</translation>
    </message>
    <message id="KPScanDuplex">
        <translation>Both sides of the paper</translation>
    </message>
    <message id="KPScanFeederEmpty">
        <translation>The feeder is empty.</translation>
    </message>
    <message id="KPScanFiled">
        <translation>Filed as “%1”</translation>
    </message>
    <message id="KPScanGrey">
        <translation>Grey</translation>
    </message>
    <message id="KPScanInUse">
        <translation>Another window or program is scanning.</translation>
    </message>
    <message id="KPScanInstructions">
        <translation>Press the ‘Scan Page’ button to start a new document</translation>
    </message>
    <message id="KPScanInstructionsDropZone">
        <translation>Pictures and PDF files dropped here become pages, too</translation>
    </message>
    <message id="KPScanInterleave">
        <translation>Sorting Front and Back Sides</translation>
    </message>
    <message id="KPScanInterleaveAction">
        <translation>Fronts, Then Backs</translation>
    </message>
    <message id="KPScanLeaveOutBlank">
        <translation>Leave out empty pages</translation>
    </message>
    <message id="KPScanLeaveTool">
        <translation>Leave as It Was</translation>
    </message>
    <message id="KPScanLooking">
        <translation>Looking for scanners…</translation>
    </message>
    <message id="KPScanMovePage">
        <translation>Moving a Page</translation>
    </message>
    <message id="KPScanNextDocument">
        <translation>Next Document</translation>
    </message>
    <message id="KPScanNextDocumentTip">
        <translation>File these pages and begin the next document</translation>
    </message>
    <message id="KPScanNoPages">
        <translation>There are no pages.</translation>
    </message>
    <message id="KPScanNoProfile">
        <translation>None</translation>
    </message>
    <message id="KPScanNoSpace">
        <translation>no room for the pages</translation>
    </message>
    <message id="KPScanNotWritten">
        <translation>The document could not be written.</translation>
    </message>
    <message id="KPScanPage">
        <translation>Scan Page</translation>
    </message>
    <message id="KPScanPageName">
        <translation>Page %1</translation>
    </message>
    <message id="KPScanPageNotMade">
        <translation>A page could not be made.</translation>
    </message>
    <message id="KPScanPages">
        <translation>Pages</translation>
    </message>
    <message id="KPScanPaper">
        <translation>Paper</translation>
    </message>
    <message id="KPScanPdfFiles">
        <translation>PDF documents</translation>
    </message>
    <message id="KPScanPlaceholderName">
        <translation>Scan DATE_HERE</translation>
    </message>
    <message id="KPScanProfile">
        <translation>Profile</translation>
    </message>
    <message id="KPScanProfileMenu">
        <translation>Save or delete profiles</translation>
    </message>
    <message id="KPScanProfileName">
        <translation>Name of the profile:</translation>
    </message>
    <message id="KPScanProfileNotSaved">
        <translation>The profiles could not be saved</translation>
    </message>
    <message id="KPScanProgress">
        <translation>Progress</translation>
    </message>
    <message id="KPScanProportion">
        <translation>Shape of the crop</translation>
    </message>
    <message id="KPScanRating">
        <translation>Rating</translation>
    </message>
    <message id="KPScanReadingFiles">
        <translation>Reading files…</translation>
    </message>
    <message id="KPScanRecogniseText">
        <translation>Recognise text</translation>
    </message>
    <message id="KPScanRedo">
        <translation>Redo</translation>
    </message>
    <message id="KPScanResolution">
        <translation>Resolution</translation>
    </message>
    <message id="KPScanSaveProfile">
        <translation>Save Settings as Profile…</translation>
    </message>
    <message id="KPScanSaveProfileTitle">
        <translation>Save Profile</translation>
    </message>
    <message id="KPScanScanner">
        <translation>Scanner</translation>
    </message>
    <message id="KPScanSeparate">
        <translation>An empty page begins a document</translation>
    </message>
    <message id="KPScanSettings">
        <translation>Settings of the Scan</translation>
    </message>
    <message id="KPScanStop">
        <translation>Stop Scan</translation>
    </message>
    <message id="KPScanTags">
        <translation>Tags of the Document</translation>
    </message>
    <message id="KPScanTools">
        <translation>Tools</translation>
    </message>
    <message id="KPScanTurnUpright">
        <translation>Turn upright by the text</translation>
    </message>
    <message id="KPScanUndo">
        <translation>Undo</translation>
    </message>
    <message id="KPScanWindowTitle">
        <translation>Scan</translation>
    </message>
    <message id="KPScannerDied">
        <translation>The scanner’s driver ended unexpectedly.</translation>
    </message>
    <message id="KPScannerError">
        <translation>Scanner Error : %1</translation>
    </message>
    <message id="KPScannerFailedToOpen">
        <translation>The scanner failed to open</translation>
    </message>
    <message id="KPScannerPartMissing">
        <translation>The scanner does not offer this source any more.</translation>
    </message>
    <message id="KPScannerSilent">
        <translation>The scanner does not answer any more.</translation>
    </message>
    <message id="KPScannerTurnOffAndOn">
        <translation> You might try turning the scanner on and off again.</translation>
    </message>
    <message id="KPScannerUnitFeeder">
        <translation>document feeder</translation>
    </message>
    <message id="KPScannerUnitFlatbed">
        <translation>flatbed</translation>
    </message>
    <message id="KPScannerUnitNegative">
        <translation>negative</translation>
    </message>
    <message id="KPScannerUnitOther">
        <translation>unit - %1</translation>
    </message>
    <message id="KPScannerUnitTransparency">
        <translation>positive transparency</translation>
    </message>
    <message id="KPScreenshotFailed">
        <translation>cannot write the picture “%1”</translation>
    </message>
    <message id="KPScrollToSelection">
        <translation>Jump to Selection</translation>
    </message>
    <message id="KPSearch">
        <translation>Search</translation>
    </message>
    <message id="KPSearchFailed">
        <translation>The search could not be made</translation>
    </message>
    <message id="KPSearchFolderNetworkAdd">
        <translation>Search it</translation>
    </message>
    <message id="KPSearchFolderNetworkText">
        <translation>Every folder on it will be read once, which may take long and load the network.</translation>
    </message>
    <message id="KPSearchFolderNetworkTitle">
        <translation>Search the network volume “%1” too?</translation>
    </message>
    <message id="KPSearchFolderNotAdded">
        <translation>“%1” cannot be added to the search folders</translation>
    </message>
    <message id="KPSearchFolderTooLarge">
        <translation>The whole network is too large to be searched. Add a single volume or folder.</translation>
    </message>
    <message id="KPSearchModeFilenameFilter">
        <translation>Filter by File &amp;Name Only</translation>
    </message>
    <message id="KPSearchModeSpotlight">
        <translation>Search &amp;Contents and Details</translation>
    </message>
    <message id="KPSearchPlaceholderFilenameFilter">
        <translation>Filter by file name</translation>
    </message>
    <message id="KPSearchPlaceholderSearch">
        <translation>Search documents</translation>
    </message>
    <message id="KPSearchRefused">
        <translation>This search cannot be asked: %1</translation>
    </message>
    <message id="KPSearchStopped">
        <translation>Stopped. The documents found so far are shown.</translation>
    </message>
    <message id="KPSearchesContents">
        <translation>names, contents</translation>
    </message>
    <message id="KPSearchesMetaData">
        <translation>names, details</translation>
    </message>
    <message id="KPSearchesNames">
        <translation>names only</translation>
    </message>
    <message id="KPSearchingDocumentsHelpZel">
        <translation>Documents appear here as they are found.</translation>
    </message>
    <message id="KPSearchingForDocuments">
        <translation>Searching</translation>
    </message>
    <message id="KPSelectAll">
        <translation>Select &amp;All</translation>
    </message>
    <message id="KPShortcuts">
        <translation>&amp;Keyboard Shortcuts</translation>
    </message>
    <message id="KPShortcutsCommand">
        <translation>Command</translation>
    </message>
    <message id="KPShortcutsKey">
        <translation>Key</translation>
    </message>
    <message id="KPShortcutsSearch">
        <translation>Search commands and keys</translation>
    </message>
    <message id="KPShortcutsTitle">
        <translation>Keyboard Shortcuts</translation>
    </message>
    <message id="KPShowActionBar">
        <translation>Show Action Bar</translation>
    </message>
    <message id="KPShowAllInFolder">
        <translation>Show All Documents in Folder</translation>
    </message>
    <message id="KPShowBookmarkBar">
        <translation>Show Bookmark Bar</translation>
    </message>
    <message id="KPShowBookmarksPanel">
        <translation>Show &amp;Bookmarks</translation>
    </message>
    <message id="KPShowDropZone">
        <translation>Show drop zone while dragging</translation>
    </message>
    <message id="KPShowLoupeMenuItem">
        <translation>Show Loupe</translation>
    </message>
    <message id="KPShowPackageContents">
        <translation>Show Package Con&amp;tents</translation>
    </message>
    <message id="KPShowSimilar">
        <translation>Show Similar Documents</translation>
    </message>
    <message id="KPSlowVolumeStillRead">
        <translation>A volume that is slow to answer is still being read.</translation>
    </message>
    <message id="KPSomeTagsUnreadable" numerus="yes">
        <translation>
            <numerusform>The tags of %n document cannot be read. They will be left alone.</numerusform>
            <numerusform>The tags of %n documents cannot be read. They will be left alone.</numerusform>
        </translation>
    </message>
    <message id="KPSortAdded">
        <translation>Date Added</translation>
    </message>
    <message id="KPSortAscending">
        <translation>Ascending</translation>
    </message>
    <message id="KPSortBy">
        <translation>Sort By</translation>
    </message>
    <message id="KPSortCreated">
        <translation>Date Created</translation>
    </message>
    <message id="KPSortDescending">
        <translation>Descending</translation>
    </message>
    <message id="KPSortFolder">
        <translation>Folder</translation>
    </message>
    <message id="KPSortModified">
        <translation>Date Modified</translation>
    </message>
    <message id="KPSortName">
        <translation>Name</translation>
    </message>
    <message id="KPSortRating">
        <translation>Rating</translation>
    </message>
    <message id="KPSortSize">
        <translation>Size</translation>
    </message>
    <message id="KPSortTags">
        <translation>Tags</translation>
    </message>
    <message id="KPSortType">
        <translation>Kind</translation>
    </message>
    <message id="KPSourceList">
        <translation>Sources</translation>
    </message>
    <message id="KPSourceListDates">
        <translation>Dates</translation>
    </message>
    <message id="KPSourceListKinds">
        <translation>Kinds</translation>
    </message>
    <message id="KPSourceListLibrary">
        <translation>Library</translation>
    </message>
    <message id="KPSourceListPlaces">
        <translation>Places</translation>
    </message>
    <message id="KPSourceListSaved">
        <translation>Saved</translation>
    </message>
    <message id="KPSourceMenuAllFileTypesTitle">
        <translation>All Files</translation>
    </message>
    <message id="KPSourceMenuFilesAndFoldersDeepTitle">
        <translation>Files in Folder and Below</translation>
    </message>
    <message id="KPSourceMenuFilesAndFoldersTitle">
        <translation>Files in Folder</translation>
    </message>
    <message id="KPSourceMenuStandardFileTypesTitle">
        <translation>My Kinds of Files</translation>
    </message>
    <message id="KPSpotlightNoDocuments">
        <translation>Type what you are looking for</translation>
    </message>
    <message id="KPSpotlightNoDocumentsAfterSearch">
        <translation>Nothing was found</translation>
    </message>
    <message id="KPSpotlightNoDocumentsHelp">
        <translation>Names, contents and tags are searched everywhere.</translation>
    </message>
    <message id="KPSpotlightNoDocumentsHelpAfterSearch">
        <translation>Try other words, or fewer of them.</translation>
    </message>
    <message id="KPSpotlightSearch">
        <translation>Search</translation>
    </message>
    <message id="KPStandardColours">
        <translation>Standard Colours</translation>
    </message>
    <message id="KPStars" numerus="yes">
        <translation>
            <numerusform>%n star</numerusform>
            <numerusform>%n stars</numerusform>
        </translation>
    </message>
    <message id="KPStartupSearchingNoDocuments">
        <translation>Looking for your documents</translation>
    </message>
    <message id="KPStartupSearchingNoDocumentsHelp">
        <translation>The first look takes a moment. Documents appear as they are found.</translation>
    </message>
    <message id="KPStatusItem">
        <translation>Icon in the Tray</translation>
    </message>
    <message id="KPStatusPromptNoFileTypeSet">
        <translation>All kinds</translation>
    </message>
    <message id="KPStatusSearch">
        <translation>Search for Selected Text</translation>
    </message>
    <message id="KPStatusShow">
        <translation>Show Murn</translation>
    </message>
    <message id="KPStatusUntagged" numerus="yes">
        <translation>
            <numerusform>%n document without tags</numerusform>
            <numerusform>%n documents without tags</numerusform>
        </translation>
    </message>
    <message id="KPStop">
        <translation>Stop</translation>
    </message>
    <message id="KPTableMode">
        <translation>As List</translation>
    </message>
    <message id="KPTableOfDocument">
        <translation>Table of the document</translation>
    </message>
    <message id="KPTagBackupFailed">
        <translation>Tags and ratings could not be backed up: %1</translation>
    </message>
    <message id="KPTagBackupRunning">
        <translation>Backing up tags and ratings…</translation>
    </message>
    <message id="KPTagBelow">
        <translation>Below “%1”</translation>
    </message>
    <message id="KPTagCopy">
        <translation>Copy Tag</translation>
    </message>
    <message id="KPTagCopyUTI">
        <translation>Copy Type Identifier</translation>
    </message>
    <message id="KPTagDeleteButton">
        <translation>Delete Tag</translation>
    </message>
    <message id="KPTagDeleteMenu">
        <translation>Delete Tag…</translation>
    </message>
    <message id="KPTagDeleteTitle">
        <translation>Delete the tag “%1”?</translation>
    </message>
    <message id="KPTagEditorDone">
        <translation>Done</translation>
    </message>
    <message id="KPTagEditorNext">
        <translation>Next Document</translation>
    </message>
    <message id="KPTagGiveToAll">
        <translation>Give to All</translation>
    </message>
    <message id="KPTagGroupsRecent">
        <translation>Used together lately</translation>
    </message>
    <message id="KPTagMergeSpellings">
        <translation>Give these the new name too</translation>
    </message>
    <message id="KPTagOfSome">
        <translation>%1 (%2)</translation>
    </message>
    <message id="KPTagPanel">
        <translation>Show Tag Panel</translation>
    </message>
    <message id="KPTagPanelShown">
        <translation>&amp;Tag Panel</translation>
    </message>
    <message id="KPTagPlanAway" numerus="yes">
        <translation>
            <numerusform>%1 is on a volume that is away, and will be changed when that is back.</numerusform>
            <numerusform>%1 are on volumes that are away, and will be changed when these are back.</numerusform>
        </translation>
    </message>
    <message id="KPTagPlanCount" numerus="yes">
        <translation>
            <numerusform>%1 document will be changed:</numerusform>
            <numerusform>%1 documents will be changed:</numerusform>
        </translation>
    </message>
    <message id="KPTagPlanMerge">
        <translation>Some documents have “%1” already: the two become one.</translation>
    </message>
    <message id="KPTagPlanPlace">
        <translation>%1: %2</translation>
    </message>
    <message id="KPTagPlanSpellings">
        <translation>Other spellings: %1</translation>
    </message>
    <message id="KPTagRemoveFromSelected">
        <translation>Remove from Selected Documents</translation>
    </message>
    <message id="KPTagRenameButton">
        <translation>Rename</translation>
    </message>
    <message id="KPTagRenameLabel">
        <translation>New name of the tag “%1”:</translation>
    </message>
    <message id="KPTagRenameMenu">
        <translation>Rename Tag…</translation>
    </message>
    <message id="KPTagRenameOneTag">
        <translation>Type one tag, without commas.</translation>
    </message>
    <message id="KPTagRenameTitle">
        <translation>Rename Tag</translation>
    </message>
    <message id="KPTagSearch">
        <translation>Search for “%1”</translation>
    </message>
    <message id="KPTagSearchButton">
        <translation>Search</translation>
    </message>
    <message id="KPTagSearchCommand">
        <translation>Search for Tags…</translation>
    </message>
    <message id="KPTagSearchLabel">
        <translation>Documents with all of these tags</translation>
    </message>
    <message id="KPTagSearchTitle">
        <translation>Search for Tags</translation>
    </message>
    <message id="KPTagShowWith">
        <translation>Only with “%1”</translation>
    </message>
    <message id="KPTagShowWithout">
        <translation>Without “%1”</translation>
    </message>
    <message id="KPTagSuggestions">
        <translation>Suggested tags</translation>
    </message>
    <message id="KPTagTakeFromAll">
        <translation>Take from All</translation>
    </message>
    <message id="KPTags">
        <translation>Tags</translation>
    </message>
    <message id="KPTagsCannotWait">
        <translation>Changes of tags on volumes that are away cannot be remembered</translation>
    </message>
    <message id="KPTagsHint">
        <translation>Add a tag…</translation>
    </message>
    <message id="KPTagsHintCommas">
        <translation>Hint: Use commas to seperate tags. Keep tags short</translation>
    </message>
    <message id="KPTagsHintQuotes">
        <translation>Hint: Use quotes for two word tags</translation>
    </message>
    <message id="KPTagsLeftOut" numerus="yes">
        <translation>
            <numerusform>The tags of one document cannot be read, so it is left out: %1</numerusform>
            <numerusform>The tags of %n documents cannot be read, so they are left out: %1</numerusform>
        </translation>
    </message>
    <message id="KPTagsNotReadable">
        <translation>its tags cannot be read</translation>
    </message>
    <message id="KPTagsOfSome">
        <translation>On some of the documents</translation>
    </message>
    <message id="KPTagsReadOnly">
        <translation>Some tags are of a read only nature and cannot be deleted. Only tags entered by users can be deleted. You can turn off read only tags under the tags section.</translation>
    </message>
    <message id="KPTagsSuggested">
        <translation>Suggestions</translation>
    </message>
    <message id="KPTagsUnreadable">
        <translation>tags cannot be read</translation>
    </message>
    <message id="KPTagsUnreadableBecause">
        <translation>The tags cannot be read: %1. They are left alone.</translation>
    </message>
    <message id="KPTagsWindowAvailable">
        <translation>Only tags of the documents shown</translation>
    </message>
    <message id="KPTagsWindowCount" numerus="yes">
        <translation>
            <numerusform>%1 tag</numerusform>
            <numerusform>%1 tags</numerusform>
        </translation>
    </message>
    <message id="KPTagsWindowDocuments">
        <translation>Documents</translation>
    </message>
    <message id="KPTagsWindowTag">
        <translation>Tag</translation>
    </message>
    <message id="KPTagsWindowTitle">
        <translation>All Tags</translation>
    </message>
    <message id="KPTextOfDocument">
        <translation>Text of the document</translation>
    </message>
    <message id="KPThumbnailMode">
        <translation>As Pictures</translation>
    </message>
    <message id="KPTitleOfDocument">
        <translation>%1 – %2</translation>
    </message>
    <message id="KPTodaysFiledDocuments">
        <translation>&amp;Filed Today</translation>
    </message>
    <message id="KPTooManyDocs">
        <translation>Too many documents at once</translation>
    </message>
    <message id="KPTooManyDocsComments">
        <translation>%3 documents were chosen; at most %4 can be moved or copied at a time. Nothing was changed.</translation>
    </message>
    <message id="KPToolBar">
        <translation>Toolbar</translation>
    </message>
    <message id="KPToolTipWithKey">
        <translation>%1 (%2)</translation>
    </message>
    <message id="KPToolbarAvailable">
        <translation>Available Items</translation>
    </message>
    <message id="KPToolbarBackForwardTooltip">
        <translation>Go back or forward in the searches</translation>
    </message>
    <message id="KPToolbarContrastLabel">
        <translation>Contrast</translation>
    </message>
    <message id="KPToolbarContrastTooltip">
        <translation>Makes ink darker and paper lighter</translation>
    </message>
    <message id="KPToolbarCropLabel">
        <translation>Crop</translation>
    </message>
    <message id="KPToolbarCropTooltip">
        <translation>Keeps a part of the page</translation>
    </message>
    <message id="KPToolbarFlexibleSpaceLabel">
        <translation>Flexible Space</translation>
    </message>
    <message id="KPToolbarHomeLabel">
        <translation>Home</translation>
    </message>
    <message id="KPToolbarInfoTooltip">
        <translation>Information about what is shown</translation>
    </message>
    <message id="KPToolbarInspectorLabel">
        <translation>Inspector</translation>
    </message>
    <message id="KPToolbarLocationPanelLabel">
        <translation>Locations</translation>
    </message>
    <message id="KPToolbarLocationPanelTooltip">
        <translation>Show or hide the locations panel</translation>
    </message>
    <message id="KPToolbarLoupeLabel">
        <translation>Loupe</translation>
    </message>
    <message id="KPToolbarNavigationLabel">
        <translation>Back/Forward</translation>
    </message>
    <message id="KPToolbarNewScanLabel">
        <translation>New Scan</translation>
    </message>
    <message id="KPToolbarNewScanTooltip">
        <translation>Scan paper into a new document</translation>
    </message>
    <message id="KPToolbarRestartSearchLabel">
        <translation>Refresh</translation>
    </message>
    <message id="KPToolbarRotateLabel">
        <translation>Rotate</translation>
    </message>
    <message id="KPToolbarRotateTooltip">
        <translation>Turns the page clockwise; with Alt the other way</translation>
    </message>
    <message id="KPToolbarSeparatorLabel">
        <translation>Separator</translation>
    </message>
    <message id="KPToolbarSpaceLabel">
        <translation>Space</translation>
    </message>
    <message id="KPToolbarStraightenLabel">
        <translation>Straighten</translation>
    </message>
    <message id="KPToolbarStraightenTooltip">
        <translation>Turns the page until a line is level</translation>
    </message>
    <message id="KPToolbarTagPanelLabel">
        <translation>Tags</translation>
    </message>
    <message id="KPToolbarTagPanelTooltip">
        <translation>Show or hide the tag panel</translation>
    </message>
    <message id="KPToolbarUpLabel">
        <translation>Up</translation>
    </message>
    <message id="KPToolbarUpTooltip">
        <translation>Go to the enclosing folder</translation>
    </message>
    <message id="KPToolbarUseDefault">
        <translation>Use Default Set</translation>
    </message>
    <message id="KPTrashingItems">
        <translation>Moving %1 items to the trash</translation>
    </message>
    <message id="KPTypeWithItsKinds">
        <translation>%1 (all kinds)</translation>
    </message>
    <message id="KPTypicalTags">
        <translation>invoice,receipt,contract,letter,tax,insurance,bank,statement,salary,payslip,rent,health,car,travel,ticket,booking,school,certificate,manual,warranty,report,minutes,budget,quote,order,delivery,photo,recipe,application,legal,pension</translation>
    </message>
    <message id="KPUndo">
        <translation>&amp;Undo</translation>
    </message>
    <message id="KPUndoCombine" numerus="yes">
        <translation>
            <numerusform>Combining of %n document</numerusform>
            <numerusform>Combining of %n documents</numerusform>
        </translation>
    </message>
    <message id="KPUndoComment" numerus="yes">
        <translation>
            <numerusform>Comment of %n document</numerusform>
            <numerusform>Comments of %n documents</numerusform>
        </translation>
    </message>
    <message id="KPUndoCopy" numerus="yes">
        <translation>
            <numerusform>Copy of %n document</numerusform>
            <numerusform>Copy of %n documents</numerusform>
        </translation>
    </message>
    <message id="KPUndoDeleteTag">
        <translation>Delete Tag “%1”</translation>
    </message>
    <message id="KPUndoDuplicate" numerus="yes">
        <translation>
            <numerusform>Duplication of %n document</numerusform>
            <numerusform>Duplication of %n documents</numerusform>
        </translation>
    </message>
    <message id="KPUndoFiling" numerus="yes">
        <translation>
            <numerusform>Filing of %n document</numerusform>
            <numerusform>Filing of %n documents</numerusform>
        </translation>
    </message>
    <message id="KPUndoFlag" numerus="yes">
        <translation>
            <numerusform>Flagging of %n document</numerusform>
            <numerusform>Flagging of %n documents</numerusform>
        </translation>
    </message>
    <message id="KPUndoHide" numerus="yes">
        <translation>
            <numerusform>Hiding of %n document</numerusform>
            <numerusform>Hiding of %n documents</numerusform>
        </translation>
    </message>
    <message id="KPUndoManage" numerus="yes">
        <translation>
            <numerusform>Addition of %n document to the library</numerusform>
            <numerusform>Addition of %n documents to the library</numerusform>
        </translation>
    </message>
    <message id="KPUndoMove" numerus="yes">
        <translation>
            <numerusform>Move of %n document</numerusform>
            <numerusform>Move of %n documents</numerusform>
        </translation>
    </message>
    <message id="KPUndoNamed">
        <translation>&amp;Undo: %1</translation>
    </message>
    <message id="KPUndoPaste" numerus="yes">
        <translation>
            <numerusform>Paste of %n document</numerusform>
            <numerusform>Paste of %n documents</numerusform>
        </translation>
    </message>
    <message id="KPUndoRating" numerus="yes">
        <translation>
            <numerusform>Rating of %n document</numerusform>
            <numerusform>Rating of %n documents</numerusform>
        </translation>
    </message>
    <message id="KPUndoRecognise" numerus="yes">
        <translation>
            <numerusform>Text Recognition in %n document</numerusform>
            <numerusform>Text Recognition in %n documents</numerusform>
        </translation>
    </message>
    <message id="KPUndoRename">
        <translation>Rename</translation>
    </message>
    <message id="KPUndoRenameTag">
        <translation>Rename Tag “%1” to “%2”</translation>
    </message>
    <message id="KPUndoRepair" numerus="yes">
        <translation>
            <numerusform>Repairing of %n document</numerusform>
            <numerusform>Repairing of %n documents</numerusform>
        </translation>
    </message>
    <message id="KPUndoTags" numerus="yes">
        <translation>
            <numerusform>Tags of %n document</numerusform>
            <numerusform>Tags of %n documents</numerusform>
        </translation>
    </message>
    <message id="KPUndoTrash" numerus="yes">
        <translation>
            <numerusform>Move of %n document to the trash</numerusform>
            <numerusform>Move of %n documents to the trash</numerusform>
        </translation>
    </message>
    <message id="KPUndoUnflag" numerus="yes">
        <translation>
            <numerusform>Removal of the flag from %n document</numerusform>
            <numerusform>Removal of the flag from %n documents</numerusform>
        </translation>
    </message>
    <message id="KPUndoUnhide" numerus="yes">
        <translation>
            <numerusform>Showing of %n hidden document</numerusform>
            <numerusform>Showing of %n hidden documents</numerusform>
        </translation>
    </message>
    <message id="KPUndoUnmanage" numerus="yes">
        <translation>
            <numerusform>Removal of %n document from the library</numerusform>
            <numerusform>Removal of %n documents from the library</numerusform>
        </translation>
    </message>
    <message id="KPUndoing">
        <translation>Undoing: %1</translation>
    </message>
    <message id="KPUnflag">
        <translation>Remove Flag</translation>
    </message>
    <message id="KPUnhide">
        <translation>&amp;Show Again</translation>
    </message>
    <message id="KPUnknownUTITagTemplate">
        <translation>Unknown type %1</translation>
    </message>
    <message id="KPUnmanage">
        <translation>Remove from &amp;Library</translation>
    </message>
    <message id="KPUnrecognising" numerus="yes">
        <translation>
            <numerusform>Taking recognised text off %n document</numerusform>
            <numerusform>Taking recognised text off %n documents</numerusform>
        </translation>
    </message>
    <message id="KPUntaggedDocuments">
        <translation>&amp;Untagged Documents</translation>
    </message>
    <message id="KPUpdatesFound">
        <translation>Version %1 of Murn can be installed</translation>
    </message>
    <message id="KPUpdatesFoundShell">
        <translation>Version %1 is installed. An administrator installs updates with: apt upgrade</translation>
    </message>
    <message id="KPUpdatesFoundText">
        <translation>Version %1 is installed. Updates come with those of the system.</translation>
    </message>
    <message id="KPUpdatesNoPackage">
        <translation>Murn was not installed from a package</translation>
    </message>
    <message id="KPUpdatesNoPackageText">
        <translation>This is version %1. Whoever installed it can install a newer one the same way.</translation>
    </message>
    <message id="KPUpdatesNone">
        <translation>Murn is up to date</translation>
    </message>
    <message id="KPUpdatesNoneText">
        <translation>Version %1 is the newest that your package manager knows of.</translation>
    </message>
    <message id="KPUpdatesOpen">
        <translation>Open Updates</translation>
    </message>
    <message id="KPUseExtension">
        <translation>Use .%2</translation>
    </message>
    <message id="KPUserGuide">
        <translation>&amp;User Guide</translation>
    </message>
    <message id="KPWaitingTags">
        <translation>Waiting Changes…</translation>
    </message>
    <message id="KPWaitingTagsForget">
        <translation>Forget This Change</translation>
    </message>
    <message id="KPWaitingTagsHint">
        <translation>These documents are on volumes that are not there. They are changed when the volumes are back.</translation>
    </message>
    <message id="KPWaitingTagsNoList">
        <translation>not a list of waiting changes of tags</translation>
    </message>
    <message id="KPWaitingTagsNone">
        <translation>No change of tags waits for a volume.</translation>
    </message>
    <message id="KPWaitingTagsTitle">
        <translation>Waiting Changes of Tags</translation>
    </message>
    <message id="KPWeakCage">
        <translation>Documents are read with less protection than there should be: this system has no %1.</translation>
    </message>
    <message id="KPWelcomeAdd">
        <translation>Add Folder…</translation>
    </message>
    <message id="KPWelcomeAddTitle">
        <translation>Choose a Folder to Look In</translation>
    </message>
    <message id="KPWelcomeAgain">
        <translation>Welcome to Murn</translation>
    </message>
    <message id="KPWelcomeFolders">
        <translation>Murn looks in these folders</translation>
    </message>
    <message id="KPWelcomeFoldersText">
        <translation>And in all folders inside them. You can change this at any time.</translation>
    </message>
    <message id="KPWelcomeNothingMoved">
        <translation>Nothing is moved</translation>
    </message>
    <message id="KPWelcomeNothingMovedText">
        <translation>Your documents stay in their folders. Murn moves or copies one only when you ask for it.</translation>
    </message>
    <message id="KPWelcomePrivate">
        <translation>It stays on this computer</translation>
    </message>
    <message id="KPWelcomePrivateText">
        <translation>Nothing about your documents is sent anywhere.</translation>
    </message>
    <message id="KPWelcomeRemove">
        <translation>Remove</translation>
    </message>
    <message id="KPWelcomeStart">
        <translation>Start</translation>
    </message>
    <message id="KPWelcomeTags">
        <translation>Tags belong to the file</translation>
    </message>
    <message id="KPWelcomeTagsText">
        <translation>They are kept on the file itself and go where it goes.</translation>
    </message>
    <message id="KPWelcomeText">
        <translation>Murn finds your documents where they lie, and lets you tag, rate and file them.</translation>
    </message>
    <message id="KPWelcomeTitle">
        <translation>Welcome to Murn</translation>
    </message>
    <message id="KPWorkflowFile">
        <translation>File into Murn</translation>
    </message>
    <message id="KPWorkflowShow">
        <translation>Show in Murn</translation>
    </message>
    <message id="KPWorkflowTag">
        <translation>Tag with Murn</translation>
    </message>
    <message id="KPWorkflowsDone">
        <translation>The file manager has new actions.</translation>
    </message>
    <message id="KPWorkflowsDoneText">
        <translation>%1: in the menu of selected files, under Scripts.</translation>
    </message>
    <message id="KPWorkflowsFailed">
        <translation>The actions could not be installed.</translation>
    </message>
    <message id="KPYes">
        <translation>Yes</translation>
    </message>
    <message id="KPZoom">
        <translation>Size of the pictures</translation>
    </message>
    <message id="KPZoomIn">
        <translation>&amp;Larger Pictures</translation>
    </message>
    <message id="KPZoomLargest">
        <translation>Largest Pictures</translation>
    </message>
    <message id="KPZoomOut">
        <translation>&amp;Smaller Pictures</translation>
    </message>
    <message id="KPZoomSmallest">
        <translation>Smallest Pictures</translation>
    </message>
    <message id="KarvexAuthenticationPrompt">
        <translation>You need to authorize to set metadata like tags on some files.</translation>
    </message>
    <message id="KarvexBackupBusy">
        <translation>the backup is being changed by another program</translation>
    </message>
    <message id="KarvexBackupFailed">
        <translation>the backup failed: %1</translation>
    </message>
    <message id="KarvexBackupPartial">
        <translation>only %1 files with tags were backed up</translation>
    </message>
    <message id="KarvexNotABackup">
        <translation>not a backup of tags and ratings</translation>
    </message>
    <message id="KarvexTagsNotBackedUp">
        <translation>the tags could not be backed up: %1</translation>
    </message>
    <message id="Recent Files">
        <translation>Recent Files</translation>
    </message>
    <message id="XPAmongForeignFiles">
        <translation>lies among files of other programs</translation>
    </message>
    <message id="XPArchiveBadContents">
        <translation>the archive is damaged: a file of it has other contents than it says</translation>
    </message>
    <message id="XPArchiveBadFile">
        <translation>the archive is damaged: a file of it has no usable path or facts</translation>
    </message>
    <message id="XPArchiveBadRecord">
        <translation>the archive is damaged: a record of it is out of place</translation>
    </message>
    <message id="XPArchiveCutShort">
        <translation>the archive is cut short</translation>
    </message>
    <message id="XPArchiveDamaged">
        <translation>the archive is damaged</translation>
    </message>
    <message id="XPArchiveGoesOn">
        <translation>the archive is damaged: something follows its end</translation>
    </message>
    <message id="XPArchiveMiscounts">
        <translation>the archive is damaged: it does not hold as many documents as it says</translation>
    </message>
    <message id="XPArchiveNewer">
        <translation>the archive was written by a newer version (%1)</translation>
    </message>
    <message id="XPArchiveTooLarge">
        <translation>the archive holds more at one place than it may</translation>
    </message>
    <message id="XPAuthorizeMoveComment">
        <translation>We require authorization to move some files</translation>
    </message>
    <message id="XPBrowserEnded">
        <translation>the browser ended: %1</translation>
    </message>
    <message id="XPBrowserSays">
        <translation>the browser says: %1</translation>
    </message>
    <message id="XPBrowserTooMuch">
        <translation>the browser says more than anybody asked for</translation>
    </message>
    <message id="XPBytes" numerus="yes">
        <translation>
            <numerusform>%n byte</numerusform>
            <numerusform>%n bytes</numerusform>
        </translation>
    </message>
    <message id="XPCancel">
        <translation>Cancel</translation>
    </message>
    <message id="XPChangedWhileCopied">
        <translation>the file changed while it was copied</translation>
    </message>
    <message id="XPChangedWhileRead">
        <translation>changed while it was read</translation>
    </message>
    <message id="XPChooseDirectoryButton">
        <translation>Choose</translation>
    </message>
    <message id="XPConvertButton">
        <translation>Move Documents</translation>
    </message>
    <message id="XPConvertLeaveButton">
        <translation>Leave Them</translation>
    </message>
    <message id="XPConvertProgress">
        <translation>Moving documents to folders of months</translation>
    </message>
    <message id="XPConvertText">
        <translation>New documents go to folders of months from now on. Those filed before are in folders of days, and can follow. No document is lost or replaced.</translation>
    </message>
    <message id="XPConvertTitle">
        <translation>Move the documents filed so far to folders of months?</translation>
    </message>
    <message id="XPCopyDiffers">
        <translation>the copy is not like the file</translation>
    </message>
    <message id="XPCopyingItems">
        <translation>Copying %1 items</translation>
    </message>
    <message id="XPDontReplace">
        <translation>Don't Replace</translation>
    </message>
    <message id="XPDuplicatesContinue">
        <translation>Continue</translation>
    </message>
    <message id="XPDuplicatesMultiple">
        <translation>%3 items with file names including %1 will not be moved or copied, as they share common file names. If you continue, a list of skipped files will be written to the console log, for reference</translation>
    </message>
    <message id="XPDuplicatesSingle">
        <translation>%2 will not be moved or copied, as it shares a file name with another file. If you continue, this file will be listed on the console log, for reference</translation>
    </message>
    <message id="XPDuplicatesTitle">
        <translation>Some items will not be copied or moved</translation>
    </message>
    <message id="XPEditTagsManyDocumentsComments">
        <translation>The tags or ratings of %1 documents will be changed. You can undo this.</translation>
    </message>
    <message id="XPEditTagsManyDocumentsOKButton">
        <translation>Change</translation>
    </message>
    <message id="XPEditTagsManyDocumentsTitle">
        <translation>Change %1 documents?</translation>
    </message>
    <message id="XPFileButton">
        <translation>File</translation>
    </message>
    <message id="XPFileComment">
        <translation>Today’s folder: %1</translation>
    </message>
    <message id="XPFileTitleMultiple">
        <translation>File %1 documents?</translation>
    </message>
    <message id="XPFileTitleSingle">
        <translation>File “%1”?</translation>
    </message>
    <message id="XPFileTooManyComment">
        <translation>Fewer than %1 can be added at a time; there are at least %2. Nothing was changed.</translation>
    </message>
    <message id="XPFileTooManyTitle">
        <translation>Too many documents at once</translation>
    </message>
    <message id="XPFilingItems">
        <translation>Filing %1 items</translation>
    </message>
    <message id="XPHiddenOrTooLong">
        <translation>is hidden, or its path is too long</translation>
    </message>
    <message id="XPImportCommentCopy">
        <translation>Marking leaves everything where it is. Filing also puts a copy into today’s folder of Filed Documents, as that is on another volume.</translation>
    </message>
    <message id="XPImportCommentManyFileWarningAddendum">
        <translation> With %1 documents this may take a while.</translation>
    </message>
    <message id="XPImportCommentMove">
        <translation>Marking leaves everything where it is. Filing also moves it into today’s folder of Filed Documents.</translation>
    </message>
    <message id="XPImportManageAndFileButton">
        <translation>Add and File</translation>
    </message>
    <message id="XPImportManageOnlyButton">
        <translation>Only Add</translation>
    </message>
    <message id="XPImportTitleMultiple">
        <translation>Add %1 documents to the library?</translation>
    </message>
    <message id="XPImportTitleSingle">
        <translation>Add “%1” to the library?</translation>
    </message>
    <message id="XPKeptAsideTitle">
        <translation>What was replaced could not be moved to the trash and is kept here</translation>
    </message>
    <message id="XPListTagsBeside">
        <translation>Write Them to a List Beside</translation>
    </message>
    <message id="XPLoseTags">
        <translation>Go On Without Them</translation>
    </message>
    <message id="XPLosesTagsText">
        <translation>Its file system has no room for them. They stay in the backup of tags; a list beside the documents brings them back with “Import Documents…” too.</translation>
    </message>
    <message id="XPLosesTagsTitle">
        <translation>Tags and ratings cannot be kept in “%1”</translation>
    </message>
    <message id="XPMarkNotKept">
        <translation>the mark was not kept</translation>
    </message>
    <message id="XPMarkingItems">
        <translation>Adding %1 items</translation>
    </message>
    <message id="XPMovingItems">
        <translation>Moving %1 items</translation>
    </message>
    <message id="XPNestedTooDeeply">
        <translation>is nested too deeply</translation>
    </message>
    <message id="XPNewerIsThere">
        <translation> A NEWER file of the same name is already at the destination folder.</translation>
    </message>
    <message id="XPNoTrashComment">
        <translation>A suitable trash for the file or folder could not be found.</translation>
    </message>
    <message id="XPNoTrashOnVolume">
        <translation>no trash on this volume</translation>
    </message>
    <message id="XPNoTrashTitle">
        <translation>No action taken</translation>
    </message>
    <message id="XPNoWayToAuthorise">
        <translation>no way to ask for administrator's rights</translation>
    </message>
    <message id="XPNotADocument">
        <translation>is no document</translation>
    </message>
    <message id="XPNotAFile">
        <translation>is no file</translation>
    </message>
    <message id="XPNotARegularFile">
        <translation>not a regular file</translation>
    </message>
    <message id="XPNotAllImportedComment">
        <translation>%1 of %2 documents were imported. This is often due to permission or read only file problems</translation>
    </message>
    <message id="XPNotAllImportedTitle">
        <translation>Not all documents imported</translation>
    </message>
    <message id="XPNotAnArchive">
        <translation>no archive of documents</translation>
    </message>
    <message id="XPNotAuthorised">
        <translation>no administrator's rights</translation>
    </message>
    <message id="XPNotBesideArchive">
        <translation>is not beside the archive any more</translation>
    </message>
    <message id="XPNotCopiedTitle">
        <translation>Not copied: %1</translation>
    </message>
    <message id="XPNotMarkedMultiple">
        <translation>%1 documents could not be marked as part of the library</translation>
    </message>
    <message id="XPNotMarkedSingle">
        <translation>“%1” could not be marked as part of the library</translation>
    </message>
    <message id="XPNotMovedTitle">
        <translation>Not moved: %1</translation>
    </message>
    <message id="XPNotRated">
        <translation>not rated</translation>
    </message>
    <message id="XPNotReadForArchive">
        <translation>could not be read when the archive was made</translation>
    </message>
    <message id="XPOfferGone">
        <translation>the other program does not offer it any more</translation>
    </message>
    <message id="XPOfferNoConnection">
        <translation>no second connection to X</translation>
    </message>
    <message id="XPOfferSilent">
        <translation>the other program does not answer</translation>
    </message>
    <message id="XPOfferTooLarge">
        <translation>more than 512 MiB is no document</translation>
    </message>
    <message id="XPOlderIsThere">
        <translation> An older file of the same name is already at the destination folder.</translation>
    </message>
    <message id="XPOwnFilesStay">
        <translation>files of this program are not moved</translation>
    </message>
    <message id="XPPDFNotReadable">
        <translation>the PDF cannot be read</translation>
    </message>
    <message id="XPPageNoDocument">
        <translation>the page became no document</translation>
    </message>
    <message id="XPPageNotReached">
        <translation>the page cannot be reached, or is none (%1)</translation>
    </message>
    <message id="XPPageRefused">
        <translation>the server answers %1</translation>
    </message>
    <message id="XPPageTooLarge">
        <translation>the page is too large</translation>
    </message>
    <message id="XPPageTooSlow">
        <translation>the page did not come in time</translation>
    </message>
    <message id="XPPictureNotReadable">
        <translation>the picture cannot be read</translation>
    </message>
    <message id="XPProgressSettingTags">
        <translation>Changing tags and ratings…</translation>
    </message>
    <message id="XPProgressSettingTagsStop">
        <translation>Stop</translation>
    </message>
    <message id="XPPromiseNoFile">
        <translation>what the other program made is no file</translation>
    </message>
    <message id="XPPromiseNotWritten">
        <translation>the other program has not written the file</translation>
    </message>
    <message id="XPPromiseRefused">
        <translation>the other program does not hand the file over</translation>
    </message>
    <message id="XPRated">
        <translation>rated %1/5</translation>
    </message>
    <message id="XPRatingVarious">
        <translation>various ratings</translation>
    </message>
    <message id="XPRefuseToEditTagsManyDocumentsComments">
        <translation>%1 documents are selected. Tags and ratings of at most %2 can be changed at once. Nothing was changed.</translation>
    </message>
    <message id="XPRefuseToEditTagsManyDocumentsTitle">
        <translation>Too many documents</translation>
    </message>
    <message id="XPReplace">
        <translation>Replace</translation>
    </message>
    <message id="XPReplacesItself">
        <translation>a file cannot replace itself</translation>
    </message>
    <message id="XPSameIsThere">
        <translation> A file of the same name and date is already at the destination folder.</translation>
    </message>
    <message id="XPSomeAreThere">
        <translation> Some files with the same names already exist at the destination folder.</translation>
    </message>
    <message id="XPStillMarkedMultiple">
        <translation>%1 documents are still in the library</translation>
    </message>
    <message id="XPStillMarkedSingle">
        <translation>“%1” is still a document of the library</translation>
    </message>
    <message id="XPStop">
        <translation>Stop</translation>
    </message>
    <message id="XPStopIsSafe">
        <translation>Pressing stop will stop the operation at a safe point.</translation>
    </message>
    <message id="XPStyledTextNeedsFonts">
        <translation>styled text needs fonts</translation>
    </message>
    <message id="XPStyledTextNotWritten">
        <translation>the styled text cannot be written</translation>
    </message>
    <message id="XPStyledTextTooDeep">
        <translation>the styled text is nested too deep</translation>
    </message>
    <message id="XPStyledTextTooLong">
        <translation>the styled text is too long</translation>
    </message>
    <message id="XPTagHUDMultipleDocsWindowTemplate">
        <translation>Tags of %1 documents</translation>
    </message>
    <message id="XPTagHUDWindowTemplate">
        <translation>Tags of “%1”</translation>
    </message>
    <message id="XPTooManyAttributes">
        <translation>has too many attributes</translation>
    </message>
    <message id="XPWriterRefuses">
        <translation>the attribute writer refuses this</translation>
    </message>
    <message id="XPWriterSilent">
        <translation>the attribute writer gave no answer</translation>
    </message>
    <message id="not ">
        <translation>not </translation>
    </message>
    <message id="or %d other kinds" numerus="yes">
        <translation>
            <numerusform>or %n other kind</numerusform>
            <numerusform>or %n other kinds</numerusform>
        </translation>
    </message>
</context>
</TS>
