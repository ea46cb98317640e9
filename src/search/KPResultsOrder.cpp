#include "KPResultsOrder.h"

#include <QSet>

KPResultsArrangement KPOrderAsFound::apply(const KPResultsDifference &difference)
{
    auto docs =
        difference.isReset ? std::make_shared<KPDocArray>() : std::make_shared<KPDocArray>(*m_docs);
    if (!difference.removed.empty()) {
        QSet<const KPDoc *> gone;
        for (const auto &told : difference.removed)
            gone.insert(told.doc);
        std::erase_if(*docs, [&](const KPDoc *doc) { return gone.contains(doc); });
    }
    docs->insert(docs->end(), difference.added.begin(), difference.added.end());
    m_docs = std::move(docs);
    return {m_docs, nullptr};
}
