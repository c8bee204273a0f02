// Inserting and fetching 10,000 objects through the object store, beside
// the same rows written and read with SQLite directly: the same table, the
// same journal settings, one transaction, one prepared statement. The gap
// between each pair is what the objects, the change tracking and the
// conflict checks cost.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <filesystem>
#include <string>
#include <vector>

#include "objectstore/ScratchObjectStore.h"

namespace {

constexpr int objectCount = 10'000;

// The benchmark's model in a scratch folder, with the store installed.
class Scratch : public objectstore::ScratchObjectStore {
  public:
    Scratch()
        : ScratchObjectStore(
              "entity Book\n  title: string\n  pages: integer = 0\n  rating: decimal?\n") {}

    std::filesystem::path file(const std::string& name) const { return root() / name; }
    std::unique_ptr<quillbox::CoreDataStack> stack(const std::string& fileName) const {
        return makeStack(fileStore(file(fileName)));
    }
};

std::string titleOf(int i) {
    return "Book " + std::to_string((i * 7919) % objectCount);
}

void insertObjects(platform::ManagedObjectContext& context) {
    for (int i = 0; i < objectCount; ++i) {
        auto book = context.insertNewObject("Book");
        book->setValue("title", titleOf(i));
        book->setValue("pages", std::int64_t{i});
        book->setValue("rating", i * 0.5);
    }
    context.save();
}

void objectStoreInsert(benchmark::State& state) {
    Scratch scratch;
    int run = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto stack = scratch.stack("insert" + std::to_string(run++) + ".sqlite");
        auto context = stack->newBackgroundContext();
        state.ResumeTiming();
        insertObjects(*context);
    }
    state.SetItemsProcessed(state.iterations() * objectCount);
}
BENCHMARK(objectStoreInsert)->Unit(benchmark::kMillisecond);

void objectStoreFetch(benchmark::State& state) {
    Scratch scratch;
    auto stack = scratch.stack("fetch.sqlite");
    insertObjects(*stack->newBackgroundContext());
    for (auto _ : state) {
        auto context = stack->newBackgroundContext();  // nothing cached from before
        auto books = context->fetch({"Book", {}, {{"title", true}}, 0});
        std::int64_t pages = 0;
        for (const auto& book : books)
            pages += std::get<std::int64_t>(book->value("pages"));
        benchmark::DoNotOptimize(pages);
    }
    state.SetItemsProcessed(state.iterations() * objectCount);
}
BENCHMARK(objectStoreFetch)->Unit(benchmark::kMillisecond);

// The plain SQLite side: the layout the store gives an entity.
sqlite3* openPlain(const std::filesystem::path& path) {
    sqlite3* db = nullptr;
    sqlite3_open(path.c_str(), &db);
    sqlite3_exec(db,
                 "PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL;"
                 "CREATE TABLE IF NOT EXISTS Book (Z_PK INTEGER PRIMARY KEY AUTOINCREMENT,"
                 " Z_OPT INTEGER NOT NULL, title TEXT, pages INTEGER, rating REAL)",
                 nullptr, nullptr, nullptr);
    return db;
}

void insertPlain(sqlite3* db) {
    sqlite3_exec(db, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
    sqlite3_stmt* insert = nullptr;
    sqlite3_prepare_v2(db, "INSERT INTO Book (Z_OPT, title, pages, rating) VALUES (1, ?, ?, ?)", -1,
                       &insert, nullptr);
    for (int i = 0; i < objectCount; ++i) {
        const auto title = titleOf(i);
        sqlite3_bind_text(insert, 1, title.c_str(), static_cast<int>(title.size()),
                          SQLITE_TRANSIENT);
        sqlite3_bind_int64(insert, 2, i);
        sqlite3_bind_double(insert, 3, i * 0.5);
        sqlite3_step(insert);
        sqlite3_reset(insert);
    }
    sqlite3_finalize(insert);
    sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
}

void plainSQLiteInsert(benchmark::State& state) {
    Scratch scratch;
    int run = 0;
    for (auto _ : state) {
        state.PauseTiming();
        sqlite3* db = openPlain(scratch.file("plain" + std::to_string(run++) + ".sqlite"));
        state.ResumeTiming();
        insertPlain(db);
        state.PauseTiming();
        sqlite3_close(db);
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * objectCount);
}
BENCHMARK(plainSQLiteInsert)->Unit(benchmark::kMillisecond);

struct PlainBook {
    std::int64_t key;
    std::string title;
    std::int64_t pages;
    double rating;
};

void plainSQLiteFetch(benchmark::State& state) {
    Scratch scratch;
    sqlite3* db = openPlain(scratch.file("plainfetch.sqlite"));
    insertPlain(db);
    for (auto _ : state) {
        sqlite3_stmt* select = nullptr;
        sqlite3_prepare_v2(
            db, "SELECT Z_PK, Z_OPT, title, pages, rating FROM Book ORDER BY title, Z_PK", -1,
            &select, nullptr);
        std::vector<PlainBook> books;
        while (sqlite3_step(select) == SQLITE_ROW) {
            books.push_back({sqlite3_column_int64(select, 0),
                             reinterpret_cast<const char*>(sqlite3_column_text(select, 2)),
                             sqlite3_column_int64(select, 3), sqlite3_column_double(select, 4)});
        }
        sqlite3_finalize(select);
        std::int64_t pages = 0;
        for (const auto& book : books)
            pages += book.pages;
        benchmark::DoNotOptimize(pages);
    }
    sqlite3_close(db);
    state.SetItemsProcessed(state.iterations() * objectCount);
}
BENCHMARK(plainSQLiteFetch)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
