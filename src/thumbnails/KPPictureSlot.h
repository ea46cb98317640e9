#pragma once

#include "ImportWorker.h"
#include "KPPictureMaker.h"

// One thread's way to a picture: the look at the shared thumbnails, and the drawing by an importer
// of its own.
// Threads: one.
class KPPictureMaker::Slot
{
public:
    Slot(const Setup &setup, const KPSharedThumbnails &shared) : m_setup(setup), m_shared(shared) {}

    // Starts the importer, so that the first picture does not wait for it.
    XPResult<ImportHello> warmUp(const std::stop_token &stop) { return worker().hello(stop); }
    bool isWarm() const { return m_worker.has_value(); }
    void rest() { m_worker.reset(); } // ends the importer

    // What is known without reading the document; nothing: it has to be drawn.
    std::optional<Result> lookUp(const Request &request, const Prefs &prefs) const;
    // Nothing: stopped.
    std::optional<Result> draw(const Request &request, const Prefs &prefs,
                               const std::stop_token &stop);
    // Stores what draw() made last, where that is worth it.
    void store();

private:
    struct Storing
    {
        QString path;
        KPFileOrigin origin;
        QImage image; // null: a failure
        DocumentFailure failure;
    };
    ImportWorker &worker();
    void note(const Request &request, const Result &result, const QImage &drawn);

    const Setup &m_setup;
    const KPSharedThumbnails &m_shared;
    std::optional<ImportWorker> m_worker;
    std::optional<Storing> m_storing;
};
