#include <algorithm>
#include <atomic>
#include <mutex>
#include <system_error>
#include <vector>

#include "tessera/platform/port/FileWatch.h"
#include "tessera/platform/port/Paths.h"
#include "tessera/platform/port/WindowsSignals.h"
#include "tessera/platform/port/WindowsSystem.h"

namespace Platform::port {
namespace {

[[noreturn]] void throwLastError(const char* call) {
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), call);
}

/// The watches of this process, which hear of its own touches at once: the system tells of them a little later.
struct LocalWatch {
    std::filesystem::path file;
    int event;
};
std::mutex localMutex_;
std::vector<LocalWatch> localWatches_;

void raiseLocalWatches(const std::filesystem::path& file) {
    const std::lock_guard lock(localMutex_);
    for (const LocalWatch& watch : localWatches_) {
        if (watch.file == file) raise(watch.event);
    }
}

}  // namespace

/// The system tells of changes in the file's folder, on a thread of its own.
struct FileWatch::Watching {
    explicit Watching(const std::filesystem::path& file) : event(makeEvent()) {
        const std::lock_guard lock(localMutex_);
        localWatches_.push_back({file, event.get()});
    }
    ~Watching() {
        if (wait != nullptr) endWait();
        if (descriptorOf(changes) != -1) FindCloseChangeNotification(changes);
        const std::lock_guard lock(localMutex_);
        std::erase_if(localWatches_, [this](const LocalWatch& watch) { return watch.event == event.get(); });
    }
    Watching(const Watching&) = delete;
    Watching& operator=(const Watching&) = delete;

    void begin(const std::filesystem::path& file) {
        if (GetFileAttributesW(file.c_str()) == INVALID_FILE_ATTRIBUTES) throwLastError("GetFileAttributes");
        std::error_code ignored;
        const std::filesystem::path folder = absolutePath(file, ignored).parent_path();
        constexpr SystemDword touches =
            FILE_NOTIFY_CHANGE_LAST_WRITE | FILE_NOTIFY_CHANGE_ATTRIBUTES | FILE_NOTIFY_CHANGE_SIZE;
        changes = FindFirstChangeNotificationW(folder.c_str(), FALSE, touches);
        if (descriptorOf(changes) == -1) throwLastError("FindFirstChangeNotification");
        wait = CreateThreadpoolWait(onChange, this, nullptr);
        if (wait == nullptr) throwLastError("CreateThreadpoolWait");
        SetThreadpoolWait(wait, changes, nullptr);
    }

    /// Returns when no call of onChange is under way any more, and none is to come.
    void endWait() {
        isEnding = true;
        // A call that had not seen it may have begun to wait anew, and another one have come of that.
        for (int round = 0; round < 2; ++round) {
            SetThreadpoolWait(wait, nullptr, nullptr);
            WaitForThreadpoolWaitCallbacks(wait, TRUE);
        }
        CloseThreadpoolWait(wait);
    }

    static void CALLBACK onChange(PTP_CALLBACK_INSTANCE, void* self, PTP_WAIT, TP_WAIT_RESULT) {
        const auto* const watching = static_cast<Watching*>(self);
        // First, so that no change comes in between. When it fails, the disk having gone, the notification stays
        // signalled: to wait for it would be to go round and round.
        if (!watching->isEnding && FindNextChangeNotification(watching->changes) != 0)
            SetThreadpoolWait(watching->wait, watching->changes, nullptr);
        raise(watching->event.get());
    }

    Descriptor event;
    SystemHandle changes = nullptr;
    PTP_WAIT wait = nullptr;
    std::atomic<bool> isEnding = false;
};

FileWatch::FileWatch(const std::filesystem::path& file) : watching_(std::make_unique<Watching>(file)) {
    watching_->begin(file);
}

FileWatch::~FileWatch() = default;

int FileWatch::fd() const {
    return watching_->event.get();
}

void FileWatch::clear() {
    lower(fd());
}

void touchFile(const std::filesystem::path& file) noexcept {
    constexpr SystemDword shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    // Only those who watch are to hear of it: when it fails there is nothing to watch.
    const Descriptor opened(descriptorOf(CreateFileW(file.c_str(), FILE_WRITE_ATTRIBUTES, shareAll, nullptr,
                                                     OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT, nullptr)));
    if (!opened.isOpen()) return;
    raiseLocalWatches(file);
    SystemFileTime now{};
    GetSystemTimeAsFileTime(&now);
    SetFileTime(handleOf(opened.get()), nullptr, nullptr, &now);
}

}  // namespace Platform::port
