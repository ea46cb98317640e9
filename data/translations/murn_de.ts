<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name></name>
    <message id=" but not ">
        <translation>, aber nicht </translation>
    </message>
    <message id=" or ">
        <translation> oder </translation>
    </message>
    <message id="KPAbout">
        <translation>Ü&amp;ber Murn</translation>
    </message>
    <message id="KPAboutLicence">
        <translation>Lizenz</translation>
    </message>
    <message id="KPAboutPart">
        <translation>Bestandteil</translation>
    </message>
    <message id="KPAboutParts">
        <translation>Hergestellt mit</translation>
    </message>
    <message id="KPAboutText">
        <translation>Versieht Dokumente mit Schlagwörtern und Bewertungen und findet sie wieder, wo sie liegen. Nichts wird kopiert oder verschoben: Schlagwörter und Bewertungen stehen an den Dateien selbst.

Freie Software unter der GNU General Public License, Version 3 oder neuer.</translation>
    </message>
    <message id="KPAboutTitle">
        <translation>Murn %1</translation>
    </message>
    <message id="KPAboutVersion">
        <translation>Version</translation>
    </message>
    <message id="KPAboutWindowTitle">
        <translation>Über Murn</translation>
    </message>
    <message id="KPAcademicPaperTag">
        <translation>Fachartikel</translation>
    </message>
    <message id="KPAccessiblePosition">
        <translation>%1 von %2</translation>
    </message>
    <message id="KPAccessibleTags">
        <translation>Schlagwörter %1</translation>
    </message>
    <message id="KPActionBar">
        <translation>Aktionsleiste</translation>
    </message>
    <message id="KPAddTag">
        <translation>Schlagwort hinzufügen</translation>
    </message>
    <message id="KPAllDocuments">
        <translation>&amp;Alle Dokumente</translation>
    </message>
    <message id="KPAllDocumentsItemsSourceListItem">
        <translation>Alle Dokumente</translation>
    </message>
    <message id="KPAllTags">
        <translation>Alle Schlagwörter</translation>
    </message>
    <message id="KPAllTagsReplaced">
        <translation>Diese Schlagwörter ersetzen alle Schlagwörter der Dokumente.</translation>
    </message>
    <message id="KPAndMore" numerus="yes">
        <translation>
            <numerusform>und %n weiteres</numerusform>
            <numerusform>und %n weitere</numerusform>
        </translation>
    </message>
    <message id="KPAndOthers" numerus="yes">
        <translation>
            <numerusform>und %n weiteres</numerusform>
            <numerusform>und %n weitere</numerusform>
        </translation>
    </message>
    <message id="KPAnyRating">
        <translation>Jede Bewertung</translation>
    </message>
    <message id="KPApplicationName">
        <translation>Murn</translation>
    </message>
    <message id="KPApplicationSummary">
        <translation>Verschlagwortet, bewertet und findet Dokumente, wo sie liegen.</translation>
    </message>
    <message id="KPArchiveFilter">
        <translation>Archive von Dokumenten</translation>
    </message>
    <message id="KPArchiveName">
        <translation>Dokumente %1</translation>
    </message>
    <message id="KPAttributeUnreadable" numerus="yes">
        <translation>
            <numerusform>nicht lesbar (%n Byte)</numerusform>
            <numerusform>nicht lesbar (%n Byte)</numerusform>
        </translation>
    </message>
    <message id="KPAttributes">
        <translation>Attribute</translation>
    </message>
    <message id="KPAttributesUnreadable" numerus="yes">
        <translation>
            <numerusform>%n Attribut der Datei ist nicht zu verstehen.</numerusform>
            <numerusform>%n Attribute der Datei sind nicht zu verstehen.</numerusform>
        </translation>
    </message>
    <message id="KPBack">
        <translation>&amp;Zurück</translation>
    </message>
    <message id="KPBadColourScheme">
        <translation>„%1“ ist kein Farbschema: dark oder light</translation>
    </message>
    <message id="KPBookmarkAdd">
        <translation>Suche sichern</translation>
    </message>
    <message id="KPBookmarkBar">
        <translation>Gesicherte Suchen</translation>
    </message>
    <message id="KPBookmarkBarEmpty">
        <translation>Hier stehen gesicherte Suchen und die zuletzt benutzten Schlagwörter und Ordner.</translation>
    </message>
    <message id="KPBookmarkBarMore">
        <translation>Weitere gesicherte Suchen</translation>
    </message>
    <message id="KPBookmarkBarTags">
        <translation>Dokumente mit %1</translation>
    </message>
    <message id="KPBookmarkCombine">
        <translation>Mit aktueller Suche verbinden</translation>
    </message>
    <message id="KPBookmarkDelete">
        <translation>Löschen</translation>
    </message>
    <message id="KPBookmarkEmptyFolder">
        <translation>Leer</translation>
    </message>
    <message id="KPBookmarkExport">
        <translation>Exportieren …</translation>
    </message>
    <message id="KPBookmarkExportFile">
        <translation>Gesicherte Suchen exportieren …</translation>
    </message>
    <message id="KPBookmarkFiles">
        <translation>Gesicherte Suchen (*.plist)</translation>
    </message>
    <message id="KPBookmarkGone">
        <translation>die gesicherte Suche ist nicht mehr da</translation>
    </message>
    <message id="KPBookmarkImport">
        <translation>Importieren …</translation>
    </message>
    <message id="KPBookmarkImportFile">
        <translation>Gesicherte Suchen importieren …</translation>
    </message>
    <message id="KPBookmarkIntoItself">
        <translation>ein Ordner kann nicht in sich selbst verschoben werden</translation>
    </message>
    <message id="KPBookmarkLooksFor">
        <translation>Sucht nach</translation>
    </message>
    <message id="KPBookmarkMove">
        <translation>Gesicherte Suche bewegen</translation>
    </message>
    <message id="KPBookmarkNarrow">
        <translation>Aktuelle Suche eingrenzen</translation>
    </message>
    <message id="KPBookmarkNewFolder">
        <translation>Neuer Ordner</translation>
    </message>
    <message id="KPBookmarkNewFolderName">
        <translation>Neuer Ordner</translation>
    </message>
    <message id="KPBookmarkRename">
        <translation>Umbenennen</translation>
    </message>
    <message id="KPBookmarkShow">
        <translation>Zeigen</translation>
    </message>
    <message id="KPBookmarkTitle">
        <translation>Name</translation>
    </message>
    <message id="KPBookmarkUpdate">
        <translation>Auf aktuelle Suche setzen</translation>
    </message>
    <message id="KPBookmarksEmpty">
        <translation>Noch ist nichts gesichert. „Suche sichern“ merkt sich die gezeigte Suche.</translation>
    </message>
    <message id="KPBookmarksNewer">
        <translation>die gesicherten Suchen wurden von einer neueren Version geschrieben</translation>
    </message>
    <message id="KPBookmarksNoList">
        <translation>keine Liste gesicherter Suchen</translation>
    </message>
    <message id="KPBookmarksNotChanged">
        <translation>Die Lesezeichen konnten nicht geändert werden</translation>
    </message>
    <message id="KPBuiltInString">
        <translation>eingebaut</translation>
    </message>
    <message id="KPCancel">
        <translation>Abbrechen</translation>
    </message>
    <message id="KPCannotCombine" numerus="yes">
        <translation>
            <numerusform>Nichts wurde zusammengefügt: %n Dokument ist nicht zu gebrauchen</numerusform>
            <numerusform>Nichts wurde zusammengefügt: %n Dokumente sind nicht zu gebrauchen</numerusform>
        </translation>
    </message>
    <message id="KPCannotExportList">
        <translation>Die Liste wurde nicht exportiert</translation>
    </message>
    <message id="KPCannotMail" numerus="yes">
        <translation>
            <numerusform>%n Dokument lässt sich nicht mailen</numerusform>
            <numerusform>%n Dokumente lassen sich nicht mailen</numerusform>
        </translation>
    </message>
    <message id="KPCannotOpen">
        <translation>„%1“ konnte nicht geöffnet werden</translation>
    </message>
    <message id="KPCannotPaste">
        <translation>Das Dokument konnte nicht angelegt werden</translation>
    </message>
    <message id="KPCannotPrint" numerus="yes">
        <translation>
            <numerusform>%n Dokument lässt sich nicht drucken</numerusform>
            <numerusform>%n Dokumente lassen sich nicht drucken</numerusform>
        </translation>
    </message>
    <message id="KPCannotRecognise" numerus="yes">
        <translation>
            <numerusform>Der Text von %n Dokument ließ sich nicht erkennen</numerusform>
            <numerusform>Der Text von %n Dokumenten ließ sich nicht erkennen</numerusform>
        </translation>
    </message>
    <message id="KPCannotRename">
        <translation>„%1“ konnte nicht umbenannt werden</translation>
    </message>
    <message id="KPCannotReveal">
        <translation>„%1“ konnte nicht in der Dateiverwaltung gezeigt werden</translation>
    </message>
    <message id="KPCannotTakeBack" numerus="yes">
        <translation>
            <numerusform>%1 Dokument blieb, wie es ist</numerusform>
            <numerusform>%1 Dokumente blieben, wie sie sind</numerusform>
        </translation>
    </message>
    <message id="KPCannotTrash">
        <translation>„%1“ konnte nicht in den Papierkorb gelegt werden</translation>
    </message>
    <message id="KPCannotTrashSome" numerus="yes">
        <translation>
            <numerusform>%1 Dokument konnte nicht in den Papierkorb gelegt werden</numerusform>
            <numerusform>%1 Dokumente konnten nicht in den Papierkorb gelegt werden</numerusform>
        </translation>
    </message>
    <message id="KPCannotUnrecognise" numerus="yes">
        <translation>
            <numerusform>%n Dokument blieb, wie es ist</numerusform>
            <numerusform>%n Dokumente blieben, wie sie sind</numerusform>
        </translation>
    </message>
    <message id="KPCaptureAddress">
        <translation>Adresse der Seite:</translation>
    </message>
    <message id="KPCaptureButton">
        <translation>Erfassen</translation>
    </message>
    <message id="KPCaptureFailed">
        <translation>Die Webseite wurde nicht erfasst</translation>
    </message>
    <message id="KPCaptureNoBrowser">
        <translation>Es ist kein Browser installiert, der Seiten als PDF zeichnen kann. Installieren Sie das Paket „chromium“.</translation>
    </message>
    <message id="KPCaptureProgress">
        <translation>Webseite wird erfasst</translation>
    </message>
    <message id="KPCaptureTitle">
        <translation>Webseite erfassen</translation>
    </message>
    <message id="KPCaptureWebPage">
        <translation>Webseite erfassen …</translation>
    </message>
    <message id="KPChangeExtensionText">
        <translation>Danach lässt sich das Dokument vielleicht nicht mehr richtig öffnen.</translation>
    </message>
    <message id="KPChangeExtensionTitle">
        <translation>Soll die Dateiendung wirklich von „.%1“ in „.%2“ geändert werden?</translation>
    </message>
    <message id="KPChangedMeanwhile">
        <translation>inzwischen hat ein anderes Programm sie geändert</translation>
    </message>
    <message id="KPCheckForUpdates">
        <translation>Nach A&amp;ktualisierungen suchen</translation>
    </message>
    <message id="KPChipExcluded">
        <translation>ohne Schlagwort %1</translation>
    </message>
    <message id="KPChipFilterHint">
        <translation>Ein Klick schließt Dokumente mit diesem Schlagwort aus, ein weiterer verlangt es wieder</translation>
    </message>
    <message id="KPChipHint">
        <translation>Die Entfernen-Taste nimmt dieses Schlagwort weg</translation>
    </message>
    <message id="KPChipPartial">
        <translation>%1 von %2 Dokumenten. Klick gibt es allen; das Kreuz nimmt es weg.</translation>
    </message>
    <message id="KPChipTag">
        <translation>Schlagwort %1</translation>
    </message>
    <message id="KPClearFilters">
        <translation>Filter zurücksetzen</translation>
    </message>
    <message id="KPClearRecentSearches">
        <translation>Letzte Suchen löschen</translation>
    </message>
    <message id="KPClose">
        <translation>Schließen</translation>
    </message>
    <message id="KPCloseQuickPreview">
        <translation>Vorschau schließen</translation>
    </message>
    <message id="KPCloseWindow">
        <translation>Fenster &amp;schließen</translation>
    </message>
    <message id="KPCloudAlwaysShow">
        <translation>Immer in der Wolke zeigen</translation>
    </message>
    <message id="KPCloudBlackCommand">
        <translation>Schlagwörter ohne Farben</translation>
    </message>
    <message id="KPCloudClear">
        <translation>Aus der Suche entfernen</translation>
    </message>
    <message id="KPCloudCopyName">
        <translation>Namen kopieren</translation>
    </message>
    <message id="KPCloudFileTypes">
        <translation>Arten</translation>
    </message>
    <message id="KPCloudFilter">
        <translation>Filter für Schlagwörter und Arten</translation>
    </message>
    <message id="KPCloudFilterCommand">
        <translation>Schlagwörter filtern</translation>
    </message>
    <message id="KPCloudFilterHint">
        <translation>Schlagwörter filtern …</translation>
    </message>
    <message id="KPCloudItemCount" numerus="yes">
        <translation>
            <numerusform>%1: %2 Dokument</numerusform>
            <numerusform>%1: %2 Dokumente</numerusform>
        </translation>
    </message>
    <message id="KPCloudNeverShow">
        <translation>Nie in der Wolke zeigen</translation>
    </message>
    <message id="KPCloudSectionTip">
        <translation>Diesen Abschnitt zeigen oder verbergen</translation>
    </message>
    <message id="KPCloudShowWith">
        <translation>Dokumente mit diesem Schlagwort zeigen</translation>
    </message>
    <message id="KPCloudShowWithout">
        <translation>Dokumente ohne dieses Schlagwort zeigen</translation>
    </message>
    <message id="KPCloudSingleColumnCommand">
        <translation>Ein Schlagwort je Zeile</translation>
    </message>
    <message id="KPCloudTags">
        <translation>Schlagwörter</translation>
    </message>
    <message id="KPCloudTagsAll">
        <translation>%1</translation>
    </message>
    <message id="KPCloudTagsNone">
        <translation>keine Schlagwörter</translation>
    </message>
    <message id="KPCloudTagsOne">
        <translation>1 Schlagwort</translation>
    </message>
    <message id="KPCloudTagsSome">
        <translation>%1 von %2</translation>
    </message>
    <message id="KPCloudTypesAll">
        <translation>%1</translation>
    </message>
    <message id="KPCloudTypesNone">
        <translation>keine Arten</translation>
    </message>
    <message id="KPCloudTypesOne">
        <translation>1 Art</translation>
    </message>
    <message id="KPCloudTypesSome">
        <translation>%1 von %2</translation>
    </message>
    <message id="KPColumnAdded">
        <translation>Hinzugefügt</translation>
    </message>
    <message id="KPColumnCreated">
        <translation>Erstellt</translation>
    </message>
    <message id="KPColumnFlag">
        <translation>Markierung</translation>
    </message>
    <message id="KPColumnFolder">
        <translation>Ordner</translation>
    </message>
    <message id="KPColumnModified">
        <translation>Geändert</translation>
    </message>
    <message id="KPColumnName">
        <translation>Name</translation>
    </message>
    <message id="KPColumnPath">
        <translation>Pfad</translation>
    </message>
    <message id="KPColumnRating">
        <translation>Bewertung</translation>
    </message>
    <message id="KPColumnSize">
        <translation>Größe</translation>
    </message>
    <message id="KPColumnTags">
        <translation>Schlagwörter</translation>
    </message>
    <message id="KPColumnTitle">
        <translation>Titel</translation>
    </message>
    <message id="KPColumnType">
        <translation>Typ</translation>
    </message>
    <message id="KPCombine">
        <translation>PDFs &amp;zusammenfügen …</translation>
    </message>
    <message id="KPCombineButton">
        <translation>&amp;Zusammenfügen</translation>
    </message>
    <message id="KPCombineDown">
        <translation>Nach &amp;unten</translation>
    </message>
    <message id="KPCombineHint">
        <translation>Die Seiten kommen in der Reihenfolge dieser Liste. Die Dokumente selbst bleiben, wie sie sind.</translation>
    </message>
    <message id="KPCombineLeftOut" numerus="yes">
        <translation>
            <numerusform>%n ausgewähltes Dokument bleibt aus, weil es kein PDF ist.</numerusform>
            <numerusform>%n ausgewählte Dokumente bleiben aus, weil sie keine PDFs sind.</numerusform>
        </translation>
    </message>
    <message id="KPCombineName">
        <translation>Name</translation>
    </message>
    <message id="KPCombineNeedsTwo">
        <translation>Wählen Sie mindestens zwei PDF-Dokumente aus.</translation>
    </message>
    <message id="KPCombineRemove">
        <translation>&amp;Auslassen</translation>
    </message>
    <message id="KPCombineSort">
        <translation>Nach &amp;Namen ordnen</translation>
    </message>
    <message id="KPCombineStopNote">
        <translation>Beim Anhalten entsteht kein neues Dokument.</translation>
    </message>
    <message id="KPCombineTitle">
        <translation>PDF-Dokumente zusammenfügen</translation>
    </message>
    <message id="KPCombineTooMany">
        <translation>Höchstens %1 Dokumente lassen sich auf einmal zusammenfügen.</translation>
    </message>
    <message id="KPCombineUp">
        <translation>Nach &amp;oben</translation>
    </message>
    <message id="KPCombinedName">
        <translation>%1 zusammengefügt</translation>
    </message>
    <message id="KPCombinedNotMarked">
        <translation>„%1“ wurde angelegt, ist aber kein Dokument der Bibliothek</translation>
    </message>
    <message id="KPCombiningItems" numerus="yes">
        <translation>
            <numerusform>%n Dokument wird zusammengefügt</numerusform>
            <numerusform>%n Dokumente werden zusammengefügt</numerusform>
        </translation>
    </message>
    <message id="KPComment">
        <translation>Kommentar</translation>
    </message>
    <message id="KPCommentHint">
        <translation>Kommentar schreiben</translation>
    </message>
    <message id="KPCommentsDiffer">
        <translation>Kommentare unterscheiden sich; Neues ersetzt sie</translation>
    </message>
    <message id="KPCommonTagsOnly">
        <translation>Schlagwörter, die alle ausgewählten Dokumente gemeinsam haben. Ihre anderen bleiben.</translation>
    </message>
    <message id="KPConfirmExternalOpenComments">
        <translation>Jedes öffnet sich in einem eigenen Fenster.</translation>
    </message>
    <message id="KPConfirmExternalOpenOK">
        <translation>Öffnen</translation>
    </message>
    <message id="KPConfirmExternalOpenTitle">
        <translation>%1 Dokumente öffnen?</translation>
    </message>
    <message id="KPContinueWithOthers">
        <translation>Fortfahren</translation>
    </message>
    <message id="KPCopyDocSingle">
        <translation>„%1“ kopieren?</translation>
    </message>
    <message id="KPCopyDocs">
        <translation>%1 Dokumente kopieren?</translation>
    </message>
    <message id="KPCopyDocsComments">
        <translation>In „%1“ entstehen Kopien mit Schlagwörtern und Bewertungen.</translation>
    </message>
    <message id="KPCopyFiles">
        <translation>&amp;Kopieren</translation>
    </message>
    <message id="KPCopyOK">
        <translation>Kopieren</translation>
    </message>
    <message id="KPCopySingleDocComments">
        <translation>In „%1“ entsteht eine Kopie mit Schlagwörtern und Bewertung.</translation>
    </message>
    <message id="KPCopyTo">
        <translation>In Ordner kopieren …</translation>
    </message>
    <message id="KPCopyToOpenButton">
        <translation>Kopieren</translation>
    </message>
    <message id="KPCopyToOpenText">
        <translation>Diese Dokumente liegen, wo sie nicht Teil Ihrer Bibliothek sein können: unter Dateien anderer Programme oder auf einem Datenträger, der keine Tags hält oder nicht beschreibbar ist.</translation>
    </message>
    <message id="KPCopyToOpenTitle">
        <translation>In den verwalteten Ordner kopieren?</translation>
    </message>
    <message id="KPCopyToRecent">
        <translation>In zuletzt benutzten Ordner kopieren</translation>
    </message>
    <message id="KPCopyToTitle">
        <translation>Dokumente kopieren nach</translation>
    </message>
    <message id="KPCountsSelected">
        <translation>%1 von %2 ausgewählt</translation>
    </message>
    <message id="KPCrashReportsFolder">
        <translation>Absturzberichte</translation>
    </message>
    <message id="KPCrashReportsText">
        <translation>Trotz aller Sorgfalt und Tests findet manchmal ein Fehler den Weg zu Ihnen. Bitte helfen Sie uns mit Absturzberichten. 
Vertraulichkeit ist zugesichert.

