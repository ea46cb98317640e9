#pragma once

#include "KPContentTypes.h"
#include "KPOptimizedFolders.h"
#include "KPSearchState.h"
#include "XPLazy.h"

#include <QSet>

// What a search state derives from its dictionary, each once. For the files of KPSearchState.

// What is asked for every document.
struct KPSearchState::Modes
{
    bool isFileList;
    bool showsTagged;
    bool showsUntagged;
    bool showsEverywhere;
    bool needsFolderCheck; // of what the query found
    bool readOnlyKeywords;
    bool excludesHiddenOnly;
    bool hasSearchString;
    bool isShortSearchString;
    bool searchesMetaData;
};

struct KPSearchState::Words
{
    QString searchStringLC;
    QStringList words, wordsLC;
};

struct KPSearchState::FileTypes
{
    struct Tree
    {
        const KPTagName *tag;
        QString identifier;
        KPContentTypes::Number number; // none: a dynamic or an unknown type
    };

    Tags tree, exact, treeExclude, exactExclude;
    std::vector<Tree> wantedTrees, excludedTrees;
    QStringList wantedExtensions; // ".x" in lower case, of the entries that ask for one
    QStringList wantedKinds;
    bool mustCheck = false;
};

struct KPSearchState::Caches
{
    // Whole seconds since 1970; both ends are outside.
    struct Window
    {
        qint64 start = 0;
        qint64 end = 0;
    };

    XPLazy<Modes> modes;
    XPLazy<KPTagName::PooledTags> searchTagsLC;
    XPLazy<KPTagName::PooledTags> excludeTagsLC;
    XPLazy<FileTypes> fileTypes;
    XPLazy<KPOptimizedFolders> constraintFolders;
    XPLazy<KPOptimizedFolders> excludeFolders;
    std::atomic<quintptr> lastFolder = 0; // see docPassesContraintFolders()
    XPLazy<QSet<KPPooledString>> fileList;
    XPLazy<std::optional<Window>> dateWindow;
    XPLazy<std::optional<KPStarCondition::Bounds>> ratingBounds;
    XPLazy<Words> words;
    XPLazy<std::optional<QString>> mdQueryString;
};
