#pragma once

#include "XPError.h"

#include <QByteArray>
#include <QImage>
#include <memory>
#include <sane/sane.h>
#include <tiffio.h>

// A page that comes line by line, written to a file whose ending says the format: TIFF as the
// lines come, JPEG and PNG at the end. It stands at its name only once it is whole.
// Threads: one at a time.
class PageFile
{
public:
    static XPResult<std::unique_ptr<PageFile>> begin(const QByteArray &path,
                                                     const SANE_Parameters &page, int resolution);
    ~PageFile(); // what is not finished is removed
    PageFile(const PageFile &) = delete;
    PageFile &operator=(const PageFile &) = delete;

    // Any number of bytes of the scan's.
    std::optional<XPError> append(const char *bytes, qsizetype size);
    // Gives it its name; fails without a line.
    std::optional<XPError> finish();
    int lines() const { return m_lines; }

private:
    struct Close
    {
        void operator()(TIFF *file) const { TIFFClose(file); }
    };

    PageFile(QByteArray path, const SANE_Parameters &page, int resolution);
    std::optional<XPError> writeLine(QByteArray line);
    XPError fault() const;

    const QByteArray m_path;
    const QByteArray m_temporary;
    const SANE_Parameters m_page;
    const int m_resolution;
    std::unique_ptr<TIFF, Close> m_tiff;
    QByteArray m_pixels; // of formats that are written at once
    QByteArray m_pending;
    int m_lines = 0;
};
