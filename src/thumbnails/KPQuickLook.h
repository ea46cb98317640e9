#pragma once

#include "KPPictureMaker.h"

#include <QCache>
#include <QHash>
#include <QSet>
#include <QTimer>
#include <functional>

class ImportPause;
class KPDoc;
class QColor;
class QPainter;

// The cache of thumbnails: what documents look like, for every view that shows them.
//
// A view says with want() what it has in sight and what comes next; what it wanted before and is
// not done is dropped. Pictures come from memory, from the desktop's shared thumbnails, or from
// the importer in its cage; never is a document opened in this process for its looks. Until the
// right one is there, look() has what was made for another size or before the last change.
//
// Memory: pictures of "KPCacheSizeMB", the least recently drawn going first, none older than
// "KPCacheDaysOld". They lie under the record's cacheID and its path, so that a changed file is
// noticed and equal names in two folders are told apart; a file that is moved keeps its picture:
// clearCacheForPath() lets go of the path only, and whether it is the same file is checked before
// it is taken for that of another path.
// Sizes are device pixels of the longer side, but for draw(), which takes points.
// Threads: main, but for clearCacheForPath(). Its threads are owned here; the destructor stops and
// joins them, with the importers that they have.
class KPQuickLook : public QObject
{
    Q_OBJECT
    Q_MOC_INCLUDE("KPDoc.h")

public:
    struct Setup
    {
        KPPictureMaker::Setup maker;
        // Importing for the index stands still while pictures in sight are made; null: it does
        // not. Outlives this.
        ImportPause *pause = nullptr;
    };
    struct Look
    {
        QImage picture; // null: none yet, or none at all
        QString uti;    // the content type; empty: not known yet
        int side = 0;   // what the picture was made for; 0: nothing is known yet
        std::optional<DocumentFailure> failure; // why there is none
    };
    struct Wanted
    {
        KPDoc *doc = nullptr;
        int side = 0;
        int page = 1;
        // Large, for looking at closely: kept beside the cache for as long as it is wanted.
        bool isHeld = false;
    };

    explicit KPQuickLook(const Setup &setup);
    ~KPQuickLook() override;

    // The program's one cache, from initializeGlobals() to shutDown().
    static void initializeGlobals(const Setup &setup) XP_REQUIRES(xpGuiThread);
    static KPQuickLook &instance();
    static void shutDown() XP_REQUIRES(xpGuiThread);
    // The usual: our importer, the user's shared thumbnails.
    static Setup usualSetup(ImportPause *pause);
    // Takes the settings as they are now. Without an instance nothing happens, as below.
    static void updateCachedPrefs() XP_REQUIRES(xpGuiThread);
    // Whatever is known of the file at this path may be wrong. Any thread.
    static void clearCacheForPath(const QString &path);

    // Draws documents anew, whatever there is of them: here, and among the shared thumbnails. When
    // they come into sight; what there is is shown until then.
    void rebuild(const QList<KPDoc *> &docs);
    void rebuildAll();

    // In the order in which they should come. Nothing is left of it when the view is gone.
    void want(const QObject *view, std::vector<Wanted> visible, std::vector<Wanted> next = {});
    Look look(const KPDoc &doc, int page = 1) const;
    // The same, of those that are held the largest, else what the cache has.
    Look heldLook(const KPDoc &doc, int page = 1) const;
    // What is degraded, in the user's language: no importer, or less of a cage than there should
    // be.
    QString problem() const { return m_problem; }
    // Something in sight is still to come.
    bool isBusy() const { return !m_missing.isEmpty(); }

    // Draws the picture in the middle of `square` (points), never enlarged, with a border where
    // the settings want one for this type; returns where it is. Null: there is none.
    QRectF draw(QPainter &painter, const QRectF &square, const KPDoc &doc, const QColor &border,
                int page = 1) const;

Q_SIGNALS:
    void looksReady(const QList<KPDoc *> &docs);
    void settled(); // everything in sight is there
    void problemChanged();
    void resultsWaiting(QPrivateSignal);
    void pathsCleared(QPrivateSignal);

private:
    enum class Kind : quint8 { Image, Movie, Other };
    struct Entry
    {
        Look look;
        KPFileOrigin origin;
        QString path;    // empty: was let go of
        qint64 made = 0; // seconds since 1970
        Kind kind = Kind::Other;
        bool isOutdated = false; // to be made anew; shown until it is
    };
    struct View
    {
        std::vector<Wanted> visible;
        std::vector<Wanted> next;
    };
    struct Prefs
    {
        qint64 lifetime = 0; // seconds
        bool bordersImages = true;
        bool bordersMovies = true;
        bool bordersOther = true;
        bool bordersLarge = false;
    };
    class Asking;

    static QString keyOf(const KPDoc &doc, int page, bool isHeld = false);
    static bool isHeld(const QString &key);
    static QString keyWithoutPath(const KPDoc &doc, int page);
    const Entry *entryOf(const KPDoc &doc, int page) const;
    const Entry *entryAt(const QString &key) const;
    void letGoOfHeld();
    void outdate(const std::function<bool(const QString &key)> &isOne);
    bool wasJustUnreadable(const QString &key);
    bool satisfies(const Entry &entry, int side) const;
    bool hasBorder(const Entry &entry, double side) const;
    void readPrefs();
    void ask();
    void receive();
    void remember(const KPPictureMaker::Result &result);
    void letGoOfPaths();
    void lookAtCage();

    ImportPause *const m_pause;
    QCache<QString, Entry> m_cache; // by keyOf() or keyWithoutPath(); cost in bytes
    QHash<QString, std::shared_ptr<const Entry>> m_held;
    QHash<const QObject *, View> m_views;
    QHash<QString, qint64> m_rebuilt; // paths, and since when shared thumbnails count
    qint64 m_rebuiltAll = 0;
    QMultiHash<QString, KPDoc *> m_waiting; // who waits for what
    QHash<QString, int> m_missing;          // visible and without an answer: the side that it needs
    QHash<QString, qint64> m_unreadable;    // when it was tried, in seconds since 1970
    QString m_problem;
    bool m_knowsCage = false;
    Prefs m_prefs;
    QTimer m_cuttingOff; // what is still drawn a moment after nobody wants it any more
    XPMutex m_mutex;
    QSet<QString> m_cleared XP_GUARDED_BY(m_mutex);
    KPPictureMaker m_maker; // last: stopped before what it tells
};
