#include "XPArchivedFile.h"

#include "XPArchiveKeys.h"
#include "XPExtendedAttributes.h"
#include "XPPath.h"
#include "XPPropertyList.h"

#include <QCoreApplication>

using namespace XPArchiveKeys;
using Dictionary = PropertyValue::Dictionary;

static constexpr qsizetype longestPath = 3000; // leaves room for the folder in what Linux takes
static constexpr qsizetype longestName = 255;
static constexpr qsizetype deepest = 100;
static constexpr qsizetype mostAttributes = 256;
static constexpr qsizetype mostAttributeBytes = 1 << 20;
// Texts are kept as they are, whether other programs can read them or not.
static constexpr XPPropertyList::Limits limits = {1 << 20, 16, 100'000, false};

// --- Attributes

static PropertyValue valueOf(const QByteArray &bytes)
{
    const auto value = XPPropertyList::readBinary(bytes, limits);
    if (!value || value->kind() == PropertyValue::Kind::Data)
        return bytes;
    const auto again = XPPropertyList::writeBinary(*value, limits);
    return again && *again == bytes ? *value : PropertyValue(bytes);
}

QByteArray XPArchivedFile::bytesOf(const PropertyValue &attribute)
{
    if (attribute.kind() == PropertyValue::Kind::Data)
        return attribute.data();
    return XPPropertyList::writeBinary(attribute, limits).valueOr({});
}

static std::optional<XPError> readAttributes(const QString &path, Dictionary &attributes)
{
    const auto names = XPExtendedAttributes::list(path);
    if (!names)
        return names.error().kind == XPError::Kind::Unsupported ? std::nullopt
                                                                : std::optional(names.error());
    qsizetype bytes = 0;
    for (const QString &name : *names) {
        const auto value = XPExtendedAttributes::read(path, name);
        if (!value)
            return value.error();
        if (*value)
            attributes.insert(name, valueOf(**value));
        bytes += *value ? (*value)->size() : 0;
    }
    if (attributes.size() > mostAttributes || bytes > mostAttributeBytes)
        return XPError::make(XPError::Kind::TooLarge, qtTrId("XPTooManyAttributes"), path);
    return {};
}

XPResult<XPArchivedFile> XPArchivedFile::read(const QString &absolute, const QString &path,
                                              Kind kind)
{
    const auto info = XPFileInfo::read(absolute);
    if (!info)
        return info.error();
    if (kind == Kind::File ? !info->isRegular() : !info->isDirectory())
        return XPError::make(XPError::Kind::InvalidArgument, qtTrId("XPNotADocument"), absolute);
    XPArchivedFile file;
    file.path = path;
    file.kind = kind;
    file.size = kind == Kind::File ? info->size : 0;
    file.modified = info->modified;
    file.rights = info->mode & 0777U;
    if (auto error = readAttributes(absolute, file.attributes))
        return *error;
    return file;
}

// --- Paths

bool XPArchivedFile::isSafe(const QString &path, bool isDocument)
{
    const QByteArray bytes = XPPath::encode(path);
    if (bytes.isEmpty() || bytes.size() > longestPath || (isDocument && bytes.startsWith('.')))
        return false;
    const QByteArrayList names = bytes.split('/');
    return names.size() <= deepest &&
           std::all_of(names.begin(), names.end(), [](const QByteArray &name) {
               return !name.isEmpty() && name.size() <= longestName && name != "." && name != "..";
           });
}

// --- Records

static const char *const kindNames[] = {"file", "package", "folder"};

Dictionary XPArchivedFile::toRecord(bool isPart) const
{
    Dictionary record;
    const QString &key = isPart ? partKey : pathKey;
    if (path.isValidUtf16())
        record.insert(key, path);
    else
        record.insert(key, XPPath::encode(path));
    if (kind != Kind::File)
        record.insert(kindKey, QString::fromLatin1(kindNames[static_cast<int>(kind)]));
    else
        record.insert(sizeKey, PropertyValue::integer(size));
    record.insert(modifiedKey, PropertyValue::integer(modified));
    record.insert(rightsKey, PropertyValue::integer(rights));
    if (!attributes.isEmpty())
        record.insert(attributesKey, attributes);
    return record;
}

static std::optional<XPArchivedFile::Kind> kindIn(const Dictionary &record)
{
    const PropertyValue value = record.value(kindKey);
    if (value.isNull())
        return XPArchivedFile::Kind::File;
    for (int i = 0; i < 3; ++i) {
        if (value.string() == QLatin1String(kindNames[i]))
            return static_cast<XPArchivedFile::Kind>(i);
    }
    return {};
}

static bool areAttributes(const Dictionary &attributes)
{
    constexpr qsizetype longest = 250; // less the name space before it
    qsizetype bytes = 0;
    for (auto each = attributes.begin(); each != attributes.end(); ++each) {
        const qsizetype name = each.key().toUtf8().size();
        if (name == 0 || name > longest || each.key().contains(QChar(u'\0')))
            return false;
        bytes += XPArchivedFile::bytesOf(each.value()).size();
    }
    return attributes.size() <= mostAttributes && bytes <= mostAttributeBytes;
}

std::optional<XPArchivedFile> XPArchivedFile::fromRecord(const Dictionary &record, bool isPart)
{
    XPArchivedFile file;
    const PropertyValue path = record.value(isPart ? partKey : pathKey);
    const auto kind = kindIn(record);
    const PropertyValue attributes = record.value(attributesKey);
    file.path = path.isString() ? path.string() : XPPath::decode(path.data());
    if (!kind || *kind == (isPart ? Kind::Package : Kind::Folder) || !isSafe(file.path, !isPart) ||
        !(attributes.isNull() || attributes.isDictionary()) ||
        !areAttributes(attributes.dictionary()))
        return {};
    file.kind = *kind;
    file.size = record.value(sizeKey).integerValue();
    file.modified = record.value(modifiedKey).integerValue();
    file.rights = static_cast<quint32>(record.value(rightsKey).integerValue()) & 0777U;
    file.attributes = attributes.dictionary();
    return file.size < 0 ? std::nullopt : std::optional(file);
}
