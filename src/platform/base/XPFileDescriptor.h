#pragma once

#include <unistd.h>
#include <utility>

// Owns an open file descriptor and closes it. -1: none. Move-only; any thread.
class XPFileDescriptor
{
public:
    XPFileDescriptor() = default;
    explicit XPFileDescriptor(int descriptor) : m_descriptor(descriptor) {}
    ~XPFileDescriptor() { close(); }
    XPFileDescriptor(XPFileDescriptor &&other) noexcept
        : m_descriptor(std::exchange(other.m_descriptor, -1))
    {
    }
    XPFileDescriptor &operator=(XPFileDescriptor &&other) noexcept
    {
        if (this != &other) {
            close();
            m_descriptor = std::exchange(other.m_descriptor, -1);
        }
        return *this;
    }

    int get() const { return m_descriptor; }
    bool isOpen() const { return m_descriptor >= 0; }
    // False when the system reports a late failure (errno): the file may not be whole then.
    bool close() { return m_descriptor < 0 || ::close(std::exchange(m_descriptor, -1)) == 0; }

private:
    int m_descriptor = -1;
};
