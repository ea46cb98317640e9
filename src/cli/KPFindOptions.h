#pragma once

#include "KPCommandLine.h"
#include "KPSearchState.h"

// What the criteria among the options of `murnctl find` make of a search state.
//
// An option takes the place of what the state says of the same thing; all else of the state stays.
// Folders are taken as the index knows them, with no link on the way. Threads: main.
class KPFindOptions
{
public:
    // A mistake in the words.
    static XPResult<KPFindOptions> parse(const KPCommandLine &line);

    KPSearchState::Ptr applyTo(KPSearchState::Ptr state) const;
    // Folders that are not there, which the state names all the same.
    const QList<XPError> &missingFolders() const { return m_missing; }
    // No folder is left that could be looked in.
    bool isWithoutFolder() const;

    static std::vector<KPCommandOption> commandOptions();

private:
    explicit KPFindOptions(const KPCommandLine &line) : m_line(line) {}
    std::optional<XPError> parseFolders();
    std::optional<XPError> parseTypes();
    KPSearchState::Ptr withText(const KPSearchState::Ptr &state) const;
    KPSearchState::Ptr withFolders(const KPSearchState::Ptr &state) const;
    KPSearchState::Ptr withModes(const KPSearchState::Ptr &state) const;

    KPCommandLine m_line;
    QStringList m_tags, m_excludedTags;
    KPSearchState::Tags m_types, m_excludedTypes;
    QStringList m_folders, m_excludedFolders; // that of a listing too
    QString m_date, m_rating;
    QList<XPError> m_missing;
    qsizetype m_missingToLookIn = 0;
};
