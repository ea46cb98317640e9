// What the importer may say after a document has taken it over: its bytes go through the client's
// reading of frames and of each kind of message.
#include "ImportMessages.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

static void check(const ImportFrame &frame)
{
    if (frame.head.size() > ImportFrame::maximumHead ||
        frame.body.size() > ImportFrame::maximumPicture)
        std::abort();
    static_cast<void>(ImportHello::from(frame));
    static_cast<void>(ImportJob::from(frame));
    if (const auto picture = ImportPicture::from(frame);
        picture && picture->pixels.size() != qsizetype{picture->width} * picture->height * 4)
        std::abort();
    const auto answer = documentAnswerFrom(frame);
    if (!answer)
        return;
    // What came through is what this end would have sent.
    const auto again = documentAnswerFrom(importFrameOf(*answer));
    if (!again || again->text != answer->text || again->failure != answer->failure)
        std::abort();
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // The first byte says how the rest is cut into pieces.
    QByteArrayView bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const qsizetype piece = bytes.isEmpty() ? 1 : static_cast<uchar>(bytes.front()) + 1;
    ImportFrameReader reader;
    bytes = bytes.sliced(std::min<qsizetype>(1, bytes.size()));
    while (!bytes.isEmpty()) {
        const auto space = reader.space();
        const qsizetype count = std::min({piece, space.size, bytes.size()});
        std::memcpy(space.at, bytes.data(), static_cast<size_t>(count));
        bytes = bytes.sliced(count);
        if (reader.filled(count))
            return 0;
        if (const auto frame = reader.take())
            check(*frame);
    }
    return 0;
}
