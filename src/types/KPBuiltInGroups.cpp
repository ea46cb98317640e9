#include "KPBuiltInGroups.h"

#include <QCoreApplication>
#include <algorithm>
#include <array>

namespace {

struct BuiltIn
{
    const char *id; // of the translated name
    const char *name;
    const char *icon;
    bool enabled;
    const char *types; // between blanks
};

} // namespace

// "tree_" stands for a type with everything that conforms to it. The kinds that make a library
// of documents are on; those that mostly are somebody's tools are off.
static constexpr std::array builtIns = {
    BuiltIn{QT_TRID_NOOP("KPFileTypeGroupPDF"), "PDF", "pdf", true, "com.adobe.pdf"},
    BuiltIn{QT_TRID_NOOP("KPFileTypeGroupOffice"), "Office", "document", true,
            "com.microsoft.word.doc org.openxmlformats.wordprocessingml.document "
            "org.oasis-open.opendocument.text com.microsoft.excel.xls "
            "org.openxmlformats.spreadsheetml.sheet org.oasis-open.opendocument.spreadsheet "
            "com.microsoft.powerpoint.ppt org.openxmlformats.presentationml.presentation "
            "org.oasis-open.opendocument.presentation"},
    BuiltIn{QT_TRID_NOOP("KPFileTypeGroupIWork"), "iWork", "document", true,
            "com.apple.iwork.pages.pages com.apple.iwork.pages.pages-tef "
            "com.apple.iwork.pages.sffpages com.apple.iwork.numbers.numbers "
            "com.apple.iwork.numbers.numbers-tef com.apple.iwork.numbers.sffnumbers "
            "com.apple.keynote.key com.apple.iwork.keynote.key com.apple.iwork.keynote.key-tef "
            "com.apple.iwork.keynote.sffkey"},
    BuiltIn{QT_TRID_NOOP("KPFileTypeGroupSpreadsheets"), "Spreadsheets", "spreadsheet", true,
            "tree_public.spreadsheet public.comma-separated-values-text "
            "public.tab-separated-values-text"},
    BuiltIn{QT_TRID_NOOP("KPFileTypeGroupPresentations"), "Presentations", "presentation", true,
            "tree_public.presentation"},
    BuiltIn{QT_TRID_NOOP("KPFileTypeGroupImages"), "Images", "image", true, "tree_public.image"},
    BuiltIn{QT_TRID_NOOP("KPFileTypeGroupRawPhotos"), "Raw photos", "image", true,
            "tree_public.camera-raw-image"},
    BuiltIn{QT_TRID_NOOP("KPFileTypeGroupMovies"), "Movies", "video", true, "tree_public.movie"},
    BuiltIn{QT_TRID_NOOP("KPFileTypeGroupAudio"), "Audio", "audio", true, "tree_public.audio"},
    BuiltIn{QT_TRID_NOOP("KPFileTypeGroupText"), "Text", "text", true,
            "public.plain-text public.log public.rtf net.daringfireball.markdown com.apple.rtfd"},
    BuiltIn{QT_TRID_NOOP("KPFileTypeGroupWebPages"), "Web pages", "web", true,
            "tree_public.html com.apple.webarchive"},
    BuiltIn{QT_TRID_NOOP("KPFileTypeGroupEMail"), "E-mail", "mail", true, "tree_public.message"},
    BuiltIn{QT_TRID_NOOP("KPFileTypeGroupEBooks"), "E-books", "book", true,
            "tree_org.idpf.epub-container com.amazon.mobi-ebook com.amazon.mobi8-ebook "
            "com.amazon.kfx-ebook org.fictionbook.fb2 org.fictionbook.fb2-zip"},
    BuiltIn{QT_TRID_NOOP("KPFileTypeGroupSourceCode"), "Source code", "code", false,
            "tree_public.source-code"},
    BuiltIn{QT_TRID_NOOP("KPFileTypeGroupArchives"), "Archives", "archive", false,
            "tree_public.archive"},
    BuiltIn{QT_TRID_NOOP("KPFileTypeGroupFonts"), "Fonts", "font", false, "tree_public.font"},
};

static QString shownName(const BuiltIn &builtIn)
{
    const QString text = qtTrId(builtIn.id);
    return text == QLatin1String(builtIn.id) ? QString::fromLatin1(builtIn.name) : text;
}

static std::shared_ptr<KPFileTypeGroup> made(const BuiltIn &builtIn)
{
    auto group = std::make_shared<KPFileTypeGroup>(builtIn.enabled, shownName(builtIn), true);
    group->setBuiltInName(QString::fromLatin1(builtIn.name));
    for (const QString &type : QString::fromLatin1(builtIn.types).split(u' '))
        group->addUTI(type);
    return group;
}

QList<std::shared_ptr<KPFileTypeGroup>> KPBuiltInGroups::groups()
{
    QList<std::shared_ptr<KPFileTypeGroup>> groups;
    for (const BuiltIn &builtIn : builtIns)
        groups.append(made(builtIn));
    return groups;
}

static bool hasName(const BuiltIn &builtIn, const QString &name)
{
    return name == QLatin1String(builtIn.name) || name == shownName(builtIn);
}

std::shared_ptr<KPFileTypeGroup> KPBuiltInGroups::groupWithName(const QString &name)
{
    const auto found = std::find_if(builtIns.begin(), builtIns.end(),
                                    [&](const BuiltIn &each) { return hasName(each, name); });
    return found == builtIns.end() ? nullptr : made(*found);
}

QString KPBuiltInGroups::iconFor(const KPFileTypeGroup &group)
{
    const QString first = group.utiArray().value(0);
    for (const BuiltIn &builtIn : builtIns) {
        const QLatin1String types(builtIn.types);
        const bool sameStart =
            !first.isEmpty() && (types == first || QString(types).startsWith(first + u' '));
        if (hasName(builtIn, group.displayName()) || sameStart)
            return QString::fromLatin1(builtIn.icon);
    }
    return QStringLiteral("generic");
}
