#pragma once

#include "PropertyValue.h"
#include "XPError.h"

#include <span>
#include <variant>

// One setting of the program, as the table of all of them (XPFactorySettings) describes it: what
// may be stored for it, and where and in which words people meet it. Texts are ids.
// Threads: a value; the arrays it refers to are the table's own.
struct XPSetting
{
    enum class Kind {
        Bool,
        Integer,
        Real,
        Text,
        Lines,  // a text of several lines
        Key,    // a key on the keyboard, as Qt spells it ("Ctrl+Alt+M")
        Colour, // four reals from 0 to 1: red, green, blue and alpha (sRGB)
        Path,   // "~" stands for the home folder; data where it is no well-formed text
        Paths,
        Texts,
        Data, // these three only the program itself puts together
        List,
        Dictionary,
    };
    // A page of the preferences.
    enum class Page {
        None, // not in the window: what the program remembers, or few would want to change
        Library,
        Appearance,
        Kinds, // the groups of types, which are kept elsewhere
        Tags,
        Filing,
        DropZone,
        Scanning,
        Backup,
        Index,
        Privacy,
    };
    struct Choice
    {
        std::variant<int, const char *> value;
        const char *text; // "%1" in it is the value
        PropertyValue stored() const;
    };

    QString key;
    Kind kind = Kind::Bool;
    PropertyValue factory = {}; // null: none, and nothing is registered
    Page page = Page::None;
    const char *group = ""; // settings of a group stand together, under this heading
    const char *text = "";  // what it does; empty: a page has a place of its own for it
    const char *hint = "";  // a sentence more, where the text does not say it all
    const char *unit = "";  // after a number; "%1" in it is the number
    double lowest = 0;      // of a number, both included; equal: no limits
    double highest = 0;
    std::span<const Choice> choices = {}; // empty: any value
    bool isInverted = false;              // the text says what happens while it is off
    const char *onlyWhileOff = "";        // the key of a setting that, when on, makes this one idle

    bool hasLimits() const { return lowest < highest; }
    // Why this cannot be its value: another kind, a number beyond the limits, none of the choices.
    std::optional<XPError> refusal(const PropertyValue &value) const;
    // The value that words of a shell stand for, as many as the kind takes.
    XPResult<PropertyValue> fromWords(const QStringList &words) const;
    // For people who write it: "true or false", "a number from 1 to 50".
    QString expected() const;
};
