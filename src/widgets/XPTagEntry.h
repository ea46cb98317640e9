#pragma once

#include <QStringList>

// What typed text means to a tag editor. Threads: any.
namespace XPTagEntry {

// The tags of `text`, cut at commas, tabs and line ends and cleaned, in order, without those in
// `present` and without repeats. Case alone makes no other tag; one that is among `known`, or that
// the program met before, is spelt as there.
QStringList tags(const QString &text, const QStringList &present, const QStringList &known);

// Text that is being typed, cut where tags end: at commas, tabs and line ends; with the setting
// "KPUseCommas" off at blanks too, but not inside of double quotes, nor then at commas.
struct Typed
{
    QStringList finished; // tags
    QString rest;         // of the text: still being typed
};
Typed split(const QString &text, bool useCommas);
bool usesCommas(); // the setting
QString hint();    // what separates tags, for people

// Between a tag and how it is typed: one with a blank stands in double quotes.
QString typed(const QString &tag);
QString tagOfTyped(const QString &text);

} // namespace XPTagEntry
