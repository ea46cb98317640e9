#pragma once

#include "TestHome.h"

#include <QByteArrayList>
#include <QTemporaryDir>
#include <memory>

// Two folders with a document to be moved from one to the other, and what of it is found
// afterwards.
//
// Both folders are on one file system, or the target on another (shared memory, which keeps user
// attributes and needs no disk). The trash of the private home is emptied.
class FilingScene
{
public:
    enum class Target { SameVolume, OtherVolume };
    enum class Kind { File, Package };

    FilingScene(Target target, Kind kind, bool isTaken);
    ~FilingScene();
    FilingScene(const FilingScene &) = delete;
    FilingScene &operator=(const FilingScene &) = delete;
    // False where shared memory keeps no user attributes.
    static bool hasOtherVolume();

    const QString &source() const { return m_source; }
    const QString &target() const { return m_target; }
    QByteArrayList folders() const; // for TestFaults: both, the trash and the notes

    // How often the document, and the one that was at the target, are found whole: bytes,
    // attributes, permission bits and times.
    int found() const;
    int foundOld() const;
    bool isAt(const QString &path) const; // the document, whole
    bool isOldAt(const QString &path) const;
    // Hidden names, and visible ones that hold neither document whole.
    QByteArrayList remains() const;

    // All that makes a document one, as one text.
    static QByteArray digest(const QByteArray &path);

private:
    int count(const QByteArray &digest) const;
    QByteArrayList entries() const;
    void make(const QString &path, Kind kind, const QByteArray &bytes) const;

    const TestFolder m_folder;
    std::unique_ptr<QTemporaryDir> m_other;
    QString m_source;
    QString m_target;
    QByteArray m_new;
    QByteArray m_old;
};
