#include "kvreg.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <memory>

#include <sqlite3.h>
#include <sys/stat.h>

#include "kvreg_admin.h"
#include "qlog.h"

namespace {

// Short, because a settings page reads several times before the user sees it.
constexpr int kReadTimeoutMs = 100;
constexpr int kWriteTimeoutMs = 400;

// Writes do not wait for the disk, because waiting would take many times as long.
constexpr char kBegin[] =
    "PRAGMA synchronous = OFF; BEGIN IMMEDIATE; "
    "CREATE TABLE IF NOT EXISTS registry (key TEXT PRIMARY KEY, value TEXT NOT NULL)";
// A table that another program made may contain NULL.
constexpr char kSelect[] = "SELECT value FROM registry WHERE key = ?1 AND value IS NOT NULL";
constexpr char kUpsert[] =
    "INSERT INTO registry (key, value) VALUES (?1, ?2) "
    "ON CONFLICT (key) DO UPDATE SET value = excluded.value";
constexpr char kDelete[] = "DELETE FROM registry WHERE key = ?1";

struct SqliteDeleter {
  void operator()(sqlite3* database) const { sqlite3_close(database); }
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Database = std::unique_ptr<sqlite3, SqliteDeleter>;
using Statement = std::unique_ptr<sqlite3_stmt, SqliteDeleter>;

void LogFailure(const char* action, const char* key, const char* reason) {
  __qlog_print(QLOG_ID_MAIN, QLOG_PRIORITY_ERROR, "KVREG", "cannot %s '%s': %s", action,
               key == nullptr ? "(null)" : key, reason);
}

// The error message of the last failed call on `database`.
const char* Reason(const Database& database) { return sqlite3_errmsg(database.get()); }

// Returns null if KVREG_FILE is not the path of a file.
const char* RegistryFile() {
  const char* file = std::getenv("KVREG_FILE");
  // SQLite does not treat a name such as ":memory:" as a file.
  const bool is_file = file != nullptr && *file != '\0' && *file != ':';
  return is_file ? file : nullptr;
}

// Returns the reason why a call must fail, or null. `complete` is false if an argument is null.
const char* Objection(bool complete) {
  if (RegistryFile() == nullptr) {
    return "KVREG_FILE is not set to a file";
  }
  struct stat status = {};
  if (stat(RegistryFile(), &status) == 0 && !S_ISREG(status.st_mode)) {
    return "not a regular file";
  }
  return complete ? nullptr : "null key or value";
}

bool Open(int flags, int timeout_ms, Database& database) {
  sqlite3* opened = nullptr;
  const int result = sqlite3_open_v2(RegistryFile(), &opened, flags, nullptr);
  database.reset(opened);
  return result == SQLITE_OK && sqlite3_busy_timeout(opened, timeout_ms) == SQLITE_OK;
}

bool Bind(const Statement& statement, int parameter, const char* text) {
  return sqlite3_bind_text(statement.get(), parameter, text, -1, SQLITE_STATIC) == SQLITE_OK;
}

Statement Prepare(const Database& database, const char* sql) {
  sqlite3_stmt* prepared = nullptr;
  sqlite3_prepare_v2(database.get(), sql, -1, &prepared, nullptr);
  return Statement(prepared);
}

bool Execute(const Database& database, const char* sql) {
  return sqlite3_exec(database.get(), sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

bool Run(const Database& database, const char* sql, std::initializer_list<const char*> texts) {
  const Statement statement = Prepare(database, sql);
  int parameter = 0;
  for (const char* text : texts) {
    if (!statement || !Bind(statement, ++parameter, text)) {
      return false;
    }
  }
  return sqlite3_step(statement.get()) == SQLITE_DONE;
}

bool NeverWritten(const char* file) {
  struct stat status = {};
  return stat(file, &status) == 0 ? status.st_size == 0 : errno == ENOENT;
}

// Returns null if `key` has no value. On failure returns fail(reason), which is null.
template <typename Fail>
char* Read(const char* key, const Fail& fail) {
  if (const char* objection = Objection(key != nullptr)) {
    return fail(objection);
  }
  if (NeverWritten(RegistryFile())) {
    return nullptr;
  }
  // Opened for writing: if a writer was killed, the next read must roll back its transaction.
  Database database;
  if (!Open(SQLITE_OPEN_READWRITE, kReadTimeoutMs, database)) {
    return fail(Reason(database));
  }
  const Statement select = Prepare(database, kSelect);
  if (!select || !Bind(select, 1, key)) {
    return fail(Reason(database));
  }
  const int step = sqlite3_step(select.get());
  if (step == SQLITE_DONE) {
    return nullptr;
  }
  if (step != SQLITE_ROW) {
    return fail(Reason(database));
  }
  const unsigned char* text = sqlite3_column_text(select.get(), 0);
  char* value = text == nullptr ? nullptr : strdup(reinterpret_cast<const char*>(text));
  return value == nullptr ? fail("out of memory") : value;
}

}  // namespace

char* kvreg_get_str(const char* key) {
  return Read(key, [key](const char* reason) -> char* {
    LogFailure("read", key, reason);
    return nullptr;
  });
}

int kvreg_set_str(const char* key, const char* value) {
  if (const char* objection = Objection(key != nullptr && value != nullptr)) {
    LogFailure("write", key, objection);
    return -1;
  }
  Database database;
  if (!Open(SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, kWriteTimeoutMs, database) ||
      !Execute(database, kBegin) || !Run(database, kUpsert, {key, value}) ||
      !Execute(database, "COMMIT")) {
    LogFailure("write", key, Reason(database));
    return -1;
  }
  return 0;
}

int kvreg_try(const char* key, char* reason, size_t size) {
  int result = 0;
  std::free(Read(key, [&](const char* why) -> char* {
    std::snprintf(reason, size, "%s", why);
    result = -1;
    return nullptr;
  }));
  return result;
}

int kvreg_unset(const char* key, char* reason, size_t size) {
  if (const char* objection = Objection(key != nullptr)) {
    std::snprintf(reason, size, "%s", objection);
    return -1;
  }
  Database database;
  if (NeverWritten(RegistryFile()) ||
      (Open(SQLITE_OPEN_READWRITE, kWriteTimeoutMs, database) && Run(database, kDelete, {key}))) {
    return 0;
  }
  std::snprintf(reason, size, "%s", Reason(database));
  return -1;
}
