#pragma once

#include "IndexFoldedList.h"

#include <QHash>
#include <optional>

// Every distinct text of the attributes, once: tags, titles, addresses. A row holds the text's
// number, so that thousands of files with one tag share it, and a pattern is matched against each
// distinct text, not each file.
// Threads: as the catalog that owns it.
class IndexTexts
{
public:
    using Number = quint32;

    Number numberOf(const QString &text); // makes one when new
    // The next number for a saved text; an empty one stands for a number that is out of use.
    void restore(const QString &text);
    std::optional<Number> find(const QString &text) const;
    const QString &text(Number number) const { return m_texts[number]; }
    quint32 size() const { return static_cast<quint32>(m_texts.size()); }
    std::vector<Number> matching(const IndexTextPattern &pattern) const;

private:
    std::vector<QString> m_texts;
    QHash<QString, Number> m_numbers;
    IndexFoldedList m_folded;
};
