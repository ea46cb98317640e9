#pragma once

#include "XPError.h"

#include <QByteArray>
#include <optional>

// What the importer and its client send each other over their socket: frames of a head (a binary
// property list) and a body (text or pixels), each of a stated length.
//
// Wire form: three 32-bit numbers (kind, length of the head, length of the body) in the machine's
// order, then both. The two ends run on one machine and are built together.
// Threads: a value.
struct ImportFrame
{
    enum class Kind : quint32 {
        Hello = 0x4D494831, // worker: it is ready, how it is caged and what it reads
        Job = 0x4D494A31,   // client: one document; its descriptor comes with the first byte
        Answer = 0x4D494131,
        Picture = 0x4D495031,
    };
    static constexpr qsizetype maximumHead = 1 << 20;
    static constexpr qsizetype maximumText = 1 << 20;
    static constexpr int maximumPixels = 4096; // of a picture's side
    static constexpr qsizetype maximumPicture = qsizetype{maximumPixels} * maximumPixels * 4;

    Kind kind = Kind::Hello;
    QByteArray head;
    QByteArray body;

    // The wire form up to the body, which need not be copied: send it after this.
    QByteArray bytesBeforeBody() const;
};

// Puts frames together from bytes as they come. The other end is not trusted: after an error
// nothing of it is.
// Threads: one.
class ImportFrameReader
{
public:
    // Where the next bytes belong, at least one; they are told of by filled().
    struct Space
    {
        char *at;
        qsizetype size;
    };
    Space space();
    // Malformed: an unknown kind or a length over the limit of the kind.
    std::optional<XPError> filled(qsizetype count);
    // The frame, once it is whole; the next begins then.
    std::optional<ImportFrame> take();

private:
    static constexpr qsizetype prefixSize = 12;
    std::optional<XPError> readPrefix();

    char m_prefix[prefixSize] = {};
    qsizetype m_have = 0; // of prefix, head and body together
    ImportFrame m_frame;
};
