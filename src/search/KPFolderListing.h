#pragma once

#include <QByteArray>
#include <array>
#include <memory>
#include <optional>

// Reads the names in an open folder, piece by piece, from its beginning, in no order.
//
// "." and ".." are left out. Threads: one at a time; blocking file calls.
class KPFolderListing
{
public:
    enum class Type { Folder, File, Other, Unknown };
    struct Entry
    {
        QByteArray name;
        Type type = Type::Unknown;
    };

    // `folder` stays the caller's.
    explicit KPFolderListing(int folder);

    // The next one; nothing at the end and after a failure.
    std::optional<Entry> next();
    // errno of the failure that ended the reading; 0: it was read to its end.
    int error() const { return m_error; }

private:
    bool fill();

    int m_folder;
    int m_error = 0;
    std::unique_ptr<std::array<char, 32 * 1024>> m_buffer;
    size_t m_size = 0;
    size_t m_at = 0;
};
