#include "platform/sqlite/SQLiteStore.h"

#include <cctype>
#include <system_error>

namespace platform::sqlite {

namespace {

Database::Mode modeOf(const PersistentStoreDescription& description) {
    if (description.type == PersistentStoreDescription::Type::inMemory)
        return Database::Mode::inMemory;
    return description.readOnly ? Database::Mode::readOnly : Database::Mode::readWrite;
}

const std::filesystem::path& preparedLocation(const PersistentStoreDescription& description) {
    if (description.type == PersistentStoreDescription::Type::sqlite && !description.readOnly &&
        description.url.has_parent_path()) {
        std::error_code ignored;  // opening says what went wrong
        std::filesystem::create_directories(description.url.parent_path(), ignored);
    }
    return description.url;
}

const char* columnType(AttributeType type) {
    switch (type) {
        case AttributeType::string:
            return "TEXT";
        case AttributeType::integer:
        case AttributeType::boolean:
            return "INTEGER";
        case AttributeType::decimal:
            return "REAL";
        case AttributeType::data:
            return "BLOB";
    }
    return "BLOB";
}

const char* sqlOperator(Comparison::Operator op) {
    switch (op) {
        case Comparison::Operator::equal:
            return " IS ";
        case Comparison::Operator::notEqual:
            return " IS NOT ";
        case Comparison::Operator::less:
            return " < ";
        case Comparison::Operator::lessOrEqual:
            return " <= ";
        case Comparison::Operator::greater:
            return " > ";
        case Comparison::Operator::greaterOrEqual:
            return " >= ";
    }
    return " IS ";
}

// A pragma's value as SQL: numbers and plain words as they are, anything
// else as a quoted text.
std::string pragmaValue(const std::string& value) {
    bool plain = !value.empty();
    for (char c : value) {
        if (!std::isalnum(static_cast<unsigned char>(c)) && c != '_' && c != '-' && c != '.')
            plain = false;
    }
    if (plain)
        return value;
    std::string text = "'";
    for (char c : value) {
        text += c;
        if (c == '\'')
            text += '\'';
    }
    return text + "'";
}

std::string columnList(const EntityDescription& entity) {
    std::string columns = "Z_PK, Z_OPT";
    for (const auto& attribute : entity.attributes)
        columns += ", " + sqlIdentifier(attribute.name);
    return columns;
}

StoredRow readRow(const Statement& statement, const EntityDescription& entity) {
    StoredRow row{statement.integer(0), statement.integer(1), {}};
    row.values.reserve(entity.attributes.size());
    for (std::size_t i = 0; i < entity.attributes.size(); ++i)
        row.values.push_back(statement.value(static_cast<int>(i) + 2, entity.attributes[i].type));
    return row;
}

}  // namespace

Store::Store(const PersistentStoreDescription& description, const ObjectModel& model)
    : database_(preparedLocation(description), modeOf(description)),
      readOnly_(description.readOnly) {
    try {
        const auto entities = model.entitiesInConfiguration(description.configuration);
        if (entities.empty())
            throw ObjectStoreError(ObjectStoreError::Code::storeUnopenable,
                                   "The model has no entity for the configuration " +
                                       description.configuration.value_or("(none)"));
        applyPragmas(description.pragmas);
        layOut(entities);
        if (description.analyze)
            database_.execute("ANALYZE");
        if (description.vacuum && !readOnly_)
            database_.execute("VACUUM");
    } catch (const ObjectStoreError& error) {
        if (error.code() == ObjectStoreError::Code::storeUnopenable)
            throw;
        throw ObjectStoreError(
            ObjectStoreError::Code::storeUnopenable,
            "Can't open the store at " + description.url.string() + ": " + error.what());
    }
}

// Write-ahead logging lets readers go on while a save writes, and keeps a
// save that a killed process left unfinished out of the file. Given pragmas
// come after it, so they may choose otherwise.
void Store::applyPragmas(const std::map<std::string, std::string>& pragmas) {
    if (!readOnly_) {
        database_.execute("PRAGMA journal_mode = WAL");
        database_.execute("PRAGMA synchronous = NORMAL");
    }
    for (const auto& [name, value] : pragmas)
        database_.execute("PRAGMA " + sqlIdentifier(name) + " = " + pragmaValue(value));
}

void Store::layOut(const std::vector<const EntityDescription*>& entities) {
    const auto tables = existingTables();
    for (const auto* entity : entities) {
        if (!readOnly_)
            layOutEntity(*entity);
        if (!readOnly_ || tables.count(entity->name))
            entities_.insert(entity->name);
    }
}

// A table per entity; attributes added to the model since become new
// columns, and old columns are left alone.
void Store::layOutEntity(const EntityDescription& entity) {
    database_.execute("CREATE TABLE IF NOT EXISTS " + sqlIdentifier(entity.name) +
                      " (Z_PK INTEGER PRIMARY KEY AUTOINCREMENT, Z_OPT INTEGER NOT NULL)");
    std::set<std::string> columns;
    Statement info(database_, "SELECT name FROM pragma_table_info(?)");
    info.bind(1, entity.name);
    while (info.step())
        columns.insert(std::get<std::string>(info.value(0, AttributeType::string)));
    for (const auto& attribute : entity.attributes) {
        if (!columns.count(attribute.name))
            database_.execute("ALTER TABLE " + sqlIdentifier(entity.name) + " ADD COLUMN " +
                              sqlIdentifier(attribute.name) + " " + columnType(attribute.type));
    }
}

std::set<std::string> Store::existingTables() {
    std::set<std::string> tables;
    Statement statement(database_, "SELECT name FROM sqlite_master WHERE type = 'table'");
    while (statement.step())
        tables.insert(std::get<std::string>(statement.value(0, AttributeType::string)));
    return tables;
}

Statement& Store::prepared(const std::string& sql) {
    auto& statement = statements_[sql];
    if (!statement)
        statement = std::make_unique<Statement>(database_, sql);
    statement->reset();
    return *statement;
}

std::vector<StoredRow> Store::select(const EntityDescription& entity, const FetchRequest& request,
                                     bool whole) {
    std::string sql = "SELECT " + columnList(entity) + " FROM " + sqlIdentifier(entity.name);
    if (!whole) {
        for (std::size_t i = 0; i < request.predicate.size(); ++i) {
            const auto& condition = request.predicate[i];
            sql += (i == 0 ? " WHERE " : " AND ") + sqlIdentifier(condition.key) +
                   sqlOperator(condition.op) + "?";
        }
        sql += " ORDER BY ";
        for (const auto& sort : request.sortDescriptors)
            sql += sqlIdentifier(sort.key) + (sort.ascending ? " ASC, " : " DESC, ");
        sql += "Z_PK";
        if (request.fetchLimit > 0)
            sql += " LIMIT " + std::to_string(request.fetchLimit);
    }
    auto& statement = prepared(sql);
    if (!whole) {
        for (std::size_t i = 0; i < request.predicate.size(); ++i)
            statement.bind(static_cast<int>(i) + 1, request.predicate[i].value);
    }
    std::vector<StoredRow> rows;
    while (statement.step())
        rows.push_back(readRow(statement, entity));
    return rows;
}

std::optional<StoredRow> Store::row(const EntityDescription& entity, std::int64_t primaryKey) {
    auto& statement = prepared("SELECT " + columnList(entity) + " FROM " +
                               sqlIdentifier(entity.name) + " WHERE Z_PK = ?");
    statement.bind(1, primaryKey);
    std::optional<StoredRow> found;
    if (statement.step())
        found = readRow(statement, entity);
    // A statement left on its row would hold the connection's read snapshot
    // open, and hide later saves of other processes.
    statement.reset();
    return found;
}

std::int64_t Store::insert(const EntityDescription& entity,
                           const std::vector<AttributeValue>& values,
                           std::optional<std::int64_t> primaryKey, std::int64_t version) {
    std::string placeholders = "?, ?";
    for (std::size_t i = 0; i < values.size(); ++i)
        placeholders += ", ?";
    auto& statement = prepared("INSERT INTO " + sqlIdentifier(entity.name) + " (" +
                               columnList(entity) + ") VALUES (" + placeholders + ")");
    statement.bind(1, primaryKey ? AttributeValue(*primaryKey) : AttributeValue());
    statement.bind(2, version);
    for (std::size_t i = 0; i < values.size(); ++i)
        statement.bind(static_cast<int>(i) + 3, values[i]);
    statement.run();
    return database_.lastInsertRowID();
}

void Store::update(const EntityDescription& entity, std::int64_t primaryKey,
                   const std::vector<AttributeValue>& values, std::int64_t version) {
    std::string sql = "UPDATE " + sqlIdentifier(entity.name) + " SET Z_OPT = ?";
    for (const auto& attribute : entity.attributes)
        sql += ", " + sqlIdentifier(attribute.name) + " = ?";
    sql += " WHERE Z_PK = ?";
    auto& statement = prepared(sql);
    statement.bind(1, version);
    for (std::size_t i = 0; i < values.size(); ++i)
        statement.bind(static_cast<int>(i) + 2, values[i]);
    statement.bind(static_cast<int>(values.size()) + 2, primaryKey);
    statement.run();
}

void Store::remove(const EntityDescription& entity, std::int64_t primaryKey) {
    auto& statement = prepared("DELETE FROM " + sqlIdentifier(entity.name) + " WHERE Z_PK = ?");
    statement.bind(1, primaryKey);
    statement.run();
}

}  // namespace platform::sqlite
