<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- What the program says, by id: qtTrId("id") in the code. Kept in order of the ids.
     tools/check compares the ids with those used under src/. -->
<TS version="2.1" language="en">
<context>
    <name></name>
    <message id="KPExtensionTypeTemplate">
        <translation>%1 file</translation>
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
