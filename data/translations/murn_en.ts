<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- What the program says, by id: qtTrId("id") in the code. Kept in order of the ids.
     tools/check compares the ids with those used under src/. -->
<TS version="2.1" language="en">
<context>
    <name></name>
    <message id="KPBuiltInString">
        <translation>built-in</translation>
    </message>
    <message id="KPExtensionTypeTemplate">
        <translation>%1 file</translation>
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
    <message id="KPUnknownUTITagTemplate">
        <translation>Unknown type %1</translation>
    </message>
    <message id="KPExtensionTypeTemplate">
        <translation>%1 file</translation>
    </message>
    <message id="KPUnknownUTITagTemplate">
        <translation>Unknown type %1</translation>
    </message>
    <message id="KarvexAuthenticationPrompt">
        <translation>You need to authorize to set metadata like tags on some files.</translation>
    </message>
</context>
</TS>
