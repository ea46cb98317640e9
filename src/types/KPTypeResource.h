#pragma once

#include <QString>
#include <optional>

// What a file itself says about its type.
//
// A link is "com.apple.alias-file" and a folder "public.folder" or its package type, both
// without more than an `lstat`; so is a file whose extension can mean one type only. What is
// left, files without an extension or with one of several meanings, is judged by its first
// bytes. Devices, sockets and pipes are never opened. Any thread; blocking file calls.
namespace KPTypeResource {

// Nothing when there is no such file; an empty text when neither name nor content tell.
// `mode` spares the `lstat` where the caller has it.
std::optional<QString> read(const QString &path, const QString &extension,
                            std::optional<quint32> mode = {});

// The part that needs no file call: the type of a link, folder or special file; nothing for a
// regular file.
std::optional<QString> typeForMode(quint32 mode, const QString &extension);

} // namespace KPTypeResource
