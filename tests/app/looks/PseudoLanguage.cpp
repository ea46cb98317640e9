#include "PseudoLanguage.h"

PseudoLanguage::PseudoLanguage()
{
    (void)m_english.load(QStringLiteral(":/translations/murn_en.qm"));
}

static QChar accented(QChar letter)
{
    static const QString plain = QStringLiteral("aeiouAEIOUcnsy");
    static const QString marked = QStringLiteral("áéîõüÁÉÎÕÜçñšý");
    const qsizetype at = plain.indexOf(letter);
    return at < 0 ? letter : marked[at];
}

QString PseudoLanguage::translate(const char *context, const char *id, const char *disambiguation,
                                  int n) const
{
    QString text = m_english.translate(context, id, disambiguation, n);
    if (text.isEmpty())
        return text;
    QString longer;
    qsizetype letters = 0;
    QChar end; // of the markup or the character reference that we are in
    for (const QChar c : text) {
        if (!end.isNull()) {
            end = c == end ? QChar() : end;
            longer += c;
            continue;
        }
        if (c == u'<')
            end = u'>';
        letters += c.isLetter() ? 1 : 0;
        const bool isPlace = longer.endsWith(u'%') || longer.endsWith(u"%L");
        longer += isPlace ? c : accented(c);
    }
    // Words of its own, so that a line that can be wrapped still can.
    const qsizetype more = letters * 2 / 5;
    const qsizetype at =
        text.endsWith(u'…') || text.endsWith(u':') ? longer.size() - 1 : longer.size();
    if (text.contains(u'<'))
        return longer;
    return longer.insert(at, QStringLiteral(" õhîõ õhîõ õhîõ õhîõ õhîõ õhîõ õhîõ õhîõ õhîõ õhîõ")
                                 .left(qMin<qsizetype>(more, 50))
                                 .trimmed()
                                 .prepend(more > 1 ? u" " : u""));
}
