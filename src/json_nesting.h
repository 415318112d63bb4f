// A guard for recursive JSON parsers: how deep a text nests, found without recursion.
#ifndef MORVITH_JSON_NESTING_H
#define MORVITH_JSON_NESTING_H

#include <cstddef>
#include <string_view>

// Whether arrays and objects in `json` nest deeper than `limit`. Exact for plain JSON. Where the
// text leaves that (comments, single quotes, lone surrogates), a lenient parser may read it
// otherwise, so from there on nothing closes: the answer may be true for a text that nests less,
// never false for one that nests deeper.
bool NestsDeeperThan(std::string_view json, std::size_t limit);

#endif
