#include "IndexProblem.h"

static void write(QDataStream &out, const std::optional<XPError> &error)
{
    out << error.has_value();
    if (error)
        out << static_cast<quint8>(error->kind) << error->domain << error->code << error->message
            << error->path;
}

static bool read(QDataStream &in, std::optional<XPError> &error)
{
    bool present = false;
    in >> present;
    if (!present)
        return true;
    quint8 kind = 0;
    XPError found;
    in >> kind >> found.domain >> found.code >> found.message >> found.path;
    found.kind = static_cast<XPError::Kind>(kind);
    error = std::move(found);
    return kind <= static_cast<quint8>(XPError::Kind::Io);
}

QDataStream &operator<<(QDataStream &out, const IndexProblem &problem)
{
    out << static_cast<quint8>(problem.kind) << problem.path << problem.volume << problem.count
        << problem.seconds << problem.keepsItems;
    write(out, problem.error);
    return out;
}

QDataStream &operator>>(QDataStream &in, IndexProblem &problem)
{
    quint8 kind = 0;
    in >> kind >> problem.path >> problem.volume >> problem.count >> problem.seconds >>
        problem.keepsItems;
    if (kind > static_cast<quint8>(IndexProblem::Kind::RootDistant) || !read(in, problem.error))
        in.setStatus(QDataStream::ReadCorruptData);
    problem.kind = static_cast<IndexProblem::Kind>(kind);
    return in;
}
