#include "IndexTextTokenizer.h"

#include "IndexTextExpression.h"
#include "IndexWords.h"

#include <sqlite3.h>
#include <unicode/utf8.h>

using TakeToken = int (*)(void *context, int flags, const char *token, int size, int start,
                          int end);

namespace {

struct Receiver
{
    void *context;
    TakeToken take;
};

} // namespace

static int createTokenizer(void *, const char **, int, Fts5Tokenizer **out)
{
    static char nothing = 0; // they hold no state, but must not be null
    *out = reinterpret_cast<Fts5Tokenizer *>(&nothing);
    return SQLITE_OK;
}

static void deleteTokenizer(Fts5Tokenizer *)
{
}

static int tokenizeWords(Fts5Tokenizer *, void *context, int, const char *text, int size,
                         TakeToken take)
{
    Receiver receiver{context, take};
    return IndexWords::forEach(text, size, &receiver,
                               [](void *to, const char *word, int length, int start, int end) {
                                   const auto *inner = static_cast<Receiver *>(to);
                                   return inner->take(inner->context, 0, word, length, start, end);
                               });
}

static int tokenizeHeads(Fts5Tokenizer *, void *context, int flags, const char *text, int size,
                         TakeToken take)
{
    if (flags & FTS5_TOKENIZE_QUERY)
        return size > 0 ? take(context, 0, text, size, 0, size) : SQLITE_OK;
    Receiver receiver{context, take};
    return IndexWords::forEach(
        text, size, &receiver, [](void *to, const char *word, int length, int start, int end) {
            const auto *inner = static_cast<Receiver *>(to);
            int at = 0;
            int result = SQLITE_OK;
            for (int n = 0; n < IndexTextExpression::longestHead && at < length && !result; ++n) {
                U8_FWD_1(word, at, length);
                result = inner->take(inner->context, 0, word, at, start, end);
            }
            return result;
        });
}

static fts5_api *apiOf(sqlite3 *db)
{
    fts5_api *api = nullptr;
    sqlite3_stmt *statement = nullptr;
    if (sqlite3_prepare_v2(db, "SELECT fts5(?1)", -1, &statement, nullptr) == SQLITE_OK) {
        sqlite3_bind_pointer(statement, 1, static_cast<void *>(&api), "fts5_api_ptr", nullptr);
        sqlite3_step(statement);
    }
    sqlite3_finalize(statement);
    return api;
}

bool registerIndexTokenizers(sqlite3 *db)
{
    fts5_api *api = apiOf(db);
    if (!api)
        return false;
    fts5_tokenizer words = {createTokenizer, deleteTokenizer, tokenizeWords};
    fts5_tokenizer heads = {createTokenizer, deleteTokenizer, tokenizeHeads};
    return api->xCreateTokenizer(api, "murn_words", nullptr, &words, nullptr) == SQLITE_OK &&
           api->xCreateTokenizer(api, "murn_heads", nullptr, &heads, nullptr) == SQLITE_OK;
}
