#pragma once

#include "DocumentAnswer.h"

class QDateTime;

// Puts facts into an answer under the index's names, clean: one line each, nothing empty, no
// value twice, lists of a bounded length, dates that can be true. A fact that is there stays:
// readers state the best source first.
// Threads: a value that refers to the answer, which must outlive it.
class DocumentFacts
{
public:
    explicit DocumentFacts(DocumentAnswer &answer) : m_answer(answer) {}

    // Names that more than one reader uses. The rest stand where they are used.
    static const QString authors;     // "kMDItemAuthors", an array
    static const QString keywords;    // "kMDItemKeywords", an array
    static const QString xmpKeywords; // "kMDItemKXXMPKeywords", an array: the keywords of the
                                      // file's XMP packet, shown by "KPShowXMPKeywords" only
    static const QString subject;     // "kMDItemSubject"
    static const QString description; // "kMDItemDescription"
    static const QString creator;     // "kMDItemCreator": the program that made the document
    static const QString created;     // "kMDItemContentCreationDate"
    static const QString copyright;   // "kMDItemCopyright"
    static const QString languages;   // "kMDItemLanguages", an array
    static const QString url;         // "kMDItemURL"
    static const QString pixelWidth;  // "kMDItemPixelWidth"
    static const QString pixelHeight; // "kMDItemPixelHeight"
    static const QString duration;    // "kMDItemDurationSeconds"

    void setTitle(QStringView title);
    void setText(const QString &name, QStringView value);
    // Adds to the list.
    void addText(const QString &name, QStringView value);
    // The parts of a list in one text, separated by commas or, where there is one, semicolons.
    void addList(const QString &name, QStringView values);
    void setInteger(const QString &name, qint64 value);
    void setReal(const QString &name, double value);
    // Invalid dates and those outside the years 1 to 9999 are no facts.
    void setDate(const QString &name, const QDateTime &date);
    // "2024-03-02T18:22:07Z" or a part of it; without a zone it is local time.
    void setIsoDate(const QString &name, QStringView text);
    // Width, height and what follows from them. As stored; `isTurned`: shown upright, width and
    // height change places.
    void setPixelSize(qint64 width, qint64 height, bool isTurned = false);

private:
    static constexpr qsizetype longestList = 500;

    DocumentAnswer &m_answer;
};
