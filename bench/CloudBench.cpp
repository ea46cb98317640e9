// A cloud of tags: choosing, fitting and painting 500 words.
#include "KPCloudContents.h"
#include "MurnBench.h"
#include "XPTextCloudView.h"

#include <QPixmap>

namespace {

class NoDelegate : public XPCloudViewDelegate
{
public:
    QString cloudViewFilterString() const override { return {}; }
    void cloudViewItemClicked(const XPCloudItem &, Qt::KeyboardModifiers) override {}
    bool cloudViewAcceptsDrop(const XPCloudItem &) const override { return false; }
    void cloudViewPerformDragOperation(const XPCloudItem &, const QStringList &) override {}
    QMenu *cloudViewMenuForItem(const XPCloudItem &) override { return nullptr; }
    QMimeData *cloudViewMimeDataForItem(const XPCloudItem &) override { return nullptr; }
    QString cloudViewTipForItem(const XPCloudItem &) const override { return {}; }
    void cloudViewShowStatus(const QString &) override {}
};

// 600 tags over 100,000 documents: few on many, many on few.
KPSearcher::TagSets manyTags()
{
    KPSearcher::TagSets sets;
    for (int i = 0; i < 600; ++i) {
        const QString name = QStringLiteral("%1 tag").arg((i * 7919) % 1000);
        sets.append({KPTagName::tagNameForUserEnteredTag(name), 100'000 / (i + 2)});
    }
    return sets;
}

} // namespace

// What a delivery costs the main thread. In the view, so with its fonts; the words are known to
// them after the first time.
static void fitCloud(benchmark::State &state)
{
    NoDelegate delegate;
    XPTextCloudView view(&delegate);
    view.resize(260, static_cast<int>(state.range(0)));
    const KPSearcher::TagSets tags = manyTags();
    XPCloudLayout layout = view.layoutForMeasuring();
    for ([[maybe_unused]] auto _ : state) {
        const KPCloudContents contents(tags, KPCloudContents::userTags, {}, nullptr);
        contents.fill(layout, view.height());
        view.setItems(layout.drawnItems());
    }
    state.SetItemsProcessed(state.iterations());
    XPBench::itemsPerSecondAtLeast(state, 250); // 4 ms
}
BENCHMARK(fitCloud)->Arg(600)->Arg(100'000)->Unit(benchmark::kMillisecond);

static void paintCloud(benchmark::State &state)
{
    NoDelegate delegate;
    XPTextCloudView view(&delegate);
    const KPCloudContents contents(manyTags(), KPCloudContents::userTags, {}, nullptr);
    view.resize(700, 900);
    XPCloudLayout layout = view.layoutForMeasuring();
    contents.fill(layout, view.height());
    view.setItems(layout.drawnItems());
    QPixmap picture(view.size());
    for ([[maybe_unused]] auto _ : state)
        view.render(&picture);
    state.SetItemsProcessed(state.iterations());
    XPBench::itemsPerSecondAtLeast(state, 250);
}
BENCHMARK(paintCloud)->Unit(benchmark::kMillisecond);
