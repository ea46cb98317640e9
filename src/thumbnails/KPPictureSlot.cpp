#include "KPPictureSlot.h"

#include "ImportDocument.h"
#include "ImportPageDrawing.h"
#include "KPContentTypes.h"
#include "KPFileType.h"
#include "XPFileInfo.h"
#include "XPPath.h"
#include "XPVolumes.h"

// What takes longer than a look at the shared thumbnails on a busy disk is worth a file there.
static constexpr std::chrono::milliseconds slow{5};

ImportWorker &KPPictureMaker::Slot::worker()
{
    if (!m_worker)
        m_worker.emplace(ImportWorker::Setup{
            .program = m_setup.importer, .idle = false, .limit = m_setup.limit});
    return *m_worker;
}

static std::chrono::seconds lifetimeFor(qint64 notBefore, std::chrono::seconds usual)
{
    return std::min(usual, std::chrono::seconds(std::time(nullptr) - notBefore));
}

std::optional<KPPictureMaker::Result> KPPictureMaker::Slot::lookUp(const Request &request,
                                                                   const Prefs &prefs) const
{
    Result result = {request, {}, {}, {}, {}};
    const auto info = XPFileInfo::read(request.path);
    if (!info) {
        result.failure = DocumentFailure::Unreadable;
        return result;
    }
    result.origin = KPFileOrigin::of(*info);
    result.isKnown = request.known == result.origin;
    if (result.isKnown)
        return result;
    result.uti = KPFileType::utiForPath(request.path, XPPath::extension(request.path), info->mode);
    if (!info->isRegular()) {
        result.failure = DocumentFailure::Unsupported;
        return result;
    }
    if (request.page == 1) {
        const auto lifetime = lifetimeFor(request.notBefore, prefs.lifetime);
        if (auto image = m_shared.read(request.path, result.origin, request.side, lifetime)) {
            result.image = *std::move(image);
            return result;
        }
        result.failure = m_shared.failure(request.path, result.origin, lifetime);
    }
    if (!result.failure && XPVolumes::isOnSlowVolume(request.path))
        result.failure = DocumentFailure::Unsupported;
    return result.failure ? std::optional(result) : std::nullopt;
}

std::optional<KPPictureMaker::Result>
KPPictureMaker::Slot::draw(const Request &request, const Prefs &prefs, const std::stop_token &stop)
{
    Result result = {request, {}, {}, DocumentFailure::Unreadable, {}};
    const auto info = XPFileInfo::read(request.path);
    if (!info)
        return result;
    result.origin = KPFileOrigin::of(*info);
    result.uti = KPFileType::utiForPath(request.path, XPPath::extension(request.path), info->mode);
    const auto document = ImportDocument::open(XPPath::encode(request.path), result.uti);
    const auto hello = worker().hello(stop);
    if (stop.stop_requested())
        return {};
    if (!document || !hello)
        return result;
    if (!hello->reads(KPContentTypes::typeTree(result.uti))) {
        result.failure = DocumentFailure::Unsupported;
        return result;
    }
    const int shared =
        request.page == 1 && prefs.storesSlow ? KPSharedThumbnails::sizeFor(request.side) : 0;
    const int pixels = std::min(shared ? shared : request.side, ImportFrame::maximumPixels);
    const auto began = Clock::now();
    auto page = importPage(worker(), *document, request.page, pixels, stop);
    if (page && page->failure == DocumentFailure::Crashed)
        page = importPage(worker(), *document, request.page, pixels, stop);
    if (!page)
        return stop.stop_requested() ? std::nullopt : std::optional(result);
    result.failure = page->failure;
    if (!page->failure)
        result.image = KPSharedThumbnails::scaled(page->image, request.side);
    if (request.page == 1 && (page->failure || (shared && Clock::now() - began >= slow)))
        note(request, result, page->image);
    return result;
}

// A file that has changed meanwhile is noticed by others too, and drawn again.
void KPPictureMaker::Slot::note(const Request &request, const Result &result, const QImage &drawn)
{
    const auto after = XPFileInfo::read(request.path);
    const bool isLasting = result.failure != DocumentFailure::Unsupported &&
                           result.failure != DocumentFailure::Unreadable;
    if (isLasting && after && KPFileOrigin::of(*after) == result.origin)
        m_storing = {request.path, result.origin, drawn,
                     result.failure.value_or(DocumentFailure::Damaged)};
}

void KPPictureMaker::Slot::store()
{
    if (!m_storing)
        return;
    const Storing storing = *std::exchange(m_storing, std::nullopt);
    if (storing.image.isNull())
        m_shared.writeFailure(storing.path, storing.origin, storing.failure);
    else
        m_shared.write(storing.path, storing.origin, storing.image);
}
