#include "FlowText.h"

#include <algorithm>

// A sheet may be empty but for its last column.
static constexpr int mostEmptyCells = 64;

static bool isSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

static bool isControl(char c)
{
    return (static_cast<uchar>(c) < 0x20 && c != '\t' && c != '\n') || c == 0x7F;
}

void FlowText::write(QByteArrayView clean)
{
    if (clean.isEmpty() || m_text.isFull())
        return;
    static constexpr const char *marks[] = {"", " ", "\n", "\n\n"};
    const bool isCell = m_cells > 0 && m_separator == Separator::Gap; // a gap at a cell's end
    if (!m_text.isEmpty() && !isCell)
        m_text.append(QByteArrayView(marks[static_cast<int>(m_separator)]));
    if (m_cells > 0)
        m_text.append(QByteArrayView(QByteArray(std::min(m_cells, mostEmptyCells), '\t')));
    m_separator = Separator::None;
    m_cells = 0;
    m_text.append(clean);
}

void FlowText::append(QByteArrayView utf8)
{
    utf8 = utf8.first(std::min<qsizetype>(utf8.size(), 2 * DocumentText::maximumBytes));
    if (!std::any_of(utf8.begin(), utf8.end(), isControl))
        return write(utf8);
    QByteArray clean = utf8.toByteArray();
    clean.replace("\r\n", "\n");
    clean.replace('\r', '\n');
    std::replace_if(clean.begin(), clean.end(), isControl, ' ');
    write(clean);
}

void FlowText::append(QStringView text)
{
    text = text.first(std::min<qsizetype>(text.size(), DocumentText::maximumBytes + 1));
    append(QByteArrayView(text.toUtf8()));
}

void FlowText::appendCollapsed(QByteArrayView utf8)
{
    while (!isFull() && !utf8.isEmpty()) {
        const auto word = std::find_if_not(utf8.begin(), utf8.end(), isSpace);
        if (word != utf8.begin())
            addGap();
        const auto end = std::find_if(word, utf8.end(), isSpace);
        append(utf8.sliced(word - utf8.begin(), end - word));
        utf8 = utf8.sliced(end - utf8.begin());
    }
}
