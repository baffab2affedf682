#include <mutex>
#include <system_error>
#include <utility>

#include "tessera/platform/engine/SqliteEngine.h"
#include "tessera/platform/engine/SqliteFormat.h"
#include "tessera/platform/engine/SqlitePlace.h"
#include "tessera/platform/engine/StoreRules.h"
#include "tessera/platform/port/ErrorText.h"
#include "tessera/platform/port/FileWatch.h"
#include "tessera/platform/port/Paths.h"

namespace Platform {
namespace {

std::unique_ptr<SqliteEngine> connectTo(const std::filesystem::path& file, const StoreOptions& options) {
    auto connection = std::make_unique<SqliteConnection>(file, options.writerWait);
    checkStoreFile(*connection);
    configure(*connection, options);
    const std::string locale = SqliteCounters(*connection).store().locale;
    auto engine = std::make_unique<SqliteEngine>(std::move(connection), locale);
    return engine->bringUpToDate() == ERROR_SUCCESS ? std::move(engine) : nullptr;
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

void fillNewStore(const std::filesystem::path& made, const StoreOptions& options, const std::string& locale) {
    auto connection = std::make_unique<SqliteConnection>(made, options.writerWait);
    createTables(*connection, SortKeys(locale), locale);
    SqliteEngine engine(std::move(connection), locale);
    if (const DWORD error = createSystemDatabases(engine)) throw SqliteFailure{error, storeErrorText()};
}

/// Of two processes that make a store at once the second takes the first one's.
[[nodiscard]] DWORD createStore(const std::filesystem::path& file, const StoreOptions& options,
                                const std::string& locale) {
    const DWORD error =
        makeStoreFile(file, [&](const std::filesystem::path& made) { fillNewStore(made, options, locale); });
    std::error_code ignored;
    return error == ERROR_ALREADY_EXISTS && std::filesystem::exists(file, ignored) ? ERROR_SUCCESS : error;
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
            setStoreError(ERROR_NOT_ENOUGH_MEMORY,
                          nameOf(file_) + ": it cannot be watched: " + port::messageOf(error.code()));
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
    StorePlace place;
    if (findStorePlace(file, options, WhenMissing::makeFolder, place) != ERROR_SUCCESS) return nullptr;
    if (!place.there && createStore(place.file, options, locale) != ERROR_SUCCESS) return nullptr;
    auto first = tryToConnect(place.file, options);
    if (!first) return nullptr;
    return std::make_unique<SqliteStore>(place.file, options, std::move(first));
}

}  // namespace Platform
