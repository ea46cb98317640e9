#pragma once

struct sqlite3;

// Makes FTS5 split and fold text as IndexWords does: tokenizers for one connection.
//
// "murn_words" gives the words; "murn_heads" gives the first one and two characters of each
// word instead (of a query, the text as it is), for an index of short beginnings.
// False: the connection has no FTS5, or memory ran out.
bool registerIndexTokenizers(sqlite3 *db);
