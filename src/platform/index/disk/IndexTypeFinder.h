#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

// The content types of files by their names as bytes: most are told by the extension alone, which
// is then looked up once; the others are found from the file, anew each time, as the index asks
// when a file is new or changed.
// Threads: one object per thread. May read the file's first bytes: through the open folder, as
// that one may stand elsewhere by now, and what is found at its old path is no answer.
class IndexTypeFinder
{
public:
    QString type(const QByteArray &folder, int opened, QByteArrayView name, quint32 mode);

private:
    QHash<QByteArray, QString> m_files;   // by extension; empty: the file must be looked at
    QHash<QByteArray, QString> m_folders; // by extension
};
