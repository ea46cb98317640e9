#include "KPLibraryModel.h"

#include "XPPath.h"

#include <cmath>

// What a document says of itself: to the delegate, the tooltip and assistive programs.

static QStringList printable(const QStringList &texts)
{
    QStringList result;
    for (const QString &text : texts)
        result.append(XPPath::printable(text));
    return result;
}

static QString starsInWords(double rating)
{
    return qtTrId("KPStars", static_cast<int>(std::lround(rating)));
}

// "report.pdf, tags work, invoice, 4 stars"
static QString accessibleText(const KPShownDocument &document)
{
    QStringList parts{KPLibraryModel::displayName(document.path)};
    if (!document.tags.isEmpty())
        parts.append(
            qtTrId("KPAccessibleTags").arg(printable(document.tags).join(QStringLiteral(", "))));
    if (document.rating > 0)
        parts.append(starsInWords(document.rating));
    if (!document.error.isEmpty())
        parts.append(qtTrId("KPTagsUnreadable"));
    return parts.join(QStringLiteral(", "));
}

// A tooltip that begins with plain text is rich text to Qt as soon as it looks like it: escaped,
// inside a tag of ours, it never does.
static QString tooltip(const KPShownDocument &document)
{
    QStringList lines{KPLibraryModel::displayName(document.path),
                      XPPath::printable(XPPath::folder(document.path))};
    if (!document.tags.isEmpty())
        lines.append(printable(document.tags).join(QStringLiteral(", ")));
    if (!document.error.isEmpty())
        lines.append(qtTrId("KPTagsUnreadableBecause").arg(XPPath::printable(document.error)));
    return QStringLiteral("<p style='white-space:pre'>%1</p>")
        .arg(lines.join(u'\n').toHtmlEscaped());
}

QVariant KPLibraryModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const KPShownDocument &document = this->document(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return displayName(document.path);
    case Qt::ToolTipRole:
        return tooltip(document);
    case Qt::AccessibleTextRole:
        return accessibleText(document);
    case PathRole:
        return document.path;
    case TagsRole:
        return printable(document.tags);
    case RatingRole:
        return document.rating;
    case ErrorRole:
        return document.error;
    default:
        return {};
    }
}
