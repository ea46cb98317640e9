// murnctl healed: shows the files that got lost tags back, and takes that back.
#include "KPCommandOutput.h"
#include "KPHealingChoice.h"
#include "XPPath.h"
#include "XPPropertyList.h"

#include <QDateTime>

using State = KPHealing::State;

static const char *stateName(State state)
{
    switch (state) {
    case State::Pending:
        return "pending";
    case State::Healed:
        return "healed";
    case State::Undone:
        return "undone";
    case State::Failed:
        break;
    }
    return "failed";
}

static QString timeOf(const KPHealing &healing)
{
    const auto seconds = static_cast<qint64>(healing.time.secondsSince1970());
    return QDateTime::fromSecsSinceEpoch(seconds).toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
}

static QStringList tagsOf(const KPHealing &healing)
{
    const QByteArray bytes = healing.attributes.value(QStringLiteral("kMDItemKXUserTags"));
    return XPPropertyList::read(bytes).valueOr({}).strings();
}

static QByteArray jsonOf(const KPHealing &healing)
{
    return "{\"number\": " + QByteArray::number(healing.number) + ", \"state\": \"" +
           stateName(healing.state) + "\", \"path\": " + KPCommandOutput::json(healing.path) +
           ", \"why\": " + KPCommandOutput::json(healing.why) +
           ", \"tags\": " + KPCommandOutput::json(tagsOf(healing)) +
           ", \"attributes\": " + KPCommandOutput::json(healing.attributes.keys()) + '}';
}

static void print(const QList<KPHealing> &cases, KPCommandOutput &output)
{
    if (output.isJson()) {
        QByteArrayList objects;
        for (const KPHealing &healing : cases)
            objects.append(jsonOf(healing));
        output.write('[' + objects.join(",\n ") + "]\n");
        return;
    }
    for (const KPHealing &healing : cases) {
        QByteArray line = QByteArray::number(healing.number) + '\t' + stateName(healing.state) +
                          '\t' + timeOf(healing).toUtf8() + '\t' + output.name(healing.path) +
                          '\t' + XPPath::printable(tagsOf(healing).join(u',')).toUtf8();
        if (!healing.why.isEmpty())
            line += '\t' + XPPath::printable(healing.why).toUtf8();
        output.writeRecord(line);
    }
}

// The cases that a word names: a number, or "all" that wait for it to be said.
static QList<qint64> numbersOf(const QString &word, bool accepts, const QList<KPHealing> &cases)
{
    QList<qint64> numbers;
    for (const KPHealing &healing : cases) {
        const bool isOpen = KPHealingChoice::isOpen(healing, accepts);
        const bool isAll = word == u"all" && (accepts ? healing.state == State::Pending : isOpen);
        if (isAll || (isOpen && QString::number(healing.number) == word))
            numbers.append(healing.number);
    }
    return numbers;
}

static int run(const KPCommandLine &line, KPCommandOutput &output)
{
    if (!line.operands().isEmpty())
        return kpReportUsage(&kpHealedCommand, QStringLiteral("takes no files"));
    if (const auto error = line.onlyOneOf({"--undo", "--accept"}))
        return kpReportUsage(&kpHealedCommand, error->message);
    const auto cases = KPHealingLog::read();
    if (!cases) {
        output.fail(KPHealingLog::path(), cases.error().reason());
        return output.exitStatus();
    }
    const bool accepts = line.has("--accept");
    const QStringList words = line.values(accepts ? "--accept" : "--undo");
    if (words.isEmpty()) {
        print(*cases, output);
        return output.exitStatus();
    }
    QList<qint64> numbers;
    for (const QString &word : words) {
        const QList<qint64> named = numbersOf(word, accepts, *cases);
        if (named.isEmpty() && word != u"all")
            output.fail(XPPath::printable(word) +
                        QStringLiteral(": no such case, or done already"));
        numbers += named;
    }
    const auto result = KPHealingChoice::apply(numbers, accepts);
    for (const XPError &failure : result.failures)
        output.fail(failure.path, failure.reason());
    print(result.done, output);
    return output.exitStatus();
}

const KPCommand kpHealedCommand = {
    "healed",
    "[--json] | --undo N|all… | --accept N|all…",
    "Shows the files that lost their tags to a program and got them back.",
    "Programs that save by writing a new file drop all attributes of the old one. They are put\n"
    "back, unless the file is of another type now or was replaced while nobody watched: these\n"
    "cases are pending until they are accepted. Each line: number, state, time, file, tags.\n",
    {{"--undo", "N", "take the attributes of case N off the file again, or drop a pending one"},
     {"--accept", "N", "put the attributes of case N on the file"},
     {"--json", nullptr, "print an array of objects"}},
    run};
