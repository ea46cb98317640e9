#pragma once

#include <QString>
#include <QTemporaryDir>

// A folder of its own for one test, on the file system of the build, where user attributes work.
class TestFolder
{
public:
    TestFolder();
    ~TestFolder(); // removes everything in it, names that Qt cannot spell too
    TestFolder(const TestFolder &) = delete;
    TestFolder &operator=(const TestFolder &) = delete;
    QString path() const { return m_folder.path(); }
    QString path(const QString &name) const { return m_folder.path() + u'/' + name; }
    // Makes a file (and the folders above it) with these bytes and returns its path.
    QString file(const QString &name, const QByteArray &bytes = "x") const;

private:
    QTemporaryDir m_folder;
};

// Points HOME and the XDG folders of this process at a fresh private place.
void usePrivateHome();
