#include "IndexStatus.h"

#include <QIODevice>

static constexpr quint32 statusVersion = 2;

QByteArray IndexStatus::toBytes() const
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_6_0);
    out << statusVersion << static_cast<qint32>(phase) << items << foldersRead << contentsWaiting
        << problems << static_cast<quint32>(roots.size());
    for (const Root &root : roots)
        out << root.path << static_cast<qint32>(root.state);
    return bytes;
}

XPResult<IndexStatus> IndexStatus::fromBytes(const QByteArray &bytes)
{
    IndexStatus status;
    QDataStream in(bytes);
    in.setVersion(QDataStream::Qt_6_0);
    quint32 version = 0;
    quint32 count = 0;
    qint32 phase = 0;
    in >> version >> phase >> status.items >> status.foldersRead >> status.contentsWaiting >>
        status.problems >> count;
    bool valid = version == statusVersion && phase >= 0 && phase <= qint32(Phase::Live);
    status.phase = static_cast<Phase>(phase);
    for (quint32 i = 0; i < count && in.status() == QDataStream::Ok; ++i) {
        Root root;
        qint32 state = 0;
        in >> root.path >> state;
        valid = valid && state >= 0 && state <= qint32(Root::State::Silent);
        root.state = static_cast<Root::State>(state);
        status.roots.append(root);
    }
    if (!valid || in.status() != QDataStream::Ok)
        return XPError::malformed(QStringLiteral("another version of the program keeps the index"));
    return status;
}
