// KPLibraryModel: what a document says of itself, to views, tooltips and assistive programs.
#include "KPFileType.h"
#include "KPLibraryModel.h"
#include "KPSortedResults.h"
#include "XPPath.h"

#include <QLocale>
#include <array>
#include <cmath>

using Field = KPSortKey::Field;

namespace {
struct ColumnText
{
    KPLibraryModel::Column column = KPLibraryModel::NameColumn;
    const char *title = "";
    std::optional<Field> field = std::nullopt; // what it is sorted by
};
using Model = KPLibraryModel;
} // namespace

// In the order of the columns.
static constexpr std::array<ColumnText, Model::ColumnCount> columns{{
    {Model::NameColumn, QT_TRID_NOOP("KPColumnName"), Field::Name},
    {Model::FlagColumn, QT_TRID_NOOP("KPColumnFlag")},
    {Model::TitleColumn, QT_TRID_NOOP("KPColumnTitle")},
    {Model::TypeColumn, QT_TRID_NOOP("KPColumnType"), Field::Type},
    {Model::SizeColumn, QT_TRID_NOOP("KPColumnSize"), Field::Size},
    {Model::CreatedColumn, QT_TRID_NOOP("KPColumnCreated"), Field::Created},
    {Model::ModifiedColumn, QT_TRID_NOOP("KPColumnModified"), Field::Modified},
    {Model::AddedColumn, QT_TRID_NOOP("KPColumnAdded"), Field::Added},
    {Model::RatingColumn, QT_TRID_NOOP("KPColumnRating"), Field::Rating},
    {Model::TagsColumn, QT_TRID_NOOP("KPColumnTags"), Field::Tags},
    {Model::FolderColumn, QT_TRID_NOOP("KPColumnFolder"), Field::Folder},
    {Model::PathColumn, QT_TRID_NOOP("KPColumnPath")},
}};

static const QString listSeparator = QStringLiteral(", ");

QString KPLibraryModel::titleOf(Column column)
{
    return qtTrId(columns[static_cast<size_t>(column)].title);
}

std::optional<Field> KPLibraryModel::sortFieldOf(Column column)
{
    return columns[static_cast<size_t>(column)].field;
}

QString KPLibraryModel::displayName(const KPDoc &doc)
{
    return doc.isGone() ? QString() : XPPath::printable(doc.fsDisplayName());
}

static QStringList tagsOf(const KPDoc &doc)
{
    QStringList result;
    for (const KPTagName *tag : doc.tagNamesOfTypeUserEntered())
        result.append(XPPath::printable(tag->displayName()));
    return result;
}

static QString errorOf(const KPDoc &doc)
{
    const auto error = doc.unreadableMetaData();
    return error ? error->reason() : QString();
}

static QString starsInWords(double rating)
{
    return qtTrId("KPStars", static_cast<int>(std::lround(rating)));
}

// "report.pdf, tags work, invoice, 4 stars"
static QString accessibleText(const KPDoc &doc)
{
    QStringList parts{KPLibraryModel::displayName(doc)};
    if (const QStringList tags = tagsOf(doc); !tags.isEmpty())
        parts.append(qtTrId("KPAccessibleTags").arg(tags.join(listSeparator)));
    if (const double rating = doc.rating(); rating > 0)
        parts.append(starsInWords(rating));
    if (!errorOf(doc).isEmpty())
        parts.append(qtTrId("KPTagsUnreadable"));
    return parts.join(listSeparator);
}

// A tooltip that begins with plain text is rich text to Qt as soon as it looks like it: escaped,
// inside a tag of ours, it never does.
static QString tooltip(const KPDoc &doc)
{
    if (doc.isGone())
        return {};
    QStringList lines{KPLibraryModel::displayName(doc), XPPath::printable(doc.parentPath())};
    if (const QStringList tags = tagsOf(doc); !tags.isEmpty())
        lines.append(tags.join(listSeparator));
    if (const QString error = errorOf(doc); !error.isEmpty())
        lines.append(qtTrId("KPTagsUnreadableBecause").arg(XPPath::printable(error)));
    return QStringLiteral("<p style='white-space:pre'>%1</p>")
        .arg(lines.join(u'\n').toHtmlEscaped());
}

static QDateTime dateAdded(const KPDoc &doc)
{
    const qint64 added = KPSortedResults::addedOf(doc);
    return added == 0 ? QDateTime() : QDateTime::fromMSecsSinceEpoch(added / 1'000'000, Qt::UTC);
}

QVariant KPLibraryModel::valueOf(const KPDoc &doc, int column)
{
    switch (column) {
    case Model::NameColumn:
        return doc.fsDisplayName();
    case Model::FlagColumn:
        return doc.isFlagged();
    case Model::TitleColumn:
        return doc.documentTitle();
    case Model::TypeColumn:
        return doc.fileType();
    case Model::SizeColumn:
        return doc.unixFileSize();
    case Model::CreatedColumn:
        return doc.creationDate();
    case Model::ModifiedColumn:
        return doc.unixFileModificationDate();
    case Model::AddedColumn:
        return dateAdded(doc);
    case Model::RatingColumn:
        return doc.rating();
    case Model::TagsColumn:
        return tagsOf(doc);
    case Model::FolderColumn:
        return doc.parentPath();
    case Model::PathColumn:
        return doc.filePath();
    default:
        return {};
    }
}

static QString textOf(const KPDoc &doc, int column)
{
    switch (column) {
    case Model::NameColumn:
        return Model::displayName(doc);
    case Model::FlagColumn:
        return doc.isFlagged() ? qtTrId("KPFlagged") : QString();
    case Model::TypeColumn:
        return XPPath::printable(KPFileType::displayNameForUTI(doc.fileType()));
    case Model::SizeColumn:
        return doc.isDirectoryOrPackage() ? QString() : doc.fileSizeString();
    case Model::RatingColumn: {
        const double rating = doc.rating();
        return rating > 0 ? starsInWords(rating) : QString();
    }
    case Model::TagsColumn:
        return tagsOf(doc).join(listSeparator);
    case Model::FolderColumn:
        return XPPath::printable(doc.parentFolderForDisplay());
    case Model::PathColumn:
        return XPPath::printable(doc.compactFilePath());
    case Model::CreatedColumn:
    case Model::ModifiedColumn:
    case Model::AddedColumn: {
        const QDateTime date = Model::valueOf(doc, column).toDateTime();
        return date.isValid() ? QLocale().toString(date.toLocalTime(), QLocale::ShortFormat)
                              : QString();
    }
    default:
        return XPPath::printable(Model::valueOf(doc, column).toString());
    }
}

QVariant KPLibraryModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const KPDoc &doc = *document(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return displayName(doc);
    case Qt::ToolTipRole:
        return tooltip(doc);
    case Qt::AccessibleTextRole:
        return accessibleText(doc);
    case PathRole:
        return doc.filePath();
    case TagsRole:
        return tagsOf(doc);
    case RatingRole:
        return doc.rating();
    case ErrorRole:
        return errorOf(doc);
    case FlaggedRole:
        return doc.isFlagged();
    default:
        break;
    }
    if (doc.isGone())
        return {};
    if (role >= ColumnValueRole)
        return valueOf(doc, role - ColumnValueRole);
    return role >= ColumnTextRole ? textOf(doc, role - ColumnTextRole) : QVariant();
}
