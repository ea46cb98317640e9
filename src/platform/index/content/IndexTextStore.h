#pragma once

#include "IndexText.h"
#include "IndexTextReader.h"
#include "XPMutex.h"

// The words of the files' text: a full-text index (SQLite FTS5) in a file of its own beside the
// store, so that a long import never holds up the store's own writes. The text itself is not
// kept, only its words, as IndexWords splits and folds them. What a comparison with contents means
// stands in IndexTextExpression.h.
//
// Text that was replaced is never found, but its words stay in their table until all of that
// table's texts were imported anew into the next one: see isMostlyStale(). Both answer meanwhile.
// A store that reads only sees what another process puts in, from one query to the next, and may
// be opened before there is a file.
// Threads: reading from any, at the same time; writing on one at a time, beside the readers.
class IndexTextStore : public IndexText
{
public:
    // Malformed: the file cannot be used; setAside() it and open again.
    static XPResult<std::unique_ptr<IndexTextStore>> open(const QString &path, bool writable);
    ~IndexTextStore() override;

    std::vector<IndexItem> itemsMatching(const MDPredicate::Value &value, qsizetype limit,
                                         const std::vector<IndexItem> *among) const override;
    // Whether the item's text is in as of that state of its file, and in the table that stays.
    bool isStored(IndexItem item, qint64 modified, qint64 size) const;
    bool hasText(IndexItem item) const;

    struct Text
    {
        IndexItem item = 0;
        QByteArray text; // UTF-8; empty: only forget what was there
        qint64 modified = 0;
        qint64 size = -1;
    };
    using Documents = std::vector<IndexTextDocuments::Entry>;
    // Stores all or nothing, in one transaction; they are found once publish() was told. Apart,
    // because the first may run at idle priority, and the second takes a lock that readers need.
    XPResult<Documents> write(const std::vector<Text> &texts);
    void publish(const Documents &documents);
    std::optional<XPError> put(const std::vector<Text> &texts); // both

    // Gives back the memory that only writing needs.
    void rest();

    // More than half of the text is out of date, and no renewal is under way.
    bool isMostlyStale() const;
    // Begins a new table; the items with text in the old one, which isStored() denies from now on.
    XPResult<std::vector<IndexItem>> beginRenewal();
    bool isRenewing() const;
    // Drops the old tables. Text that was not put anew meanwhile is no longer found.
    std::optional<XPError> endRenewal();
    // Sets the file aside and begins an empty one: what is left to do with a damaged one. Documents
    // are numbered on, so that a question asked meanwhile notices.
    std::optional<XPError> startOver();
    // Whom to tell, on the thread that asked a question, that the file (by its inode) is damaged.
    using Damaged = std::function<void(quint64 inode)>;
    void setDamaged(Damaged damaged);
    bool isFile(quint64 inode) const; // the path still names that one

private:
    explicit IndexTextStore(const QString &path, bool writable) : m_path(path), m_writable(writable)
    {
    }
    std::optional<XPError> openWriter();
    std::optional<XPError> loadDocuments();
    std::optional<XPError> joinRows(quint32 first, quint32 next);
    std::optional<XPError> run(const QByteArray &sql) const;
    XPError failure() const;
    XPResult<Documents> writeRows(const std::vector<Text> &texts);

    std::optional<XPError> createFile();
    std::unique_ptr<IndexTextReader> takeReader() const;
    void readFailed(const IndexTextReader &reader) const;
    void giveBack(std::unique_ptr<IndexTextReader> reader) const;
    struct Question;
    bool begin(IndexTextReader &reader, Question &question,
               const std::vector<IndexItem> *among) const;
    void prepare(Question &question, const std::vector<IndexItem> *among) const
        XP_REQUIRES(m_mutex);
    bool ask(IndexTextReader &reader, Question &question) const;
    bool askPhrase(IndexTextReader &reader, Question &question) const;
    bool askPhrases(IndexTextReader &reader, Question &question) const;
    std::vector<IndexItem> answer(const MDPredicate::Value &value, Question &&question) const;
    bool isOvertaken(const Question &question) const;
    bool addItems(const std::vector<quint32> &documents, Question &question) const;

    const QString m_path;
    const bool m_writable;
    sqlite3 *m_writer = nullptr; // the writing thread's
    // The writing thread's: the next document to be written, and the table it goes into.
    quint32 m_next = 1;
    qint64 m_table = 1;

    mutable XPMutex m_mutex;
    mutable IndexTextDocuments m_documents XP_GUARDED_BY(m_mutex);
    mutable quint64 m_documentsFile XP_GUARDED_BY(m_mutex) = 0; // its inode, where only read
    quint32 m_tableFirst XP_GUARDED_BY(m_mutex) = 1;            // its first document
    bool m_renewing XP_GUARDED_BY(m_mutex) = false;
    mutable std::vector<std::unique_ptr<IndexTextReader>> m_readers XP_GUARDED_BY(m_mutex);

    mutable XPMutex m_damagedMutex; // held while told, so that setDamaged() waits for that
    Damaged m_damaged XP_GUARDED_BY(m_damagedMutex);
};
