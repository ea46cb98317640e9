#pragma once

#include "XPError.h"

#include <QStringList>
#include <variant>

// What an address asks for that was handed to the program: a file (RFC 8089), documents with tags
// (murn://tags/a/b) or with words (murn://search/some%20text, whatever the host is called), or a
// web page (http, https) that is to be captured.
//
// Addresses come from web pages and mails: the most that one does unasked is search.
// Threads: any; nothing is looked up.
struct KPOpenedUrl
{
    struct File
    {
        QString path; // absolute, as its bytes say; may not exist
        bool operator==(const File &) const = default;
    };
    struct WithTags
    {
        QStringList tags;
        bool operator==(const WithTags &) const = default;
    };
    struct WithText
    {
        QString text;
        bool operator==(const WithText &) const = default;
    };
    struct Capture
    {
        QString address; // of a web page, which is to become a document once the user agrees
        bool operator==(const Capture &) const = default;
    };
    using Wish = std::variant<File, WithTags, WithText, Capture>;

    // Malformed: an address of another kind or machine, a broken escape, a NUL. TooLarge: longer
    // than `longest` UTF-16 units.
    static XPResult<Wish> parse(const QString &url);
    static constexpr qsizetype longest = 8192;
};
