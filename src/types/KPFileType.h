#pragma once

#include <QString>
#include <QStringList>
#include <functional>

// A content type, and the ways to find that of a file: a uniform type identifier such as
// "com.adobe.pdf".
//
// A file's type is found from its extension where that is enough (no file call, after the first
// file of that extension) and else from the file itself: links are "com.apple.alias-file",
// folders "public.folder" or a package type, other files are judged by their first bytes, on
// slow volumes never. Extensions count in any case of letters. An extension that nobody
// declared has a dynamic identifier (KPDynamicType), the same on every machine.
// Paths are texts as XPPath decodes them. "None" is an empty text everywhere.
// Threads: any; the value is immutable, lookups of known extensions do not lock. utiForPath may
// block in file calls, at the latest for the second path of an unambiguous extension it does not.
class KPFileType
{
public:
    explicit KPFileType(const QString &uti) : m_uti(uti) {}

    const QString &uti() const { return m_uti; }
    QString fileExtension() const { return fileExtensionForUTI(m_uti); }
    QString displayName() const { return displayNameForUTI(m_uti); }
    bool operator==(const KPFileType &) const = default;

    // The type of a path, by the caches first. The extension is that of the name, without dot
    // (XPPath::extension), or empty.
    static QString utiForPath(const QString &path, const QString &extension);
    // The same where the caller has the file's mode (st_mode): links, folders and special files
    // are answered for what they are, whatever their name ends in.
    static QString utiForPath(const QString &path, const QString &extension, quint32 mode);
    // The type from the file itself, past the caches; `utiFromExtension` gets the type that the
    // extension alone stands for. "kUTI_NO_FILE" for an empty path.
    static QString utiForPathSlow(const QString &path, const QString &extension,
                                  QString *utiFromExtension);
    // The extension under which `pathUTI` holds for every other file too; else empty: several
    // types, a package type, a dynamic type (folders have dots in their names) or a file that is
    // not what its extension says.
    static QString bestUTIForStoringExtension(const QString &extension, const QString &extensionUTI,
                                              const QString &pathUTI);
    // To be called when the file at a path is known to have changed: its cached type goes.
    static void forgetPath(const QString &path);

    // Every type declared for an extension, preferred first; its dynamic type when there is none.
    // For a folder the package types only.
    static QStringList allUTIsForExtension(const QString &extension, bool isDirectory);
    static QString preferredUTIForExtension(const QString &extension);
    // The same for an extension as people write it: a leading dot is passed over.
    static QString utiForFileExtension(const QString &extension);
    // The preferred extension, without dot.
    static QString fileExtensionForUTI(const QString &uti);
    static QString preferredUTIForOSType(const QString &code);

    // The type of the file itself (links and folders told apart first) and its display name.
    static QString utiForFile(const QString &path);
    static QString itemKindForFile(const QString &path);

    // The text shown for a type, in the user's language; also for the pseudo-types "tree_…",
    // "KPExtensionSearch_…" and "KPkMDItemKind_…". Never empty but for an empty identifier.
    static QString displayNameForUTI(const QString &uti);

    static bool isMovie(const QString &path); // by extension: mov, avi, mpg, mp4
    static bool isImage(const QString &path); // by extension: jpg, gif, psd, png, tif

    // The last resort for a file whose type neither its name nor its content tells: what the
    // index holds as its kMDItemContentType (empty: unknown). Install at start-up. When this
    // returns the function installed before is in no call any more, and in none from then on; it
    // may not ask for types itself.
    using IndexLookup = std::function<QString(const QString &path)>;
    static void setIndexLookup(IndexLookup lookup);
    // While it lives this thread does not ask the index, which would only hear what it said before:
    // for the index itself, as it finds out.
    class WithoutIndex
    {
    public:
        WithoutIndex();
        ~WithoutIndex();
        WithoutIndex(const WithoutIndex &) = delete;
        WithoutIndex &operator=(const WithoutIndex &) = delete;
    };
    // Which paths are never read for their type: XPVolumes::isOnSlowVolume unless replaced. Never
    // an empty function.
    using SlowTest = std::function<bool(const QString &path)>;
    static void setSlowVolumeTest(SlowTest test);

    static const QString noFileUTI; // "kUTI_NO_FILE"
    static const QString aliasUTI;  // "com.apple.alias-file": a link
    static const QString folderUTI; // "public.folder"
    static const QString dataUTI;   // "public.data"
    static const QString itemUTI;   // "public.item": what is neither data nor folder

private:
    QString m_uti;
};
