#pragma once

#include "DocumentAnswer.h"
#include "XPError.h"

#include <QStringList>
#include <functional>
#include <memory>

class QIODevice;

// The one document that a reader is at: an open descriptor and what is known of the file from
// outside. There is no path and nothing else can be opened.
//
// The bytes are untrusted, and may change while they are read. Do not map the file: one that
// shrinks meanwhile would end the worker.
// Threads: the worker's main thread.
class DocumentSource
{
public:
    struct Facts
    {
        qint64 size = 0;
        QString type;      // content type identifier
        QStringList tree;  // the type and its ancestry, nearest first
        QString mime;      // preferred MIME type; may be empty
        QString extension; // of the file's name, lower case, without the dot; may be empty
    };

    // `stop`: see mustStop(). The descriptor belongs to the caller.
    DocumentSource(int descriptor, Facts facts, std::function<bool()> stop = {});

    int descriptor() const { return m_descriptor; } // read only; its offset is nobody's
    qint64 size() const { return m_facts.size; }
    const QString &type() const { return m_facts.type; }
    const QString &mime() const { return m_facts.mime; }
    const QString &extension() const { return m_facts.extension; }
    bool conformsTo(QStringView type) const;

    // The bytes from `offset` on, fewer at the end of the file.
    XPResult<QByteArray> read(qint64 offset, qsizetype length) const;
    // The whole file; Kind::TooLarge when it is longer than `limit`.
    XPResult<QByteArray> readAll(qsizetype limit) const;
    // Read only, seekable, open; independent of descriptor()'s offset. Use it before the source
    // goes.
    std::unique_ptr<QIODevice> device() const;

    // The time is nearly up: return what there is. Asked about once a page or 100 KB. The worker
    // is killed, and its answer lost, when a reader does not.
    bool mustStop() const { return m_stop && m_stop(); }

private:
    int m_descriptor;
    Facts m_facts;
    std::function<bool()> m_stop;
};

// What an error of reading means for the document: TooLarge, Damaged (Kind::Malformed),
// Unsupported; Unreadable for every other kind.
DocumentFailure documentFailureOf(const XPError &error);
