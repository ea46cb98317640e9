#pragma once

#include "XPError.h"
#include "XPProgress.h"

#include <QSize>
#include <QStringList>
#include <QTemporaryDir>
#include <variant>

class QPainter;
class QPrinter;

// What documents look like on paper: pictures of pages that the importer drew in its cage, and
// texts. Nothing of a document is parsed here.
//
// Pictures lie in a folder of their own for as long as this lives, once for the paper (A4 at 300
// dots an inch) and once for the screen, so that memory holds one page at a time.
// Threads: make() any but the main one, waits; one at a time then.
class KPPrintedPages
{
public:
    static constexpr int mostPages = 500;

    // A stop, or `mostPages`, ends it early: what is there can be printed.
    static std::shared_ptr<KPPrintedPages> make(const QStringList &paths,
                                                const XPProgress::Task &task);

    bool isEmpty() const { return m_sheets.isEmpty(); }
    qsizetype count() const { return m_sheets.size(); }
    bool isCutOff() const { return m_isCutOff; } // there would be more than `mostPages`
    const QList<XPError> &failures() const { return m_failures; }

    // Draws everything, on the pages that the user chose; `isPreview`: all, from the small
    // pictures. Stops early, with an incomplete print given up, where the task says so. False: the
    // printer is not there, or gave up.
    bool paint(QPrinter *printer, bool isPreview, const XPProgress::Task &task) const;

private:
    struct Picture
    {
        QString large, small; // files
        QSize size;           // pixels of the large one
    };
    struct Text
    {
        QString title, text;
    };
    using Sheet = std::variant<Picture, Text>;

    void add(const QString &path, const XPProgress::Task &task);
    bool addPicture(const QImage &image);
    bool drawSheets(QPrinter *printer, bool isPreview, const XPProgress::Task &task) const;

    QTemporaryDir m_folder;
    QList<Sheet> m_sheets;
    QList<XPError> m_failures;
    bool m_isCutOff = false;
};
