#pragma once

#include <QByteArray>
#include <QSet>
#include <QString>

// Free names in one folder, for many files that go there.
//
// A name is taken when a file of that name exists in any spelling of its text (two that differ
// only in Unicode normalisation are one name to people) or, where the folder folds case, in any
// case. The folder is read at most once, and only when its spellings matter; what others put there
// later is seen by name. A name that was given out counts as taken.
// Threads: one at a time; blocking file calls.
class XPFreeNames
{
public:
    static constexpr int mostNumbers = 1000;

    explicit XPFreeNames(const QString &folder);

    // The path for a file of this name, as XPFileUtils::findUnusedPath() chooses it.
    QString take(const QString &name);

private:
    enum class State { Free, Taken, Unknown };

    // A name in the two parts that a number goes between.
    struct Parts
    {
        QString stem;
        QString end; // ".EXT"
    };

    State stateOf(const QString &name);
    bool isSpelledThere(const QByteArray &name);
    int firstUnknown(const Parts &parts, int number) const;
    QString numbered(const Parts &parts, int number);
    qsizetype longestName();
    QString pathOf(const QString &name) const;

    const QString m_folder;
    const QByteArray m_folderBytes;
    QSet<size_t> m_taken; // hashes of decomposed names: two alike only waste a number
    bool m_isRead = false;
    qsizetype m_longestName = 0; // bytes; 0: not asked yet
};
