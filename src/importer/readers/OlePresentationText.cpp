#include "ByteFields.h"
#include "FlowText.h"
#include "OleText.h"

using namespace ByteFields;

// A record's head is eight bytes; a container's records follow its head, so a walk from head to
// head that steps over the contents of the others alone meets every record.
OleText::Outcome OleText::readPresentation(QByteArrayView presentation, FlowText &flow, int &slides)
{
    enum Type : quint16 { Slide = 1006, Characters = 4000, Bytes = 4008 };
    if (presentation.size() < 8)
        return Outcome::Damaged;
    for (qint64 at = 0; at + 8 <= presentation.size() && !flow.isFull();) {
        const bool isContainer = (little<quint16>(presentation, at) & 0xF) == 0xF;
        const auto type = little<quint16>(presentation, at + 2);
        const qint64 size = little<quint32>(presentation, at + 4);
        at += 8;
        slides += type == Slide;
        if (isContainer)
            continue;
        const QByteArrayView content = part(presentation, at, size);
        QString text;
        if (type == Characters) {
            for (qint64 i = 0; i + 1 < content.size(); i += 2)
                text += QChar(little<quint16>(content, i));
        } else if (type == Bytes) {
            text = QString::fromLatin1(content);
        }
        if (!text.isEmpty()) {
            flow.append(text.replace(u'\v', u'\n'));
            flow.endLine();
        }
        at += size;
    }
    return Outcome::Read;
}
