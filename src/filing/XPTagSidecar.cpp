#include "XPTagSidecar.h"

#include "XPFreeNames.h"
#include "XPPath.h"

#include <cerrno>
#include <fcntl.h>

static const QString fileName = QStringLiteral("Murn Tags.murnarchive");
static constexpr int mostRaces = 16; // somebody else takes the name meanwhile

XPTagSidecar::XPTagSidecar(QString folder, XPUnnamedFile file)
    : m_folder(std::move(folder)), m_file(std::move(file)),
      m_writer(std::make_unique<XPArchiveWriter>(m_file.file(), true))
{
}

XPResult<XPTagSidecar> XPTagSidecar::begin(const QString &folder)
{
    XPFileDescriptor place(
        ::open(XPPath::encode(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    XPUnnamedFile file;
    const int error = place.isOpen() ? file.open(std::move(place)) : errno;
    if (error != 0)
        return XPError::fromErrno(error, folder);
    return XPTagSidecar(folder, std::move(file));
}

std::optional<XPError> XPTagSidecar::add(const XPArchivedFile &file)
{
    if (file.attributes.isEmpty())
        return {};
    auto error = m_writer->begin(file);
    return error ? error : m_writer->end();
}

XPResult<QString> XPTagSidecar::finish()
{
    if (m_writer->documentCount() == 0)
        return QString();
    if (auto failure = m_writer->finish())
        return *failure;
    int error = m_file.sync();
    XPFreeNames names(m_folder);
    for (int race = 0; error == 0 && race < mostRaces; ++race) {
        const QString path = names.take(fileName);
        error = m_file.give(XPPath::encode(XPPath::fileName(path)));
        if (error == 0) {
            m_file.syncFolder();
            return path;
        }
        error = error == EEXIST ? 0 : error;
    }
    return XPError::fromErrno(error == 0 ? EEXIST : error, m_folder);
}
