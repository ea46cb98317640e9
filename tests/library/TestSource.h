#pragma once

#include "KPResultSource.h"

// Results as a test wants them: it emits the signals itself.
class TestSource : public KPResultSource
{
public:
    void setSearchState(const KPSearchState::Ptr &) override { Q_EMIT resultsReset(); }
    void stop() override {}
};

inline KPFoundDocument found(const QString &path, const QStringList &tags = {}, double rating = 0)
{
    KPFoundDocument document;
    document.path = path;
    document.tags = tags;
    document.rating = rating;
    return document;
}
