#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <optional>
#include <sane/sane.h>

// The options of an open scanner by their well-known names (SANE standard, sections 4.3 and 4.5).
// Threads: the one that opened the scanner.
class ScannerOptions
{
public:
    explicit ScannerOptions(SANE_Handle handle);

    // Whether it is there, active and can be set.
    bool has(const char *name) const { return find(name).has_value(); }

    // What an option of strings may be; empty when there is none.
    QList<QByteArray> strings(const char *name) const;
    // The values of an option of numbers: all of a list; of a range the usual ones inside it and
    // both ends.
    QList<double> resolutions() const;
    // The largest value of a length, in millimetres; nothing when it has no such constraint.
    std::optional<double> largest(const char *name) const;

    // False when there is no such option or the scanner refuses the value. Numbers are brought
    // into their range.
    bool set(const char *name, const QByteArray &value);
    bool set(const char *name, double value);

private:
    struct Found
    {
        SANE_Int number;
        const SANE_Option_Descriptor *option;
    };
    std::optional<Found> find(const char *name) const;
    bool apply(const Found &found, void *value);

    SANE_Handle m_handle;
};

// What the scanner can take paper from, as objects of "type", "source", "duplexSource",
// "resolutions" and "width" and "height" in millimetres. The type is the number of a functional
// unit: 0 flatbed, 1 positive transparency, 2 negative, 3 document feeder.
QJsonArray scannerUnits(SANE_Handle handle);
