#pragma once

#include "KPNavigator.h"

// One step of the crumb trail: a criterion of a search state in words, and what the state would be
// without it. A value of one moment. Threads: main.
struct KPCrumb
{
    enum class Kind {
        Source,
        Location,
        PostFolders, // the results narrowed to folders
        NoFolder,    // a folder that is left out
        Listing,     // folders as they lie on the disk
        Packages,    // their contents too
        SystemFiles,
        FileList,
        Tagged,
        Untagged,
        Tag,
        NoTag,
        Types,
        NoTypes,
        Date,
        Rating,
        Words,
    };

    Kind kind = Kind::Source;
    QString text = {};                    // as the crumb shows it
    QString spoken = {};                  // as a part of the sentence: "without draft"
    QString value = {};                   // the tag, the folder, the word
    QString symbol = {};                  // of data/icons/symbols, for the two first steps
    KPSearchState::Ptr without = nullptr; // null: it can be changed, not removed
    KPSearchState::Ptr negated = nullptr; // null: there is no opposite

    bool isExcluding() const
    {
        return kind == Kind::NoTag || kind == Kind::NoTypes || kind == Kind::NoFolder;
    }
};

// One line of a crumb's menu. It leads to a state, or to an item or location with its own.
struct KPCrumbChoice
{
    QString text = {};
    KPSearchState::Ptr state = nullptr;
    KPSearchState::Ptr excluding = nullptr; // with Alt held; null: the same
    KPNavigator::SourceItem source = nullptr;
    KPNavigator::LocationItem location = nullptr;
    bool isChecked = false;
    bool beginsGroup = false;  // a separator is in front
    bool asksForDates = false; // a range of one's own, which the view asks for
    QString title = {};        // of the menu that holds `below`
    QList<KPCrumbChoice> below = {};
};
