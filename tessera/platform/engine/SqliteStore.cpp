#include <mutex>
#include <system_error>
#include <utility>

#include "tessera/platform/engine/SqliteEngine.h"
#include "tessera/platform/engine/SqliteFormat.h"
#include "tessera/platform/engine/StoreRules.h"
#include "tessera/platform/port/FileWatch.h"
#include "tessera/platform/port/Paths.h"

namespace Platform {
namespace {

std::string nameOf(const std::filesystem::path& file) {
    const std::u8string name = file.u8string();
    return std::string(name.begin(), name.end());
}

std::unique_ptr<SqliteEngine> connectTo(const std::filesystem::path& file, const StoreOptions& options) {
    auto connection = std::make_unique<SqliteConnection>(file, options.writerWait);
    checkStoreFile(*connection);
    configure(*connection, options);
    const std::string locale = SqliteCounters(*connection).store().locale;
    auto engine = std::make_unique<SqliteEngine>(std::move(connection), locale);
    return engine->bringCollationUpToDate() == ERROR_SUCCESS ? std::move(engine) : nullptr;
}

/// Null when storage fails, the reason left with setStoreError.
std::unique_ptr<SqliteEngine> tryToConnect(const std::filesystem::path& file, const StoreOptions& options) {
    try {
        return connectTo(file, options);
    } catch (const SqliteFailure& failure) {
        setStoreError(failure.error, failure.text);
    } catch (const std::bad_alloc&) {
        setStoreError(ERROR_NOT_ENOUGH_MEMORY, "there is not enough memory");
    }
    return nullptr;
}

[[nodiscard]] DWORD fillNewFile(const std::filesystem::path& made, const StoreOptions& options,
                                const std::string& locale) {
    try {
        auto connection = std::make_unique<SqliteConnection>(made, options.writerWait);
        createTables(*connection, SortKeys(locale), locale);
        SqliteEngine engine(std::move(connection), locale);
        return createSystemDatabases(engine);
    } catch (const SqliteFailure& failure) {
        return setStoreError(failure.error, failure.text);
    }
}

/// The write-ahead log that stays when the file of a store in use, or of one whose program was killed, is
/// taken away. SQLite would read it as part of whatever store has that name next.
[[nodiscard]] DWORD refuseForeignLog(const std::filesystem::path& file) {
    const std::filesystem::path log = file.string() + "-wal";
    std::error_code none;
    const auto size = std::filesystem::file_size(log, none);
    // A store that another process has just made may have a log by now.
    if (none || size == 0 || std::filesystem::exists(file, none)) return ERROR_SUCCESS;
    return setStoreError(ERROR_ALREADY_EXISTS, nameOf(log) + ": it is part of a store that was here; put that store " +
                                                   "back, or remove this file to make a new one");
}

/// Makes a whole store under a private name before it gets its own: a process killed on the way leaves
/// no half of one, and of two that make it at once the second takes the first one's.
[[nodiscard]] DWORD createStore(const std::filesystem::path& file, const StoreOptions& options,
                                const std::string& locale) {
    if (const DWORD error = port::makePrivateFolder(file.parent_path())) {
        return setStoreError(error, nameOf(file.parent_path()) + ": the folder cannot be made");
    }
    if (const DWORD error = refuseForeignLog(file)) return error;
    std::filesystem::path made;
    if (const DWORD error = port::makePrivateFileBeside(file, made)) {
        return setStoreError(error, nameOf(file) + ": the store cannot be made");
    }
    if (const DWORD error = fillNewFile(made, options, locale)) {
        std::error_code ignored;
        std::filesystem::remove(made, ignored);
        return error;
    }
    const DWORD error = port::publishFile(made, file);
    if (error == ERROR_SUCCESS || error == ERROR_ALREADY_EXISTS) return ERROR_SUCCESS;
    return setStoreError(error, nameOf(file) + ": the store cannot be made");
}

/// Every engine touches the file once it has committed (SqliteEngine::commit). One that is killed in between
/// lets go of the file, which is seen as well.
class FileCommitWatch : public CommitWatch {
public:
    explicit FileCommitWatch(const std::filesystem::path& file) : file_(file) {}
    int fd() const override { return file_.fd(); }
    void clear() override { file_.clear(); }

private:
    port::FileWatch file_;
};

class SqliteStore : public RecordStore {
public:
    SqliteStore(std::filesystem::path file, const StoreOptions& options, std::unique_ptr<RecordEngine> first)
        : file_(std::move(file)), options_(options), first_(std::move(first)) {}

    std::unique_ptr<RecordEngine> connect() override {
        if (auto first = takeFirst()) return first;
        return tryToConnect(file_, options_);
    }

    std::unique_ptr<CommitWatch> watchCommits() override {
        try {
            return std::make_unique<FileCommitWatch>(file_);
        } catch (const std::system_error& error) {
            setStoreError(ERROR_NOT_ENOUGH_MEMORY, nameOf(file_) + ": it cannot be watched: " + error.code().message());
            return nullptr;
        }
    }

private:
    std::unique_ptr<RecordEngine> takeFirst() {
        const std::lock_guard lock(mutex_);
        return std::move(first_);
    }

    std::filesystem::path file_;
    StoreOptions options_;
    std::mutex mutex_;
    std::unique_ptr<RecordEngine> first_;  // made to see whether the store is any good; the first to ask has it
};

}  // namespace

std::unique_ptr<RecordStore> openSqliteStore(const std::filesystem::path& file, const StoreOptions& options,
                                             const std::string& locale) {
    std::error_code unreachable;
    const std::filesystem::path whole = std::filesystem::absolute(file, unreachable);
    const std::filesystem::file_type type = std::filesystem::status(whole, unreachable).type();
    if (type == std::filesystem::file_type::none) {
        setStoreError(ERROR_ACCESS_DENIED, nameOf(whole) + ": " + unreachable.message());
        return nullptr;
    }
    if (type == std::filesystem::file_type::directory) {
        setStoreError(ERROR_BAD_FORMAT, nameOf(whole) + ": it is a folder");
        return nullptr;
    }
    const bool there = type != std::filesystem::file_type::not_found;
    if (!there && createStore(whole, options, locale) != ERROR_SUCCESS) return nullptr;
    auto first = tryToConnect(whole, options);
    if (!first) return nullptr;
    return std::make_unique<SqliteStore>(whole, options, std::move(first));
}

}  // namespace Platform
