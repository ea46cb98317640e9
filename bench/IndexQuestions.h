#pragma once

#include "IndexCatalog.h"
#include "IndexSource.h"
#include "IndexText.h"

#include <QStringList>

// What people ask an index for, in the words of the made-up corpus, and something to ask: the
// catalog of a million files.
namespace IndexQuestions {

// About 200 parts of names, three letters and longer, from nowhere to everywhere; folded.
const QStringList &nameParts();
// About 300 whole query texts of all kinds as views ask them: words, types, dates, tags, ratings,
// the library, what is left out, alone and joined.
const QStringList &wholeViews();

class MillionSource : public IndexSource
{
public:
    const IndexCatalog &catalog() const override;
    const IndexText *text() const override { return nullptr; }
    int addListener(Listener) override { return 1; } // nothing ever changes
    void removeListener(int) override {}
    void reimport(const QByteArray &) override {}
    bool waitUntilLoaded(const std::function<bool()> &) const override { return true; }
};

} // namespace IndexQuestions
