// The reading side of IndexTextStore.
#include "IndexTextStore.h"
#include "XPLog.h"

#include <algorithm>
#include <sqlite3.h>

using Phrase = IndexTextExpression::Phrase;

// Documents looked up under one lock.
static constexpr size_t documentsATime = 1024;
// So few are asked for one by one.
static constexpr size_t fewDocuments = 16;

struct IndexTextStore::Question
{
    Question(const IndexTextExpression &asked, qsizetype most, const std::vector<IndexItem> *among)
        : expression(asked), limit(most > 0 ? static_cast<size_t>(most) : 0),
          restricted(among != nullptr)
    {
    }

    const IndexTextExpression &expression;
    const size_t limit;             // 0: none
    const bool restricted;          // to `documents`
    std::vector<quint32> documents; // ascending
    quint32 first = 0;              // the first document there was when the question was asked
    quint32 began = 0;              // the first one put after that
    std::vector<IndexItem> items;
    std::vector<IndexItem> replaced; // matched by a text that was replaced meanwhile

    bool isFull() const { return limit > 0 && items.size() >= limit; }
};

// --- Connections: as many as there are threads asking

std::unique_ptr<IndexTextReader> IndexTextStore::takeReader() const
{
    std::unique_ptr<IndexTextReader> reader;
    {
        const XPLocker lock(m_mutex);
        if (!m_readers.empty()) {
            reader = std::move(m_readers.back());
            m_readers.pop_back();
        }
    }
    if (!reader || !reader->isCurrent()) {
        auto opened = IndexTextReader::open(m_path);
        if (!opened)
            return nullptr;
        reader = *std::move(opened);
    }
    return reader;
}

void IndexTextStore::readFailed(const IndexTextReader &reader) const
{
    qCWarning(xpLog).noquote() << reader.failure().message;
    // One that was replaced meanwhile only looks damaged.
    if (!reader.isDamaged() || !reader.isCurrent())
        return;
    const XPLocker lock(m_damagedMutex);
    if (m_damaged)
        m_damaged(reader.inode());
}

void IndexTextStore::giveBack(std::unique_ptr<IndexTextReader> reader) const
{
    const XPLocker lock(m_mutex);
    m_readers.push_back(std::move(reader));
}

// --- Questions

std::vector<IndexItem> IndexTextStore::itemsMatching(const MDPredicate::Value &value,
                                                     qsizetype limit,
                                                     const std::vector<IndexItem> *among) const
{
    const IndexTextExpression expression(value);
    if (!expression.isPresence() && expression.phrases().empty())
        return {};
    // What happens to the file meanwhile may overtake an attempt; twice in a row is damage.
    for (int attempt = 0; attempt < 3; ++attempt) {
        std::unique_ptr<IndexTextReader> reader = takeReader();
        if (!reader)
            return {};
        Question question(expression, limit, among);
        const bool begun = begin(*reader, question, among);
        const bool asked = begun && (expression.isPresence() || ask(*reader, question));
        if (begun)
            reader->end();
        if (!asked) {
            readFailed(*reader);
            continue;
        }
        giveBack(std::move(reader));
        if (!isOvertaken(question))
            return answer(value, std::move(question));
    }
    return {};
}

// Fixes what is read of the file, and which documents were known then.
bool IndexTextStore::begin(IndexTextReader &reader, Question &question,
                           const std::vector<IndexItem> *among) const
{
    XPLocker lock(m_mutex);
    if (m_writable) {
        // Before anything is read: what is put in from here on shows by its number.
        prepare(question, among);
        lock.unlock();
        return reader.begin();
    }
    // What another process put in since, of just the state that is asked: of a later one the
    // documents would not be known. Under one lock, so that no other thread knows later ones.
    if (!reader.begin())
        return false;
    if (m_documentsFile != reader.inode()) // another file stands in the place of the one before
        m_documents.clear();
    m_documentsFile = reader.inode();
    if (!reader.readDocuments(m_documents)) {
        reader.end();
        return false;
    }
    prepare(question, among);
    return true;
}

void IndexTextStore::prepare(Question &question, const std::vector<IndexItem> *among) const
{
    question.first = m_documents.first();
    question.began = m_documents.next();
    if (among) {
        for (const IndexItem item : *among) {
            const IndexTextDocuments::Entry *entry = m_documents.entryOf(item);
            if (entry && entry->bytes > 0)
                question.documents.push_back(m_documents.documentOf(item));
        }
        std::sort(question.documents.begin(), question.documents.end());
    }
    if (question.expression.isPresence() && !among)
        question.items = m_documents.items(question.began);
    else if (question.expression.isPresence())
        question.items = *among; // those without a text are left out below
}

