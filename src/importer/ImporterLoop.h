#pragma once

#include "ImportMessages.h"
#include "XPFileDescriptor.h"

// The importer's side of the socket: receives a job and its descriptor, has the reader of the
// type do it, answers; one after the other.
// Threads: the main thread, in the cage.
class ImporterLoop
{
public:
    explicit ImporterLoop(int socket) : m_socket(socket) {}

    // Until the client closes its end, or says what it must not.
    void run(const ImportHello &hello);

private:
    std::optional<ImportFrame> receive();
    bool send(const ImportFrame &frame) const;
    ImportFrame answer(const ImportJob &job) const;

    const int m_socket;
    ImportFrameReader m_reader;
    XPFileDescriptor m_document; // of the job at hand
};
