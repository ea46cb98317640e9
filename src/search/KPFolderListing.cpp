#include "KPFolderListing.h"

#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <unistd.h>

KPFolderListing::KPFolderListing(int folder)
    : m_folder(folder), m_buffer(std::make_unique<std::array<char, 32 * 1024>>())
{
    // The descriptor may have been read before.
    ::lseek(m_folder, 0, SEEK_SET);
}

bool KPFolderListing::fill()
{
    const ssize_t size = ::getdents64(m_folder, m_buffer->data(), m_buffer->size());
    if (size < 0)
        m_error = errno;
    m_at = 0;
    m_size = size > 0 ? static_cast<size_t>(size) : 0;
    return m_size > 0;
}

static KPFolderListing::Type typeOf(unsigned char type)
{
    switch (type) {
    case DT_DIR:
        return KPFolderListing::Type::Folder;
    case DT_REG:
        return KPFolderListing::Type::File;
    case DT_UNKNOWN:
        return KPFolderListing::Type::Unknown;
    default:
        return KPFolderListing::Type::Other;
    }
}

std::optional<KPFolderListing::Entry> KPFolderListing::next()
{
    while (m_at < m_size || fill()) {
        const char *record = m_buffer->data() + m_at;
        unsigned short length = 0;
        std::memcpy(&length, record + offsetof(dirent64, d_reclen), sizeof length);
        m_at += length;
        const char *name = record + offsetof(dirent64, d_name);
        if (std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0)
            continue;
        const auto type = static_cast<unsigned char>(record[offsetof(dirent64, d_type)]);
        return Entry{QByteArray(name), typeOf(type)};
    }
    return std::nullopt;
}
