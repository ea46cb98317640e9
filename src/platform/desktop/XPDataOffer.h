#pragma once

#include "XPError.h"

#include <QByteArray>
#include <QStringList>
#include <memory>
#include <optional>

class QMimeData;

// What another program offers by a clipboard or a drag: the kinds of content that it names, and
// the bytes of each, handed over when they are asked for.
//
// Nothing of it is trusted: what is offered may be refused, never come, or be something else.
// Threads: an offer belongs to the thread that reads it, which waits for the other program. That
// of of() is read on the main thread and refers to the data; XPSelectionOffer on any.
class XPDataOffer
{
public:
    // What is there already in this process, or comes by way of Qt.
    static std::unique_ptr<XPDataOffer> of(const QMimeData *data);
    virtual ~XPDataOffer();

    virtual QStringList formats() = 0;
    bool offers(const QString &format) { return formats().contains(format); }
    // Empty where there is none of this kind.
    virtual XPResult<QByteArray> read(const QString &format) = 0;

    // A file that the source writes itself where it is told to (the Direct Save Protocol for
    // XDND): the name as the source says it. Nothing: it promises none.
    virtual std::optional<QByteArray> promisedName() { return {}; }
    enum class Answer { Writes, WantsToBeRead, Refuses };
    // `url`: where. Writes: it has, or does so soon.
    virtual XPResult<Answer> save(const QByteArray &url);

    static const QString directSaveFormat; // "XdndDirectSave0"
    static const QString anyBytesFormat;   // "application/octet-stream": a promised file, read
};
