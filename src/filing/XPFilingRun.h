#pragma once

#include "XPFileReport.h"
#include "XPFreeNames.h"

#include <QDateTime>
#include <QSet>
#include <memory>

// One request to bring documents into the managed folder or to mark them: the work behind
// XPFiledDocuments, file by file, with what became of each.
//
// The dated folder is chosen once for the whole request. A file that is listed twice is taken
// once. A file whose mark cannot be written stays where it was filed, with the problem in its
// step, and is not filed again.
// Threads: one at a time; blocking file calls, and a short pause after each mark that is written.
class XPFilingRun
{
public:
    explicit XPFilingRun(XPFileRunOptions options = {},
                         QDateTime now = QDateTime::currentDateTime());

    // Files them, plain folders left out. What cannot be moved by a rename, or belongs to another
    // program, is copied and stays. With `forceMove` it is moved across volumes too, or else left
    // where it is.
    void putFiles(const QStringList &paths, bool forceMove);
    // Marks each where it lies, or copies it where that is impossible.
    void setToManaged(const QStringList &paths);
    // Marks each where it lies, or takes the mark away. What lies among the files of other programs
    // is not marked (NotPermitted).
    enum class Marks { Managed, ManagedIfNoStateFound, Unmanaged };
    void setMarks(const QStringList &paths, Marks marks);
    // Copies each and marks the copy; what is in the managed folder already is filed.
    void copyAll(const QStringList &paths);

    const XPFileReport &report() const { return m_report; }
    XPFileReport takeReport() { return std::move(m_report); }

private:
    using Step = XPFileStep;

    template <typename Work>
    void forEach(const QStringList &paths, Work work);
    void putFile(const QString &path, bool forceMove);
    void setToManagedCopyIfNeeded(const QString &path);
    void copyOne(const QString &path);

    void prepare();
    std::optional<XPError> bring(const QString &path, bool forceMove, Step *step);
    std::optional<XPError> move(const QString &path, const QString &target, bool forceMove) const;
    std::optional<XPError> copyToFreeName(const QString &path, Step *step);
    void mark(const QString &path, Step *step) const;
    Step markInPlace(const QString &path, Marks marks) const;
    void fail(const QString &path, const XPError &error);

    const XPFileRunOptions m_options;
    const QDateTime m_now;
    std::unique_ptr<XPFreeNames> m_names; // of the dated folder, once it is needed
    QSet<QString> m_taken;
    XPFileReport m_report;
};
