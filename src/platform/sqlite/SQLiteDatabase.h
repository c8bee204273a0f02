#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "platform/ObjectModel.h"

struct sqlite3;
struct sqlite3_stmt;

namespace platform::sqlite {

// One connection to an SQLite database. Its failures are raised as
// ObjectStoreError, with SQLite's own message.
class Database {
  public:
    enum class Mode { readWrite, readOnly, inMemory };

    // Creates the file when it is missing, unless read-only.
    Database(const std::filesystem::path& path, Mode mode);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    void execute(const std::string& sql);
    std::int64_t lastInsertRowID() const;
    // Rows changed by the last statement.
    int changes() const;
    sqlite3* handle() const { return db_; }

    // Raises storeFailure (or readOnlyStore) for a failed SQLite call.
    [[noreturn]] void fail(int code, std::string_view what) const;

  private:
    sqlite3* db_ = nullptr;
};

// A prepared statement, reset for reuse by each run.
class Statement {
  public:
    Statement(Database& database, const std::string& sql);
    ~Statement();
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    // Binds the parameters from 1 on.
    Statement& bind(int index, const AttributeValue& value);
    // True while there is a row to read.
    bool step();
    // Runs a statement that gives no rows.
    void run();
    void reset();

    std::int64_t integer(int column) const;
    AttributeValue value(int column, AttributeType type) const;

  private:
    Database& database_;
    sqlite3_stmt* statement_ = nullptr;
};

// A write transaction that rolls back unless committed. It takes the write
// lock at once, so two writers queue instead of failing midway.
class Transaction {
  public:
    explicit Transaction(Database& database);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    void commit();

  private:
    Database& database_;
    bool open_ = true;
};

// "name" with embedded quotes doubled, for identifiers in SQL.
std::string sqlIdentifier(std::string_view identifier);

}  // namespace platform::sqlite
