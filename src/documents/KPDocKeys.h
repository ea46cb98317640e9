#pragma once

#include <QString>

// Names that a document's saved preferences and its dictionary of properties use: class
// operations of KPDoc, which inherits them.
struct KPDocKeys
{
    // Viewing preferences (KPDocPrefs).
    static QString key_CurrentPageIndex() { return QStringLiteral("zelCurrentPageIndex"); }
    static QString key_ScaleFactor() { return QStringLiteral("zelScaleFactor"); }
    static QString key_AutoScales() { return QStringLiteral("zelAutoScales"); }
    static QString key_DisplaysAsBook() { return QStringLiteral("zelDisplaysAsBook"); }
    static QString key_DisplayMode() { return QStringLiteral("zelDisplayMode"); }
    // Properties.
    static QString key_URL() { return QStringLiteral("url"); }
    static QString key_Deleted() { return QStringLiteral("Deleted"); }
    static QString key_NumPages() { return QStringLiteral("numPages"); }
    static QString key_Path() { return QStringLiteral("currentPath"); }
    static QString key_Alias() { return QStringLiteral("alias"); }
    static QString key_RecordModDate() { return QStringLiteral("rmd"); }
    static QString key_DocumentTitle() { return QStringLiteral("Title"); }
    static QString key_Note() { return QStringLiteral("Subject"); }
    static QString key_Creator() { return QStringLiteral("Creator"); }
    static QString key_Producer() { return QStringLiteral("Producer"); }
    static QString key_CreationDate() { return QStringLiteral("CreationDate"); }
    static QString key_ModificationDate() { return QStringLiteral("ModDate"); }
    static QString key_Tags() { return QStringLiteral("Keywords"); }
    static QString key_Author() { return QStringLiteral("Author"); }
    static QString key_LastOpenedDate() { return QStringLiteral("LastOpenedDate"); }
    static QString key_NumberOfOpenings() { return QStringLiteral("NumberOfOpenings"); }
};
