#pragma once

#include "XPError.h"

#include <QString>

// What is asked of files and done with them when documents are filed, moved and thrown away.
//
// Nothing here asks the user or knows a widget. How a file gets from one place to another, and
// what a failure leaves behind, is XPFileMover's business.
// Threads: any. All calls but those for well-known folders are blocking file calls: on the file
// worker, or in a program without a window.
class XPFileUtils
{
public:
    // The path itself when no file of that name exists in its folder, in any spelling of its
    // Unicode text or, where the folder folds case, of its letters. Else "NAME N.EXT" for the
    // first free N from 1 to 1000, with a name cut where that would be too long for the file
    // system. The path itself again when all are taken: moving there fails then, as nothing is
    // ever replaced. One reading of the folder at most; for many files in one folder use
    // XPFreeNames.
    static QString findUnusedPath(const QString &path);

    // Not a folder, or one that stands for a document. True for what does not exist.
    static bool isFileOrPackage(const QString &path);
    // Hidden from people by its name.
    static bool isInvisible(const QString &path);
    // False for a folder that cannot be read.
    static bool isEmptyDirectory(const QString &path);

    // A rename that never replaces: EEXIST where the name is taken, EXDEV across file systems.
    static std::optional<XPError> moveItemOnSameFileSystem(const QString &path,
                                                           const QString &toPath);
    // Whether the path belongs to another program, which keeps books of its files.
    static bool isGuarded(const QString &path);
    // The same as the first, but files of a mail store or a photo library are never moved
    // (NotPermitted).
    static std::optional<XPError>
    moveItemOnSameFileSystemCheckingForSpecialExclusions(const QString &path,
                                                         const QString &toPath);

    // To the trash; where that fails and the flag is set, the file is deleted. True when nothing
    // is left at the path.
    static bool moveFileToTrash(const QString &path, bool useDeleteOnFail);

    static QString documentsFolder();
    static QString appSupportFolderBase();
    static QString ourAppSupportFolder();
    static QString cacheFolder();
    static QString ourCacheFolder();
    static QString safariDownloadsFolder();
    static QString mobileDocumentsFolder();
    static QString dropBoxFolder();

    // "errno error: N, TEXT" with the system's text.
    static QString errnoString(int number);
};
