#pragma once

#include "PropertyValue.h"
#include "XPError.h"

#include <QMap>
#include <QStringList>
#include <functional>

// One case of a file that lost its attributes to a program that replaced it: what it had, and
// what was done. Threads: a value.
struct KPHealing
{
    enum class State {
        Pending, // it is for the user to say whether the attributes belong to the file
        Healed,  // they are on it again
        Undone,  // and taken off by the user; or, if it was pending, not wanted
        Failed,  // could not be written
    };

    qint64 number = 0; // by which the user names it; grows
    QString path;
    PropertyValue::Date time;
    State state = State::Pending;
    QString why; // it is pending, or failed; a sentence for people
    // Attribute name, without "com.apple.metadata:", to bytes as they were on the file.
    QMap<QString, QByteArray> attributes;

    // Whether none of these attributes says something about tags; an empty list of tags does: the
    // user removed them.
    static bool haveNoTags(const QStringList &names);
    static XPResult<bool> hasNoTags(const QString &path);

    // Puts the attributes on the file, if it has no tags (NotFound, in words, when it has): all of
    // them or none. ESTALE: it was replaced by another one meanwhile. Those of another name that it
    // has stay as they are.
    std::optional<XPError> heal();
    // Takes those away that are still as they were put there, and says which were not.
    std::optional<XPError> undo();
};

// All cases that were not forgotten: a property list in the program's support folder, the newest
// last. The oldest are forgotten when they are many.
// Threads: any; blocking file calls, under a lock that other processes respect.
namespace KPHealingLog {

QString path();
XPResult<QList<KPHealing>> read();
// Reads it, has it changed and writes it. A log that cannot be understood is set aside.
std::optional<XPError> change(const std::function<void(QList<KPHealing> &cases)> &change);
qint64 nextNumber(const QList<KPHealing> &cases);

} // namespace KPHealingLog
