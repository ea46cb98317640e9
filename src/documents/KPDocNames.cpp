// KPDoc: names and titles.
#include "KPDoc.h"
#include "KPDocMetaData.h"
#include "KPDocServices.h"
#include "XPLog.h"
#include "XPNotificationCenter.h"
#include "XPPath.h"
#include "XPPrompts.h"
#include "XPRename.h"
#include "XPText.h"

#include <QCoreApplication>
#include <cerrno>
#include <cstdio>

// The longest name that file systems here take, in bytes.
static constexpr qsizetype longestName = 255;

QString KPDoc::fsDisplayNameLC() const
{
    const KPPooledString path = pooledPath();
    {
        const KPDocLocker lock(m_lock);
        if ((m_cachedInfo & DisplayNameLC) && m_rare)
            return m_rare->displayNameLC;
    }
    QString name = lowerCase(decomposed(XPPath::fileName(path.toString())));
    const KPDocLocker lock(m_lock);
    if (m_filePath.load() == path) {
        rare().displayNameLC = name;
        m_cachedInfo |= DisplayNameLC;
    }
    return name;
}

QString KPDoc::displayFileNameToFSName(const QString &name)
{
    QString fsName = name;
    fsName.replace(u':', u' ').replace(u'/', u':');
    return fsName.remove(u'\n').remove(u'\r');
}

QString KPDoc::changeCharsForNameToFinderDisplayMode(const QString &name)
{
    QString displayed = name;
    return displayed.replace(u':', u'/');
}

// --- Renaming

static std::optional<XPError> refusal(const QString &name, const QString &path)
{
    const auto refused = [&](const QString &message) {
        return XPError::make(XPError::Kind::InvalidArgument, message, path);
    };
    if (name.trimmed().isEmpty())
        return refused(qtTrId("KPNameMissing"));
    if (name == u"." || name == u"..")
        return refused(qtTrId("KPNameIsDots").arg(name));
    const QByteArray bytes = XPPath::encode(name);
    if (bytes.isEmpty())
        return refused(qtTrId("KPNameNotEncodable"));
    if (bytes.size() > longestName)
        return refused(qtTrId("KPNameTooLong"));
    return {};
}

static bool isSameFile(const XPFileInfo &one, const XPFileInfo &other)
{
    return one.inode == other.inode && one.device == other.device;
}

static QString pathIn(const QString &folder, const QString &name)
{
    return folder == u"/" ? u'/' + name : folder + u'/' + name;
}

// Renames within the folder. The name counts as taken when another file has it in any canonically
// equivalent spelling, as the two would look the same.
static std::optional<XPError> renameFile(const QString &from, const QString &folder,
                                         const QString &name)
{
    const auto own = XPFileInfo::read(from);
    if (!own)
        return own.error();
    for (const QString &spelling :
         {decomposed(name), name.normalized(QString::NormalizationForm_C)}) {
        const auto there = XPFileInfo::read(pathIn(folder, spelling));
        if (there && !isSameFile(*there, *own))
            return XPError::fromErrno(EEXIST, pathIn(folder, spelling));
    }
    const QString to = pathIn(folder, name);
    auto error = XPRename::toFreeName(from, to);
    if (!error || error->code != EEXIST)
        return error;
    // Where upper and lower case make no difference, the file itself has the new name already.
    const auto there = XPFileInfo::read(to);
    if (there && isSameFile(*there, *own) && own->links == 1 &&
        std::rename(XPPath::encode(from).constData(), XPPath::encode(to).constData()) == 0)
        return {};
    return error;
}

static QString withExtension(const QString &name, const QString &extension)
{
    const QString old = XPPath::extension(name);
    const QString stem = old.isEmpty() ? name : name.chopped(old.size() + 1);
    return stem + u'.' + extension;
}

