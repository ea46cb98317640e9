#pragma once

#include "DocumentAnswer.h"
#include "ImportFrame.h"

#include <QStringList>

// What the frames between the importer and its client mean. Reading them takes any bytes and never
// goes outside them: the importer may have been taken over by a document.
// Threads: values.

// The importer is ready and caged.
struct ImportHello
{
    int landlock = 0;     // the kernel's version of it in force; 0: none
    bool seccomp = false; // system calls are filtered
    QStringList types;    // content types that it reads, with what conforms to them

    bool isWhole() const { return landlock > 0 && seccomp; } // nothing of the cage is missing
    // Whether it reads a type with this ancestry.
    bool reads(const QStringList &tree) const;
    ImportFrame frame() const;
    static XPResult<ImportHello> from(const ImportFrame &frame);
    bool operator==(const ImportHello &) const = default;
};

// One document to read, or one of its pages to draw.
struct ImportJob
{
    qint64 size = 0;
    QString type;
    QStringList tree; // the type and its ancestry, nearest first
    QString mime;
    QString extension;
    int page = 0;         // from 1; 0: no picture but text and attributes
    int pixels = 0;       // the picture's longer side
    int milliseconds = 0; // of processor time, until the reader is asked to come to an end

    bool isPicture() const { return page > 0; }
    ImportFrame frame() const;
    static XPResult<ImportJob> from(const ImportFrame &frame);
    bool operator==(const ImportJob &) const = default;
};

// What was found. Only attributes that a document may state about itself come through: not the
// user's tags and rating, nor facts that the file system tells.
ImportFrame importFrameOf(const DocumentAnswer &answer);
XPResult<DocumentAnswer> documentAnswerFrom(const ImportFrame &frame);

// A picture: pixels of four bytes as QImage's Format_ARGB32_Premultiplied, rows without gaps.
struct ImportPicture
{
    int width = 0; // 0: none, `failure` says why
    int height = 0;
    QByteArray pixels;
    std::optional<DocumentFailure> failure;

    ImportFrame frame() const;
    static XPResult<ImportPicture> from(const ImportFrame &frame);
    bool operator==(const ImportPicture &) const = default;
};
