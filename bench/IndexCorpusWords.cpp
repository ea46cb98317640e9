#include "IndexCorpusWords.h"

#include <array>
#include <cmath>

namespace IndexCorpusWords {

quint64 Random::next()
{
    quint64 z = (m_state += 0x9E3779B97F4A7C15ULL);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
    return z ^ (z >> 31);
}

quint32 Random::zipf(quint32 limit)
{
    const double rank = std::exp(unit() * std::log(static_cast<double>(limit) + 1)) - 1;
    return std::min(static_cast<quint32>(rank), limit - 1);
}

static constexpr const char *commonWords =
    "the of and to in is for on with report die der und von invoice das mit notes meeting draft "
    "final copy rechnung photo project summary plan budget letter vertrag bericht list data test "
    "backup old new version team client year month travel receipt tax steuer house wohnung bank "
    "konto insurance versicherung angebot offer order bestellung contract protocol protokoll "
    "minutes agenda presentation vorlage template manual handbuch guide recipe rezept music song "
    "album holiday urlaub birthday geburtstag family familie school schule university thesis "
    "arbeit paper article chapter kapitel book buch index main util parser config setup readme "
    "license changes source build script module server network database query result table "
    "figure picture scan document dokument archive archiv export import download upload statement "
    "auszug payment zahlung salary gehalt application bewerbung lebenslauf resume portfolio "
    "design logo icon banner website page form antrag formular certificate zeugnis diploma "
    "passport ausweis ticket fahrkarte map karte route garden garten car auto repair reparatur "
    "warranty garantie phone telefon internet energy strom water wasser heating heizung rent miete "
    "doctor arzt health gesundheit training kurs course lesson exercise aufgabe solution answer "
    "question frage idea idee sketch entwurf review feedback comment kommentar schedule termin "
    "calendar kalender january februar march april mai june juli august september oktober november "
    "dezember monday dienstag wednesday donnerstag friday samstag sunday morning abend night week "
    "quarter quartal annual jahres monthly weekly daily internal extern public private "
    "confidential "
    "analysis analyse research forschung study studie survey umfrage experiment measurement "
    "messung sample probe model modell theory theorie history geschichte culture kultur science "
    "wissenschaft physics chemie biology mathematik language sprache english deutsch french "
    "spanish berlin london hamburg paris vienna zurich munich office home work private customer "
    "kunde supplier lieferant product produkt price preis stock lager delivery lieferung";

static constexpr std::array accented = {
    "größe",    "übersicht", "straße", "café",   "résumé",   "müller",   "schlüssel", "prüfung",
    "änderung", "geschäft",  "señor",  "žádost", "göteborg", "ångström", "счёт",      "отчёт",
    "请求书",   "写真",      "Ελλάδα", "naïve",  "ﬁnanzen",  "łódź",     "für",       "über"};

static constexpr std::array syllables = {
    "ver", "be",  "ge",   "re",   "con",   "pro",  "in",   "un",   "aus",  "ein",  "her",  "vor",
    "ab",  "an",  "ter",  "ment", "tion",  "ung",  "heit", "keit", "lich", "isch", "ing",  "er",
    "en",  "ly",  "ness", "able", "stand", "werk", "haus", "land", "zeit", "teil", "form", "port",
    "mar", "lo",  "ka",   "si",   "to",    "ne",   "vi",   "da",   "bel",  "ron",  "tan",  "mil",
    "gar", "pel", "schl", "tr",   "qu",    "ox",   "ym",   "zu",   "wa",   "je",   "ho",   "fu"};

const QStringList &vocabulary()
{
    static const QStringList words = [] {
        QStringList list = QString::fromLatin1(commonWords).split(u' ', Qt::SkipEmptyParts);
        Random random(7);
        while (list.size() < static_cast<qsizetype>(vocabularySize)) {
            QString word;
            const quint32 parts = 2 + random.below(3);
            for (quint32 i = 0; i < parts; ++i)
                word += QLatin1String(syllables[random.below(syllables.size())]);
            if (random.percent(8))
                word.replace(u'a', u'ä');
            list.append(word);
        }
        return list;
    }();
    return words;
}

struct Share
{
    const char *extension;
    quint32 weight;
};

static constexpr std::array textShares = {
    Share{"txt", 90}, Share{"md", 80},   Share{"c", 40},   Share{"h", 60},    Share{"cpp", 70},
    Share{"py", 70},  Share{"js", 90},   Share{"ts", 30},  Share{"java", 40}, Share{"rb", 10},
    Share{"sh", 20},  Share{"go", 12},   Share{"rs", 12},  Share{"pl", 6},    Share{"php", 20},
    Share{"cs", 10},  Share{"swift", 5}, Share{"hpp", 10}, Share{"css", 25}};

static constexpr std::array otherShares = {
    Share{"pdf", 110}, Share{"jpg", 190}, Share{"png", 120}, Share{"html", 60}, Share{"xml", 40},
    Share{"json", 60}, Share{"docx", 45}, Share{"xlsx", 35}, Share{"pptx", 15}, Share{"odt", 20},
    Share{"ods", 12},  Share{"odp", 6},   Share{"doc", 18},  Share{"xls", 12},  Share{"ppt", 6},
    Share{"jpeg", 30}, Share{"gif", 25},  Share{"svg", 20},  Share{"webp", 12}, Share{"tiff", 5},
    Share{"heic", 20}, Share{"bmp", 3},   Share{"mp3", 50},  Share{"flac", 15}, Share{"ogg", 8},
    Share{"wav", 8},   Share{"m4a", 10},  Share{"mp4", 25},  Share{"mkv", 8},   Share{"mov", 8},
    Share{"avi", 4},   Share{"zip", 20},  Share{"gz", 15},   Share{"tar", 4},   Share{"7z", 4},
    Share{"rar", 3},   Share{"iso", 1},   Share{"epub", 10}, Share{"mobi", 3},  Share{"eml", 25},
    Share{"ics", 4},   Share{"vcf", 4},   Share{"csv", 25},  Share{"rtf", 5},   Share{"tex", 8},
    Share{"bib", 2},   Share{"ps", 2},    Share{"eps", 2},   Share{"psd", 3},   Share{"ai", 1},
    Share{"ttf", 4},   Share{"otf", 3},   Share{"o", 15},    Share{"so", 5},    Share{"a", 2},
    Share{"exe", 2},   Share{"deb", 2},   Share{"apk", 1},   Share{"db", 4},    Share{"sqlite", 3},
    Share{"log", 15},  Share{"bak", 5},   Share{"tmp", 3},   Share{"url", 3},   Share{"cr2", 6}};

template <size_t Count>
static QByteArray pick(const std::array<Share, Count> &shares, Random &random)
{
    quint32 total = 0;
    for (const Share &share : shares)
        total += share.weight;
    quint32 at = random.below(total);
    for (const Share &share : shares) {
        if (at < share.weight)
            return share.extension;
        at -= share.weight;
    }
    Q_UNREACHABLE();
}

QByteArray extension(Random &random, bool text)
{
    return text ? pick(textShares, random) : pick(otherShares, random);
}

bool isTextExtension(const QByteArray &extension)
{
    return std::any_of(textShares.begin(), textShares.end(),
                       [&](const Share &share) { return extension == share.extension; });
}

static QString nameWord(Random &random)
{
    if (random.percent(5))
        return QString::fromUtf8(accented[random.below(accented.size())]);
    return vocabulary()[random.zipf(vocabularySize)];
}

static QString capital(const QString &word)
{
    return word.isEmpty() ? word : word[0].toUpper() + word.mid(1);
}

static QString number(quint32 value, int digits)
{
    return QStringLiteral("%1").arg(value, digits, 10, QLatin1Char('0'));
}

static QString date(Random &random)
{
    return number(2005 + random.below(20), 4) + u'-' + number(1 + random.below(12), 2) + u'-' +
           number(1 + random.below(28), 2);
}

QByteArray fileName(Random &random, const QByteArray &extension)
{
    QString name;
    switch (random.below(8)) {
    case 0:
        name = capital(nameWord(random)) + u' ' + nameWord(random) + u' ' + date(random);
        break;
    case 1:
        name = nameWord(random) + u'_' + nameWord(random) + u'_' + number(random.below(10000), 4);
        break;
    case 2:
        name = QStringLiteral("IMG_") + number(random.below(100'000'000), 8) + u'_' +
               number(random.below(1000), 3);
        break;
    case 3:
        name = capital(nameWord(random)) + capital(nameWord(random)) + capital(nameWord(random));
        break;
    case 4:
        name = nameWord(random) + u'-' + nameWord(random) + u'-' + nameWord(random);
        break;
    case 5:
        name = capital(nameWord(random)) + u' ' + capital(nameWord(random)) + QStringLiteral(" (") +
               QString::number(random.below(100)) + u')';
        break;
    case 6:
        name = date(random) + QStringLiteral(" - ") + capital(nameWord(random));
        break;
    default:
        name = nameWord(random) + nameWord(random) + QString::number(random.below(1000));
    }
    if (random.percent(3)) // as a file server of another system hands names out
        name = name.normalized(QString::NormalizationForm_D);
    return name.toUtf8() + '.' + (random.percent(5) ? extension.toUpper() : extension);
}

QByteArray folderName(Random &random)
{
    QString name = random.percent(40) ? capital(nameWord(random)) : nameWord(random);
    if (random.percent(50))
        name += (random.percent(50) ? u' ' : u'-') + nameWord(random);
    if (random.percent(20))
        name += u' ' + number(2005 + random.below(20), 4);
    return name.toUtf8();
}

QByteArray prose(Random &random, int bytes)
{
    QString text = QStringLiteral("# ") + capital(nameWord(random)) + u' ' + nameWord(random) +
                   QStringLiteral("\n\n");
    int words = 0;
    while (text.size() < bytes) {
        const QString &word = vocabulary()[random.zipf(vocabularySize)];
        text += words % 11 == 0 ? capital(word) : word;
        ++words;
        text += words % 11 == 0 ? QStringLiteral(". ") : QStringLiteral(" ");
        if (words % 66 == 0)
            text += QStringLiteral("\n\n");
    }
    return text.toUtf8() + '\n';
}

QString tag(quint32 rank)
{
    // Decomposed, as tags are stored.
    const QString word = rank % 10 == 9 ? QString::fromUtf8(accented[rank / 10 % accented.size()])
                                        : vocabulary()[20 + rank];
    const QString text = rank < 300 ? capital(word) : word + u' ' + QString::number(rank);
    return text.normalized(QString::NormalizationForm_D);
}

} // namespace IndexCorpusWords
