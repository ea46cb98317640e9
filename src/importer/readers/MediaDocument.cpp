#include "MediaDocument.h"

#include <algorithm>
#include <tdebuglistener.h>

namespace {

// The library's remarks on broken files.
class Silence : public TagLib::DebugListener
{
    void printMessage(const TagLib::String &) override {}
};

} // namespace

TagLib::ByteVector MediaDocument::Stream::readBlock(unsigned long length)
{
    const auto wanted = static_cast<qsizetype>(std::min<unsigned long>(length, 64UL << 20));
    const QByteArray bytes = m_source.read(m_at, wanted).valueOr({});
    m_at += bytes.size();
    return {bytes.constData(), static_cast<unsigned int>(bytes.size())};
}

void MediaDocument::Stream::seek(long offset, Position from)
{
    const qint64 base = from == Beginning ? 0 : from == Current ? m_at : m_source.size();
    qint64 to = 0;
    if (!__builtin_add_overflow(base, qint64{offset}, &to))
        m_at = std::clamp<qint64>(to, 0, m_source.size());
}

MediaDocument::MediaDocument(const DocumentSource &source)
    : m_stream(source), m_file([&source, this] {
          static Silence silence;
          TagLib::setDebugListener(&silence);
          return source.size() > 0 ? TagLib::FileRef(&m_stream) : TagLib::FileRef();
      }())
{
}
