#include "ImporterLoop.h"

#include "DocumentReaders.h"
#include "TextPage.h"

#include <QImage>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <new>
#include <sys/socket.h>
#include <unistd.h>

void ImporterLoop::run(const ImportHello &hello)
{
    if (!send(hello.frame()))
        return;
    while (const auto frame = receive()) {
        const auto job = ImportJob::from(*frame);
        if (!job || !m_document.isOpen() || !send(answer(*job)))
            return;
        m_document.close();
    }
}

// --- The socket

// The one descriptor that came with a message; more than one are closed.
static XPFileDescriptor descriptorIn(msghdr &message)
{
    XPFileDescriptor first;
    for (cmsghdr *part = CMSG_FIRSTHDR(&message); part; part = CMSG_NXTHDR(&message, part)) {
        if (part->cmsg_level != SOL_SOCKET || part->cmsg_type != SCM_RIGHTS)
            continue;
        const size_t count = (part->cmsg_len - CMSG_LEN(0)) / sizeof(int);
        for (size_t i = 0; i < count; ++i) {
            int descriptor = -1;
            std::memcpy(&descriptor, CMSG_DATA(part) + i * sizeof(int), sizeof descriptor);
            XPFileDescriptor received(descriptor);
            if (!first.isOpen())
                first = std::move(received);
        }
    }
    return first;
}

std::optional<ImportFrame> ImporterLoop::receive()
{
    for (;;) {
        if (auto frame = m_reader.take())
            return frame;
        const auto space = m_reader.space();
        iovec bytes = {space.at, static_cast<size_t>(space.size)};
        alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int) * 4)] = {};
        msghdr message = {};
        message.msg_iov = &bytes;
        message.msg_iovlen = 1;
        message.msg_control = control;
        message.msg_controllen = sizeof control;
        const ssize_t got = ::recvmsg(m_socket, &message, MSG_CMSG_CLOEXEC);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return {};
        if (XPFileDescriptor received = descriptorIn(message); received.isOpen())
            m_document = std::move(received);
        if (m_reader.filled(got))
            return {};
    }
}

static bool sendAll(int socket, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t sent = ::write(socket, bytes.data(), static_cast<size_t>(bytes.size()));
        if (sent < 0 && errno == EINTR)
            continue;
        if (sent <= 0)
            return false;
        bytes = bytes.sliced(sent);
    }
    return true;
}

bool ImporterLoop::send(const ImportFrame &frame) const
{
    return sendAll(m_socket, frame.bytesBeforeBody()) && sendAll(m_socket, frame.body);
}

// --- The work

// Processor time, so that a pause or a busy machine costs a document nothing.
static qint64 processorMilliseconds()
{
    timespec now = {};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return qint64{now.tv_sec} * 1000 + now.tv_nsec / 1'000'000;
}

// Libraries throw; here it ends.
template <typename Work>
static std::optional<DocumentFailure> guarded(const Work &work)
{
    try {
        return work();
    } catch (const std::bad_alloc &) {
        return DocumentFailure::TooLarge;
    } catch (...) {
        return DocumentFailure::Damaged;
    }
}

static ImportPicture pictureOf(const QImage &image)
{
    const QImage plain = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    ImportPicture picture;
    picture.width = plain.width();
    picture.height = plain.height();
    const qsizetype line = qsizetype{plain.width()} * 4;
    picture.pixels.reserve(line * plain.height());
    for (int y = 0; y < plain.height(); ++y)
        picture.pixels.append(reinterpret_cast<const char *>(plain.constScanLine(y)), line);
    return picture;
}

// A document without a picture of its own is known by its first words.
static std::optional<DocumentFailure> drawText(const DocumentReader &reader,
                                               const DocumentSource &source, const ImportJob &job,
                                               QImage &image)
{
    DocumentAnswer answer;
    answer.text = DocumentText(TextPage::neededBytes);
    answer.failure = reader.read(source, answer);
    if (job.page == 1 && TextPage::draw(source, answer, job.pixels, image))
        return {};
    return answer.failure.value_or(DocumentFailure::Unsupported);
}

static ImportPicture draw(const DocumentReader &reader, const DocumentSource &source,
                          const ImportJob &job)
{
    ImportPicture picture;
    picture.failure = guarded([&]() -> std::optional<DocumentFailure> {
        QImage image;
        auto failure = reader.picture(source, job.page, job.pixels, image);
        if (failure == DocumentFailure::Unsupported)
            failure = drawText(reader, source, job, image);
        if (failure)
            return failure;
        if (image.isNull())
            return DocumentFailure::Damaged;
        if (image.width() > job.pixels || image.height() > job.pixels)
            image =
                image.scaled(job.pixels, job.pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        picture = pictureOf(image);
        return {};
    });
    return picture.failure ? ImportPicture{0, 0, {}, picture.failure} : picture;
}

ImportFrame ImporterLoop::answer(const ImportJob &job) const
{
    const qint64 end = processorMilliseconds() + job.milliseconds;
    const DocumentSource source(m_document.get(),
                                {job.size, job.type, job.tree, job.mime, job.extension},
                                [end] { return processorMilliseconds() >= end; });
    const DocumentReader *reader = documentReaderFor(job.tree);
    if (job.isPicture())
        return (reader ? draw(*reader, source, job)
                       : ImportPicture{0, 0, {}, DocumentFailure::Unsupported})
            .frame();
    DocumentAnswer answer;
    answer.failure = reader ? guarded([&] { return reader->read(source, answer); })
                            : std::optional(DocumentFailure::Unsupported);
    return importFrameOf(answer);
}