std::vector<IndexItem> IndexTextStore::answer(const MDPredicate::Value &value,
                                              Question &&question) const
{
    if (question.expression.isPresence() && question.restricted)
        std::erase_if(question.items, [this](IndexItem item) { return !hasText(item); });
    if (!question.replaced.empty() && !question.isFull()) {
        // Saved anew between the look into the index and the look at the table of documents.
        const std::vector<IndexItem> again = itemsMatching(value, 0, &question.replaced);
        question.items.insert(question.items.end(), again.begin(), again.end());
        // Some may have been found by their new text at once.
        std::sort(question.items.begin(), question.items.end());
        question.items.erase(std::unique(question.items.begin(), question.items.end()),
                             question.items.end());
    }
    if (question.isFull())
        question.items.resize(question.limit);
    return std::move(question.items);
}

// A table was dropped meanwhile: what was asked for may have moved from it to the next unseen.
bool IndexTextStore::isOvertaken(const Question &question) const
{
    const XPLocker lock(m_mutex);
    return m_documents.first() != question.first;
}

// Takes over the items of documents that matched; false when there are enough.
bool IndexTextStore::addItems(const std::vector<quint32> &documents, Question &question) const
{
    const XPLocker lock(m_mutex);
    for (const quint32 document : documents) {
        // Put in since: its item may already stand among the answers by the text before.
        if (const IndexItem owner = m_documents.ownerOf(document);
            owner != 0 && m_documents.documentOf(owner) >= question.began)
            question.replaced.push_back(owner);
        else if (const IndexItem item = m_documents.itemOf(document))
            question.items.push_back(item);
    }
    return !question.isFull();
}

bool IndexTextStore::ask(IndexTextReader &reader, Question &question) const
{
    if (question.restricted && question.documents.empty())
        return true;
    return question.expression.phrases().size() > 1 ? askPhrases(reader, question)
                                                    : askPhrase(reader, question);
}

bool IndexTextStore::askPhrase(IndexTextReader &reader, Question &question) const
{
    const Phrase &phrase = question.expression.phrases().front();
    std::vector<quint32> found;
    const auto take = [&](quint32 document) {
        if (question.restricted &&
            !std::binary_search(question.documents.begin(), question.documents.end(), document))
            return true;
        found.push_back(document);
        const size_t enough =
            question.limit > 0 ? std::min(documentsATime, question.limit) : documentsATime;
        return found.size() < enough || addItems(std::exchange(found, {}), question);
    };
    bool good = true;
    if (!question.restricted) {
        good = reader.find(phrase, 0, ~0U, take);
    } else if (question.documents.size() > fewDocuments ||
               (IndexTextExpression::isBeginning(phrase.back()) &&
                IndexTextExpression::headOf(phrase).isEmpty())) {
        // A beginning that is not kept as such costs all its words at each asking.
        good = reader.find(phrase, question.documents.front(), question.documents.back(), take);
    } else {
        for (size_t i = 0; good && i < question.documents.size(); ++i)
            good = reader.find(phrase, question.documents[i], question.documents[i], take);
    }
    addItems(found, question);
    return good;
}

bool IndexTextStore::askPhrases(IndexTextReader &reader, Question &question) const
{
    std::vector<quint32> common;
    bool first = true;
    for (const Phrase &phrase : question.expression.phrases()) {
        std::vector<quint32> found;
        const quint32 low = question.restricted ? question.documents.front() : 0;
        const quint32 high = question.restricted ? question.documents.back() : ~0U;
        if (!reader.find(phrase, low, high, [&](quint32 document) {
                found.push_back(document);
                return true;
            }))
            return false;
        if (!std::exchange(first, false)) {
            std::vector<quint32> both;
            std::set_intersection(common.begin(), common.end(), found.begin(), found.end(),
                                  std::back_inserter(both));
            found.swap(both);
        }
        common.swap(found);
    }
    if (question.restricted)
        std::erase_if(common, [&](quint32 document) {
            return !std::binary_search(question.documents.begin(), question.documents.end(),
                                       document);
        });
    addItems(common, question);
    return true;
}
