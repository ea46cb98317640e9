// murnctl defaults: the settings.
#include "IndexRequests.h"
#include "IndexSettings.h"
#include "KPCommandOutput.h"
#include "KPStateFile.h"
#include "UserDefaults.h"
#include "XPFactorySettings.h"
#include "XPPath.h"

static UserDefaults &defaults()
{
    return UserDefaults::standard();
}

// What a word of the shell would be read as again, where the kind has such words.
static QByteArray wordOf(const PropertyValue &value, const KPCommandOutput &output)
{
    if (value.isString())
        return output.name(value.string());
    if (value.kind() == PropertyValue::Kind::Data)
        return output.name(XPPath::decode(value.data()));
    return KPStateFile::json(value);
}

// --- read

// Key, value, the factory value where it is another one, each after a tab character.
static void printLine(const XPSetting &setting, KPCommandOutput &output)
{
    const PropertyValue value = defaults().value(setting.key);
    QByteArray line = setting.key.toUtf8() + '\t' + KPStateFile::json(value);
    if (value != setting.factory)
        line += '\t' + KPStateFile::json(setting.factory);
    output.writeRecord(line);
}

static QByteArray jsonOf(const XPSetting &setting)
{
    const QByteArray text = *setting.text ? KPCommandOutput::json(qtTrId(setting.text)) : "null";
    return KPCommandOutput::json(setting.key) +
           ": {\"value\": " + KPStateFile::json(defaults().value(setting.key)) +
           ", \"factory\": " + KPStateFile::json(setting.factory) +
           ", \"saved\": " + (defaults().isSaved(setting.key) ? "true" : "false") +
           ", \"takes\": " + KPCommandOutput::json(setting.expected()) + ", \"text\": " + text +
           '}';
}

static int readAll(KPCommandOutput &output)
{
    QByteArrayList objects;
    for (const XPSetting &setting : XPFactorySettings::all()) {
        if (output.isJson())
            objects.append(jsonOf(setting));
        else
            printLine(setting, output);
    }
    if (output.isJson())
        output.write("{\n  " + objects.join(",\n  ") + "\n}\n");
    return output.exitStatus();
}

static int readOne(const QString &key, KPCommandOutput &output)
{
    const PropertyValue value = defaults().value(key);
    if (value.isNull() && !XPFactorySettings::find(key))
        output.fail(key, QStringLiteral("no such setting"));
    else if (output.isJson())
        output.write(KPStateFile::json(value) + '\n');
    else if (value.isArray())
        for (const PropertyValue &element : value.array())
            output.writeRecord(wordOf(element, output));
    else if (!value.isNull())
        output.writeRecord(wordOf(value, output));
    return output.exitStatus();
}

// --- write and delete

// To the disk, and from there to a window that runs.
static int save(KPCommandOutput &output)
{
    if (const auto error = defaults().synchronise())
        output.fail(QStringLiteral("the settings cannot be saved: ") + error->message);
    else
        (void)IndexRequests::tell(IndexSettings::storePath(), IndexRequests::Kind::Settings, {});
    return output.exitStatus();
}

static int writeOne(const QString &key, const QStringList &words, KPCommandOutput &output)
{
    const XPSetting *setting = XPFactorySettings::find(key);
    if (!setting) {
        output.fail(key, QStringLiteral("no such setting"));
        return output.exitStatus();
    }
    const auto value = setting->fromWords(words);
    if (!value) {
        output.fail(value.error().message);
        return output.exitStatus();
    }
    defaults().setValue(key, *value);
    return save(output);
}

static int deleteOne(const QString &key, KPCommandOutput &output)
{
    if (!defaults().isSaved(key) && !XPFactorySettings::find(key)) {
        output.fail(key, QStringLiteral("no such setting"));
        return output.exitStatus();
    }
    defaults().remove(key);
    return save(output);
}

static int run(const KPCommandLine &line, KPCommandOutput &output)
{
    QStringList words = line.operands();
    const QString verb = words.isEmpty() ? QString() : words.takeFirst();
    const QString key = words.isEmpty() ? QString() : words.takeFirst();
    if (verb == u"read" && words.isEmpty())
        return key.isEmpty() ? readAll(output) : readOne(key, output);
    if (verb == u"write" && !key.isEmpty())
        return writeOne(key, words, output);
    if (verb == u"delete" && !key.isEmpty() && words.isEmpty())
        return deleteOne(key, output);
    return kpReportUsage(&kpDefaultsCommand,
                         QStringLiteral("takes read [KEY], write KEY VALUE… or delete KEY"));
}

const KPCommand kpDefaultsCommand = {
    "defaults",
    "read [KEY] | write KEY VALUE… | delete KEY",
    "Shows and changes settings.",
    "Without a key, all: key, value, and the factory value where it is another. A list is written\n"
    "with a word for each of its elements. A value of the wrong kind, or beyond the limits, is\n"
    "refused. What is deleted has its factory value again. A window that runs follows at once.\n"
    "A value that begins with a dash stands after --.\n",
    {{"--json", nullptr, "print JSON, with what each setting takes and does"},
     {"--print0", nullptr, "end each line with NUL instead"}},
    run};
