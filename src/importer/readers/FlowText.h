#pragma once

#include "DocumentAnswer.h"

#include <algorithm>

// Writes the text of a document that has words, lines and paragraphs of its own into its answer:
// lines are separated by a line feed, paragraphs by an empty line, and no blank, line end or
// empty line comes without a word after it.
//
// Control characters count as blanks; a carriage return ends a line.
// Threads: a value that refers to the text, which must outlive it.
class FlowText
{
public:
    explicit FlowText(DocumentText &text) : m_text(text) {}

    // Nothing more fits: a reader may stop.
    bool isFull() const { return m_text.isFull(); }

    // Text as it stands, its line ends and blanks included.
    void append(QByteArrayView utf8);
    void append(QStringView text);
    // Text of markup: a run of white space counts as one gap.
    void appendCollapsed(QByteArrayView utf8);

    // The next word stands apart from the last one: by a blank, in a new line, in a new paragraph.
    void addGap() { separate(Separator::Gap); }
    void endLine() { separate(Separator::Line); }
    void endParagraph() { separate(Separator::Paragraph); }
    // Ends a cell of a table's row: tabulators stand between cells, empty ones count.
    void endCell() { ++m_cells; }

private:
    enum class Separator { None, Gap, Line, Paragraph };

    void separate(Separator separator)
    {
        m_separator = std::max(m_separator, separator);
        if (separator >= Separator::Line)
            m_cells = 0;
    }
    void write(QByteArrayView clean);

    DocumentText &m_text;
    Separator m_separator = Separator::None;
    int m_cells = 0; // that ended since the last word of this line
};
