#pragma once

#include <QStringList>

// Tags that may suit a document, from what is known of it: its name, title, people and keywords as
// the index has them, and words that the user tags with.
//
// The settings "KPScanPDFKeyWords", "KPScanPeople", "KPScanAcademicPapers", "KPScanCustom" (the
// user's own words, "KPCustomWords"), "KPScanTypical" and "KPScanPopular" say where to look, in
// this order; "KPRemoveBannedTags" drops words that say nothing. Threads: any.
namespace KPTagSuggestions {

struct Facts
{
    QString name;  // of the file, without its extension
    QString title; // of the document
    QStringList people;
    QStringList keywords;
    bool isPDF = false;
    QStringList present; // tags that it has already
};

Facts factsOf(const QString &path); // blocking: tags from the file, the rest from the index
// `popular`: the tags of the library, most used first.
QStringList suggest(const Facts &facts, const QStringList &popular);
QStringList forFile(const QString &path, const QStringList &popular);

QStringList popularTags(); // of the index; blocking
QStringList customWords(); // one a line or between commas, as people edit them
QStringList typicalWords();
bool isBanned(const QString &word);

} // namespace KPTagSuggestions
