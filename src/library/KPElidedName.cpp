#include "KPElidedName.h"

#include "XPPath.h"

#include <QFontMetrics>
#include <QList>
#include <QTextBoundaryFinder>

static constexpr QChar ellipsis(0x2026);
static constexpr qsizetype longestExtension = 8;
static constexpr qsizetype lettersBeforeExtension = 4;

static QList<qsizetype> boundaries(const QString &text)
{
    QList<qsizetype> result;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    for (qsizetype at = 0; at >= 0; at = finder.toNextBoundary())
        result.append(at);
    return result;
}

namespace {

struct Cutting
{
    QString name;
    QList<qsizetype> bounds; // of characters, with both ends
    qsizetype tail;          // characters kept at the end; -1: half of what is kept

    qsizetype length() const { return bounds.size() - 1; }
    QString keeping(qsizetype characters) const
    {
        const qsizetype behind = tail < 0 ? characters / 2 : tail;
        const qsizetype ahead = characters - behind;
        return name.left(bounds[ahead]) + ellipsis + name.mid(bounds[length() - behind]);
    }
};

} // namespace

QString kpElidedName(const QString &name, const QFontMetrics &metrics, int width)
{
    if (metrics.horizontalAdvance(name) <= width)
        return name;
    Cutting cutting{name, boundaries(name), -1};
    const qsizetype extension = XPPath::extension(name).size();
    if (extension > 0 && extension <= longestExtension) {
        const qsizetype start = name.size() - extension - 1;
        qsizetype characters = 0;
        while (characters < cutting.length() &&
               cutting.bounds[cutting.length() - characters] > start)
            ++characters;
        characters += lettersBeforeExtension;
        // Where the end alone fills the room, the beginning counts as much.
        if (characters < cutting.length() &&
            metrics.horizontalAdvance(cutting.keeping(characters)) <= width * 3 / 5)
            cutting.tail = characters;
    }
    qsizetype fits = std::max<qsizetype>(0, cutting.tail);
    qsizetype tooMany = cutting.length();
    while (tooMany - fits > 1) {
        const qsizetype tried = (fits + tooMany) / 2;
        const bool isRoom = metrics.horizontalAdvance(cutting.keeping(tried)) <= width;
        (isRoom ? fits : tooMany) = tried;
    }
    return cutting.keeping(fits);
}
