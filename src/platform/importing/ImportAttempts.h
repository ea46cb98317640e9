#pragma once

#include "ImportDocument.h"
#include "ImportWorker.h"

#include <QDateTime>
#include <QList>

// Remembers which documents broke their importer, also over the end of this process: each is
// written down before it is tried. One that broke it twice in the same state is left alone until
// it changes.
//
// A document that was being tried when this process itself ended (or the machine did) is under
// suspicion only: three such ends weigh as much as two breaks. A success clears it.
//
// Two files: PATH, a property list of what broke, replaced as a whole, rarely; and PATH.trying,
// the document at work, written over for each, without waiting for the disk. What cannot be read
// there counts as nothing; what cannot be written is kept in memory.
// Threads: one; notRead() any, in any process.
class ImportAttempts
{
public:
    struct Case
    {
        QByteArray path;
        qint64 device = 0;
        qint64 inode = 0;
        qint64 size = 0;
        qint64 modified = 0;
        int breaks = 0;
        int interruptions = 0;
        DocumentFailure failure = DocumentFailure::Crashed;
        QString reason;

        bool isLeftAlone() const { return breaks >= 2 || breaks + interruptions >= 3; }
        bool operator==(const Case &) const = default;
    };
    static constexpr qsizetype maximumCases = 1000; // the oldest go first

    // `path`: empty keeps everything in memory.
    explicit ImportAttempts(const QString &path);
    ~ImportAttempts();

    // The case of this document in this state; null: nothing is held against it.
    const Case *caseOf(const ImportDocument &document) const;
    void begin(const ImportDocument &document);
    void broke(const ImportDocument &document, const ImportWorker::Break &how);
    void succeeded(const ImportDocument &document);
    void gaveUp(); // stopped from outside: says nothing of the document

    // What is left alone according to the file, or took too long and is tried once more at the next
    // start; less what has changed or gone since.
    static QList<Case> notRead(const QString &path);

private:
    Case &caseFor(const ImportDocument &document);
    void noteInterruption();
    void save() const;
    void clear() const;

    const QString m_path;
    QList<Case> m_cases; // oldest first
    XPFileDescriptor m_trying;
};
