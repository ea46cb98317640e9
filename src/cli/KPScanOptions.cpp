#include "KPScanOptions.h"

#include "UserDefaults.h"
#include "XPImageCaptureCoreDevice.h"
#include "XPPaperSizes.h"
#include "XPPath.h"

#include <array>

static std::optional<int> unitNamed(const QString &name)
{
    static const std::array names = {QStringLiteral("flatbed"), QStringLiteral("transparency"),
                                     QStringLiteral("negative"), QStringLiteral("feeder")};
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (name == names[i])
            return static_cast<int>(i);
    }
    return {};
}

static std::optional<int> paperNamed(const QString &name)
{
    static constexpr int last = 78;
    for (int paper = 0; paper <= last; ++paper) {
        if (XPPaperSizes::name(paper).compare(name, Qt::CaseInsensitive) == 0)
            return paper;
    }
    return {};
}

static std::optional<QString> modeNamed(const QString &name)
{
    if (name == u"color")
        return QStringLiteral("Color");
    if (name == u"gray")
        return QStringLiteral("Gray");
    if (name == u"bw")
        return QStringLiteral("Lineart");
    return {};
}

template <typename Value, typename Find>
static std::optional<XPError> choose(const KPCommandLine &line, const char *option, Find find,
                                     Value &value)
{
    if (!line.has(option))
        return {};
    const QString word = line.values(option).last();
    const auto found = find(word);
    if (!found)
        return kpUsageError(
            QStringLiteral("%1: what is %2?").arg(QLatin1String(option), XPPath::printable(word)));
    value = *found;
    return {};
}

XPResult<KPScanOptions> KPScanOptions::parse(const KPCommandLine &line)
{
    KPScanOptions options;
    if (line.has("--profile")) {
        const QString name = line.values("--profile").last();
        const auto profile = XPScanProfile::named(name);
        if (!profile)
            return kpUsageError(
                QStringLiteral("there is no profile %1").arg(XPPath::printable(name)));
        static_cast<XPScanProfile &>(options) = *profile;
    }
    const auto number = [](int least, int most) {
        return [least, most](const QString &word) {
            bool isNumber = false;
            const int value = word.toInt(&isNumber);
            return isNumber && value >= least && value <= most ? std::optional(value)
                                                               : std::nullopt;
        };
    };
    for (const auto &error :
         {line.onlyOneOf({"--to", "--file"}), choose(line, "--source", unitNamed, options.unit),
          choose(line, "--mode", modeNamed, options.mode),
          choose(line, "--paper", paperNamed, options.paper),
          choose(line, "--resolution", number(50, 4800), options.resolution),
          choose(line, "--pages", number(1, 9999), options.pages)}) {
        if (error)
            return *error;
    }
    if (line.has("--device"))
        options.device = line.values("--device").last();
    options.duplex = options.duplex || line.has("--duplex");
    options.cleans = options.cleans || line.has("--clean-up");
    options.turnsUpright = options.turnsUpright || line.has("--upright");
    options.separates = options.separates || line.has("--separate");
    options.leavesOutBlank = options.leavesOutBlank || line.has("--skip-blank");
    options.recognisesText = options.recognisesText || line.has("--text");
    const auto tags = line.tags("--tag");
    if (!tags)
        return tags.error();
    options.tags = *tags;
    if (line.has("--rating")) {
        const auto rating = KPCommandLine::stars(line.values("--rating").last());
        if (!rating)
            return rating.error();
        options.rating = *rating;
    }
    if (line.has("--to"))
        options.toPath = XPPath::absolute(line.values("--to").last());
    return options;
}
