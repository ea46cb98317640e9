#include "KPTagClicks.h"

static bool isType(const KPTagName *tag)
{
    return tag->tagType() == KPTagName::FileType;
}

static KPSearchState::Ptr orBlank(const KPSearchState::Ptr &state)
{
    return state ? state : KPSearchState::blankSearchState();
}

bool KPTagClicks::isSelected(const KPSearchState::Ptr &state, const KPTagName *tag)
{
    if (!state)
        return false;
    return isType(tag) ? state->hasUTTag(tag) : state->hasSearchTag(tag->displayName());
}

bool KPTagClicks::isExcluded(const KPSearchState::Ptr &state, const KPTagName *tag)
{
    if (!state)
        return false;
    return isType(tag) ? tag->tagInArray(state->explicitFileUTITagsToExclude())
                       : state->hasExcludeTag(tag->displayName());
}

KPSearchState::Ptr KPTagClicks::clear(const KPSearchState::Ptr &state, KPTagName *tag)
{
    const auto cleared = orBlank(state);
    return isType(tag) ? cleared->searchStateByClearingUTITag(tag)
                       : cleared->searchStateByClearingTag(tag->displayName());
}

static KPSearchState::Ptr withoutBoth(const KPSearchState::Ptr &state, KPTagName *tag)
{
    auto result = orBlank(state);
    for (int kind = 0; kind < 2; ++kind) {
        if (KPTagClicks::isSelected(result, tag) || KPTagClicks::isExcluded(result, tag))
            result = KPTagClicks::clear(result, tag);
    }
    return result;
}

KPSearchState::Ptr KPTagClicks::showWith(const KPSearchState::Ptr &state, KPTagName *tag)
{
    const auto from = withoutBoth(state, tag);
    // One more type would widen the search.
    return isType(tag) ? from->searchStateWithNewUTIs({tag})
                       : from->searchStateByAddingTag(tag->displayName());
}

KPSearchState::Ptr KPTagClicks::showWithout(const KPSearchState::Ptr &state, KPTagName *tag)
{
    const auto from = withoutBoth(state, tag);
    return isType(tag) ? from->searchStateByAddingUTIExcludeTag(tag)
                       : from->searchStateByAddingExcludeTag(tag->displayName());
}

KPSearchState::Ptr KPTagClicks::click(const KPSearchState::Ptr &state, KPTagName *tag,
                                      bool excludes)
{
    if (excludes)
        return showWithout(state, tag);
    return isSelected(state, tag) ? clear(state, tag) : showWith(state, tag);
}
