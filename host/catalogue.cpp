#include "catalogue.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <system_error>

#include <glib.h>

#include "error.h"
#include "text.h"

namespace {

using Word = std::uint32_t;

constexpr Word kMagic = 0x950412de;

class Catalogue {
 public:
  explicit Catalogue(const std::string& path) : m_path(path) {
    std::error_code error;
    Require(std::filesystem::is_regular_file(path, error), "it is not a regular file");
    std::ifstream file(path, std::ios::binary);
    Require(file.is_open(), "it cannot be opened");
    m_bytes.assign(std::istreambuf_iterator<char>(file), {});
  }

  void Check() {
    Require(m_bytes.size() >= 7 * sizeof(Word), "it ends in its header");
    m_is_swapped = At(0) != kMagic;
    Require(At(0) == kMagic, "it does not begin like a catalogue");
    Require(At(4) == 0, "its revision is not 0");
    const Word count = At(8);
    const Word ids = Table(12, std::uint64_t{2} * count);
    const Word texts = Table(16, std::uint64_t{2} * count);
    CheckHashTable(Table(24, At(20)), At(20), count);
    std::uint64_t ids_end = 0;
    std::uint64_t texts_end = 0;
    std::string previous;
    for (Word i = 0; i < count; ++i) {
      const std::string id = String(ids + (8 * i), ids_end);
      const std::string text = String(texts + (8 * i), texts_end);
      Require(i > 0 || strcasestr(text.c_str(), "charset=UTF-8\n") != nullptr,
              "its charset is not UTF-8");
      Require(i > 0 ? previous < id : id.empty(), "its message ids are not in order");
      previous = id;
    }
  }

 private:
  void Require(bool condition, const char* problem) const {
    if (!condition) {
      throw HostError(Quoted(m_path) + " is damaged: " + problem);
    }
  }

  Word At(std::size_t offset) const {
    Word word = 0;
    std::memcpy(&word, &m_bytes[offset], sizeof(word));
    return m_is_swapped ? GUINT32_SWAP_LE_BE(word) : word;
  }

  // Reads the position of a table from the header at `offset`. The table has `words` words.
  Word Table(std::size_t offset, std::uint64_t words) const {
    Require(At(offset) + words * sizeof(Word) <= m_bytes.size(), "a table is outside the file");
    return At(offset);
  }

  // Requires that the hash table contains each message and an empty element. A search of gettext
  // ends at an empty element.
  void CheckHashTable(std::size_t table, Word size, Word count) const {
    std::set<Word> numbers;  // of messages, from 1; 0 is an empty element
    for (Word i = 0; i < size; ++i) {
      numbers.insert(At(table + (i * sizeof(Word))));
    }
    const std::size_t needed = std::size_t{count} + 1;
    Require(size == 0 || (numbers.size() == needed && *numbers.rbegin() == count),
            "its hash table is damaged");
  }

  // Returns the string whose length and offset are at `entry`. Before the call, `end` is the end of
  // the previous string in the same table. Sets `end` to the end of the returned string.
  std::string String(std::size_t entry, std::uint64_t& end) const {
    const std::size_t length = At(entry);
    const std::size_t offset = At(entry + sizeof(Word));
    Require(offset >= end, "its strings overlap");
    end = std::uint64_t{offset} + length + 1;
    Require(end <= m_bytes.size() && m_bytes[offset + length] == '\0', "a string has no end");
    std::string string = m_bytes.substr(offset, length);
    Require(g_utf8_validate(string.data(), static_cast<gssize>(length), nullptr) != FALSE,
            "a string is not UTF-8");
    return string;
  }

  std::string m_path;
  std::string m_bytes;
  bool m_is_swapped = false;
};

}  // namespace

void CheckCatalogueFile(const std::string& path) { Catalogue(path).Check(); }
