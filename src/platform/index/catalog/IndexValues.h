#pragma once

#include "IndexRecord.h"
#include "IndexTexts.h"

// The attributes of one row in a few dozen bytes: names and texts as numbers, what was found on
// the file, what was told of it and what an importer found inside one behind the other.
//
// Where several say something of one attribute, the file's own value counts, then what was told,
// then what was imported.
// Threads: the functions only read their arguments, but for the tables they add to.
namespace IndexValues {

enum class Origin : quint8 { File, Told, Imported };
inline constexpr int origins = 3;

// Which attribute a name is, counted from 0.
class Names
{
public:
    quint32 numberOf(const QString &name); // makes one when new
    std::optional<quint32> find(const QString &name) const;
    const QString &name(quint32 number) const { return m_names[number]; }
    quint32 size() const { return static_cast<quint32>(m_names.size()); }

private:
    std::vector<QString> m_names;
    QHash<QString, quint32> m_numbers;
};

// One attribute of one origin, appended to the end of `out`. Origins come in order.
void append(QByteArray &out, Origin origin, quint32 name, const PropertyValue &value,
            IndexTexts &texts);

// A value where it lies.
struct Entry
{
    Origin origin = Origin::File;
    quint32 name = 0;
    QByteArrayView value; // its kind and content

    bool isPresent() const; // an empty list or text counts as absent
    // The texts and numbers that a comparison looks at: an array's elements each.
    void collect(std::vector<IndexTexts::Number> *texts, std::vector<double> *numbers) const;
    PropertyValue decoded(const IndexTexts &texts) const;
};

// The entries of a row, in the order they were appended. Never reads outside the bytes.
class Reader
{
public:
    explicit Reader(QByteArrayView row) : m_rest(row) {}
    bool next(Entry *entry); // false: no more, or damaged
    bool isDamaged() const { return m_damaged; }

private:
    QByteArrayView m_rest;
    bool m_damaged = false;
};

// The value that counts for each attribute, ascending by its number.
std::vector<Entry> effective(QByteArrayView row);
// Whether everything in it can be read, given so many names and texts.
bool isSound(QByteArrayView row, quint32 names, quint32 texts);

} // namespace IndexValues
