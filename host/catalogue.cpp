#include "catalogue.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string_view>
#include <system_error>

#include <glib.h>

#include "error.h"

namespace {

using Word = std::uint32_t;

constexpr Word kMagic = 0x950412de;

// The words of the header. The tables of ids and texts have a length and an offset for each string.
enum HeaderWord : std::uint8_t {
  kMagicWord,
  kRevision,
  kCount,
  kIds,
  kTexts,
  kHashSize,
  kHashTable,
  kHeaderWords
};

class Catalogue {
 public:
  explicit Catalogue(std::string_view bytes) : m_bytes(bytes) {}

  void Check() {
    CheckHeader();
    CheckHashTable();
    std::string_view previous;
    for (Word i = 0; i < Header(kCount); ++i) {
      const std::string_view id = String(kIds, i, m_ids_end);
      const std::string_view text = String(kTexts, i, m_texts_end);
      const bool is_header = id.empty() && strcasestr(text.data(), "charset=UTF-8\n") != nullptr;
      Require(i == 0 ? is_header : previous < id,
              i == 0 ? "its first text is not a header with the charset UTF-8"
                     : "its message ids are not in order");
      previous = id;
    }
  }

 private:
  static void Require(bool condition, const char* problem) {
    if (!condition) {
      throw HostError(problem);
    }
  }

  Word At(std::size_t offset) const {
    Word word = 0;
    std::memcpy(&word, m_bytes.data() + offset, sizeof(word));
    return m_is_swapped ? GUINT32_SWAP_LE_BE(word) : word;
  }

  Word Header(HeaderWord word) const { return At(word * sizeof(Word)); }

  void CheckHeader() {
    Require(m_bytes.size() >= kHeaderWords * sizeof(Word), "it ends in its header");
    m_is_swapped = Header(kMagicWord) != kMagic;
    Require(Header(kMagicWord) == kMagic, "it does not begin like a catalogue");
    Require(Header(kRevision) == 0, "its revision is not 0");
    Require(Header(kCount) > 0, "it is empty");
    RequireTable(kIds, std::uint64_t{2} * Header(kCount));
    RequireTable(kTexts, std::uint64_t{2} * Header(kCount));
    RequireTable(kHashTable, Header(kHashSize));
  }

  void RequireTable(HeaderWord offset, std::uint64_t words) const {
    const bool is_inside = Header(offset) + words * sizeof(Word) <= m_bytes.size();
    Require(is_inside, "a table is outside the file");
  }

  // The table has each message once, and an empty element, at which gettext stops to search.
  void CheckHashTable() const {
    std::multiset<Word> numbers;
    for (Word i = 0; i < Header(kHashSize); ++i) {
      numbers.insert(At(Header(kHashTable) + i * sizeof(Word)));
    }
    const bool has_empty = numbers.erase(0) > 0;
    Word expected = 0;
    const bool is_complete =
        numbers.size() == Header(kCount) &&
        std::ranges::all_of(numbers, [&expected](Word number) { return number == ++expected; });
    Require(Header(kHashSize) == 0 || (has_empty && is_complete), "its hash table is damaged");
  }

  // Returns string `i` of a table. `end` is where the string before it ends, and is moved.
  std::string_view String(HeaderWord table, Word i, std::uint64_t& end) const {
    const std::size_t entry = Header(table) + i * 2 * sizeof(Word);
    const std::uint64_t length = At(entry);
    const std::uint64_t offset = At(entry + sizeof(Word));
    Require(offset + length < m_bytes.size(), "a string is outside the file");
    Require(offset >= end, "its strings overlap");
    end = offset + length + 1;
    const std::string_view string = m_bytes.substr(offset, length);
    Require(m_bytes[offset + length] == '\0', "a string has no end");
    Require(g_utf8_validate(string.data(), static_cast<gssize>(length), nullptr) != FALSE,
            "a string is not UTF-8");
    return string;
  }

  std::string_view m_bytes;
  bool m_is_swapped = false;
  std::uint64_t m_ids_end = 0;
  std::uint64_t m_texts_end = 0;
};

}  // namespace

void CheckCatalogueFile(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) {
    throw HostError("it is not a regular file");
  }
  std::ifstream file(path, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  if (!file.good() && !file.eof()) {
    throw HostError("it cannot be read");
  }
  Catalogue(bytes).Check();
}
