#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

// The lines of an address card or a calendar: "NAME;PARAMETER=VALUE:VALUE", long ones folded
// (RFC 6350, RFC 5545; also vCard 2.1 with its quoted-printable values).
//
// Takes any bytes; a line that is none is left out. Threads: a value.
class ContentLines
{
public:
    struct Line
    {
        QByteArray name;                          // upper case, without a group ("item1.")
        QHash<QByteArray, QByteArray> parameters; // names in upper case
        QByteArray value;                         // as it stands, but decoded

        // Without the backslashes that protect commas, semicolons and line breaks.
        QString text() const;
        // The components, which semicolons separate.
        QStringList components() const;
    };

    explicit ContentLines(QByteArrayView bytes) : m_bytes(bytes) {}
    // False at the end.
    bool next(Line &line);

private:
    QByteArray unfolded();

    QByteArrayView m_bytes;
    qsizetype m_at = 0;
};
