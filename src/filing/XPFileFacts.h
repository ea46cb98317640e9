#pragma once

#include <QDateTime>
#include <QString>
#include <optional>

// Single facts about the file at a path. A link is itself, never what it leads to, except where
// the question is what the user may do with the file. "No such file" and "cannot be looked at"
// answer false or nothing.
// Threads: any; blocking file calls.

bool IsDirectory(const QString &path);  // a folder, package or not
bool IsFile(const QString &path);       // exists and is no folder
bool IsPackage(const QString &path);    // a folder that stands for a document
bool IsRealFolder(const QString &path); // a folder that does not

std::optional<qint64> GetFileSize(const QString &path);                // bytes
std::optional<QDateTime> GetFileModificationDate(const QString &path); // UTC
std::optional<double> GetFileModificationDateSecondsSince2000(const QString &path);
std::optional<double> SecondsSinceLastModified(const QString &path); // negative: in the future

// What this process may do, links followed.
bool IsReadable(const QString &path);
bool IsWritable(const QString &path);
bool IsExecutable(const QString &path);