// The new name or, where the user would rather keep the extension, that with the old one.
// Nothing: no answer.
static void askForExtension(const QString &oldName, const QString &newName,
                            const std::function<void(std::optional<QString>)> &then)
    XP_REQUIRES(xpGuiThread)
{
    const QString from = XPPath::extension(oldName);
    const QString to = XPPath::extension(newName);
    const QString shownFrom = XPPath::printable(from);
    const QString shownTo = XPPath::printable(to);
    if (from.isEmpty() || from.compare(to, Qt::CaseInsensitive) == 0) {
        then(newName);
        return;
    }
    enum Button { Keep, Use };
    XPPrompts::Question question;
    question.title = qtTrId("KPChangeExtensionTitle").arg(shownFrom, shownTo);
    question.text = qtTrId("KPChangeExtensionText");
    question.buttons = {qtTrId("KPKeepExtension").arg(shownFrom),
                        qtTrId("KPUseExtension").arg(shownTo)};
    XPPrompts::current().ask(question, [=](int button) {
        if (button == Use)
            then(newName);
        else if (button == Keep)
            then(withExtension(newName, from));
        else
            then({});
    });
}

static void performRename(KPDoc *doc, const QString &name, const KPDoc::Done &done)
    XP_REQUIRES(xpGuiThread)
{
    const QString from = doc->filePath();
    if (auto error = refusal(name, from)) {
        done(std::move(error));
        return;
    }
    const QString folder = doc->parentPath();
    const QString to = pathIn(folder, name);
    if (to == from) {
        done({});
        return;
    }
    struct Outcome
    {
        std::optional<XPError> error;
        std::optional<XPFileInfo> info;
    };
    const auto outcome = std::make_shared<Outcome>();
    KPDocServices::current().runFileWork(
        [=] {
            outcome->error = renameFile(from, folder, name);
            if (auto info = XPFileInfo::read(to))
                outcome->info = *info;
        },
        [=] {
            if (!outcome->error) {
                doc->setFilePath(to, outcome->info ? &*outcome->info : nullptr);
                XPNotificationCenter::instance().post(
                    KPDoc::pathChangedNotification, {},
                    {{QStringLiteral("oldPath"), from}, {QStringLiteral("newPath"), to}});
                doc->dataChanged();
            }
            done(outcome->error);
        });
}

void KPDoc::renameTo(const QString &fsName, const Done &done)
{
    if (isGone())
        done(XPError::fromErrno(ENOENT));
    else
        performRename(this, fsName, done);
}

void KPDoc::setFsDisplayName(const QString &name, const Done &done)
{
    const QString newName = displayFileNameToFSName(name);
    if (isGone()) {
        done(XPError::fromErrno(ENOENT));
        return;
    }
    if (auto error = refusal(newName, filePath())) {
        done(std::move(error));
        return;
    }
    // A folder's name has no extension, only dots.
    if (isDirectory()) {
        performRename(this, newName, done);
        return;
    }
    askForExtension(fsName(), newName, [this, done](const std::optional<QString> &chosen) {
        xpGuiThread.assertHere();
        if (chosen)
            performRename(this, *chosen, done);
        else
            done(
                XPError::make(XPError::Kind::Cancelled, QStringLiteral("not renamed"), filePath()));
    });
}

// --- Titles

QString KPDoc::documentTitle() const
{
    const KPDocLocker lock(m_lock);
    return (m_cachedInfo & Title) && m_rare ? m_rare->title : fsName();
}

QString KPDoc::title() const
{
    qCWarning(xpLog) << "Dont call me";
    return {};
}

void KPDoc::setTitle(const QString &title, quint32 asOf)
{
    const KPDocLocker lock(m_lock);
    if (m_state != asOf)
        return;
    rare().title = title;
    m_cachedInfo |= Title;
}

bool KPDoc::canChangeTitle() const
{
    return !pooledPath().view().contains(u"/scans/");
}

// What the importer found the document to call itself; empty before it was read.
static QString importedTitle(const QString &path)
{
    return KPDocMetaData::indexed(path, QStringLiteral("kMDItemTitle")).string().simplified();
}

void KPDoc::setTitleFromEmailMessage()
{
    const quint32 asOf = stateNumber();
    const QString subject = importedTitle(filePath());
    setTitle(subject.isEmpty() ? QStringLiteral("(no subject)") : subject, asOf);
}

void KPDoc::setTitleFromAddressBookCard()
{
    const quint32 asOf = stateNumber();
    const QString name = importedTitle(filePath());
    setTitle(name.isEmpty() ? QStringLiteral("An Address Card") : name, asOf);
}

void KPDoc::setTitleFromBookmark()
{
    const quint32 asOf = stateNumber();
    const QString name = importedTitle(filePath());
    setTitle(name.isEmpty() ? fsName() : name, asOf);
}