Absturzberichte erlauben?</translation>
    </message>
    <message id="KPCrashReportsTitle">
        <translation>Absturzberichte</translation>
    </message>
    <message id="KPCrashedClose">
        <translation>Nicht jetzt</translation>
    </message>
    <message id="KPCrashedShow">
        <translation>Bericht zeigen</translation>
    </message>
    <message id="KPCrashedText">
        <translation>Ein Bericht darüber liegt auf diesem Rechner. Er nennt das Programm, das System und die Stelle des Fehlers, keines Ihrer Dokumente. Nichts wurde verschickt; ob Sie ihn jemandem schicken, entscheiden Sie.</translation>
    </message>
    <message id="KPCrashedTitle">
        <translation>Murn wurde unerwartet beendet</translation>
    </message>
    <message id="KPCrumbAdd">
        <translation>Suche eingrenzen</translation>
    </message>
    <message id="KPCrumbAddDate">
        <translation>Datum</translation>
    </message>
    <message id="KPCrumbAddKind">
        <translation>Art</translation>
    </message>
    <message id="KPCrumbAddRating">
        <translation>Bewertung</translation>
    </message>
    <message id="KPCrumbAddTag">
        <translation>Schlagwort</translation>
    </message>
    <message id="KPCrumbClearRecent">
        <translation>Zuletzt besuchte Orte vergessen</translation>
    </message>
    <message id="KPCrumbDateRange">
        <translation>Andere Tage …</translation>
    </message>
    <message id="KPCrumbDocuments" numerus="yes">
        <translation>
            <numerusform>%1 Dokument</numerusform>
            <numerusform>%1 Dokumente</numerusform>
        </translation>
    </message>
    <message id="KPCrumbExclude">
        <translation>Stattdessen ausschließen</translation>
    </message>
    <message id="KPCrumbFileList" numerus="yes">
        <translation>
            <numerusform>%n gewähltes Dokument</numerusform>
            <numerusform>%n gewählte Dokumente</numerusform>
        </translation>
    </message>
    <message id="KPCrumbHint">
        <translation>Eingabe öffnet das Menü, Entfernen nimmt es weg, Minus macht das Gegenteil daraus.</translation>
    </message>
    <message id="KPCrumbIn">
        <translation>in %1</translation>
    </message>
    <message id="KPCrumbInclude">
        <translation>Nur diese zeigen</translation>
    </message>
    <message id="KPCrumbListing">
        <translation>Nur dieser Ordner</translation>
    </message>
    <message id="KPCrumbListingDeep">
        <translation>Mit Unterordnern</translation>
    </message>
    <message id="KPCrumbMore" numerus="yes">
        <translation>
            <numerusform>%n weiteres</numerusform>
            <numerusform>%n weitere</numerusform>
        </translation>
    </message>
    <message id="KPCrumbNegateHint">
        <translation>Klicken, um das Gegenteil daraus zu machen</translation>
    </message>
    <message id="KPCrumbNothing">
        <translation>Unmögliche Art</translation>
    </message>
    <message id="KPCrumbPackages">
        <translation>Inhalt von Paketen</translation>
    </message>
    <message id="KPCrumbPlaceHint">
        <translation>Eingabe öffnet das Menü.</translation>
    </message>
    <message id="KPCrumbRemove">
        <translation>Entfernen</translation>
    </message>
    <message id="KPCrumbSearching">
        <translation>Suche läuft … %1</translation>
    </message>
    <message id="KPCrumbSystemFiles">
        <translation>Systemdateien</translation>
    </message>
    <message id="KPCrumbTagged">
        <translation>mit %1</translation>
    </message>
    <message id="KPCrumbTrailAnyDate">
        <translation>Jedes Datum</translation>
    </message>
    <message id="KPCrumbTrailBeforeYear">
        <translation>Vor %1</translation>
    </message>
    <message id="KPCrumbTrailDays">
        <translation>Letzte %1 Tage</translation>
    </message>
    <message id="KPCrumbTrailDaysBefore">
        <translation>Älter als %1 Tage</translation>
    </message>
    <message id="KPCrumbTrailDaysBetween">
        <translation>Vor %1 bis %2 Tagen</translation>
    </message>
    <message id="KPCrumbTrailLast30Days">
        <translation>Letzte 30 Tage</translation>
    </message>
    <message id="KPCrumbTrailLast365Days">
        <translation>Letzte 365 Tage</translation>
    </message>
    <message id="KPCrumbTrailLast7Days">
        <translation>Letzte 7 Tage</translation>
    </message>
    <message id="KPCrumbTrailToday">
        <translation>Letzte 24 Stunden</translation>
    </message>
    <message id="KPCrumbTrailYesterday">
        <translation>Die 24 Stunden davor</translation>
    </message>
    <message id="KPCrumbWithout">
        <translation>ohne %1</translation>
    </message>
    <message id="KPCrumbWordsAll">
        <translation>In Namen, Inhalten und Angaben</translation>
    </message>
    <message id="KPCrumbWordsContents">
        <translation>In Namen und Inhalten</translation>
    </message>
    <message id="KPCrumbWordsDetails">
        <translation>In Namen und Angaben</translation>
    </message>
    <message id="KPCrumbWordsNames">
        <translation>In Namen</translation>
    </message>
    <message id="KPCurrentlyScanning">
        <translation>Dieses Dokument wird gerade gescannt.</translation>
    </message>
    <message id="KPCustomiseToolbar">
        <translation>Symbolleiste &amp;anpassen …</translation>
    </message>
    <message id="KPCustomiseToolbarHint">
        <translation>Einträge in die Liste der Symbolleiste, aus ihr heraus oder in ihr auf und ab ziehen. Eingabe fügt hinzu, Entf entfernt.</translation>
    </message>
    <message id="KPCustomiseToolbarTitle">
        <translation>Symbolleiste anpassen</translation>
    </message>
    <message id="KPDateRangeFrom">
        <translation>Von</translation>
    </message>
    <message id="KPDateRangeShow">
        <translation>Zeigen</translation>
    </message>
    <message id="KPDateRangeTitle">
        <translation>Dokumente, geändert zwischen</translation>
    </message>
    <message id="KPDateRangeTo">
        <translation>Bis</translation>
    </message>
    <message id="KPDeleteFileComments">
        <translation>Es kann von dort zurückgelegt werden.</translation>
    </message>
    <message id="KPDeleteFileOKButton">
        <translation>In den Papierkorb</translation>
    </message>
    <message id="KPDeleteFileTitle">
        <translation>„%1“ in den Papierkorb legen?</translation>
    </message>
    <message id="KPDeleteMultipleFileComments">
        <translation>Sie können von dort zurückgelegt werden.</translation>
    </message>
    <message id="KPDeleteMultipleFileTitle">
        <translation>%1 Dokumente in den Papierkorb legen?</translation>
    </message>
    <message id="KPDetails">
        <translation>Details</translation>
    </message>
    <message id="KPDocumentCount" numerus="yes">
        <translation>
            <numerusform>%1 Dokument</numerusform>
            <numerusform>%1 Dokumente</numerusform>
        </translation>
    </message>
    <message id="KPDocumentDamaged">
        <translation>Das Dokument ist beschädigt.</translation>
    </message>
    <message id="KPDocumentEmpty">
        <translation>Das Dokument ist leer.</translation>
    </message>
    <message id="KPDocumentEncrypted">
        <translation>Das Dokument ist verschlüsselt.</translation>
    </message>
    <message id="KPDocumentEndsReader">
        <translation>Das Dokument lässt sich nicht lesen: es ist wahrscheinlich beschädigt.</translation>
    </message>
    <message id="KPDocumentTimedOut">
        <translation>Das Lesen des Dokuments dauert zu lange.</translation>
    </message>
    <message id="KPDocumentTitle">
        <translation>Dokument</translation>
    </message>
    <message id="KPDocumentTooLarge">
        <translation>Das Dokument ist zu groß.</translation>
    </message>
    <message id="KPDocumentUnreadable">
        <translation>Die Datei kann nicht gelesen werden.</translation>
    </message>
    <message id="KPDocumentUnsupported">
        <translation>Dokumente dieser Art können nicht gelesen werden.</translation>
    </message>
    <message id="KPDocumentWithoutPage">
        <translation>Von Seite %1 gibt es kein Bild.</translation>
    </message>
    <message id="KPDocumentWithoutPages">
        <translation>Das Dokument hat keine Seiten.</translation>
    </message>
    <message id="KPDocuments">
        <translation>Dokumente</translation>
    </message>
    <message id="KPDone">
        <translation>Fertig</translation>
    </message>
    <message id="KPDropZone">
        <translation>Ablagefläche</translation>
    </message>
    <message id="KPDropZoneBack">
        <translation>Zurück</translation>
    </message>
    <message id="KPDropZoneFiled" numerus="yes">
        <translation>
            <numerusform>%n Dokument abgelegt</numerusform>
            <numerusform>%n Dokumente abgelegt</numerusform>
        </translation>
    </message>
    <message id="KPDropZoneFiling">
        <translation>Wird übernommen …</translation>
    </message>
    <message id="KPDropZoneFolders">
        <translation>Letzter Ordner</translation>
    </message>
    <message id="KPDropZoneTagGroups">
        <translation>Mit Schlagwörtern</translation>
    </message>
    <message id="KPDropZoneTitle">
        <translation>Zum Ablegen hierher ziehen</translation>
    </message>
    <message id="KPDropZoneToday">
        <translation>Ordner von heute</translation>
    </message>
    <message id="KPDroppedOnIcon">
        <translation>Geöffnet am %1</translation>
    </message>
    <message id="KPDuplicate">
        <translation>&amp;Duplizieren</translation>
    </message>
    <message id="KPDuplicatesFound" numerus="yes">
        <translation>
            <numerusform>%n Gruppe von Dokumenten gleichen Inhalts. Je eines genügte; das gäbe %1 frei.</numerusform>
            <numerusform>%n Gruppen von Dokumenten gleichen Inhalts. Je eines genügte; das gäbe %1 frei.</numerusform>
        </translation>
    </message>
    <message id="KPDuplicatesGroup" numerus="yes">
        <translation>
            <numerusform>%n × %1, je %2</numerusform>
            <numerusform>%n × %1, je %2</numerusform>
        </translation>
    </message>
    <message id="KPDuplicatesNone">
        <translation>Keine zwei der gezeigten Dokumente haben denselben Inhalt.</translation>
    </message>
    <message id="KPDuplicatesSearching">
        <translation>Die gezeigten Dokumente werden verglichen</translation>
    </message>
    <message id="KPDuplicatesShow">
        <translation>In der Bibliothek zeigen</translation>
    </message>
    <message id="KPDuplicatesTitle">
        <translation>Doppelte Dokumente</translation>
    </message>
    <message id="KPDuplicatesUnread" numerus="yes">
        <translation>
            <numerusform>%n Dokument konnte nicht gelesen werden.</numerusform>
            <numerusform>%n Dokumente konnten nicht gelesen werden.</numerusform>
        </translation>
    </message>
    <message id="KPEditFailedLine">
        <translation>%1: %2</translation>
    </message>
    <message id="KPEditFailedMany" numerus="yes">
        <translation>
            <numerusform>%n von %1 Dokumenten konnte nicht geändert werden</numerusform>
            <numerusform>%n von %1 Dokumenten konnten nicht geändert werden</numerusform>
        </translation>
    </message>
    <message id="KPEditFailedOne">
        <translation>„%1“ konnte nicht geändert werden</translation>
    </message>
    <message id="KPEditStopped" numerus="yes">
        <translation>
            <numerusform>Nach %n Dokument angehalten</numerusform>
            <numerusform>Nach %n Dokumenten angehalten</numerusform>
        </translation>
    </message>
    <message id="KPEditTags">
        <translation>&amp;Schlagwörter bearbeiten</translation>
    </message>
    <message id="KPEditing">
        <translation>%1 von %2 werden geändert</translation>
    </message>
    <message id="KPEditingName">
        <translation>Dokumente werden geändert</translation>
    </message>
    <message id="KPExportDocuments">
        <translation>Dokumente exportieren …</translation>
    </message>
    <message id="KPExportDone" numerus="yes">
        <translation>
            <numerusform>%n Dokument wurde exportiert</numerusform>
            <numerusform>%n Dokumente wurden exportiert</numerusform>
        </translation>
    </message>
    <message id="KPExportFailed">
        <translation>Die Dokumente wurden nicht exportiert</translation>
    </message>
    <message id="KPExportLeftOut" numerus="yes">
        <translation>
            <numerusform>%n Dokument wurde ausgelassen:</numerusform>
            <numerusform>%n Dokumente wurden ausgelassen:</numerusform>
        </translation>
    </message>
    <message id="KPExportList">
        <translation>&amp;Liste exportieren …</translation>
    </message>
    <message id="KPExportListFilter">
        <translation>Durch Kommas getrennte Werte</translation>
    </message>
    <message id="KPExportListName">
        <translation>Dokumente</translation>
    </message>
    <message id="KPExportListTitle">
        <translation>Ergebnisliste exportieren</translation>
    </message>
    <message id="KPExportProgress">
        <translation>Dokumente werden exportiert</translation>
    </message>
    <message id="KPExportSearchResults">
        <translation>Alle gezeigten Dokumente exportieren …</translation>
    </message>
    <message id="KPExportStopNote">
        <translation>Beim Anhalten wird keine Datei geschrieben.</translation>
    </message>
    <message id="KPExportTitle">
        <translation>Dokumente exportieren</translation>
    </message>
    <message id="KPExportingList" numerus="yes">
        <translation>
            <numerusform>Liste von %n Dokument wird exportiert</numerusform>
            <numerusform>Liste von %n Dokumenten wird exportiert</numerusform>
        </translation>
    </message>
    <message id="KPExtensionTypeTemplate">
        <translation>%1-Datei</translation>
    </message>
    <message id="KPFactAddress">
        <translation>Adresse</translation>
    </message>
    <message id="KPFactAlbum">
        <translation>Album</translation>
    </message>
    <message id="KPFactAperture">
        <translation>Blende</translation>
    </message>
    <message id="KPFactAttachments">
        <translation>Anlagen</translation>
    </message>
    <message id="KPFactAuthors">
        <translation>Von</translation>
    </message>
    <message id="KPFactBitRate">
        <translation>Bitrate</translation>
    </message>
    <message id="KPFactBytes" numerus="yes">
        <translation>
            <numerusform>%n Byte</numerusform>
            <numerusform>%n Byte</numerusform>
        </translation>
    </message>
    <message id="KPFactCamera">
        <translation>Kamera</translation>
    </message>
    <message id="KPFactChannels">
        <translation>Kanäle</translation>
    </message>
    <message id="KPFactCity">
        <translation>Ort</translation>
    </message>
    <message id="KPFactComposer">
        <translation>Komponist</translation>
    </message>
    <message id="KPFactCopyright">
        <translation>Copyright</translation>
    </message>
    <message id="KPFactCountry">
        <translation>Land</translation>
    </message>
    <message id="KPFactCreated">
        <translation>Erstellt</translation>
    </message>
    <message id="KPFactDescription">
        <translation>Beschreibung</translation>
    </message>
    <message id="KPFactDuration">
        <translation>Dauer</translation>
    </message>
    <message id="KPFactEntries" numerus="yes">
        <translation>
            <numerusform>%n Eintrag</numerusform>
            <numerusform>%n Einträge</numerusform>
        </translation>
    </message>
    <message id="KPFactExposure">
        <translation>Belichtung</translation>
    </message>
    <message id="KPFactFocalLength">
        <translation>Brennweite</translation>
    </message>
    <message id="KPFactFolder">
        <translation>Ordner</translation>
    </message>
    <message id="KPFactFromTo">
        <translation>%1 bis %2</translation>
    </message>
    <message id="KPFactGenre">
        <translation>Genre</translation>
    </message>
    <message id="KPFactKeywords">
        <translation>Stichwörter</translation>
    </message>
    <message id="KPFactKilobits">
        <translation>%1 kbit/s</translation>
    </message>
    <message id="KPFactKilohertz">
        <translation>%1 kHz</translation>
    </message>
    <message id="KPFactLens">
        <translation>Objektiv</translation>
    </message>
    <message id="KPFactMillimetres">
        <translation>%1 mm</translation>
    </message>
    <message id="KPFactModified">
        <translation>Geändert</translation>
    </message>
    <message id="KPFactPages">
        <translation>Seiten</translation>
    </message>
    <message id="KPFactPixels">
        <translation>Pixel</translation>
    </message>
    <message id="KPFactProgram">
        <translation>Erstellt mit</translation>
    </message>
    <message id="KPFactRecipients">
        <translation>An</translation>
    </message>
    <message id="KPFactSampleRate">
        <translation>Abtastrate</translation>
    </message>
    <message id="KPFactSeconds">
        <translation>%1 s</translation>
    </message>
    <message id="KPFactSensitivity">
        <translation>ISO</translation>
    </message>
    <message id="KPFactSize">
        <translation>Größe</translation>
    </message>
    <message id="KPFactSubject">
        <translation>Betreff</translation>
    </message>
    <message id="KPFactTitle">
        <translation>Titel</translation>
    </message>
    <message id="KPFactTotalSize">
        <translation>Gesamtgröße</translation>
    </message>
    <message id="KPFactType">
        <translation>Art</translation>
    </message>
    <message id="KPFactWhereFrom">
        <translation>Herkunft</translation>
    </message>
    <message id="KPFactWritten">
        <translation>Verfasst</translation>
    </message>
    <message id="KPFactYear">
        <translation>Jahr</translation>
    </message>
    <message id="KPFetchingTitle">
        <translation>Wird vom anderen Programm geholt</translation>
    </message>
    <message id="KPFileClipboardButton">
        <translation>Ablegen</translation>
    </message>
    <message id="KPFileClipboardText">
        <translation>Ein anderes Programm bittet Murn, das Kopierte in Ihre Bibliothek aufzunehmen.</translation>
    </message>
    <message id="KPFileClipboardTitle">
        <translation>Kopiertes ablegen?</translation>
    </message>
    <message id="KPFileDocuments">
        <translation>Zur Bibliothek hinzufügen …</translation>
    </message>
    <message id="KPFileTypeGroupArchives">
        <translation>Archive</translation>
    </message>
    <message id="KPFileTypeGroupAudio">
        <translation>Ton</translation>
    </message>
    <message id="KPFileTypeGroupEBooks">
        <translation>E-Books</translation>
    </message>
    <message id="KPFileTypeGroupEMail">
        <translation>E-Mail</translation>
    </message>
    <message id="KPFileTypeGroupFonts">
        <translation>Schriften</translation>
    </message>
    <message id="KPFileTypeGroupIWork">
        <translation>iWork</translation>
    </message>
    <message id="KPFileTypeGroupImages">
        <translation>Bilder</translation>
    </message>
    <message id="KPFileTypeGroupMovies">
        <translation>Filme</translation>
    </message>
    <message id="KPFileTypeGroupOffice">
        <translation>Büro</translation>
    </message>
    <message id="KPFileTypeGroupPDF">
        <translation>PDF</translation>
    </message>
    <message id="KPFileTypeGroupPresentations">
        <translation>Präsentationen</translation>
    </message>
    <message id="KPFileTypeGroupRawPhotos">
        <translation>Rohbilder</translation>
    </message>
    <message id="KPFileTypeGroupSourceCode">
        <translation>Quelltext</translation>
    </message>
    <message id="KPFileTypeGroupSpreadsheets">
        <translation>Tabellen</translation>
    </message>
    <message id="KPFileTypeGroupText">
        <translation>Text</translation>
    </message>
    <message id="KPFileTypeGroupWebPages">
        <translation>Webseiten</translation>
    </message>
    <message id="KPFind">
        <translation>&amp;Suchen</translation>
    </message>
    <message id="KPFindDuplicates">
        <translation>Doppelte suchen …</translation>
    </message>
    <message id="KPFlag">
        <translation>Markieren</translation>
    </message>
    <message id="KPFlagged">
        <translation>Markiert</translation>
    </message>
    <message id="KPFolderMenu">
        <translation>Ordner darin</translation>
    </message>
    <message id="KPFolderMenuNone">
        <translation>Keine Ordner</translation>
    </message>
    <message id="KPFolderMenuReading">
        <translation>Der Ordner wird gelesen …</translation>
    </message>
    <message id="KPForgetSearches">
        <translation>Frühere Suchen ver&amp;gessen</translation>
    </message>
    <message id="KPForward">
        <translation>&amp;Vor</translation>
    </message>
    <message id="KPFullScreen">
        <translation>&amp;Vollbild</translation>
    </message>
    <message id="KPGetInfo">
        <translation>Infor&amp;mationen in eigenem Fenster</translation>
    </message>
    <message id="KPGoHome">
        <translation>&amp;Start</translation>
    </message>
    <message id="KPGoUp">
        <translation>Ü&amp;bergeordneter Ordner</translation>
    </message>
    <message id="KPGroupMode">
        <translation>Als Gruppen</translation>
    </message>
    <message id="KPGroupNameDigits">
        <translation>0–9</translation>
    </message>
    <message id="KPGroupNameFiveStars">
        <translation>Fünf Sterne</translation>
    </message>
    <message id="KPGroupNameFolder">
        <translation>Ordner</translation>
    </message>
    <message id="KPGroupNameFourStars">
        <translation>Vier Sterne</translation>
    </message>
    <message id="KPGroupNameLastYear">
        <translation>Letztes Jahr</translation>
    </message>
    <message id="KPGroupNameLater">
        <translation>In der Zukunft</translation>
    </message>
    <message id="KPGroupNameLessThan100MB">
        <translation>50 MB bis 100 MB</translation>
    </message>
    <message id="KPGroupNameLessThan100k">
        <translation>10 kB bis 100 kB</translation>
    </message>
    <message id="KPGroupNameLessThan10k">
        <translation>Unter 10 kB</translation>
    </message>
    <message id="KPGroupNameLessThan1GB">
        <translation>100 MB bis 1 GB</translation>
    </message>
    <message id="KPGroupNameLessThan1MB">
        <translation>100 kB bis 1 MB</translation>
    </message>
    <message id="KPGroupNameLessThan20MB">
        <translation>1 MB bis 20 MB</translation>
    </message>
    <message id="KPGroupNameLessThan50MB">
        <translation>20 MB bis 50 MB</translation>
    </message>
    <message id="KPGroupNameMoreThan1GB">
        <translation>1 GB und mehr</translation>
    </message>
    <message id="KPGroupNameNoDate">
        <translation>Ohne Datum</translation>
    </message>
    <message id="KPGroupNameNoTags">
        <translation>Ohne Schlagwörter</translation>
    </message>
    <message id="KPGroupNameOlder">
        <translation>Älter</translation>
    </message>
    <message id="KPGroupNameOneStar">
        <translation>Ein Stern</translation>
    </message>
    <message id="KPGroupNameOtherCharacters">
        <translation>Andere</translation>
    </message>
    <message id="KPGroupNamePackage">
        <translation>Pakete</translation>
    </message>
    <message id="KPGroupNamePast30Days">
        <translation>Letzte 30 Tage</translation>
    </message>
    <message id="KPGroupNamePast7Days">
        <translation>Letzte 7 Tage</translation>
    </message>
    <message id="KPGroupNameThisYear">
        <translation>Dieses Jahr</translation>
    </message>
    <message id="KPGroupNameThreeStars">
        <translation>Drei Sterne</translation>
    </message>
    <message id="KPGroupNameToday">
        <translation>Heute</translation>
    </message>
    <message id="KPGroupNameTwoStars">
        <translation>Zwei Sterne</translation>
    </message>
    <message id="KPGroupNameUnrated">
        <translation>Nicht bewertet</translation>
    </message>
    <message id="KPGroupNameYearBeforeLastYear">
        <translation>Vorletztes Jahr</translation>
    </message>
    <message id="KPGroupNameYesterday">
        <translation>Gestern</translation>
    </message>
    <message id="KPGroupNameZeroLength">
        <translation>Leer</translation>
    </message>
    <message id="KPHealAccept">
        <translation>Zurückgeben</translation>
    </message>
    <message id="KPHealFailed">
        <translation>Die Schlagwörter konnten nicht zurückgegeben oder entfernt werden</translation>
    </message>
    <message id="KPHealPending">
        <translation>Ein Programm ließ am %1 Schlagwörter fallen. Gehören sie zu diesem Dokument? %2</translation>
    </message>
    <message id="KPHealRefuse">
        <translation>Nein</translation>
    </message>
    <message id="KPHealUndo">
        <translation>Wieder entfernen</translation>
    </message>
    <message id="KPHealed">
        <translation>Ein Programm ließ die Schlagwörter fallen; sie wurden am %1 zurückgegeben: %2</translation>
    </message>
    <message id="KPHealedAccept">
        <translation>Schlagwörter zurückgeben</translation>
    </message>
    <message id="KPHealedAllDone">
        <translation>Diese Dateien haben ihre Schlagwörter durch ein Programm verloren.</translation>
    </message>
    <message id="KPHealedDone">
        <translation>zurückgegeben</translation>
    </message>
    <message id="KPHealedFailed">
        <translation>fehlgeschlagen</translation>
    </message>
    <message id="KPHealedFile">
        <translation>Datei</translation>
    </message>
    <message id="KPHealedHasTags">
        <translation>die Datei hat wieder Schlagwörter</translation>
    </message>
    <message id="KPHealedLeft">
        <translation>seither geändert und so gelassen: %1</translation>
    </message>
    <message id="KPHealedList">
        <translation>Dateien, die ihre Schlagwörter verloren haben</translation>
    </message>
    <message id="KPHealedNoLog">
        <translation>keine Liste von Dateien, die ihre Schlagwörter verloren haben</translation>
    </message>
    <message id="KPHealedNone">
        <translation>Bisher hat keine Datei ihre Schlagwörter durch ein Programm verloren.</translation>
    </message>
    <message id="KPHealedPending">
        <translation>zurückgelegt</translation>
    </message>
    <message id="KPHealedState">
        <translation>Zustand</translation>
    </message>
    <message id="KPHealedTags">
        <translation>Schlagwörter</translation>
    </message>
    <message id="KPHealedTime">
        <translation>Bemerkt</translation>
    </message>
    <message id="KPHealedUndo">
        <translation>Ohne Schlagwörter lassen</translation>
    </message>
    <message id="KPHealedUndone">
        <translation>ohne gelassen</translation>
    </message>
    <message id="KPHealedWaiting" numerus="yes">
        <translation>
            <numerusform>Die Schlagwörter von %n Datei wurden zurückgelegt, da es eine andere sein könnte. Zurückgeben?</numerusform>
            <numerusform>Die Schlagwörter von %n Dateien wurden zurückgelegt, da es andere sein könnten. Zurückgeben?</numerusform>
        </translation>
    </message>
    <message id="KPHide">
        <translation>A&amp;usblenden</translation>
    </message>
    <message id="KPHideActionBar">
        <translation>Aktionsleiste ausblenden</translation>
    </message>
    <message id="KPHideBookmarkBar">
        <translation>Lesezeichenleiste ausblenden</translation>
    </message>
    <message id="KPHideBookmarksPanel">
        <translation>&amp;Lesezeichen ausblenden</translation>
    </message>
    <message id="KPHideLoupeMenuItem">
        <translation>Lupe ausblenden</translation>
    </message>
    <message id="KPHistoryBack">
        <translation>Hierher zurück</translation>
    </message>
    <message id="KPHistoryBeginning">
        <translation>Vor alledem</translation>
    </message>
    <message id="KPHistoryForward">
        <translation>Wieder bis hierher</translation>
    </message>
    <message id="KPHistoryHint">
        <translation>Einen Schritt wählen, zu dem es zurückgeht. Was andere seither geändert haben, bleibt.</translation>
    </message>
    <message id="KPHistoryList">
        <translation>Verlauf …</translation>
    </message>
    <message id="KPHistoryNow">
        <translation>Das ist der jetzige Stand</translation>
    </message>
    <message id="KPHistoryStopped">
        <translation>Hier angehalten: etwas ließ sich nicht zurücknehmen, wie es war.</translation>
    </message>
    <message id="KPHistoryTitle">
        <translation>Verlauf</translation>
    </message>
    <message id="KPHistoryUndone">
        <translation>%1 (widerrufen)</translation>
    </message>
    <message id="KPHistoryWillRedo" numerus="yes">
        <translation>
            <numerusform>%n Schritt wird wiederholt.</numerusform>
            <numerusform>%n Schritte werden wiederholt.</numerusform>
        </translation>
    </message>
    <message id="KPHistoryWillUndo" numerus="yes">
        <translation>
            <numerusform>%n Schritt wird widerrufen.</numerusform>
            <numerusform>%n Schritte werden widerrufen.</numerusform>
        </translation>
    </message>
    <message id="KPHome">
        <translation>Persönlicher Ordner</translation>
    </message>
    <message id="KPHotKeyDescription">
        <translation>In Murn nach dem kopierten Text suchen</translation>
    </message>
    <message id="KPImageTitle">
        <translation>Bild</translation>
    </message>
    <message id="KPImportAdded" numerus="yes">
        <translation>
            <numerusform>%n Dokument kam hinzu.</numerusform>
            <numerusform>%n Dokumente kamen hinzu.</numerusform>
        </translation>
    </message>
    <message id="KPImportButton">
        <translation>Importieren</translation>
    </message>
    <message id="KPImportChanged" numerus="yes">
        <translation>
            <numerusform>%n Dokument erhielt andere Schlagwörter oder eine andere Bewertung.</numerusform>
            <numerusform>%n Dokumente erhielten andere Schlagwörter oder eine andere Bewertung.</numerusform>
        </translation>
    </message>
    <message id="KPImportCheckProgress">
        <translation>Archiv wird geprüft</translation>
    </message>
    <message id="KPImportDocuments">
        <translation>Dokumente importieren …</translation>
    </message>
    <message id="KPImportDone">
        <translation>Das Archiv wurde importiert</translation>
    </message>
    <message id="KPImportFailed">
        <translation>Das Archiv wurde nicht importiert</translation>
    </message>
    <message id="KPImportFailedCount" numerus="yes">
        <translation>
            <numerusform>%n Dokument kann nicht importiert werden.</numerusform>
            <numerusform>%n Dokumente können nicht importiert werden.</numerusform>
        </translation>
    </message>
    <message id="KPImportFolderTitle">
        <translation>Ordner für die importierten Dokumente</translation>
    </message>
    <message id="KPImportKept" numerus="yes">
        <translation>
            <numerusform>%n Dokument bleibt, wie es ist: Das im Archiv ist nicht neuer.</numerusform>
            <numerusform>%n Dokumente bleiben, wie sie sind: Die im Archiv sind nicht neuer.</numerusform>
        </translation>
    </message>
    <message id="KPImportProgress">
        <translation>Dokumente werden importiert</translation>
    </message>
    <message id="KPImportQuestion" numerus="yes">
        <translation>
            <numerusform>%n Dokument nach „%1“ importieren?</numerusform>
            <numerusform>%n Dokumente nach „%1“ importieren?</numerusform>
        </translation>
    </message>
    <message id="KPImportReplaced" numerus="yes">
        <translation>
            <numerusform>%n Dokument ersetzte ein älteres, das im Papierkorb liegt.</numerusform>
            <numerusform>%n Dokumente ersetzten ältere, die im Papierkorb liegen.</numerusform>
        </translation>
    </message>
    <message id="KPImportReplacedLine">
        <translation>%1: das ältere kommt in den Papierkorb</translation>
    </message>
    <message id="KPImportSame" numerus="yes">
        <translation>
            <numerusform>%n Dokument ist schon da.</numerusform>
            <numerusform>%n Dokumente sind schon da.</numerusform>
        </translation>
    </message>
    <message id="KPImportStopped">
        <translation>Der Import wurde angehalten</translation>
    </message>
    <message id="KPImportTitle">
        <translation>Dokumente importieren</translation>
    </message>
    <message id="KPImportWouldAdd" numerus="yes">
        <translation>
            <numerusform>%n Dokument ist neu.</numerusform>
            <numerusform>%n Dokumente sind neu.</numerusform>
        </translation>
    </message>
    <message id="KPImportWouldChange" numerus="yes">
        <translation>
            <numerusform>%n Dokument erhält andere Schlagwörter oder eine andere Bewertung.</numerusform>
            <numerusform>%n Dokumente erhalten andere Schlagwörter oder eine andere Bewertung.</numerusform>
        </translation>
    </message>
    <message id="KPImportWouldReplace" numerus="yes">
        <translation>
            <numerusform>%n Dokument ersetzt ein älteres, das in den Papierkorb kommt.</numerusform>
            <numerusform>%n Dokumente ersetzen ältere, die in den Papierkorb kommen.</numerusform>
        </translation>
    </message>
    <message id="KPImportedPDFTitle">
        <translation>Importiertes PDF</translation>
    </message>
    <message id="KPIndexChecking">
        <translation>Änderungen werden gesucht: %1 Ordner</translation>
    </message>
    <message id="KPIndexContents" numerus="yes">
        <translation>
            <numerusform>Text wird gelesen: noch %1 Datei</numerusform>
            <numerusform>Text wird gelesen: noch %1 Dateien</numerusform>
        </translation>
    </message>
    <message id="KPIndexContentsNotSaved">
        <translation>Was in Dateien gefunden wurde, lässt sich im Moment nicht sichern: %1.</translation>
    </message>
    <message id="KPIndexContentsRate" numerus="yes">
        <translation>
            <numerusform>(%1 pro Sekunde, noch etwa %n Minute)</numerusform>
            <numerusform>(%1 pro Sekunde, noch etwa %n Minuten)</numerusform>
        </translation>
    </message>
    <message id="KPIndexContentsUnsearchable">
        <translation>Inhalte können nicht durchsucht werden: %1.</translation>
    </message>
    <message id="KPIndexEventsLost">
        <translation>Zu viel hat sich auf einmal geändert: Alles wird mit dem Datenträger verglichen.</translation>
    </message>
    <message id="KPIndexFolder">
        <translation>Diesen Ordner &amp;indizieren</translation>
    </message>
    <message id="KPIndexFolderLeftOut">
        <translation>%1 ist durch eine Regel vom Index ausgenommen.</translation>
    </message>
    <message id="KPIndexFolderNotIndexed">
        <translation>%1 ist nicht indiziert.</translation>
    </message>
    <message id="KPIndexFoldersUnreadable" numerus="yes">
        <translation>
            <numerusform>%n Ordner kann nicht gelesen werden.</numerusform>
            <numerusform>%n Ordner können nicht gelesen werden.</numerusform>
        </translation>
    </message>
    <message id="KPIndexFoldersUnwatched" numerus="yes">
        <translation>
            <numerusform>%n Ordner wird nur alle %1 Sekunden angesehen: Mehr kann das System nicht beobachten.</numerusform>
            <numerusform>%n Ordner werden nur alle %1 Sekunden angesehen: Mehr kann das System nicht beobachten.</numerusform>
        </translation>
    </message>
    <message id="KPIndexNoRequests">
        <translation>Andere Programme können vom Index nichts erfragen: %1.</translation>
    </message>
    <message id="KPIndexNoWatches">
        <translation>Änderungen werden nur durch erneutes Nachsehen gefunden: Das System meldet keine.</translation>
    </message>
    <message id="KPIndexNotAnswering">
        <translation>Das Programm, das den Index führt, antwortet nicht.</translation>
    </message>
    <message id="KPIndexNothingSaved">
        <translation>Der Index wird nicht gesichert und beim nächsten Start neu angelegt: %1.</translation>
    </message>
    <message id="KPIndexOpening">
        <translation>Der Index wird geöffnet …</translation>
    </message>
    <message id="KPIndexReading">
        <translation>Ordner werden gelesen: bisher %1 Dateien</translation>
    </message>
    <message id="KPIndexReasonDamaged">
        <translation>die Datei ist beschädigt</translation>
    </message>
    <message id="KPIndexReasonNoSpace">
        <translation>der Datenträger ist voll</translation>
    </message>
    <message id="KPIndexReasonNotFound">
        <translation>die Datei oder der Ordner ist nicht da</translation>
    </message>
    <message id="KPIndexReasonNotPermitted">
        <translation>das ist nicht erlaubt</translation>
    </message>
    <message id="KPIndexReasonOther">
        <translation>das System meldet einen Fehler</translation>
    </message>
    <message id="KPIndexReasonReadOnly">
        <translation>der Datenträger kann nicht beschrieben werden</translation>
    </message>
    <message id="KPIndexReasonTooLarge">
        <translation>der Name ist zu lang oder die Datei zu groß</translation>
    </message>
    <message id="KPIndexRemedyConnect">
        <translation>Verbinden Sie den Datenträger oder entfernen Sie den Ordner unten.</translation>
    </message>
    <message id="KPIndexRemedyLimit">
        <translation>Ein Verwalter des Systems kann die Grenze %1 anheben.</translation>
    </message>
    <message id="KPIndexRemedyOtherProgram">
        <translation>Beenden Sie das andere Programm von Murn oder warten Sie, bis es fertig ist.</translation>
    </message>
    <message id="KPIndexRemedyRebuild">
        <translation>Legen Sie den Index neu an.</translation>
    </message>
    <message id="KPIndexRemedyRights">
        <translation>Geben Sie sich das Recht zu lesen oder nehmen Sie den Ordner unten aus.</translation>
    </message>
    <message id="KPIndexRemedyRoom">
        <translation>Schaffen Sie Platz auf dem Datenträger Ihres persönlichen Ordners.</translation>
    </message>
    <message id="KPIndexRootDistant">
        <translation>%1: Änderungen durch andere Rechner werden nur alle %2 Sekunden gefunden.</translation>
    </message>
    <message id="KPIndexRootHoldsStore">
        <translation>%1 wird nicht indiziert: Dort liegt der Index selbst.</translation>
    </message>
    <message id="KPIndexRootKept">
        <translation>%1 Was dort gefunden wurde, bleibt im Index.</translation>
    </message>
    <message id="KPIndexRootMissing">
        <translation>%1 ist nicht da.</translation>
    </message>
    <message id="KPIndexRootSilent">
        <translation>%1 antwortet nicht.</translation>
    </message>
    <message id="KPIndexRootUnmounted">
        <translation>%1: Der Datenträger %2 ist nicht eingehängt.</translation>
    </message>
    <message id="KPIndexRootUnreadable">
        <translation>%1 kann nicht gelesen werden: %2.</translation>
    </message>
    <message id="KPIndexSavingFails">
        <translation>Der Index lässt sich im Moment nicht sichern: %1.</translation>
    </message>
    <message id="KPIndexSearchWithoutFolder">
        <translation>Diese Suche hat keinen Ordner, in dem sie suchen kann.</translation>
    </message>
    <message id="KPInfoWindowTitle">
        <translation>Information: %1</translation>
    </message>
    <message id="KPInspectorShown">
        <translation>&amp;Informationen</translation>
    </message>
    <message id="KPInstallWorkflows">
        <translation>Aktionen zum Dateimanager hinzufügen</translation>
    </message>
    <message id="KPKeepDropZone">
        <translation>Ablagefläche immer zeigen</translation>
    </message>
    <message id="KPKeepExtension">
        <translation>.%1 behalten</translation>
    </message>
    <message id="KPKindsAddHint">
        <translation>Endung, Name, abgelegte Datei</translation>
    </message>
    <message id="KPKindsDelete">
        <translation>Löschen</translation>
    </message>
    <message id="KPKindsDeleteText">
        <translation>Nur die Gruppe verschwindet. Die Dokumente bleiben, wie sie sind.</translation>
    </message>
    <message id="KPKindsDeleteTitle">
        <translation>Die Gruppe „%1“ löschen?</translation>
    </message>
    <message id="KPKindsGroups">
        <translation>Gruppen</translation>
    </message>
    <message id="KPKindsHeading">
        <translation>Gruppen von Typen</translation>
    </message>
    <message id="KPKindsHint">
        <translation>Eingeschaltete Gruppen stehen in der Seitenleiste unter Arten. Jede kann beliebige Typen haben.</translation>
    </message>
    <message id="KPKindsKnown">
        <translation>„%1“ gehört schon zu dieser Gruppe.</translation>
    </message>
    <message id="KPKindsNew">
        <translation>Neue Gruppe</translation>
    </message>
    <message id="KPKindsNewName">
        <translation>Neue Art</translation>
    </message>
    <message id="KPKindsNotSaved">
        <translation>Die Gruppen konnten nicht gesichert werden: %1</translation>
    </message>
    <message id="KPKindsTypes">
        <translation>Typen in dieser Gruppe</translation>
    </message>
    <message id="KPKindsUnknown">
        <translation>„%1“ ist weder eine Endung noch ein bekannter Typ.</translation>
    </message>
    <message id="KPLibraryFlaggedItem">
        <translation>Markiert</translation>
    </message>
    <message id="KPLibraryHiddenItem">
        <translation>Ausgeblendet</translation>
    </message>
    <message id="KPLibraryLastImportItem">
        <translation>Letzter Import</translation>
    </message>
    <message id="KPLibraryTaggedFolder">
        <translation>Mit Schlagwort</translation>
    </message>
    <message id="KPLibraryUntaggedFolder">
        <translation>Ohne Schlagwort</translation>
    </message>
    <message id="KPListingNotFollowed">
        <translation>Änderungen in einigen Ordnern können nicht verfolgt werden: Das System gibt keine weiteren Überwachungen her.</translation>
    </message>
    <message id="KPLocationsFolders">
        <translation>Ordner mit Ergebnissen</translation>
    </message>
    <message id="KPLocationsGo">
        <translation>In diesem Ordner suchen</translation>
    </message>
    <message id="KPLocationsLeaveOut">
        <translation>Diesen Ordner ausschließen</translation>
    </message>
    <message id="KPLocationsPanelShown">
        <translation>&amp;Orte-Bereich</translation>
    </message>
    <message id="KPLocationsRecent">
        <translation>Zuletzt besuchte Orte</translation>
    </message>
    <message id="KPLocationsReveal">
        <translation>Im Dateimanager zeigen</translation>
    </message>
    <message id="KPLocationsUp">
        <translation>Übergeordneter Ordner</translation>
    </message>
    <message id="KPLooking">
        <translation>Suche läuft …</translation>
    </message>
    <message id="KPLoupeEntireImage">
        <translation>Ganzes Bild in der Lupe</translation>
    </message>
    <message id="KPLoupeNarrower">
        <translation>Kleinere Lupe</translation>
    </message>
    <message id="KPLoupeStronger">
        <translation>Stärker vergrößern</translation>
    </message>
    <message id="KPLoupeWeaker">
        <translation>Schwächer vergrößern</translation>
    </message>
    <message id="KPLoupeWider">
        <translation>Größere Lupe</translation>
    </message>
    <message id="KPMail">
        <translation>&amp;Mailen …</translation>
    </message>
    <message id="KPMailManyButton">
        <translation>Anhängen</translation>
    </message>
    <message id="KPMailManyText">
        <translation>Zusammen haben sie %1. Viele Mailserver weisen große Nachrichten ab.</translation>
    </message>
    <message id="KPMailManyTitle" numerus="yes">
        <translation>
            <numerusform>%n Dokument an eine Nachricht anhängen?</numerusform>
            <numerusform>%n Dokumente an eine Nachricht anhängen?</numerusform>
        </translation>
    </message>
    <message id="KPMailNobody">
        <translation>Es wurde kein Mailprogramm gefunden.</translation>
    </message>
    <message id="KPMailNotAFile">
        <translation>nur Dateien lassen sich anhängen, keine Ordner oder Pakete</translation>
    </message>
    <message id="KPMailPreparing" numerus="yes">
        <translation>
            <numerusform>%n Dokument wird angehängt</numerusform>
            <numerusform>%n Dokumente werden angehängt</numerusform>
        </translation>
    </message>
    <message id="KPMailRefused">
        <translation>Das Mailprogramm hat die Dokumente nicht angenommen.</translation>
    </message>
    <message id="KPMailTooMany">
        <translation>Höchstens %1 Dokumente lassen sich auf einmal mailen.</translation>
    </message>
    <message id="KPManage">
        <translation>Als Dokument der Bibliothek &amp;markieren</translation>
    </message>
    <message id="KPMangedItemsSourceLabel">
        <translation>Verwaltet</translation>
    </message>
    <message id="KPMenuDocuments">
        <translation>Do&amp;kumente</translation>
    </message>
    <message id="KPMenuEdit">
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message id="KPMenuFile">
        <translation>&amp;Datei</translation>
    </message>
    <message id="KPMenuGo">
        <translation>&amp;Gehe zu</translation>
    </message>
    <message id="KPMenuHelp">
        <translation>&amp;Hilfe</translation>
    </message>
    <message id="KPMenuTags">
        <translation>&amp;Schlagwörter</translation>
    </message>
    <message id="KPMenuView">
        <translation>&amp;Ansicht</translation>
    </message>
    <message id="KPMenuWindow">
        <translation>&amp;Fenster</translation>
    </message>
    <message id="KPMinimise">
        <translation>&amp;Minimieren</translation>
    </message>
    <message id="KPMirrorQuestionNo">
        <translation>Getrennt lassen</translation>
    </message>
    <message id="KPMirrorQuestionText">
        <translation>Andere Programme auf diesem Rechner versehen Dateien mit eigenen Schlagwörtern und Bewertungen. Murn kann die Ihren auch dort eintragen und übernehmen, was dort geändert wird. In den Einstellungen können Sie das jederzeit ändern.</translation>
    </message>
    <message id="KPMirrorQuestionTitle">
        <translation>Ihre Schlagwörter und die des Dateimanagers gleich halten?</translation>
    </message>
    <message id="KPMirrorQuestionYes">
        <translation>Gleich halten</translation>
    </message>
    <message id="KPMoveDocSingle">
        <translation>„%1“ verschieben?</translation>
    </message>
    <message id="KPMoveDocs">
        <translation>%1 Dokumente verschieben?</translation>
    </message>
    <message id="KPMoveDocsComments">
        <translation>Sie kommen mit Schlagwörtern und Bewertungen nach „%1“.</translation>
    </message>
    <message id="KPMoveOK">
        <translation>Verschieben</translation>
    </message>
    <message id="KPMoveSingleDocComments">
        <translation>Es kommt mit Schlagwörtern und Bewertung nach „%1“.</translation>
    </message>
    <message id="KPMoveTo">
        <translation>In Ordner verschieben …</translation>
    </message>
    <message id="KPMoveToFiledDocuments">
        <translation>Nach „Filed Documents“ be&amp;wegen</translation>
    </message>
    <message id="KPMoveToRecent">
        <translation>In zuletzt benutzten Ordner bewegen</translation>
    </message>
    <message id="KPMoveToTitle">
        <translation>Dokumente verschieben nach</translation>
    </message>
    <message id="KPMoveToTrash">
        <translation>In den &amp;Papierkorb</translation>
    </message>
    <message id="KPNameHint">
        <translation>Doppelklick zum Umbenennen</translation>
    </message>
    <message id="KPNameIsDots">
        <translation>„%1“ ist kein Name für eine Datei</translation>
    </message>
    <message id="KPNameIsTaken">
        <translation>eine andere Datei heißt jetzt so</translation>
    </message>
    <message id="KPNameMissing">
        <translation>eine Datei braucht einen Namen</translation>
    </message>
    <message id="KPNameNotEncodable">
        <translation>der Name enthält Zeichen, die ein Dateiname nicht enthalten kann</translation>
    </message>
    <message id="KPNameTooLong">
        <translation>der Name ist länger als 255 Bytes</translation>
    </message>
    <message id="KPNextDocument">
        <translation>Nächstes Dokument</translation>
    </message>
    <message id="KPNextPage">
        <translation>Nächste Seite</translation>
    </message>
    <message id="KPNo">
        <translation>Nein</translation>
    </message>
    <message id="KPNoApplication">
        <translation>Kein Programm</translation>
    </message>
    <message id="KPNoDocuments">
        <translation>Hier sind keine Dokumente</translation>
    </message>
    <message id="KPNoDocumentsAfterSearch">
        <translation>Kein Dokument passt zu dieser Suche</translation>
    </message>
    <message id="KPNoDocumentsAfterSearchHelp">
        <translation>Nehmen Sie oben einen Schritt weg oder suchen Sie an einem anderen Ort.</translation>
    </message>
    <message id="KPNoDocumentsHelpZel">
        <translation>Dokumente erscheinen hier, sobald es welche gibt.</translation>
    </message>
    <message id="KPNoFileManager">
        <translation>es gibt keine Dateiverwaltung</translation>
    </message>
    <message id="KPNoImporter">
        <translation>Dokumente können nicht gelesen werden: Das Programm murn-importer fehlt oder startet nicht. Inhalte und neue Bilder gibt es nicht.</translation>
    </message>
    <message id="KPNoPostScriptConverter">
        <translation>Zum Umwandeln von PostScript wird das Paket „ghostscript“ benötigt.</translation>
    </message>
    <message id="KPNoProgramToOpen">
        <translation>es wurde kein Programm gefunden, das Dateien öffnet</translation>
    </message>
    <message id="KPNoScannerAvailable">
        <translation>Kein Scanner verfügbar</translation>
    </message>
    <message id="KPNoScannerInstructions">
        <translation>Es wurde kein Scanner gefunden. Schalten Sie einen ein und suchen Sie mit „Seite scannen“ noch einmal. Auch Bilder und PDF-Dateien, die hier abgelegt werden, werden Seiten.</translation>
    </message>
    <message id="KPNoStars">
        <translation>Keine Bewertung</translation>
    </message>
    <message id="KPNoSuchFile">
        <translation>%1: keine solche Datei und kein solcher Ordner</translation>
    </message>
    <message id="KPNoSuchFolder">
        <translation>es gibt keinen Ordner „%1“</translation>
    </message>
    <message id="KPNoSuchProgram">
        <translation>kein solches Programm ist installiert: %1</translation>
    </message>
    <message id="KPNoTagsToDelete">
        <translation>Keine Schlagwörter zu löschen</translation>
    </message>
    <message id="KPNoTextRecognition">
        <translation>Zum Erkennen von Text wird das Paket „tesseract-ocr“ benötigt.</translation>
    </message>
    <message id="KPNotAPDF">
        <translation>kein PDF-Dokument</translation>
    </message>
    <message id="KPNotAPicture">
        <translation>Das ist kein Bild.</translation>
    </message>
    <message id="KPNotAnswering">
        <translation>Murn läuft, antwortet aber nicht: %1</translation>
    </message>
    <message id="KPNotCombined">
        <translation>Die Dokumente wurden nicht zusammengefügt</translation>
    </message>
    <message id="KPNotIndexed">
        <translation>„%1“ ist nicht indiziert</translation>
    </message>
    <message id="KPNotIndexedHint">
        <translation>Dokumente werden in indizierten Ordnern gefunden. Einmal hinzugefügt, bleibt dieser von selbst aktuell.</translation>
    </message>
    <message id="KPNotMailed">
        <translation>Die Dokumente wurden keinem Mailprogramm übergeben</translation>
    </message>
    <message id="KPNotRecognised">
        <translation>Es wurde kein Text erkannt</translation>
    </message>
    <message id="KPNothingSelected">
        <translation>Ausgewählte Dokumente zeigen hier ihre Schlagwörter und ihre Bewertung.</translation>
    </message>
    <message id="KPNothingToFile">
        <translation>Es wurde nichts kopiert, das abgelegt werden könnte.</translation>
    </message>
    <message id="KPOnlyShowSelected">
        <translation>Nur diese Dokumente zeigen</translation>
    </message>
    <message id="KPOpen">
        <translation>Ö&amp;ffnen</translation>
    </message>
    <message id="KPOpenFolder">
        <translation>&amp;Ordner öffnen …</translation>
    </message>
    <message id="KPOpenFolderTitle">
        <translation>Ordner öffnen</translation>
    </message>
    <message id="KPOpenWith">
        <translation>Öffnen mit</translation>
    </message>
    <message id="KPOpenWithOther">
        <translation>&amp;Anderes …</translation>
    </message>
    <message id="KPOpeningDocuments">
        <translation>%1 Dokumente werden geöffnet</translation>
    </message>
    <message id="KPOpeningStopNote">
        <translation>Beim Anhalten werden keine weiteren Dokumente geöffnet.</translation>
    </message>
    <message id="KPOptionFile">
        <translation>Die Dateien ablegen, nach einer Rückfrage</translation>
    </message>
    <message id="KPOptionFileClipboard">
        <translation>Ablegen, was kopiert wurde, sobald Sie zustimmen.</translation>
    </message>
    <message id="KPOptionFiles">
        <translation>Dateien, Ordner und Adressen (murn://tags/a/b), die geöffnet werden.</translation>
    </message>
    <message id="KPOptionFolder">
        <translation>Zeigt die Dokumente dieses Ordners statt des persönlichen; mehrmals möglich.</translation>
    </message>
    <message id="KPOptionHelp">
        <translation>Zeigt diese Hilfe.</translation>
    </message>
    <message id="KPOptionNeedsFiles">
        <translation>--show, --tag und --file brauchen Dateien</translation>
    </message>
    <message id="KPOptionNewInstance">
        <translation>Ein eigenes Fenster öffnen, neben einem, das schon offen ist.</translation>
    </message>
    <message id="KPOptionSearch">
        <translation>Nach diesem Text suchen.</translation>
    </message>
    <message id="KPOptionSearchSelection">
        <translation>Nach dem markierten oder sonst kopierten Text suchen.</translation>
    </message>
    <message id="KPOptionShow">
        <translation>Die Dateien in Murn zeigen</translation>
    </message>
    <message id="KPOptionTag">
        <translation>Die Schlagwörter der Dateien bearbeiten</translation>
    </message>
    <message id="KPOptionVersion">
        <translation>Zeigt die Version.</translation>
    </message>
    <message id="KPPageCount">
        <translation>Seite %1 von %2</translation>
    </message>
    <message id="KPPageCountNone">
        <translation>Keine Seiten</translation>
    </message>
    <message id="KPPageOf">
        <translation>%1 von %2</translation>
    </message>
    <message id="KPPaste">
        <translation>&amp;Einfügen</translation>
    </message>
    <message id="KPPictureOfDocument">
        <translation>Bild des Dokuments</translation>
    </message>
    <message id="KPPlacesAllFiles">
        <translation>Alles in %1</translation>
    </message>
    <message id="KPPlacesAllFilesShallow">
        <translation>In %1</translation>
    </message>
    <message id="KPPlacesComputer">
        <translation>Dieser Computer</translation>
    </message>
    <message id="KPPlacesEverywhere">
        <translation>Überall</translation>
    </message>
    <message id="KPPlacesFiledDocuments">
        <translation>Abgelegte Dokumente</translation>
    </message>
    <message id="KPPlacesFiledPast7Days">
        <translation>In den letzten 7 Tagen abgelegt</translation>
    </message>
    <message id="KPPlacesFiledThisMonth">
        <translation>Diesen Monat abgelegt</translation>
    </message>
    <message id="KPPlacesFiledToday">
        <translation>Heute abgelegt</translation>
    </message>
    <message id="KPPlacesHome">
        <translation>Persönlicher Ordner</translation>
    </message>
    <message id="KPPlacesSearchFolders">
        <translation>Suchordner</translation>
    </message>
    <message id="KPPostScriptFailed">
        <translation>Die PostScript-Datei konnte nicht umgewandelt werden.</translation>
    </message>
    <message id="KPPrefAdd">
        <translation>Hinzufügen …</translation>
    </message>
    <message id="KPPrefAddFolder">
        <translation>Ordner hinzufügen</translation>
    </message>
    <message id="KPPrefAddRule">
        <translation>Hinzufügen</translation>
    </message>
    <message id="KPPrefAdding">
        <translation>Hinzufügen von Dokumenten</translation>
    </message>
    <message id="KPPrefBackUpNow">
        <translation>Jetzt sichern</translation>
    </message>
    <message id="KPPrefBackup">
        <translation>Sicherung von Schlagwörtern und Bewertungen</translation>
    </message>
    <message id="KPPrefBackupHolds" numerus="yes">
        <translation>
            <numerusform>Die Sicherung enthält %1 Dokument.</numerusform>
            <numerusform>Die Sicherung enthält %1 Dokumente.</numerusform>
        </translation>
    </message>
    <message id="KPPrefBackupHourly">
        <translation>Schlagwörter und Bewertungen jede Stunde sichern</translation>
    </message>
    <message id="KPPrefBackupHourlyHint">
        <translation>In einer eigenen Datei, neben denen an den Dokumenten.</translation>
    </message>
    <message id="KPPrefBackupUnreadable">
        <translation>Die Sicherung ist nicht lesbar: %1</translation>
    </message>
    <message id="KPPrefBadge">
        <translation>Anzahl der Dokumente ohne Schlagwörter am Programmsymbol zeigen</translation>
    </message>
    <message id="KPPrefBadgeHint">
        <translation>Wo das Dock oder die Taskleiste des Desktops das kann.</translation>
    </message>
    <message id="KPPrefBelongHint">
        <translation>Neben allem, was Schlagwörter oder eine Bewertung hat oder abgelegt ist.</translation>
    </message>
    <message id="KPPrefBelongOffice">
        <translation>Texte, Tabellen und Präsentationen von Büroprogrammen</translation>
    </message>
    <message id="KPPrefBelongPDFs">
        <translation>PDF-Dokumente</translation>
    </message>
    <message id="KPPrefBelongWork">
        <translation>Dokumente von Pages, Numbers und Keynote</translation>
    </message>
    <message id="KPPrefBelonging">
        <translation>Was zur Bibliothek gehört</translation>
    </message>
    <message id="KPPrefBordersImages">
        <translation>Ränder um Bilder</translation>
    </message>
    <message id="KPPrefBordersLarge">
        <translation>Ränder auch um große Bilder</translation>
    </message>
    <message id="KPPrefBordersMovies">
        <translation>Ränder um Filme</translation>
    </message>
    <message id="KPPrefBordersOther">
        <translation>Ränder um andere Dokumente</translation>
    </message>
    <message id="KPPrefCacheDays">
        <translation>Bilder werden neu gemacht nach</translation>
    </message>
    <message id="KPPrefCacheSize">
        <translation>Speicher für Bilder</translation>
    </message>
    <message id="KPPrefCacheSlow">
        <translation>Bilder aufheben, die lange gedauert haben</translation>
    </message>
    <message id="KPPrefCacheSlowHint">
        <translation>In den Vorschaubildern, die alle Programme dieses Schreibtischs teilen.</translation>
    </message>
    <message id="KPPrefChooseColour">
        <translation>Wählen …</translation>
    </message>
    <message id="KPPrefChooseFolder">
        <translation>Ordner wählen …</translation>
    </message>
    <message id="KPPrefCloudBlack">
        <translation>Schlagwortwolke einfarbig zeigen</translation>
    </message>
    <message id="KPPrefCloudColumn">
        <translation>Ein Wort in jeder Zeile</translation>
    </message>
    <message id="KPPrefCloudCounts">
        <translation>Zeigen, wie viele Dokumente sie haben</translation>
    </message>
    <message id="KPPrefCloudTags">
        <translation>Schlagwörter zeigen</translation>
    </message>
    <message id="KPPrefCloudTypes">
        <translation>Dokumentarten zeigen</translation>
    </message>
    <message id="KPPrefColours">
        <translation>Farben</translation>
    </message>
    <message id="KPPrefCommonTags">
        <translation>Bei mehreren Dokumenten nur die gemeinsamen Schlagwörter ändern</translation>
    </message>
    <message id="KPPrefCommonTagsHint">
        <translation>Aus: Alle bekommen genau die eingegebenen Schlagwörter.</translation>
    </message>
    <message id="KPPrefComplete">
        <translation>Schlagwörter beim Tippen vervollständigen</translation>
    </message>
    <message id="KPPrefConfirmDelete">
        <translation>Vor dem Löschen in den Papierkorb fragen</translation>
    </message>
    <message id="KPPrefConfirmMove">
        <translation>Vor dem Verschieben oder Kopieren fragen</translation>
    </message>
    <message id="KPPrefCrashReports">
        <translation>Einen Bericht schreiben, wenn Murn abstürzt</translation>
    </message>
    <message id="KPPrefCrashReportsHint">
        <translation>Er bleibt auf diesem Rechner. Von selbst wird nie etwas gesendet.</translation>
    </message>
    <message id="KPPrefCustomWords">
        <translation>Eigene Wörter</translation>
    </message>
    <message id="KPPrefCustomWordsHint">
        <translation>Eines in jeder Zeile.</translation>
    </message>
    <message id="KPPrefDays">
        <translation>%1 Tagen</translation>
    </message>
    <message id="KPPrefDebugLog">
        <translation>Mehr ins Protokoll schreiben</translation>
    </message>
    <message id="KPPrefDebugLogHint">
        <translation>Zur Fehlersuche; Namen von Dokumenten stehen darin.</translation>
    </message>
    <message id="KPPrefDesk">
        <translation>Hintergrund</translation>
    </message>
    <message id="KPPrefDeskHint">
        <translation>Mit den Werksfarben hat ein dunkler Schreibtisch einen dunklen Hintergrund.</translation>
    </message>
    <message id="KPPrefDeskText">
        <translation>Namen</translation>
    </message>
    <message id="KPPrefDestinations">
        <translation>Zuletzt benutzte Ziele</translation>
    </message>
    <message id="KPPrefEntering">
        <translation>Eingeben von Schlagwörtern</translation>
    </message>
    <message id="KPPrefEverywhere">
        <translation>Aus jedem Programm</translation>
    </message>
    <message id="KPPrefFiledIn">
        <translation>Dokumente werden in %1 abgelegt.</translation>
    </message>
    <message id="KPPrefFilingAlways">
        <translation>Ohne Rückfrage ablegen</translation>
    </message>
    <message id="KPPrefFilingAlwaysHint">
        <translation>Aus: Sie bleiben, wo sie sind, und gehören nur zur Bibliothek.</translation>
    </message>
    <message id="KPPrefFilingAsk">
        <translation>Jedes Mal fragen, ob sie abgelegt werden</translation>
    </message>
    <message id="KPPrefFolderNotMade">
        <translation>Der Ordner wurde nicht angelegt</translation>
    </message>
    <message id="KPPrefFolders">
        <translation>Wo Murn sucht</translation>
    </message>
    <message id="KPPrefFollowLinks">
        <translation>Auch Ordner hinter Verknüpfungen werden mit allen Unterordnern gezeigt</translation>
    </message>
    <message id="KPPrefForget">
        <translation>Vergessen</translation>
    </message>
    <message id="KPPrefForgetDestinations">
        <translation>Letzte Ziele beim Verschieben und Kopieren</translation>
    </message>
    <message id="KPPrefForgetNamed">
        <translation>Vergessen: %1</translation>
    </message>
    <message id="KPPrefForgetSearches">
        <translation>Letzte Suchen</translation>
    </message>
    <message id="KPPrefForgetTagGroups">
        <translation>Letzte Schlagwortgruppen</translation>
    </message>
    <message id="KPPrefForgetTags">
        <translation>Zuletzt eingegebene Schlagwörter</translation>
    </message>
    <message id="KPPrefGlobalShortcut">
        <translation>Nach dem kopierten Text suchen mit</translation>
    </message>
    <message id="KPPrefGlobalShortcutHint">
        <translation>Eine Taste, die in jedem Programm wirkt.</translation>
    </message>
    <message id="KPPrefGrid">
        <translation>Dokumente</translation>
    </message>
    <message id="KPPrefGroupsOpen">
        <translation>Gruppen sind zunächst aufgeklappt</translation>
    </message>
    <message id="KPPrefHeal">
        <translation>Dateien die Schlagwörter zurückgeben, die ein Programm verloren hat</translation>
    </message>
    <message id="KPPrefHealHint">
        <translation>Viele Programme sichern, indem sie eine neue Datei an die Stelle der alten schreiben.</translation>
    </message>
    <message id="KPPrefHealing">
        <translation>Heilung</translation>
    </message>
    <message id="KPPrefHiddenFiles">
        <translation>Auch versteckte Dateien werden gezeigt, wenn ein Ordner mit allen Unterordnern gezeigt wird</translation>
    </message>
    <message id="KPPrefHomeFolder">
        <translation>Startordner</translation>
    </message>
    <message id="KPPrefHomeFolderHint">
        <translation>Die Taste „Start“ zeigt ihn, und das Fenster beim ersten Mal.</translation>
    </message>
    <message id="KPPrefIndexHolds" numerus="yes">
        <translation>
            <numerusform>Der Index enthält %1 Datei.</numerusform>
            <numerusform>Der Index enthält %1 Dateien und Ordner.</numerusform>
        </translation>
    </message>
    <message id="KPPrefIndexState">
        <translation>Zustand</translation>
    </message>
    <message id="KPPrefIndexUpToDate">
        <translation>Alles ist auf dem neuesten Stand.</translation>
    </message>
    <message id="KPPrefIndexed">
        <translation>Was indiziert wird</translation>
    </message>
    <message id="KPPrefKeepTrack">
        <translation>Merken, welche Zeilen aufgeklappt sind</translation>
    </message>
    <message id="KPPrefKeywords">
        <translation>Stichwörter in Dokumenten als Schlagwörter zeigen</translation>
    </message>
    <message id="KPPrefLastBackup">
        <translation>Letzte Sicherung: %1</translation>
    </message>
    <message id="KPPrefLogin">
        <translation>Bei der Anmeldung</translation>
    </message>
    <message id="KPPrefLoginAbsent">
        <translation>Dafür muss Murn als Paket installiert sein und die Sitzung von systemd geführt werden.</translation>
    </message>
    <message id="KPPrefLoginFailed">
        <translation>Der Dienst ließ sich nicht umschalten.</translation>
    </message>
    <message id="KPPrefLoginHint">
        <translation>Was bei geschlossenem Fenster hinzukommt, sich ändert oder den Ort wechselt, wird beim Öffnen sofort gefunden, und die Suche der Arbeitsumgebung antwortet schneller.</translation>
    </message>
    <message id="KPPrefLoginKeep">
        <translation>Den Index ab der Anmeldung führen</translation>
    </message>
    <message id="KPPrefMakeFolder">
        <translation>„%1“ anlegen</translation>
    </message>
    <message id="KPPrefManagedFolder">
        <translation>Verwalteter Ordner</translation>
    </message>
    <message id="KPPrefMegabytes">
        <translation>%1 MB</translation>
    </message>
    <message id="KPPrefMirror">
        <translation>Schlagwörter, Bewertung und Kommentar mit denen des Desktops gleich halten</translation>
    </message>
    <message id="KPPrefMirrorHint">
        <translation>In beide Richtungen: Andere Programme des Desktops sehen sie, und was dort geändert wird, wird übernommen.</translation>
    </message>
    <message id="KPPrefModified">
        <translation>Ein Dokument gilt als geändert, wenn sich seine Schlagwörter ändern</translation>
    </message>
    <message id="KPPrefMoving">
        <translation>Verschieben und Löschen</translation>
    </message>
    <message id="KPPrefNewScans">
        <translation>Neue Scans</translation>
    </message>
    <message id="KPPrefNoBackup">
        <translation>Es gibt noch keine Sicherung.</translation>
    </message>
    <message id="KPPrefNotFiled">
        <translation>Es gibt noch keinen verwalteten Ordner: Abgelegte Dokumente kommen auf den Schreibtisch.</translation>
    </message>
    <message id="KPPrefOnFiles">
        <translation>An den Dateien</translation>
    </message>
    <message id="KPPrefOneSection">
        <translation>Aufklappen eines Abschnitts klappt die anderen zu</translation>
    </message>
    <message id="KPPrefPageAppearance">
        <translation>Darstellung</translation>
    </message>
    <message id="KPPrefPageBackup">
        <translation>Sicherung und Heilung</translation>
    </message>
    <message id="KPPrefPageDropZone">
        <translation>Ablagefläche</translation>
    </message>
    <message id="KPPrefPageFiling">
        <translation>Ablage</translation>
    </message>
    <message id="KPPrefPageIndex">
        <translation>Index</translation>
    </message>
    <message id="KPPrefPageKinds">
        <translation>Arten von Dokumenten</translation>
    </message>
    <message id="KPPrefPageLibrary">
        <translation>Bibliothek und Ordner</translation>
    </message>
    <message id="KPPrefPagePrivacy">
        <translation>Datenschutz</translation>
    </message>
    <message id="KPPrefPageScanning">
        <translation>Scannen</translation>
    </message>
    <message id="KPPrefPageTags">
        <translation>Schlagwörter</translation>
    </message>
    <message id="KPPrefPages">
        <translation>Seiten</translation>
    </message>
    <message id="KPPrefPaused">
        <translation>Dokumente vorerst nicht lesen</translation>
    </message>
    <message id="KPPrefPausedHint">
        <translation>Namen, Schlagwörter und Bewertungen werden weiter verfolgt, Inhalte nicht.</translation>
    </message>
    <message id="KPPrefPictures">
        <translation>Bilder der Dokumente</translation>
    </message>
    <message id="KPPrefPixels">
        <translation>%1 Pixel</translation>
    </message>
    <message id="KPPrefQuality">
        <translation>Güte der Bilder</translation>
    </message>
    <message id="KPPrefQualityHint">
        <translation>Von 0,05 für kleine bis 1 für große Dateien.</translation>
    </message>
    <message id="KPPrefRawQuery">
        <translation>Eine Abfrage beginnt mit</translation>
    </message>
    <message id="KPPrefRawQueryHint">
        <translation>Was im Suchfeld auf dieses Zeichen folgt, gilt unverändert als Metadatenabfrage.</translation>
    </message>
    <message id="KPPrefRebuild">
        <translation>Index neu anlegen …</translation>
    </message>
    <message id="KPPrefRebuildHint">
        <translation>Alles wird noch einmal gelesen. Ihre Dateien mit Schlagwörtern und Bewertungen bleiben unberührt: Der Index merkt sich nur, was an ihnen steht.</translation>
    </message>
    <message id="KPPrefRebuildTitle">
        <translation>Neu anlegen</translation>
    </message>
    <message id="KPPrefRecentLocations">
        <translation>Zuletzt besuchte Orte</translation>
    </message>
    <message id="KPPrefRemembered">
        <translation>Was Murn sich merkt</translation>
    </message>
    <message id="KPPrefRemove">
        <translation>Entfernen</translation>
    </message>
    <message id="KPPrefReports">
        <translation>Berichte</translation>
    </message>
    <message id="KPPrefReset">
        <translation>Werkseinstellung</translation>
    </message>
    <message id="KPPrefResetNamed">
        <translation>Werkseinstellung von: %1</translation>
    </message>
    <message id="KPPrefRestore">
        <translation>Wiederherstellen …</translation>
    </message>
    <message id="KPPrefRoots">
        <translation>Indizierte Ordner</translation>
    </message>
    <message id="KPPrefRootsHint">
        <translation>Murn verfolgt Namen, Schlagwörter und Inhalte dessen, was in diesen Ordnern liegt.</translation>
    </message>
    <message id="KPPrefRuleHint">
        <translation>Name eines Ordners oder Pfad, der mit / oder ~/ beginnt</translation>
    </message>
    <message id="KPPrefRuleWrong">
        <translation>Eine Regel ist der Name eines Ordners oder ein Pfad, der mit / oder ~/ beginnt.</translation>
    </message>
    <message id="KPPrefRules">
        <translation>Regeln</translation>
    </message>
    <message id="KPPrefRulesHint">
        <translation>Ordner, die ausgenommen sind. Eine Regel mit „!“ davor nimmt einen Ordner wieder auf; die letzte passende entscheidet.</translation>
    </message>
    <message id="KPPrefScannedPages">
        <translation>Gescannte Seiten</translation>
    </message>
    <message id="KPPrefSearch">
        <translation>Einstellungen suchen</translation>
    </message>
    <message id="KPPrefSearchContents">
        <translation>Wörter suchen auch im Inhalt der Dokumente</translation>
    </message>
    <message id="KPPrefSearchFacts">
        <translation>Wörter suchen auch in den Angaben</translation>
    </message>
    <message id="KPPrefSearchFactsHint">
        <translation>Titel, Verfasser, Stichwörter und was Dokumente sonst von sich sagen.</translation>
    </message>
    <message id="KPPrefSearchFolders">
        <translation>Suchordner</translation>
    </message>
    <message id="KPPrefSearchFoldersHint">
        <translation>Dokumente in diesen Ordnern werden gezeigt, wo immer sie dort liegen. Nichts wird verschoben oder kopiert.</translation>
    </message>
    <message id="KPPrefSearching">
        <translation>Suchen</translation>
    </message>
    <message id="KPPrefShowHidden">
        <translation>Ausgeblendete Dokumente als Zeile zeigen</translation>
    </message>
    <message id="KPPrefShowRating">
        <translation>Bewertungen zeigen</translation>
    </message>
    <message id="KPPrefShowTags">
        <translation>Schlagwörter zeigen</translation>
    </message>
    <message id="KPPrefShowTitle">
        <translation>Namen zeigen</translation>
    </message>
    <message id="KPPrefSidebar">
        <translation>Seitenleiste</translation>
    </message>
    <message id="KPPrefSizeToFit">
        <translation>Bilder so groß, dass sie jede Zeile füllen</translation>
    </message>
    <message id="KPPrefStatusItem">
        <translation>Symbol in der Kontrollleiste zeigen</translation>
    </message>
    <message id="KPPrefStatusItemHint">
        <translation>Damit blendet das Schließen des Fensters es nur aus.</translation>
    </message>
    <message id="KPPrefSuggest">
        <translation>Im Schlagwort-Editor Schlagwörter vorschlagen</translation>
    </message>
    <message id="KPPrefSuggestCustom">
        <translation>Eigene Wörter</translation>
    </message>
    <message id="KPPrefSuggestKeywords">
        <translation>Stichwörter, die das Dokument nennt</translation>
    </message>
    <message id="KPPrefSuggestNoBanned">
        <translation>Nichtssagende Wörter weglassen</translation>
    </message>
    <message id="KPPrefSuggestNoBannedHint">
        <translation>Etwa „untitled“ oder „author“.</translation>
    </message>
    <message id="KPPrefSuggestPapers">
        <translation>Wörter für wissenschaftliche Arbeiten</translation>
    </message>
    <message id="KPPrefSuggestPeople">
        <translation>Personen</translation>
    </message>
    <message id="KPPrefSuggestPopular">
        <translation>Die meistgebrauchten Schlagwörter</translation>
    </message>
    <message id="KPPrefSuggestTypical">
        <translation>Typische Wörter</translation>
    </message>
    <message id="KPPrefSuggestions">
        <translation>Vorschläge</translation>
    </message>
    <message id="KPPrefTagPanel">
        <translation>Schlagwortbereich</translation>
    </message>
    <message id="KPPrefTitle">
        <translation>Einstellungen</translation>
    </message>
    <message id="KPPrefUseCommas">
        <translation>Kommas trennen Schlagwörter</translation>
    </message>
    <message id="KPPrefUseCommasHint">
        <translation>Aus: Nur die Eingabetaste beendet ein Schlagwort, das dann Kommas enthalten kann.</translation>
    </message>
    <message id="KPPrefWeb">
        <translation>Aufgenommene Webseiten</translation>
    </message>
    <message id="KPPrefWebBackgrounds">
        <translation>Mit Farben und Bildern hinter dem Text</translation>
    </message>
    <message id="KPPrefWebPages">
        <translation>In A4-Seiten statt einer langen Seite</translation>
    </message>
    <message id="KPPrefWebWidth">
        <translation>Breite, für die Seiten gesetzt werden</translation>
    </message>
    <message id="KPPrefYearMonth">
        <translation>Ordner für Monate statt für Tage</translation>
    </message>
    <message id="KPPrefYearMonthHint">
        <translation>„2026/6“ statt „2026/6/14“. Was schon abgelegt ist, wird nach Rückfrage verschoben.</translation>
    </message>
    <message id="KPPrefZoneLeft">
        <translation>Am linken Rand statt am rechten</translation>
    </message>
    <message id="KPPrefZoneLeftHint">
        <translation>Bei mehreren Bildschirmen am äußersten.</translation>
    </message>
    <message id="KPPrefZonePanel">
        <translation>Feld am Bildschirmrand</translation>
    </message>
    <message id="KPPrefZoneShow">
        <translation>Ablagefläche zeigen, während etwas gezogen wird</translation>
    </message>
    <message id="KPPrefZoneShowHint">
        <translation>Sie gleitet am Bildschirmrand heraus, nimmt auf, was abgelegt wird, und fragt nach den Schlagwörtern.</translation>
    </message>
    <message id="KPPrefZoneStays">
        <translation>Auch dazwischen sichtbar lassen</translation>
    </message>
    <message id="KPPrefZoneStaysHint">
        <translation>Als schmaler Streifen; wo der Desktop Programmen nicht erlaubt, ihre Fenster zu platzieren, als kleines Fenster.</translation>
    </message>
    <message id="KPPreferences">
        <translation>Einstellungen …</translation>
    </message>
    <message id="KPPreviewDamaged">
        <translation>Das Dokument ist beschädigt; dies war zu lesen.</translation>
    </message>
    <message id="KPPreviewSheet">
        <translation>Alle ausgewählten auf einen Blick</translation>
    </message>
    <message id="KPPreviewTooLarge">
        <translation>Das Dokument ist zu groß, um ganz gezeigt zu werden.</translation>
    </message>
    <message id="KPPreviewUnreadable">
        <translation>Die Datei kann nicht gelesen werden.</translation>
    </message>
    <message id="KPPreviousDocument">
        <translation>Voriges Dokument</translation>
    </message>
    <message id="KPPreviousPage">
        <translation>Vorige Seite</translation>
    </message>
    <message id="KPPrint">
        <translation>&amp;Drucken …</translation>
    </message>
    <message id="KPPrintManyButton">
        <translation>Anzeigen</translation>
    </message>
    <message id="KPPrintManyText">
        <translation>Die Dokumente haben mehr Seiten. Drucken Sie die übrigen danach.</translation>
    </message>
    <message id="KPPrintManyTitle">
        <translation>Die ersten %1 Seiten drucken?</translation>
    </message>
    <message id="KPPrintNoSpace">
        <translation>für seine Seiten ist kein Platz</translation>
    </message>
    <message id="KPPrintPreparing" numerus="yes">
        <translation>
            <numerusform>Die Seiten von %n Dokument werden gezeichnet</numerusform>
            <numerusform>Die Seiten von %n Dokumenten werden gezeichnet</numerusform>
        </translation>
    </message>
    <message id="KPPrintStopNote">
        <translation>Beim Anhalten wird nichts weiter gedruckt.</translation>
    </message>
    <message id="KPPrintTitle">
        <translation>Drucken</translation>
    </message>
    <message id="KPPrinterFailed">
        <translation>Der Drucker nimmt keine Seiten mehr an</translation>
    </message>
    <message id="KPPrinterFailedText">
        <translation>Er ist vielleicht ausgeschaltet oder entfernt worden, oder es ist kein Platz für die Datei. Seiten, die er vorher annahm, sind vielleicht gedruckt.</translation>
    </message>
    <message id="KPPrintingPages">
        <translation>Es wird gedruckt</translation>
    </message>
    <message id="KPProblemCount" numerus="yes">
        <translation>
            <numerusform>%n Problem</numerusform>
            <numerusform>%n Probleme</numerusform>
        </translation>
    </message>
    <message id="KPProblemsTitle">
        <translation>Nicht alles wird gefunden oder ist aktuell</translation>
    </message>
    <message id="KPProgramFilter">
        <translation>Programm suchen</translation>
    </message>
    <message id="KPProgramOpen">
        <translation>Ö&amp;ffnen</translation>
    </message>
    <message id="KPProgramTitle">
        <translation>Öffnen mit</translation>
    </message>
    <message id="KPPutInFiledDocuments">
        <translation>In „Filed Documents“ &amp;ablegen</translation>
    </message>
    <message id="KPQuickPreview">
        <translation>Vorschau</translation>
    </message>
    <message id="KPQuickSearch">
        <translation>&amp;Schnellsuche</translation>
    </message>
    <message id="KPQuit">
        <translation>&amp;Beenden</translation>
    </message>
    <message id="KPRate">
        <translation>&amp;Bewerten</translation>
    </message>
    <message id="KPRating">
        <translation>Bewertung</translation>
    </message>
    <message id="KPRatingAtLeast" numerus="yes">
        <translation>
            <numerusform>Mindestens %1 Stern</numerusform>
            <numerusform>Mindestens %1 Sterne</numerusform>
        </translation>
    </message>
    <message id="KPRatingAtMost" numerus="yes">
        <translation>
            <numerusform>Ohne Bewertung bis %1 Stern</numerusform>
            <numerusform>Ohne Bewertung bis %1 Sterne</numerusform>
        </translation>
    </message>
    <message id="KPRatingExactly">
        <translation>%1 Sterne</translation>
    </message>
    <message id="KPRatingHint">
        <translation>0 bis 5 Sterne; die Zifferntasten setzen sie</translation>
    </message>
    <message id="KPRatingNotReadable">
        <translation>die Bewertung ist nicht lesbar</translation>
    </message>
    <message id="KPRatingUnrated">
        <translation>Ohne Bewertung</translation>
    </message>
    <message id="KPRatingsDiffer">
        <translation>Die Bewertungen sind verschieden.</translation>
    </message>
    <message id="KPReasonCancelled">
        <translation>es wurde nicht erlaubt</translation>
    </message>
    <message id="KPReasonGone">
        <translation>die Datei ist nicht mehr da</translation>
    </message>
    <message id="KPReasonNoSpace">
        <translation>an dieser Datei oder auf ihrem Datenträger ist kein Platz mehr für Schlagwörter</translation>
    </message>
    <message id="KPReasonNotPermitted">
        <translation>diese Datei darf hier nicht geändert werden</translation>
    </message>
    <message id="KPReasonReadOnly">
        <translation>die Datei liegt auf einem Datenträger, der nicht beschrieben werden kann</translation>
    </message>
    <message id="KPReasonTooLarge">
        <translation>das sind mehr Schlagwörter, als eine Datei aufnehmen kann</translation>
    </message>
    <message id="KPReasonUnreadable">
        <translation>die Schlagwörter sind nicht lesbar und blieben unberührt</translation>
    </message>
    <message id="KPReasonUnsupported">
        <translation>der Datenträger kann keine Schlagwörter aufnehmen</translation>
    </message>
    <message id="KPRebuildAllThumbnails">
        <translation>Alle Bilder neu zeichnen</translation>
    </message>
    <message id="KPRebuildLater">
        <translation>Beim nächsten Start</translation>
    </message>
    <message id="KPRebuildNow">
        <translation>Jetzt neu starten</translation>
    </message>
    <message id="KPRebuildText">
        <translation>Das geschieht beim Start von Murn. Bis alles noch einmal gelesen ist, finden Suchen weniger.</translation>
    </message>
    <message id="KPRebuildThumbnails">
        <translation>Bilder neu zeichnen</translation>
    </message>
    <message id="KPRebuildTitle">
        <translation>Den Index neu anlegen?</translation>
    </message>
    <message id="KPRecentSearches">
        <translation>Letzte Suchen</translation>
    </message>
    <message id="KPRecogniseNoPDF">
        <translation>Keines der Dokumente ist ein PDF.</translation>
    </message>
    <message id="KPRecogniseStopNote">
        <translation>Sie können weiterarbeiten. Beim Anhalten bleibt das Dokument, das in Arbeit ist, wie es war.</translation>
    </message>
    <message id="KPRecogniseText">
        <translation>&amp;Text erkennen</translation>
    </message>
    <message id="KPRecognised" numerus="yes">
        <translation>
            <numerusform>Auf %n Seite wurde Text erkannt</numerusform>
            <numerusform>Auf %n Seiten wurde Text erkannt</numerusform>
        </translation>
    </message>
    <message id="KPRecognisedNothing">
        <translation>Es gab keine Seite ohne Text</translation>
    </message>
    <message id="KPRecognising" numerus="yes">
        <translation>
            <numerusform>Text in %n Dokument wird erkannt</numerusform>
            <numerusform>Text in %n Dokumenten wird erkannt</numerusform>
        </translation>
    </message>
    <message id="KPRedo">
        <translation>&amp;Wiederholen</translation>
    </message>
    <message id="KPRedoNamed">
        <translation>&amp;Wiederholen: %1</translation>
    </message>
    <message id="KPRedoing">
        <translation>Wird wiederholt: %1</translation>
    </message>
    <message id="KPRefresh">
        <translation>Neu &amp;suchen</translation>
    </message>
    <message id="KPRemoveConfirmationCancel">
        <translation>Abbrechen</translation>
    </message>
    <message id="KPRemoveConfirmationComments">
        <translation>„%1“ kann nicht in den Papierkorb gelegt werden. Es wird sofort entfernt und kann nicht zurückgeholt werden.</translation>
    </message>
    <message id="KPRemoveConfirmationContinue">
        <translation>Entfernen</translation>
    </message>
    <message id="KPRemoveConfirmationTitle">
        <translation>Objekt endgültig entfernen?</translation>
    </message>
    <message id="KPRemoveFromRecents">
        <translation>Aus den zuletzt verwendeten entfernen</translation>
    </message>
    <message id="KPRemoveImmediateAuthComment">
        <translation>Das endgültige Entfernen einer Datei muss bestätigt werden.</translation>
    </message>
    <message id="KPRenameFile">
        <translation>&amp;Umbenennen …</translation>
    </message>
    <message id="KPRenameLabel">
        <translation>Neuer Name:</translation>
    </message>
    <message id="KPRepairAttributes">
        <translation>Reparieren …</translation>
    </message>
    <message id="KPRepairButton">
        <translation>Entfernen</translation>
    </message>
    <message id="KPRepairText">
        <translation>Schlagwörter, Bewertungen oder Kommentare stehen dort so, dass niemand sie lesen kann. Sie werden entfernt, damit neue vergeben werden können. Das lässt sich widerrufen.</translation>
    </message>
    <message id="KPRepairTitle" numerus="yes">
        <translation>
            <numerusform>Von %n Dokument entfernen, was nicht zu verstehen ist?</numerusform>
            <numerusform>Von %n Dokumenten entfernen, was nicht zu verstehen ist?</numerusform>
        </translation>
    </message>
    <message id="KPReport">
        <translation>&amp;Rückmeldung …</translation>
    </message>
    <message id="KPReportCopied">
        <translation>Kopiert.</translation>
    </message>
    <message id="KPReportCopy">
        <translation>Kopieren</translation>
    </message>
    <message id="KPReportFileName">
        <translation>Bericht über Murn.txt</translation>
    </message>
    <message id="KPReportHint">
        <translation>Das ist alles, was der Bericht sagt. Ändern Sie ihn nach Belieben und senden Sie ihn selbst: Murn sendet nichts.</translation>
    </message>
    <message id="KPReportMail">
        <translation>E-Mail schreiben</translation>
    </message>
    <message id="KPReportNoMail">
        <translation>Es gibt kein Programm für E-Mail.</translation>
    </message>
    <message id="KPReportNoRatingsChanges">
        <translation>Keine Bewertungen geändert</translation>
    </message>
    <message id="KPReportNoTagsChanges">
        <translation>Keine Schlagwörter geändert</translation>
    </message>
    <message id="KPReportNoTagsOrRatingsChanges">
        <translation>Keine Schlagwörter oder Bewertungen geändert</translation>
    </message>
    <message id="KPReportQuestions">
        <translation>Was haben Sie getan?

Was ist geschehen, und was hatten Sie erwartet?
</translation>
    </message>
    <message id="KPReportRatingsChanges" numerus="yes">
        <translation>
            <numerusform>Bewertung von %1 Dokument geändert</numerusform>
            <numerusform>Bewertungen von %1 Dokumenten geändert</numerusform>
        </translation>
    </message>
    <message id="KPReportSave">
        <translation>Sichern …</translation>
    </message>
    <message id="KPReportSaved">
        <translation>Gesichert.</translation>
    </message>
    <message id="KPReportTagsAndRatingsChanges" numerus="yes">
        <translation>
            <numerusform>Schlagwörter und Bewertung von %1 Dokument geändert</numerusform>
            <numerusform>Schlagwörter und Bewertungen von %1 Dokumenten geändert</numerusform>
        </translation>
    </message>
    <message id="KPReportTagsChanges" numerus="yes">
        <translation>
            <numerusform>Schlagwörter von %1 Dokument geändert</numerusform>
            <numerusform>Schlagwörter von %1 Dokumenten geändert</numerusform>
        </translation>
    </message>
    <message id="KPReportTitle">
        <translation>Ein Bericht an die Entwickler von Murn</translation>
    </message>
    <message id="KPRestoreAfter">
        <translation>Wiederhergestellt</translation>
    </message>
    <message id="KPRestoreAll">
        <translation>Alle</translation>
    </message>
    <message id="KPRestoreBadBackup">
        <translation>Diese Sicherung ist nicht brauchbar: %1</translation>
    </message>
    <message id="KPRestoreBefore">
        <translation>Jetzt</translation>
    </message>
    <message id="KPRestoreDone" numerus="yes">
        <translation>
            <numerusform>%n Dokument hat Schlagwörter und Bewertung zurück.</numerusform>
            <numerusform>%n Dokumente haben Schlagwörter und Bewertungen zurück.</numerusform>
        </translation>
    </message>
    <message id="KPRestoreDoneTitle">
        <translation>Schlagwörter wurden wiederhergestellt</translation>
    </message>
    <message id="KPRestoreFile">
        <translation>Datei</translation>
    </message>
    <message id="KPRestoreFiles" numerus="yes">
        <translation>
            <numerusform>%n Datei wiederherstellen</numerusform>
            <numerusform>%n Dateien wiederherstellen</numerusform>
        </translation>
    </message>
    <message id="KPRestoreFilter">
        <translation>Sicherungen von Schlagwörtern und Bewertungen</translation>
    </message>
    <message id="KPRestoreFolder">
        <translation>Ordner</translation>
    </message>
    <message id="KPRestoreList">
        <translation>Was sich ändern würde</translation>
    </message>
    <message id="KPRestoreLooking">
        <translation>Die Dateien werden mit der Sicherung %1 verglichen …</translation>
    </message>
    <message id="KPRestoreMissing" numerus="yes">
        <translation>
            <numerusform>%n Datei der Sicherung ist nirgends zu finden.</numerusform>
            <numerusform>%n Dateien der Sicherung sind nirgends zu finden.</numerusform>
        </translation>
    </message>
    <message id="KPRestoreNoBackup">
        <translation>Es gibt noch keine Sicherung.</translation>
    </message>
    <message id="KPRestoreNoDifference">
        <translation>Alle Dateien haben, was die Sicherung sagt, oder Neueres. Es gibt nichts wiederherzustellen.</translation>
    </message>
    <message id="KPRestoreNoRating">
        <translation>keine Bewertung</translation>
    </message>
    <message id="KPRestoreNoTags">
        <translation>keine Schlagwörter</translation>
    </message>
    <message id="KPRestoreNothing">
        <translation>Wiederherstellen</translation>
    </message>
    <message id="KPRestoreOther">
        <translation>Andere Sicherung …</translation>
    </message>
    <message id="KPRestorePreview" numerus="yes">
        <translation>
            <numerusform>%n Datei hat andere Schlagwörter oder eine andere Bewertung als die Sicherung, früher gesetzt. Noch ist nichts geändert.</numerusform>
            <numerusform>%n Dateien haben andere Schlagwörter oder Bewertungen als die Sicherung, früher gesetzt. Noch ist nichts geändert.</numerusform>
        </translation>
    </message>
    <message id="KPRestoreSame">
        <translation>dasselbe, zu anderer Zeit gesetzt</translation>
    </message>
    <message id="KPRestoreSeveral">
        <translation>„%1“ wurde verschoben, und mehrere Dateien heißen so: bleibt unverändert.</translation>
    </message>
    <message id="KPRestoreTitle">
        <translation>Schlagwörter und Bewertungen wiederherstellen</translation>
    </message>
    <message id="KPRestoreWorking">
        <translation>Wird wiederhergestellt …</translation>
    </message>
    <message id="KPResultsSortOrderLabel">
        <translation>Sortierung</translation>
    </message>
    <message id="KPResultsViewModeLabel">
        <translation>Darstellung</translation>
    </message>
    <message id="KPReveal">
        <translation>In der Datei&amp;verwaltung zeigen</translation>
    </message>
    <message id="KPSaveScanAlternate">
        <translation>Verwerfen</translation>
    </message>
    <message id="KPSaveScanComments">
        <translation>Ohne Sichern gehen seine Seiten verloren.</translation>
    </message>
    <message id="KPSaveScanOK">
        <translation>Sichern</translation>
    </message>
    <message id="KPSaveScanTitle">
        <translation>Das gescannte Dokument sichern?</translation>
    </message>
    <message id="KPScanAction">
        <translation>Scannen …</translation>
    </message>
    <message id="KPScanAnyProportion">
        <translation>Beliebige Form</translation>
    </message>
    <message id="KPScanApply">
        <translation>Anwenden</translation>
    </message>
    <message id="KPScanBlackAndWhite">
        <translation>Schwarzweiß</translation>
    </message>
    <message id="KPScanBlankPage">
        <translation>%1 (leer)</translation>
    </message>
    <message id="KPScanChangePage">
        <translation>Ändern einer Seite</translation>
    </message>
    <message id="KPScanCleanUp">
        <translation>Zuschneiden und ausrichten</translation>
    </message>
    <message id="KPScanColour">
        <translation>Farbe</translation>
    </message>
    <message id="KPScanColours">
        <translation>Farben</translation>
    </message>
    <message id="KPScanDelete">
        <translation>Seite löschen</translation>
    </message>
    <message id="KPScanDeletePage">
        <translation>Löschen einer Seite</translation>
    </message>
    <message id="KPScanDeleteProfile">
        <translation>„%1“ löschen</translation>
    </message>
    <message id="KPScanDone">
        <translation>Fertig</translation>
    </message>
    <message id="KPScanDotsPerInch">
        <translation>%1 dpi</translation>
    </message>
    <message id="KPScanDrawLine">
        <translation>Ziehen Sie eine Linie an etwas entlang, das waagerecht sein soll.</translation>
    </message>
    <message id="KPScanDuplex">
        <translation>Beide Seiten des Papiers</translation>
    </message>
    <message id="KPScanFeederEmpty">
        <translation>Der Einzug ist leer.</translation>
    </message>
    <message id="KPScanFiled">
        <translation>Abgelegt als „%1“</translation>
    </message>
    <message id="KPScanGrey">
        <translation>Graustufen</translation>
    </message>
    <message id="KPScanInUse">
        <translation>Ein anderes Fenster oder Programm scannt gerade.</translation>
    </message>
    <message id="KPScanInstructions">
        <translation>Mit „Seite scannen“ beginnt ein neues Dokument</translation>
    </message>
    <message id="KPScanInstructionsDropZone">
        <translation>Auch Bilder und PDF-Dateien, die hier abgelegt werden, werden Seiten</translation>
    </message>
    <message id="KPScanInterleave">
        <translation>Sortieren der Vorder- und Rückseiten</translation>
    </message>
    <message id="KPScanInterleaveAction">
        <translation>Vorder-, dann Rückseiten</translation>
    </message>
    <message id="KPScanLeaveOutBlank">
        <translation>Leere Seiten weglassen</translation>
    </message>
    <message id="KPScanLeaveTool">
        <translation>Lassen, wie es war</translation>
    </message>
    <message id="KPScanLooking">
        <translation>Suche nach Scannern …</translation>
    </message>
    <message id="KPScanMovePage">
        <translation>Verschieben einer Seite</translation>
    </message>
    <message id="KPScanNextDocument">
        <translation>Nächstes Dokument</translation>
    </message>
    <message id="KPScanNextDocumentTip">
        <translation>Diese Seiten ablegen und das nächste Dokument beginnen</translation>
    </message>
    <message id="KPScanNoPages">
        <translation>Es gibt keine Seiten.</translation>
    </message>
    <message id="KPScanNoProfile">
        <translation>Keines</translation>
    </message>
    <message id="KPScanNoSpace">
        <translation>für die Seiten ist kein Platz</translation>
    </message>
    <message id="KPScanNotWritten">
        <translation>Das Dokument konnte nicht geschrieben werden.</translation>
    </message>
    <message id="KPScanPage">
        <translation>Seite scannen</translation>
    </message>
    <message id="KPScanPageName">
        <translation>Seite %1</translation>
    </message>
    <message id="KPScanPageNotMade">
        <translation>Eine Seite konnte nicht erzeugt werden.</translation>
    </message>
    <message id="KPScanPages">
        <translation>Seiten</translation>
    </message>
    <message id="KPScanPaper">
        <translation>Papier</translation>
    </message>
    <message id="KPScanPdfFiles">
        <translation>PDF-Dokumente</translation>
    </message>
    <message id="KPScanPlaceholderName">
        <translation>Scan DATE_HERE</translation>
    </message>
    <message id="KPScanProfile">
        <translation>Profil</translation>
    </message>
    <message id="KPScanProfileMenu">
        <translation>Profile sichern oder löschen</translation>
    </message>
    <message id="KPScanProfileName">
        <translation>Name des Profils:</translation>
    </message>
    <message id="KPScanProfileNotSaved">
        <translation>Die Profile konnten nicht gesichert werden</translation>
    </message>
    <message id="KPScanProgress">
        <translation>Fortschritt</translation>
    </message>
    <message id="KPScanProportion">
        <translation>Form des Ausschnitts</translation>
    </message>
    <message id="KPScanRating">
        <translation>Bewertung</translation>
    </message>
    <message id="KPScanReadingFiles">
        <translation>Dateien werden gelesen …</translation>
    </message>
    <message id="KPScanRecogniseText">
        <translation>Text erkennen</translation>
    </message>
    <message id="KPScanRedo">
        <translation>Wiederholen</translation>
    </message>
    <message id="KPScanResolution">
        <translation>Auflösung</translation>
    </message>
    <message id="KPScanSaveProfile">
        <translation>Einstellungen als Profil sichern …</translation>
    </message>
    <message id="KPScanSaveProfileTitle">
        <translation>Profil sichern</translation>
    </message>
    <message id="KPScanScanner">
        <translation>Scanner</translation>
    </message>
    <message id="KPScanSeparate">
        <translation>Leere Seiten trennen Dokumente</translation>
    </message>
    <message id="KPScanSettings">
        <translation>Einstellungen für den Scan</translation>
    </message>
    <message id="KPScanStop">
        <translation>Scan anhalten</translation>
    </message>
    <message id="KPScanTags">
        <translation>Schlagwörter des Dokuments</translation>
    </message>
    <message id="KPScanTools">
        <translation>Werkzeuge</translation>
    </message>
    <message id="KPScanTurnUpright">
        <translation>Nach dem Text aufrecht drehen</translation>
    </message>
    <message id="KPScanUndo">
        <translation>Rückgängig</translation>
    </message>
    <message id="KPScanWindowTitle">
        <translation>Scannen</translation>
    </message>
    <message id="KPScannerDied">
        <translation>Der Treiber des Scanners wurde unerwartet beendet.</translation>
    </message>
    <message id="KPScannerError">
        <translation>Scannerfehler: %1</translation>
    </message>
    <message id="KPScannerFailedToOpen">
        <translation>Der Scanner konnte nicht geöffnet werden</translation>
    </message>
    <message id="KPScannerPartMissing">
        <translation>Der Scanner bietet diese Quelle nicht mehr an.</translation>
    </message>
    <message id="KPScannerSilent">
        <translation>Der Scanner antwortet nicht mehr.</translation>
    </message>
    <message id="KPScannerTurnOffAndOn">
        <translation> Vielleicht hilft es, den Scanner aus- und wieder einzuschalten.</translation>
    </message>
    <message id="KPScannerUnitFeeder">
        <translation>Einzug</translation>
    </message>
    <message id="KPScannerUnitFlatbed">
        <translation>Flachbett</translation>
    </message>
    <message id="KPScannerUnitNegative">
        <translation>Negativ</translation>
    </message>
    <message id="KPScannerUnitOther">
        <translation>Einheit - %1</translation>
    </message>
    <message id="KPScannerUnitTransparency">
        <translation>Dia</translation>
    </message>
    <message id="KPScreenshotFailed">
        <translation>das Bild „%1“ kann nicht geschrieben werden</translation>
    </message>
    <message id="KPScrollToSelection">
        <translation>Zur Auswahl springen</translation>
    </message>
    <message id="KPSearch">
        <translation>Suche</translation>
    </message>
    <message id="KPSearchFailed">
        <translation>Die Suche war nicht möglich</translation>
    </message>
    <message id="KPSearchFolderNetworkAdd">
        <translation>Durchsuchen</translation>
    </message>
    <message id="KPSearchFolderNetworkText">
        <translation>Jeder Ordner darin wird einmal gelesen; das kann dauern und belastet das Netzwerk.</translation>
    </message>
    <message id="KPSearchFolderNetworkTitle">
        <translation>Auch das Netzlaufwerk „%1“ durchsuchen?</translation>
    </message>
    <message id="KPSearchFolderNotAdded">
        <translation>„%1“ kann nicht zu den Suchordnern hinzugefügt werden</translation>
    </message>
    <message id="KPSearchFolderTooLarge">
        <translation>Das ganze Netzwerk ist zu groß zum Durchsuchen. Fügen Sie ein einzelnes Laufwerk oder einen Ordner hinzu.</translation>
    </message>
    <message id="KPSearchModeFilenameFilter">
        <translation>Nur nach Datei&amp;namen filtern</translation>
    </message>
    <message id="KPSearchModeSpotlight">
        <translation>&amp;Inhalte und Angaben durchsuchen</translation>
    </message>
    <message id="KPSearchPlaceholderFilenameFilter">
        <translation>Nach Dateinamen filtern</translation>
    </message>
    <message id="KPSearchPlaceholderSearch">
        <translation>Dokumente durchsuchen</translation>
    </message>
    <message id="KPSearchRefused">
        <translation>Diese Suche ist nicht möglich: %1</translation>
    </message>
    <message id="KPSearchStopped">
        <translation>Angehalten. Zu sehen ist, was bis dahin gefunden wurde.</translation>
    </message>
    <message id="KPSearchesContents">
        <translation>Namen, Inhalte</translation>
    </message>
    <message id="KPSearchesMetaData">
        <translation>Namen, Angaben</translation>
    </message>
    <message id="KPSearchesNames">
        <translation>nur Namen</translation>
    </message>
    <message id="KPSearchingDocumentsHelpZel">
        <translation>Dokumente erscheinen hier, sobald sie gefunden werden.</translation>
    </message>
    <message id="KPSearchingForDocuments">
        <translation>Suche läuft</translation>
    </message>
    <message id="KPSelectAll">
        <translation>&amp;Alles auswählen</translation>
    </message>
    <message id="KPShortcuts">
        <translation>&amp;Tastenkürzel</translation>
    </message>
    <message id="KPShortcutsCommand">
        <translation>Befehl</translation>
    </message>
    <message id="KPShortcutsKey">
        <translation>Taste</translation>
    </message>
    <message id="KPShortcutsSearch">
        <translation>Befehle und Tasten suchen</translation>
    </message>
    <message id="KPShortcutsTitle">
        <translation>Tastenkürzel</translation>
    </message>
    <message id="KPShowActionBar">
        <translation>Aktionsleiste einblenden</translation>
    </message>
    <message id="KPShowAllInFolder">
        <translation>Alle Dokumente im Ordner zeigen</translation>
    </message>
    <message id="KPShowBookmarkBar">
        <translation>Lesezeichenleiste einblenden</translation>
    </message>
    <message id="KPShowBookmarksPanel">
        <translation>&amp;Lesezeichen einblenden</translation>
    </message>
    <message id="KPShowDropZone">
        <translation>Ablagefläche beim Ziehen zeigen</translation>
    </message>
    <message id="KPShowLoupeMenuItem">
        <translation>Lupe einblenden</translation>
    </message>
    <message id="KPShowPackageContents">
        <translation>Paket&amp;inhalt zeigen</translation>
    </message>
    <message id="KPShowSimilar">
        <translation>Ähnliche Dokumente zeigen</translation>
    </message>
    <message id="KPSlowVolumeStillRead">
        <translation>Ein Datenträger, der langsam antwortet, wird noch gelesen.</translation>
    </message>
    <message id="KPSomeTagsUnreadable" numerus="yes">
        <translation>
            <numerusform>Die Schlagwörter von %n Dokument sind nicht lesbar. Sie bleiben unberührt.</numerusform>
            <numerusform>Die Schlagwörter von %n Dokumenten sind nicht lesbar. Sie bleiben unberührt.</numerusform>
        </translation>
    </message>
    <message id="KPSortAdded">
        <translation>Hinzugefügt am</translation>
    </message>
    <message id="KPSortAscending">
        <translation>Aufsteigend</translation>
    </message>
    <message id="KPSortBy">
        <translation>Sortieren nach</translation>
    </message>
    <message id="KPSortCreated">
        <translation>Erstellungsdatum</translation>
    </message>
    <message id="KPSortDescending">
        <translation>Absteigend</translation>
    </message>
    <message id="KPSortFolder">
        <translation>Ordner</translation>
    </message>
    <message id="KPSortModified">
        <translation>Änderungsdatum</translation>
    </message>
    <message id="KPSortName">
        <translation>Name</translation>
    </message>
    <message id="KPSortRating">
        <translation>Bewertung</translation>
    </message>
    <message id="KPSortSize">
        <translation>Größe</translation>
    </message>
    <message id="KPSortTags">
        <translation>Schlagwörter</translation>
    </message>
    <message id="KPSortType">
        <translation>Art</translation>
    </message>
    <message id="KPSourceList">
        <translation>Quellen</translation>
    </message>
    <message id="KPSourceListDates">
        <translation>Datum</translation>
    </message>
    <message id="KPSourceListKinds">
        <translation>Arten</translation>
    </message>
    <message id="KPSourceListLibrary">
        <translation>Bibliothek</translation>
    </message>
    <message id="KPSourceListPlaces">
        <translation>Orte</translation>
    </message>
    <message id="KPSourceListSaved">
        <translation>Gespeichert</translation>
    </message>
    <message id="KPSourceMenuAllFileTypesTitle">
        <translation>Alle Dateien</translation>
    </message>
    <message id="KPSourceMenuFilesAndFoldersDeepTitle">
        <translation>Dateien im Ordner und darunter</translation>
    </message>
    <message id="KPSourceMenuFilesAndFoldersTitle">
        <translation>Dateien im Ordner</translation>
    </message>
    <message id="KPSourceMenuStandardFileTypesTitle">
        <translation>Meine Dateiarten</translation>
    </message>
    <message id="KPSpotlightNoDocuments">
        <translation>Geben Sie ein, was Sie suchen</translation>
    </message>
    <message id="KPSpotlightNoDocumentsAfterSearch">
        <translation>Nichts gefunden</translation>
    </message>
    <message id="KPSpotlightNoDocumentsHelp">
        <translation>Namen, Inhalte und Schlagwörter werden überall durchsucht.</translation>
    </message>
    <message id="KPSpotlightNoDocumentsHelpAfterSearch">
        <translation>Versuchen Sie andere Wörter, oder weniger.</translation>
    </message>
    <message id="KPSpotlightSearch">
        <translation>Suche</translation>
    </message>
    <message id="KPStandardColours">
        <translation>Standardfarben</translation>
    </message>
    <message id="KPStars" numerus="yes">
        <translation>
            <numerusform>%n Stern</numerusform>
            <numerusform>%n Sterne</numerusform>
        </translation>
    </message>
    <message id="KPStartupSearchingNoDocuments">
        <translation>Ihre Dokumente werden gesucht</translation>
    </message>
    <message id="KPStartupSearchingNoDocumentsHelp">
        <translation>Der erste Blick dauert einen Moment. Dokumente erscheinen, sobald sie gefunden werden.</translation>
    </message>
    <message id="KPStatusItem">
        <translation>Symbol im Infobereich</translation>
    </message>
    <message id="KPStatusPromptNoFileTypeSet">
        <translation>Alle Arten</translation>
    </message>
    <message id="KPStatusSearch">
        <translation>Nach markiertem Text suchen</translation>
    </message>
    <message id="KPStatusShow">
        <translation>Murn zeigen</translation>
    </message>
    <message id="KPStatusUntagged" numerus="yes">
        <translation>
            <numerusform>%n Dokument ohne Schlagwörter</numerusform>
            <numerusform>%n Dokumente ohne Schlagwörter</numerusform>
        </translation>
    </message>
    <message id="KPStop">
        <translation>Anhalten</translation>
    </message>
    <message id="KPTableMode">
        <translation>Als Liste</translation>
    </message>
    <message id="KPTableOfDocument">
        <translation>Tabelle des Dokuments</translation>
    </message>
    <message id="KPTagBackupFailed">
        <translation>Schlagwörter und Bewertungen konnten nicht gesichert werden: %1</translation>
    </message>
    <message id="KPTagBackupRunning">
        <translation>Schlagwörter und Bewertungen werden gesichert …</translation>
    </message>
    <message id="KPTagBelow">
        <translation>Unter „%1“</translation>
    </message>
    <message id="KPTagCopy">
        <translation>Schlagwort kopieren</translation>
    </message>
    <message id="KPTagCopyUTI">
        <translation>Typkennung kopieren</translation>
    </message>
    <message id="KPTagDeleteButton">
        <translation>Schlagwort löschen</translation>
    </message>
    <message id="KPTagDeleteMenu">
        <translation>Schlagwort löschen …</translation>
    </message>
    <message id="KPTagDeleteTitle">
        <translation>Schlagwort „%1“ löschen?</translation>
    </message>
    <message id="KPTagEditorDone">
        <translation>Fertig</translation>
    </message>
    <message id="KPTagEditorNext">
        <translation>Nächstes Dokument</translation>
    </message>
    <message id="KPTagGiveToAll">
        <translation>Allen geben</translation>
    </message>
    <message id="KPTagGroupsRecent">
        <translation>Zuletzt zusammen verwendet</translation>
    </message>
    <message id="KPTagMergeSpellings">
        <translation>Diesen ebenfalls den neuen Namen geben</translation>
    </message>
    <message id="KPTagOfSome">
        <translation>%1 (%2)</translation>
    </message>
    <message id="KPTagPanel">
        <translation>Tafel der Schlagwörter zeigen</translation>
    </message>
    <message id="KPTagPanelShown">
        <translation>Schlagwor&amp;tbereich</translation>
    </message>
    <message id="KPTagPlanAway" numerus="yes">
        <translation>
            <numerusform>%1 liegt auf einem abwesenden Datenträger und wird geändert, sobald er wieder da ist.</numerusform>
            <numerusform>%1 liegen auf abwesenden Datenträgern und werden geändert, sobald diese wieder da sind.</numerusform>
        </translation>
    </message>
    <message id="KPTagPlanCount" numerus="yes">
        <translation>
            <numerusform>%1 Dokument wird geändert:</numerusform>
            <numerusform>%1 Dokumente werden geändert:</numerusform>
        </translation>
    </message>
    <message id="KPTagPlanMerge">
        <translation>Einige Dokumente haben „%1“ schon: Beide werden eins.</translation>
    </message>
    <message id="KPTagPlanPlace">
        <translation>%1: %2</translation>
    </message>
    <message id="KPTagPlanSpellings">
        <translation>Andere Schreibweisen: %1</translation>
    </message>
    <message id="KPTagRemoveFromSelected">
        <translation>Von ausgewählten Dokumenten entfernen</translation>
    </message>
    <message id="KPTagRenameButton">
        <translation>Umbenennen</translation>
    </message>
    <message id="KPTagRenameLabel">
        <translation>Neuer Name des Schlagworts „%1“:</translation>
    </message>
    <message id="KPTagRenameMenu">
        <translation>Schlagwort umbenennen …</translation>
    </message>
    <message id="KPTagRenameOneTag">
        <translation>Ein Schlagwort eingeben, ohne Kommas.</translation>
    </message>
    <message id="KPTagRenameTitle">
        <translation>Schlagwort umbenennen</translation>
    </message>
    <message id="KPTagSearch">
        <translation>Nach „%1“ suchen</translation>
    </message>
    <message id="KPTagSearchButton">
        <translation>Suchen</translation>
    </message>
    <message id="KPTagSearchCommand">
        <translation>Nach Schlagwörtern suchen …</translation>
    </message>
    <message id="KPTagSearchLabel">
        <translation>Dokumente mit allen diesen Schlagwörtern</translation>
    </message>
    <message id="KPTagSearchTitle">
        <translation>Nach Schlagwörtern suchen</translation>
    </message>
    <message id="KPTagShowWith">
        <translation>Nur mit „%1“</translation>
    </message>
    <message id="KPTagShowWithout">
        <translation>Ohne „%1“</translation>
    </message>
    <message id="KPTagSuggestions">
        <translation>Vorgeschlagene Schlagwörter</translation>
    </message>
    <message id="KPTagTakeFromAll">
        <translation>Allen nehmen</translation>
    </message>
    <message id="KPTags">
        <translation>Schlagwörter</translation>
    </message>
    <message id="KPTagsCannotWait">
        <translation>Änderungen von Schlagwörtern auf abwesenden Datenträgern lassen sich nicht merken</translation>
    </message>
    <message id="KPTagsHint">
        <translation>Schlagwort hinzufügen …</translation>
    </message>
    <message id="KPTagsHintCommas">
        <translation>Tipp: Schlagwörter durch Kommas trennen und kurz halten</translation>
    </message>
    <message id="KPTagsHintQuotes">
        <translation>Tipp: Schlagwörter aus zwei Wörtern in Anführungszeichen setzen</translation>
    </message>
    <message id="KPTagsLeftOut" numerus="yes">
        <translation>
            <numerusform>Die Schlagwörter eines Dokuments sind nicht lesbar; es bleibt außen vor: %1</numerusform>
            <numerusform>Die Schlagwörter von %n Dokumenten sind nicht lesbar; sie bleiben außen vor: %1</numerusform>
        </translation>
    </message>
    <message id="KPTagsNotReadable">
        <translation>die Schlagwörter sind nicht lesbar</translation>
    </message>
    <message id="KPTagsOfSome">
        <translation>Auf einigen der Dokumente</translation>
    </message>
    <message id="KPTagsReadOnly">
        <translation>Einige der Schlagwörter sind nur zum Lesen und können nicht gelöscht werden. Löschen lassen sich nur selbst eingegebene Schlagwörter. Die anderen kann man im Abschnitt Schlagwörter ausblenden.</translation>
    </message>
    <message id="KPTagsSuggested">
        <translation>Vorschläge</translation>
    </message>
    <message id="KPTagsUnreadable">
        <translation>Schlagwörter nicht lesbar</translation>
    </message>
    <message id="KPTagsUnreadableBecause">
        <translation>Die Schlagwörter sind nicht lesbar: %1. Sie bleiben unberührt.</translation>
    </message>
    <message id="KPTagsWindowAvailable">
        <translation>Nur Schlagwörter der gezeigten Dokumente</translation>
    </message>
    <message id="KPTagsWindowCount" numerus="yes">
        <translation>
            <numerusform>%1 Schlagwort</numerusform>
            <numerusform>%1 Schlagwörter</numerusform>
        </translation>
    </message>
    <message id="KPTagsWindowDocuments">
        <translation>Dokumente</translation>
    </message>
    <message id="KPTagsWindowTag">
        <translation>Schlagwort</translation>
    </message>
    <message id="KPTagsWindowTitle">
        <translation>Alle Schlagwörter</translation>
    </message>
    <message id="KPTextOfDocument">
        <translation>Text des Dokuments</translation>
    </message>
    <message id="KPThumbnailMode">
        <translation>Als Bilder</translation>
    </message>
    <message id="KPTitleOfDocument">
        <translation>%1 – %2</translation>
    </message>
    <message id="KPTodaysFiledDocuments">
        <translation>Heute &amp;abgelegt</translation>
    </message>
    <message id="KPTooManyDocs">
        <translation>Zu viele Dokumente auf einmal</translation>
    </message>
    <message id="KPTooManyDocsComments">
        <translation>Es wurden %3 Dokumente gewählt; höchstens %4 können auf einmal verschoben oder kopiert werden. Nichts wurde geändert.</translation>
    </message>
    <message id="KPToolBar">
        <translation>Symbolleiste</translation>
    </message>
    <message id="KPToolTipWithKey">
        <translation>%1 (%2)</translation>
    </message>
    <message id="KPToolbarAvailable">
        <translation>Verfügbare Einträge</translation>
    </message>
    <message id="KPToolbarBackForwardTooltip">
        <translation>In den Suchen zurück- oder vorgehen</translation>
    </message>
    <message id="KPToolbarContrastLabel">
        <translation>Kontrast</translation>
    </message>
    <message id="KPToolbarContrastTooltip">
        <translation>Macht Schrift dunkler und Papier heller</translation>
    </message>
    <message id="KPToolbarCropLabel">
        <translation>Zuschneiden</translation>
    </message>
    <message id="KPToolbarCropTooltip">
        <translation>Behält einen Teil der Seite</translation>
    </message>
    <message id="KPToolbarFlexibleSpaceLabel">
        <translation>Flexibler Abstand</translation>
    </message>
    <message id="KPToolbarHomeLabel">
        <translation>Start</translation>
    </message>
    <message id="KPToolbarInfoTooltip">
        <translation>Informationen zum Gezeigten</translation>
    </message>
    <message id="KPToolbarInspectorLabel">
        <translation>Informationen</translation>
    </message>
    <message id="KPToolbarLocationPanelLabel">
        <translation>Orte</translation>
    </message>
    <message id="KPToolbarLocationPanelTooltip">
        <translation>Orte-Bereich ein- oder ausblenden</translation>
    </message>
    <message id="KPToolbarLoupeLabel">
        <translation>Lupe</translation>
    </message>
    <message id="KPToolbarNavigationLabel">
        <translation>Zurück/Vor</translation>
    </message>
    <message id="KPToolbarNewScanLabel">
        <translation>Neuer Scan</translation>
    </message>
    <message id="KPToolbarNewScanTooltip">
        <translation>Papier in ein neues Dokument scannen</translation>
    </message>
    <message id="KPToolbarRestartSearchLabel">
        <translation>Neu suchen</translation>
    </message>
    <message id="KPToolbarRotateLabel">
        <translation>Drehen</translation>
    </message>
    <message id="KPToolbarRotateTooltip">
        <translation>Dreht die Seite im Uhrzeigersinn; mit Alt andersherum</translation>
    </message>
    <message id="KPToolbarSeparatorLabel">
        <translation>Trennlinie</translation>
    </message>
    <message id="KPToolbarSpaceLabel">
        <translation>Abstand</translation>
    </message>
    <message id="KPToolbarStraightenLabel">
        <translation>Ausrichten</translation>
    </message>
    <message id="KPToolbarStraightenTooltip">
        <translation>Dreht die Seite, bis eine Linie waagerecht liegt</translation>
    </message>
    <message id="KPToolbarTagPanelLabel">
        <translation>Schlagwörter</translation>
    </message>
    <message id="KPToolbarTagPanelTooltip">
        <translation>Schlagwortbereich ein- oder ausblenden</translation>
    </message>
    <message id="KPToolbarUpLabel">
        <translation>Aufwärts</translation>
    </message>
    <message id="KPToolbarUpTooltip">
        <translation>Zum übergeordneten Ordner</translation>
    </message>
    <message id="KPToolbarUseDefault">
        <translation>Standard wiederherstellen</translation>
    </message>
    <message id="KPTrashingItems">
        <translation>%1 Objekte werden in den Papierkorb gelegt</translation>
    </message>
    <message id="KPTypeWithItsKinds">
        <translation>%1 (alle Arten)</translation>
    </message>
    <message id="KPTypicalTags">
        <translation>Rechnung,Quittung,Vertrag,Brief,Steuer,Versicherung,Bank,Kontoauszug,Gehalt,Lohn,Miete,Gesundheit,Auto,Reise,Fahrkarte,Buchung,Schule,Zeugnis,Anleitung,Garantie,Bericht,Protokoll,Haushalt,Angebot,Bestellung,Lieferschein,Foto,Rezept,Bewerbung,Recht,Rente</translation>
    </message>
    <message id="KPUndo">
        <translation>&amp;Rückgängig</translation>
    </message>
    <message id="KPUndoCombine" numerus="yes">
        <translation>
            <numerusform>Zusammenfügen von %n Dokument</numerusform>
            <numerusform>Zusammenfügen von %n Dokumenten</numerusform>
        </translation>
    </message>
    <message id="KPUndoComment" numerus="yes">
        <translation>
            <numerusform>Kommentar von %n Dokument</numerusform>
            <numerusform>Kommentare von %n Dokumenten</numerusform>
        </translation>
    </message>
    <message id="KPUndoCopy" numerus="yes">
        <translation>
            <numerusform>Kopieren von %n Dokument</numerusform>
            <numerusform>Kopieren von %n Dokumenten</numerusform>
        </translation>
    </message>
    <message id="KPUndoDeleteTag">
        <translation>Schlagwort „%1“ löschen</translation>
    </message>
    <message id="KPUndoDuplicate" numerus="yes">
        <translation>
            <numerusform>Duplizieren von %n Dokument</numerusform>
            <numerusform>Duplizieren von %n Dokumenten</numerusform>
        </translation>
    </message>
    <message id="KPUndoFiling" numerus="yes">
        <translation>
            <numerusform>Ablegen von %n Dokument</numerusform>
            <numerusform>Ablegen von %n Dokumenten</numerusform>
        </translation>
    </message>
    <message id="KPUndoFlag" numerus="yes">
        <translation>
            <numerusform>Markieren von %n Dokument</numerusform>
            <numerusform>Markieren von %n Dokumenten</numerusform>
        </translation>
    </message>
    <message id="KPUndoHide" numerus="yes">
        <translation>
            <numerusform>Ausblenden von %n Dokument</numerusform>
            <numerusform>Ausblenden von %n Dokumenten</numerusform>
        </translation>
    </message>
    <message id="KPUndoManage" numerus="yes">
        <translation>
            <numerusform>Aufnehmen von %n Dokument in die Bibliothek</numerusform>
            <numerusform>Aufnehmen von %n Dokumenten in die Bibliothek</numerusform>
        </translation>
    </message>
    <message id="KPUndoMove" numerus="yes">
        <translation>
            <numerusform>Bewegen von %n Dokument</numerusform>
            <numerusform>Bewegen von %n Dokumenten</numerusform>
        </translation>
    </message>
    <message id="KPUndoNamed">
        <translation>&amp;Rückgängig: %1</translation>
    </message>
    <message id="KPUndoPaste" numerus="yes">
        <translation>
            <numerusform>Einfügen von %n Dokument</numerusform>
            <numerusform>Einfügen von %n Dokumenten</numerusform>
        </translation>
    </message>
    <message id="KPUndoRating" numerus="yes">
        <translation>
            <numerusform>Bewertung von %n Dokument</numerusform>
            <numerusform>Bewertung von %n Dokumenten</numerusform>
        </translation>
    </message>
    <message id="KPUndoRecognise" numerus="yes">
        <translation>
            <numerusform>Texterkennung in %n Dokument</numerusform>
            <numerusform>Texterkennung in %n Dokumenten</numerusform>
        </translation>
    </message>
    <message id="KPUndoRename">
        <translation>Umbenennen</translation>
    </message>
    <message id="KPUndoRenameTag">
        <translation>Schlagwort „%1“ in „%2“ umbenennen</translation>
    </message>
    <message id="KPUndoRepair" numerus="yes">
        <translation>
            <numerusform>Reparatur von %n Dokument</numerusform>
            <numerusform>Reparatur von %n Dokumenten</numerusform>
        </translation>
    </message>
    <message id="KPUndoTags" numerus="yes">
        <translation>
            <numerusform>Schlagwörter von %n Dokument</numerusform>
            <numerusform>Schlagwörter von %n Dokumenten</numerusform>
        </translation>
    </message>
    <message id="KPUndoTrash" numerus="yes">
        <translation>
            <numerusform>Bewegen von %n Dokument in den Papierkorb</numerusform>
            <numerusform>Bewegen von %n Dokumenten in den Papierkorb</numerusform>
        </translation>
    </message>
    <message id="KPUndoUnflag" numerus="yes">
        <translation>
            <numerusform>Entfernen der Markierung von %n Dokument</numerusform>
            <numerusform>Entfernen der Markierung von %n Dokumenten</numerusform>
        </translation>
    </message>
    <message id="KPUndoUnhide" numerus="yes">
        <translation>
            <numerusform>Wiederzeigen von %n Dokument</numerusform>
            <numerusform>Wiederzeigen von %n Dokumenten</numerusform>
        </translation>
    </message>
    <message id="KPUndoUnmanage" numerus="yes">
        <translation>
            <numerusform>Entfernen von %n Dokument aus der Bibliothek</numerusform>
            <numerusform>Entfernen von %n Dokumenten aus der Bibliothek</numerusform>
        </translation>
    </message>
    <message id="KPUndoing">
        <translation>Wird rückgängig gemacht: %1</translation>
    </message>
    <message id="KPUnflag">
        <translation>Markierung entfernen</translation>
    </message>
    <message id="KPUnhide">
        <translation>Wieder &amp;zeigen</translation>
    </message>
    <message id="KPUnknownUTITagTemplate">
        <translation>Unbekannte Art %1</translation>
    </message>
    <message id="KPUnmanage">
        <translation>Aus der &amp;Bibliothek entfernen</translation>
    </message>
    <message id="KPUnrecognising" numerus="yes">
        <translation>
            <numerusform>Erkannter Text wird von %n Dokument genommen</numerusform>
            <numerusform>Erkannter Text wird von %n Dokumenten genommen</numerusform>
        </translation>
    </message>
    <message id="KPUntaggedDocuments">
        <translation>Dokumente &amp;ohne Schlagwörter</translation>
    </message>
    <message id="KPUpdatesFound">
        <translation>Version %1 von Murn kann installiert werden</translation>
    </message>
    <message id="KPUpdatesFoundShell">
        <translation>Version %1 ist installiert. Ein Verwalter des Systems installiert Aktualisierungen mit: apt upgrade</translation>
    </message>
    <message id="KPUpdatesFoundText">
        <translation>Version %1 ist installiert. Aktualisierungen kommen mit denen des Systems.</translation>
    </message>
    <message id="KPUpdatesNoPackage">
        <translation>Murn wurde nicht aus einem Paket installiert</translation>
    </message>
    <message id="KPUpdatesNoPackageText">
        <translation>Dies ist Version %1. Wer sie installiert hat, kann auf demselben Weg eine neuere installieren.</translation>
    </message>
    <message id="KPUpdatesNone">
        <translation>Murn ist auf dem neuesten Stand</translation>
    </message>
    <message id="KPUpdatesNoneText">
        <translation>Version %1 ist die neueste, die Ihre Paketverwaltung kennt.</translation>
    </message>
    <message id="KPUpdatesOpen">
        <translation>Aktualisierungen öffnen</translation>
    </message>
    <message id="KPUseExtension">
        <translation>.%2 verwenden</translation>
    </message>
    <message id="KPUserGuide">
        <translation>&amp;Benutzerhandbuch</translation>
    </message>
    <message id="KPWaitingTags">
        <translation>Wartende Änderungen …</translation>
    </message>
    <message id="KPWaitingTagsForget">
        <translation>Diese Änderung vergessen</translation>
    </message>
    <message id="KPWaitingTagsHint">
        <translation>Diese Dokumente liegen auf Datenträgern, die nicht da sind. Sie werden geändert, sobald die Datenträger zurück sind.</translation>
    </message>
    <message id="KPWaitingTagsNoList">
        <translation>keine Liste wartender Änderungen von Schlagwörtern</translation>
    </message>
    <message id="KPWaitingTagsNone">
        <translation>Keine Änderung von Schlagwörtern wartet auf einen Datenträger.</translation>
    </message>
    <message id="KPWaitingTagsTitle">
        <translation>Wartende Änderungen von Schlagwörtern</translation>
    </message>
    <message id="KPWeakCage">
        <translation>Dokumente werden mit weniger Schutz gelesen als vorgesehen: Dieses System hat kein %1.</translation>
    </message>
    <message id="KPWelcomeAdd">
        <translation>Ordner hinzufügen …</translation>
    </message>
    <message id="KPWelcomeAddTitle">
        <translation>Ordner wählen, in dem gesucht wird</translation>
    </message>
    <message id="KPWelcomeAgain">
        <translation>Willkommen bei Murn</translation>
    </message>
    <message id="KPWelcomeFolders">
        <translation>Murn sucht in diesen Ordnern</translation>
    </message>
    <message id="KPWelcomeFoldersText">
        <translation>Und in allen Ordnern darin. Sie können das jederzeit ändern.</translation>
    </message>
    <message id="KPWelcomeNothingMoved">
        <translation>Nichts wird verschoben</translation>
    </message>
    <message id="KPWelcomeNothingMovedText">
        <translation>Ihre Dokumente bleiben in ihren Ordnern. Murn verschiebt oder kopiert nur, was Sie ausdrücklich ablegen.</translation>
    </message>
    <message id="KPWelcomePrivate">
        <translation>Alles bleibt auf diesem Rechner</translation>
    </message>
    <message id="KPWelcomePrivateText">
        <translation>Über Ihre Dokumente wird nichts verschickt.</translation>
    </message>
    <message id="KPWelcomeRemove">
        <translation>Entfernen</translation>
    </message>
    <message id="KPWelcomeStart">
        <translation>Los</translation>
    </message>
    <message id="KPWelcomeTags">
        <translation>Schlagwörter gehören zur Datei</translation>
    </message>
    <message id="KPWelcomeTagsText">
        <translation>Sie stehen an der Datei selbst und gehen überall mit.</translation>
    </message>
    <message id="KPWelcomeText">
        <translation>Murn findet Ihre Dokumente, wo sie liegen. Sie können sie verschlagworten, bewerten und ablegen.</translation>
    </message>
    <message id="KPWelcomeTitle">
        <translation>Willkommen bei Murn</translation>
    </message>
    <message id="KPWorkflowFile">
        <translation>In Murn ablegen</translation>
    </message>
    <message id="KPWorkflowShow">
        <translation>In Murn zeigen</translation>
    </message>
    <message id="KPWorkflowTag">
        <translation>Mit Murn verschlagworten</translation>
    </message>
    <message id="KPWorkflowsDone">
        <translation>Der Dateimanager hat neue Aktionen.</translation>
    </message>
    <message id="KPWorkflowsDoneText">
        <translation>%1: im Menü ausgewählter Dateien unter „Skripte“.</translation>
    </message>
    <message id="KPWorkflowsFailed">
        <translation>Die Aktionen konnten nicht installiert werden.</translation>
    </message>
    <message id="KPYes">
        <translation>Ja</translation>
    </message>
    <message id="KPZoom">
        <translation>Größe der Bilder</translation>
    </message>
    <message id="KPZoomIn">
        <translation>&amp;Größere Bilder</translation>
    </message>
    <message id="KPZoomLargest">
        <translation>Größte Bilder</translation>
    </message>
    <message id="KPZoomOut">
        <translation>&amp;Kleinere Bilder</translation>
    </message>
    <message id="KPZoomSmallest">
        <translation>Kleinste Bilder</translation>
    </message>
    <message id="KarvexAuthenticationPrompt">
        <translation>Um an manchen Dateien Metadaten wie Schlagwörter zu setzen, ist eine Legitimation nötig.</translation>
    </message>
    <message id="KarvexBackupBusy">
        <translation>ein anderes Programm ändert die Sicherung gerade</translation>
    </message>
    <message id="KarvexBackupFailed">
        <translation>die Sicherung scheiterte: %1</translation>
    </message>
    <message id="KarvexBackupPartial">
        <translation>nur %1 Dateien mit Schlagwörtern wurden gesichert</translation>
    </message>
    <message id="KarvexNotABackup">
        <translation>keine Sicherung von Schlagwörtern und Bewertungen</translation>
    </message>
    <message id="KarvexTagsNotBackedUp">
        <translation>die Schlagwörter konnten nicht gesichert werden: %1</translation>
    </message>
    <message id="Recent Files">
        <translation>Zuletzt abgelegt</translation>
    </message>
    <message id="XPAmongForeignFiles">
        <translation>liegt unter Dateien anderer Programme</translation>
    </message>
    <message id="XPArchiveBadContents">
        <translation>das Archiv ist beschädigt: Eine Datei hat einen anderen Inhalt als angegeben</translation>
    </message>
    <message id="XPArchiveBadFile">
        <translation>das Archiv ist beschädigt: Pfad oder Angaben einer Datei sind nicht brauchbar</translation>
    </message>
    <message id="XPArchiveBadRecord">
        <translation>das Archiv ist beschädigt: Ein Eintrag steht am falschen Platz</translation>
    </message>
    <message id="XPArchiveCutShort">
        <translation>das Archiv ist unvollständig</translation>
    </message>
    <message id="XPArchiveDamaged">
        <translation>das Archiv ist beschädigt</translation>
    </message>
    <message id="XPArchiveGoesOn">
        <translation>das Archiv ist beschädigt: Hinter seinem Ende steht noch etwas</translation>
    </message>
    <message id="XPArchiveMiscounts">
        <translation>das Archiv ist beschädigt: Es enthält nicht so viele Dokumente, wie es angibt</translation>
    </message>
    <message id="XPArchiveNewer">
        <translation>das Archiv wurde von einer neueren Version geschrieben (%1)</translation>
    </message>
    <message id="XPArchiveTooLarge">
        <translation>das Archiv enthält an einer Stelle mehr als erlaubt</translation>
    </message>
    <message id="XPAuthorizeMoveComment">
        <translation>Zum Bewegen einiger Dateien ist eine Freigabe nötig</translation>
    </message>
    <message id="XPBrowserEnded">
        <translation>der Browser wurde beendet: %1</translation>
    </message>
    <message id="XPBrowserSays">
        <translation>der Browser meldet: %1</translation>
    </message>
    <message id="XPBrowserTooMuch">
        <translation>der Browser meldet mehr, als gefragt war</translation>
    </message>
    <message id="XPBytes" numerus="yes">
        <translation>
            <numerusform>%n Byte</numerusform>
            <numerusform>%n Bytes</numerusform>
        </translation>
    </message>
    <message id="XPCancel">
        <translation>Abbrechen</translation>
    </message>
    <message id="XPChangedWhileCopied">
        <translation>die Datei wurde beim Kopieren geändert</translation>
    </message>
    <message id="XPChangedWhileRead">
        <translation>wurde beim Lesen geändert</translation>
    </message>
    <message id="XPChooseDirectoryButton">
        <translation>Auswählen</translation>
    </message>
    <message id="XPConvertButton">
        <translation>Dokumente verschieben</translation>
    </message>
    <message id="XPConvertLeaveButton">
        <translation>Nicht verschieben</translation>
    </message>
    <message id="XPConvertProgress">
        <translation>Dokumente kommen in Monatsordner</translation>
    </message>
    <message id="XPConvertText">
        <translation>Neue Dokumente kommen ab jetzt in Monatsordner. Die bisher abgelegten liegen in Tagesordnern und können folgen. Kein Dokument geht verloren oder wird ersetzt.</translation>
    </message>
    <message id="XPConvertTitle">
        <translation>Bisher abgelegte Dokumente in Monatsordner verschieben?</translation>
    </message>
    <message id="XPCopyDiffers">
        <translation>die Kopie stimmt nicht mit der Datei überein</translation>
    </message>
    <message id="XPCopyingItems">
        <translation>%1 Objekte werden kopiert</translation>
    </message>
    <message id="XPDontReplace">
        <translation>Nicht ersetzen</translation>
    </message>
    <message id="XPDuplicatesContinue">
        <translation>Fortfahren</translation>
    </message>
    <message id="XPDuplicatesMultiple">
        <translation>%3 Objekte mit Dateinamen wie %1 werden nicht verschoben oder kopiert, da mehrere gleich heißen. Wenn Sie fortfahren, steht eine Liste der übersprungenen Dateien im Protokoll</translation>
    </message>
    <message id="XPDuplicatesSingle">
        <translation>%2 wird nicht verschoben oder kopiert, da eine andere Datei genauso heißt. Wenn Sie fortfahren, steht diese Datei im Protokoll</translation>
    </message>
    <message id="XPDuplicatesTitle">
        <translation>Einige Objekte werden nicht kopiert oder verschoben</translation>
    </message>
    <message id="XPEditTagsManyDocumentsComments">
        <translation>Die Schlagwörter oder Bewertungen von %1 Dokumenten werden geändert. Das lässt sich widerrufen.</translation>
    </message>
    <message id="XPEditTagsManyDocumentsOKButton">
        <translation>Ändern</translation>
    </message>
    <message id="XPEditTagsManyDocumentsTitle">
        <translation>%1 Dokumente ändern?</translation>
    </message>
    <message id="XPFileButton">
        <translation>Ablegen</translation>
    </message>
    <message id="XPFileComment">
        <translation>Heutiger Ordner: %1</translation>
    </message>
    <message id="XPFileTitleMultiple">
        <translation>%1 Dokumente ablegen?</translation>
    </message>
    <message id="XPFileTitleSingle">
        <translation>„%1“ ablegen?</translation>
    </message>
    <message id="XPFileTooManyComment">
        <translation>Weniger als %1 können auf einmal hinzugefügt werden; es sind mindestens %2. Nichts wurde geändert.</translation>
    </message>
    <message id="XPFileTooManyTitle">
        <translation>Zu viele Dokumente auf einmal</translation>
    </message>
    <message id="XPFilingItems">
        <translation>%1 Objekte werden abgelegt</translation>
    </message>
    <message id="XPHiddenOrTooLong">
        <translation>ist versteckt, oder der Pfad ist zu lang</translation>
    </message>
    <message id="XPImportCommentCopy">
        <translation>Beim Vormerken bleibt alles, wo es ist. Beim Ablegen kommt zudem eine Kopie in den heutigen Ordner der abgelegten Dokumente, da dieser auf einem anderen Datenträger liegt.</translation>
    </message>
    <message id="XPImportCommentManyFileWarningAddendum">
        <translation> Bei %1 Dokumenten kann das etwas dauern.</translation>
    </message>
    <message id="XPImportCommentMove">
        <translation>Beim Vormerken bleibt alles, wo es ist. Beim Ablegen kommt es zudem in den heutigen Ordner der abgelegten Dokumente.</translation>
    </message>
    <message id="XPImportManageAndFileButton">
        <translation>Hinzufügen und ablegen</translation>
    </message>
    <message id="XPImportManageOnlyButton">
        <translation>Nur hinzufügen</translation>
    </message>
    <message id="XPImportTitleMultiple">
        <translation>%1 Dokumente zur Bibliothek hinzufügen?</translation>
    </message>
    <message id="XPImportTitleSingle">
        <translation>„%1“ zur Bibliothek hinzufügen?</translation>
    </message>
    <message id="XPKeptAsideTitle">
        <translation>Das Ersetzte ließ sich nicht in den Papierkorb legen und liegt hier</translation>
    </message>
    <message id="XPListTagsBeside">
        <translation>In Liste daneben schreiben</translation>
    </message>
    <message id="XPLoseTags">
        <translation>Ohne sie fortfahren</translation>
    </message>
    <message id="XPLosesTagsText">
        <translation>Das Dateisystem dort hat keinen Platz dafür. Sie bleiben in der Sicherung der Schlagwörter; auch eine Liste neben den Dokumenten bringt sie mit „Dokumente importieren …“ zurück.</translation>
    </message>
    <message id="XPLosesTagsTitle">
        <translation>In „%1“ gehen Schlagwörter und Bewertungen verloren</translation>
    </message>
    <message id="XPMarkNotKept">
        <translation>die Kennzeichnung blieb nicht erhalten</translation>
    </message>
    <message id="XPMarkingItems">
        <translation>%1 Objekte werden hinzugefügt</translation>
    </message>
    <message id="XPMovingItems">
        <translation>%1 Objekte werden verschoben</translation>
    </message>
    <message id="XPNestedTooDeeply">
        <translation>ist zu tief verschachtelt</translation>
    </message>
    <message id="XPNewerIsThere">
        <translation> Im Zielordner liegt bereits eine NEUERE Datei dieses Namens.</translation>
    </message>
    <message id="XPNoTrashComment">
        <translation>Für die Datei oder den Ordner wurde kein passender Papierkorb gefunden.</translation>
    </message>
    <message id="XPNoTrashOnVolume">
        <translation>kein Papierkorb auf diesem Datenträger</translation>
    </message>
    <message id="XPNoTrashTitle">
        <translation>Nichts geändert</translation>
    </message>
    <message id="XPNoWayToAuthorise">
        <translation>es gibt keinen Weg, nach den Rechten eines Verwalters zu fragen</translation>
    </message>
    <message id="XPNotADocument">
        <translation>ist kein Dokument</translation>
    </message>
    <message id="XPNotAFile">
        <translation>ist keine Datei</translation>
    </message>
    <message id="XPNotARegularFile">
        <translation>keine gewöhnliche Datei</translation>
    </message>
    <message id="XPNotAllImportedComment">
        <translation>%1 von %2 Dokumenten wurden importiert. Das liegt oft an fehlenden Rechten oder schreibgeschützten Dateien</translation>
    </message>
    <message id="XPNotAllImportedTitle">
        <translation>Nicht alle Dokumente importiert</translation>
    </message>
    <message id="XPNotAnArchive">
        <translation>kein Archiv von Dokumenten</translation>
    </message>
    <message id="XPNotAuthorised">
        <translation>ohne die Rechte eines Verwalters</translation>
    </message>
    <message id="XPNotBesideArchive">
        <translation>liegt nicht mehr neben dem Archiv</translation>
    </message>
    <message id="XPNotCopiedTitle">
        <translation>Nicht kopiert: %1</translation>
    </message>
    <message id="XPNotMarkedMultiple">
        <translation>%1 Dokumente ließen sich nicht als Teil der Bibliothek kennzeichnen</translation>
    </message>
    <message id="XPNotMarkedSingle">
        <translation>„%1“ ließ sich nicht als Teil der Bibliothek kennzeichnen</translation>
    </message>
    <message id="XPNotMovedTitle">
        <translation>Nicht verschoben: %1</translation>
    </message>
    <message id="XPNotRated">
        <translation>nicht bewertet</translation>
    </message>
    <message id="XPNotReadForArchive">
        <translation>konnte beim Anlegen des Archivs nicht gelesen werden</translation>
    </message>
    <message id="XPOfferGone">
        <translation>das andere Programm bietet es nicht mehr an</translation>
    </message>
    <message id="XPOfferNoConnection">
        <translation>keine zweite Verbindung zum X-Server</translation>
    </message>
    <message id="XPOfferSilent">
        <translation>das andere Programm antwortet nicht</translation>
    </message>
    <message id="XPOfferTooLarge">
        <translation>mehr als 512 MiB sind kein Dokument</translation>
    </message>
    <message id="XPOlderIsThere">
        <translation> Im Zielordner liegt bereits eine ältere Datei dieses Namens.</translation>
    </message>
    <message id="XPOwnFilesStay">
        <translation>Dateien dieses Programms werden nicht verschoben</translation>
    </message>
    <message id="XPPDFNotReadable">
        <translation>das PDF kann nicht gelesen werden</translation>
    </message>
    <message id="XPPageNoDocument">
        <translation>aus der Seite wurde kein Dokument</translation>
    </message>
    <message id="XPPageNotReached">
        <translation>die Seite ist nicht erreichbar oder keine Webseite (%1)</translation>
    </message>
    <message id="XPPageRefused">
        <translation>der Server antwortet mit %1</translation>
    </message>
    <message id="XPPageTooLarge">
        <translation>die Seite ist zu groß</translation>
    </message>
    <message id="XPPageTooSlow">
        <translation>die Seite kam nicht rechtzeitig</translation>
    </message>
    <message id="XPPictureNotReadable">
        <translation>das Bild kann nicht gelesen werden</translation>
    </message>
    <message id="XPProgressSettingTags">
        <translation>Schlagwörter und Bewertungen werden geändert …</translation>
    </message>
    <message id="XPProgressSettingTagsStop">
        <translation>Anhalten</translation>
    </message>
    <message id="XPPromiseNoFile">
        <translation>was das andere Programm angelegt hat, ist keine Datei</translation>
    </message>
    <message id="XPPromiseNotWritten">
        <translation>das andere Programm hat die Datei nicht geschrieben</translation>
    </message>
    <message id="XPPromiseRefused">
        <translation>das andere Programm gibt die Datei nicht heraus</translation>
    </message>
    <message id="XPRated">
        <translation>bewertet mit %1/5</translation>
    </message>
    <message id="XPRatingVarious">
        <translation>verschiedene Bewertungen</translation>
    </message>
    <message id="XPRefuseToEditTagsManyDocumentsComments">
        <translation>%1 Dokumente sind ausgewählt. Schlagwörter und Bewertungen von höchstens %2 lassen sich auf einmal ändern. Nichts wurde geändert.</translation>
    </message>
    <message id="XPRefuseToEditTagsManyDocumentsTitle">
        <translation>Zu viele Dokumente</translation>
    </message>
    <message id="XPReplace">
        <translation>Ersetzen</translation>
    </message>
    <message id="XPReplacesItself">
        <translation>eine Datei kann nicht sich selbst ersetzen</translation>
    </message>
    <message id="XPSameIsThere">
        <translation> Im Zielordner liegt bereits eine Datei mit diesem Namen und Datum.</translation>
    </message>
    <message id="XPSomeAreThere">
        <translation> Einige Dateien mit diesen Namen gibt es im Zielordner bereits.</translation>
    </message>
    <message id="XPStillMarkedMultiple">
        <translation>%1 Dokumente sind noch in der Bibliothek</translation>
    </message>
    <message id="XPStillMarkedSingle">
        <translation>„%1“ ist noch ein Dokument der Bibliothek</translation>
    </message>
    <message id="XPStop">
        <translation>Anhalten</translation>
    </message>
    <message id="XPStopIsSafe">
        <translation>Anhalten beendet den Vorgang an einer sicheren Stelle.</translation>
    </message>
    <message id="XPStyledTextNeedsFonts">
        <translation>formatierter Text braucht Schriften</translation>
    </message>
    <message id="XPStyledTextNotWritten">
        <translation>der formatierte Text kann nicht geschrieben werden</translation>
    </message>
    <message id="XPStyledTextTooDeep">
        <translation>der formatierte Text ist zu tief verschachtelt</translation>
    </message>
    <message id="XPStyledTextTooLong">
        <translation>der formatierte Text ist zu lang</translation>
    </message>
    <message id="XPTagHUDMultipleDocsWindowTemplate">
        <translation>Schlagwörter von %1 Dokumenten</translation>
    </message>
    <message id="XPTagHUDWindowTemplate">
        <translation>Schlagwörter von „%1“</translation>
    </message>
    <message id="XPTooManyAttributes">
        <translation>hat zu viele Attribute</translation>
    </message>
    <message id="XPWriterRefuses">
        <translation>das Hilfsprogramm für Attribute lehnt das ab</translation>
    </message>
    <message id="XPWriterSilent">
        <translation>das Hilfsprogramm für Attribute antwortet nicht</translation>
    </message>
    <message id="not ">
        <translation>nicht </translation>
    </message>
    <message id="or %d other kinds" numerus="yes">
        <translation>
            <numerusform>oder %n andere Art</numerusform>
            <numerusform>oder %n andere Arten</numerusform>
        </translation>
    </message>
</context>
</TS>
