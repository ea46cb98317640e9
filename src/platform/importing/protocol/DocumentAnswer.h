#pragma once

#include "PropertyValue.h"

#include <QByteArray>
#include <QMap>
#include <QString>
#include <optional>

// Why nothing, or not all, could be had of a document.
enum class DocumentFailure : quint8 {
    Encrypted = 1, // a password is needed
    Damaged,       // not of its format, or broken
    TooLarge,      // over a limit: memory, pixels, entries, depth
    TimedOut,      // over its time
    Crashed,       // the worker died of it
    Unsupported,   // nobody reads this type, or this kind of it
    Unreadable,    // the disk failed; says nothing of the document
};

// "encrypted", "damaged", "too large", …: for the shell's JSON and for status lists.
QString documentFailureName(DocumentFailure failure);
std::optional<DocumentFailure> documentFailureNamed(QStringView name);

// UTF-8 text with a limit. What does not fit is cut between two characters and dropped.
// Threads: a value.
class DocumentText
{
public:
    static constexpr qsizetype maximumBytes = 1 << 20;

    DocumentText() = default;
    explicit DocumentText(qsizetype limit) : m_limit(limit) {}

    // False when not all of it fitted: the reader may stop. Bytes that are no UTF-8 become
    // U+FFFD, zero bytes spaces.
    bool append(QByteArrayView utf8);
    bool append(QStringView text);
    // Ends a line unless at the start of one: cells, paragraphs, pages and parts stay apart.
    bool newLine();

    bool isFull() const { return m_isFull; }
    bool isEmpty() const { return m_bytes.isEmpty(); }
    const QByteArray &utf8() const { return m_bytes; }

    bool operator==(const DocumentText &) const = default;

private:
    qsizetype m_limit = maximumBytes;
    QByteArray m_bytes;
    bool m_isFull = false;
};

// What a reader found in a document. May hold something beside a failure: the properties of an
// encrypted file, the pages before a broken one.
// Threads: a value.
struct DocumentAnswer
{
    using Attributes = QMap<QString, PropertyValue>;

    QString title; // of the document itself, not its file name; empty: none
    DocumentText text;
    // By the index's names: "kMDItemAuthors" (array of strings), "kMDItemKeywords" (the same),
    // "kMDItemContentCreationDate" (date), "kMDItemPixelWidth" (integer), …
    Attributes attributes;
    int pages = 0; // pages, slides, sheets, images in a file of several; 0: has no such thing
    std::optional<DocumentFailure> failure;

    // `attributes` with title and pages under their names.
    Attributes allAttributes() const;

    bool operator==(const DocumentAnswer &) const = default;
};
