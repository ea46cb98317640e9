#pragma once

#include "IndexSource.h"

#include <QStringList>
#include <optional>

// What other programs of the desktop may ask of the library: documents by words, what is known of
// one, and to see it in the window. Only the index is read, never a file, so that no volume keeps
// anybody waiting; nothing is written.
//
// Callers are strangers: what they send is bounded. Threads: main. The index is the caller's.
class KPLibraryAnswers
{
public:
    explicit KPLibraryAnswers(IndexSource &index) : m_index(index) {}

    static constexpr qsizetype mostResults = 200;
    static constexpr qsizetype longestText = 1000; // UTF-16 units

    // Addresses (`file:`) of documents, those changed last first: that have all the words in
    // their names, as the window's search does.
    QStringList search(const QString &text, qsizetype most) const;

    struct Document
    {
        QString path;
        QString name;   // printable
        QString folder; // "~/…"
        QString icon;   // a name of the icon theme
        QStringList tags;
    };
    // Nothing: the index knows no such document.
    std::optional<Document> document(const QString &address) const;

    // In the window, which is started for it.
    static void reveal(const QStringList &addresses);
    static void searchInWindow(const QString &text);

private:
    IndexSource &m_index;
};
