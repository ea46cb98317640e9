#pragma once

#include "TestHome.h"

#include <functional>
#include <memory>

// A small file system of its own, gone with this object. None without root: skip then.
class TestVolume
{
public:
    static std::unique_ptr<TestVolume> tmpfs(const char *size);
    // ext4 with 1 KiB blocks: hardly any room for attributes.
    static std::unique_ptr<TestVolume> ext4SmallBlocks();
    ~TestVolume();
    TestVolume(const TestVolume &) = delete;
    TestVolume &operator=(const TestVolume &) = delete;

    QString path() const { return m_folder.path(QStringLiteral("volume")); }
    QString path(const QString &name) const { return path() + u'/' + name; }

private:
    TestVolume();

    TestFolder m_folder;
};

// Runs `body` in a process of its own and returns its answer; -1 when it died.
int inOtherProcess(const std::function<int()> &body);

// The same as a user without special rights, who owns `folder` meanwhile: root may do anything.
int asPlainUser(const QString &folder, const std::function<int()> &body);
