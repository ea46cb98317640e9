#pragma once

#include "XPError.h"
#include "XPFilePromise.h"
#include "XPPasteboard.h"

#include <QStringList>

class QMimeData;

// Documents from what a clipboard or a drag carries: which kind of file is written, how it is
// called, and that it is a document of the library then.
//
// The first that matches is imported: a file that the source promises to write, a mail message
// (".eml"), a picture (".png"), styled text with its pictures (".odt"), files (which stay where
// they are), text (".rtf", ".webloc" for an http address, ".txt" from 21 characters on) and PDF. A
// file is written whole or not at all, under a name that is free, and marked; one that cannot be
// marked stays, and is reported. Threads: what takes a QMimeData main; everything else any,
// blocking file calls.
class XPPasteboardSupport
{
public:
    // As MIME types, in the order in which they are looked for.
    static QStringList supportedTypes();
    // A look at what is offered, without asking for it.
    static bool canImportFromPB(const QMimeData *data);
    static bool canImportFromPB(const XPPasteboard &pb);
    static QByteArray dataFromPB(const XPPasteboard &pb, XPPasteboard::Kind kind);

    // The new files' paths, or those that came. None where there is nothing to import in what is
    // there, which is no error.
    static XPResult<QStringList> importFromPB(const XPPasteboard &pb, const QString &folder);
    // Into today's folder; tells the program when something came there.
    static XPResult<QStringList> importFromPBToFiledDocuments(const XPPasteboard &pb);

    // Has the source write the file that it promises; which is there only when the promise says
    // so. None: it promises none.
    static XPResult<std::optional<XPFilePromise>> importFilePromise(XPDataOffer &sender,
                                                                    const QString &folder);
    static XPResult<QStringList> importEmail(const XPPasteboard &pb, const QString &folder);
    static XPResult<QStringList> importImage(const XPPasteboard &pb, const QString &folder);
    // `name`: of the file, else by its text.
    static XPResult<QStringList> importRTFD(const XPPasteboard &pb, const QString &folder,
                                            const QString &name = {});
    static XPResult<QStringList> importString(const XPPasteboard &pb, const QString &folder);
    static XPResult<QStringList> importPDF(const XPPasteboard &pb, const QString &folder);
    // Writes nothing: the program marks them where they lie, when it hears of them.
    static QStringList importFilenames(const XPPasteboard &pb);

    // What follows the first "Subject:", up to 60 characters and not past the line. Nothing where
    // the text has none.
    static std::optional<QString> findSubject(const QString &text);
    // The title as a file's name.
    static QString cleanupDocTitle(QString title);
    // The stem of a free name by a text: its subject, else its beginning, else "document".
    static QString titleOf(const QString &text);
    // A path for it, free without an ending too.
    static QString findDestinationPath(const QString &text, const QString &folder);

    static std::optional<XPError> markManaged(const QString &path);

    // Its object is the list of paths.
    static const QString fileListImportNotification; // "XPFileListImport"
    static const QString addedNotification;          // "DocumentAddedToFiledDocumentsFromPBoard"

    static constexpr qsizetype shortestString = 21; // that is imported
};
