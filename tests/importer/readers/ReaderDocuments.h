#pragma once

#include "ReaderFile.h"

#include <QList>
#include <gtest/gtest.h>
#include <ostream>

// What a reader should say of a document.
struct ReaderCase
{
    const char *name;
    QString type;
    QByteArray bytes;
    QString title;
    QString text;
    // As factText() shows them; others may be there too.
    QMap<QString, QString> facts;
    int pages = 0;
};

// Reads each and compares.
void expectRead(const QList<ReaderCase> &cases);

// A value as text: lists joined by " | ", dates in UTC.
QString factText(const PropertyValue &value);

// --- Documents made here

// A ZIP archive of these files, compressed.
QByteArray zipOf(const QList<std::pair<QByteArray, QByteArray>> &files);
// The same as a 7-Zip archive, and as a tar compressed by gzip.
QByteArray sevenZipOf(const QList<std::pair<QByteArray, QByteArray>> &files);
QByteArray tarballOf(const QList<std::pair<QByteArray, QByteArray>> &files);
// A compound file (version 3) of these streams.
QByteArray compoundOf(const QList<std::pair<QString, QByteArray>> &streams);
// A PDF document with one line of text on each page and this information dictionary.
QByteArray pdfOf(const QList<QByteArray> &lines, const QByteArray &info = {});

QByteArray little16(quint16 value);
QByteArray little32(quint32 value);
QByteArray big32(quint32 value);
// UTF-16, little-endian.
QByteArray wide(const QString &text);
