#pragma once

#include <QTranslator>

// English, longer by 40 % and with accents: shows texts that do not come from the translations, and
// places that are too narrow for other languages. Places for values, markup, keys (&) stay.
class PseudoLanguage : public QTranslator
{
public:
    PseudoLanguage();

    QString translate(const char *context, const char *id, const char *disambiguation,
                      int n) const override;
    bool isEmpty() const override { return false; }

private:
    QTranslator m_english;
};
