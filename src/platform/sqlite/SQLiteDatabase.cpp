#include "platform/sqlite/SQLiteDatabase.h"

#include <sqlite3.h>

#include "platform/ObjectStore.h"

namespace platform::sqlite {

namespace {

// How long a connection waits for another one's write lock before it gives
// up with "database is locked".
constexpr int busyTimeoutMilliseconds = 10000;

int openFlags(Database::Mode mode) {
    switch (mode) {
        case Database::Mode::readOnly:
            return SQLITE_OPEN_READONLY;
        case Database::Mode::inMemory:
        case Database::Mode::readWrite:
            return SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    }
    return SQLITE_OPEN_READWRITE;
}

}  // namespace

Database::Database(const std::filesystem::path& path, Mode mode) {
    const auto name = mode == Mode::inMemory ? std::string(":memory:") : path.string();
    const int code =
        sqlite3_open_v2(name.c_str(), &db_, openFlags(mode) | SQLITE_OPEN_NOMUTEX, nullptr);
    if (code != SQLITE_OK) {
        std::string message = db_ ? sqlite3_errmsg(db_) : sqlite3_errstr(code);
        sqlite3_close(db_);
        db_ = nullptr;
        throw ObjectStoreError(ObjectStoreError::Code::storeUnopenable,
                               "Can't open the store at " + path.string() + ": " + message);
    }
    sqlite3_busy_timeout(db_, busyTimeoutMilliseconds);
    sqlite3_extended_result_codes(db_, 1);
}

Database::~Database() {
    sqlite3_close(db_);
}

void Database::execute(const std::string& sql) {
    char* error = nullptr;
    const int code = sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, &error);
    if (code != SQLITE_OK) {
        std::string message = error ? error : sqlite3_errstr(code);
        sqlite3_free(error);
        fail(code, message);
    }
}

std::int64_t Database::lastInsertRowID() const {
    return sqlite3_last_insert_rowid(db_);
}

int Database::changes() const {
    return sqlite3_changes(db_);
}

void Database::fail(int code, std::string_view what) const {
    const auto primary = code & 0xFF;
    const auto kind = primary == SQLITE_READONLY ? ObjectStoreError::Code::readOnlyStore
                                                 : ObjectStoreError::Code::storeFailure;
    throw ObjectStoreError(kind, std::string(what));
}

Statement::Statement(Database& database, const std::string& sql) : database_(database) {
    const int code = sqlite3_prepare_v2(database.handle(), sql.c_str(), -1, &statement_, nullptr);
    if (code != SQLITE_OK)
        database.fail(code, sqlite3_errmsg(database.handle()));
}

Statement::~Statement() {
    sqlite3_finalize(statement_);
}

Statement& Statement::bind(int index, const AttributeValue& value) {
    int code = SQLITE_OK;
    if (std::holds_alternative<std::monostate>(value)) {
        code = sqlite3_bind_null(statement_, index);
    } else if (auto* text = std::get_if<std::string>(&value)) {
        code = sqlite3_bind_text(statement_, index, text->data(), static_cast<int>(text->size()),
                                 SQLITE_TRANSIENT);
    } else if (auto* integer = std::get_if<std::int64_t>(&value)) {
        code = sqlite3_bind_int64(statement_, index, *integer);
    } else if (auto* decimal = std::get_if<double>(&value)) {
        code = sqlite3_bind_double(statement_, index, *decimal);
    } else if (auto* flag = std::get_if<bool>(&value)) {
        code = sqlite3_bind_int(statement_, index, *flag ? 1 : 0);
    } else if (auto* bytes = std::get_if<std::vector<std::uint8_t>>(&value)) {
        code = sqlite3_bind_blob(statement_, index, bytes->data(), static_cast<int>(bytes->size()),
                                 SQLITE_TRANSIENT);
    }
    if (code != SQLITE_OK)
        database_.fail(code, sqlite3_errmsg(database_.handle()));
    return *this;
}

bool Statement::step() {
    const int code = sqlite3_step(statement_);
    if (code == SQLITE_ROW)
        return true;
    if (code == SQLITE_DONE)
        return false;
    const std::string message = sqlite3_errmsg(database_.handle());
    sqlite3_reset(statement_);
    database_.fail(code, message);
}

void Statement::run() {
    while (step()) {
    }
    reset();
}

void Statement::reset() {
    sqlite3_reset(statement_);
    sqlite3_clear_bindings(statement_);
}

std::int64_t Statement::integer(int column) const {
    return sqlite3_column_int64(statement_, column);
}

AttributeValue Statement::value(int column, AttributeType type) const {
    if (sqlite3_column_type(statement_, column) == SQLITE_NULL)
        return std::monostate();
    switch (type) {
        case AttributeType::string: {
            auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
            return std::string(text,
                               static_cast<std::size_t>(sqlite3_column_bytes(statement_, column)));
        }
        case AttributeType::integer:
            return static_cast<std::int64_t>(sqlite3_column_int64(statement_, column));
        case AttributeType::decimal:
            return sqlite3_column_double(statement_, column);
        case AttributeType::boolean:
            return sqlite3_column_int(statement_, column) != 0;
        case AttributeType::data: {
            auto* bytes = static_cast<const std::uint8_t*>(sqlite3_column_blob(statement_, column));
            return std::vector<std::uint8_t>(bytes,
                                             bytes + sqlite3_column_bytes(statement_, column));
        }
    }
    return std::monostate();
}

Transaction::Transaction(Database& database) : database_(database) {
    database_.execute("BEGIN IMMEDIATE");
}

Transaction::~Transaction() {
    if (open_)
        sqlite3_exec(database_.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void Transaction::commit() {
    database_.execute("COMMIT");
    open_ = false;
}

std::string sqlIdentifier(std::string_view identifier) {
    std::string text = "\"";
    for (char c : identifier) {
        text += c;
        if (c == '"')
            text += '"';
    }
    return text + "\"";
}

}  // namespace platform::sqlite
