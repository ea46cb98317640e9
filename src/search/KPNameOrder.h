#pragma once

#include <QByteArray>
#include <QCollator>

// The order of names for people: the user's language, case aside, numbers by value ("9" before
// "10"). A collator belongs to the thread that made it.
QCollator kpNameCollator();

// The same order as bytes that are compared by memcmp, so that a name is looked at once.
// Threads: one at a time.
class KPNameKeys
{
public:
    KPNameKeys();
    ~KPNameKeys();
    KPNameKeys(const KPNameKeys &) = delete;
    KPNameKeys &operator=(const KPNameKeys &) = delete;

    // Ends in a zero byte and holds no other: keys may follow each other.
    void append(QByteArray &bytes, QStringView name) const;
    QByteArray key(QStringView name) const;

private:
    struct UCollator *m_collator; // null: no collation at all; then by code units
};
