#include "tests/support/FaultyDisk.h"

#include <iostream>
#include <new>
#include <stdexcept>
#include <string>

#include <sqlite3.h>

namespace testing_support {

/// SQLite's interface to the system, put before the real one.
class FaultyDisk::Disk {
public:
    Disk();
    ~Disk();
    Disk(const Disk&) = delete;
    Disk& operator=(const Disk&) = delete;

    long callsToFailure = 0;  ///< 0: no call is to fail.
    Trouble trouble = Trouble::error;
    Lasting lasting = Lasting::once;
    bool paused = false;
    bool failed = false;

    DiskLog log;
    bool power = true;
    long changesToCut = 0;  ///< 0: the power stays.
    std::string changesOf;  ///< The name of the files that count; empty: all do.
    long changesMade = 0;
    std::filesystem::path changedAtTheCut;

private:
    /// What SQLite hands about as a file. The real one's lies behind it.
    struct File : sqlite3_file {
        Disk* disk = nullptr;
        std::filesystem::path path;  ///< Empty for one without a name, which nobody finds after a cut.

        sqlite3_file* real() { return reinterpret_cast<sqlite3_file*>(this + 1); }
        const sqlite3_io_methods& realMethods() { return *real()->pMethods; }
    };

    static const sqlite3_io_methods methods;

    /// Answers SQLITE_OK, or the error that the call ends with.
    int refuse(int error, bool takesRoom = false);
    /// The same for a change to a file.
    int refuseChange(const std::filesystem::path& path, int error, bool takesRoom = false);

    static Disk& diskOf(sqlite3_vfs* vfs) { return *static_cast<Disk*>(vfs->pAppData); }
    static File& fileOf(sqlite3_file* file) { return *static_cast<File*>(file); }
    template <auto Method, class Answer, class... Arguments>
    static Answer forward(sqlite3_file* file, Arguments... arguments) {
        return (fileOf(file).realMethods().*Method)(fileOf(file).real(), arguments...);
    }

    static int open(sqlite3_vfs* vfs, const char* name, sqlite3_file* opened, int flags, int* flagsOut);
    static int remove(sqlite3_vfs* vfs, const char* name, int syncFolder);
    static int access(sqlite3_vfs* vfs, const char* name, int flags, int* result);
    static int close(sqlite3_file* closed);
    static int read(sqlite3_file* from, void* bytes, int count, sqlite3_int64 offset);
    static int write(sqlite3_file* to, const void* bytes, int count, sqlite3_int64 offset);
    static int truncate(sqlite3_file* truncated, sqlite3_int64 size);
    static int sync(sqlite3_file* synced, int flags);
    static int size(sqlite3_file* asked, sqlite3_int64* bytes);
    static int map(sqlite3_file* mapped, int region, int bytes, int extend, void volatile** memory);

    sqlite3_vfs* real_;
    sqlite3_vfs vfs_;
    int openFiles_ = 0;
};

const sqlite3_io_methods FaultyDisk::Disk::methods = {
    .iVersion = 3,
    .xClose = close,
    .xRead = read,
    .xWrite = write,
    .xTruncate = truncate,
    .xSync = sync,
    .xFileSize = size,
    .xLock = forward<&sqlite3_io_methods::xLock, int, int>,
    .xUnlock = forward<&sqlite3_io_methods::xUnlock, int, int>,
    .xCheckReservedLock = forward<&sqlite3_io_methods::xCheckReservedLock, int, int*>,
    .xFileControl = forward<&sqlite3_io_methods::xFileControl, int, int, void*>,
    .xSectorSize = forward<&sqlite3_io_methods::xSectorSize, int>,
    .xDeviceCharacteristics = forward<&sqlite3_io_methods::xDeviceCharacteristics, int>,
    .xShmMap = map,
    .xShmLock = forward<&sqlite3_io_methods::xShmLock, int, int, int, int>,
    .xShmBarrier = forward<&sqlite3_io_methods::xShmBarrier, void>,
    .xShmUnmap = forward<&sqlite3_io_methods::xShmUnmap, int, int>,
    .xFetch = forward<&sqlite3_io_methods::xFetch, int, sqlite3_int64, int, void**>,
    .xUnfetch = forward<&sqlite3_io_methods::xUnfetch, int, sqlite3_int64, void*>,
};

FaultyDisk::Disk::Disk() : real_(sqlite3_vfs_find(nullptr)) {
    if (real_ == nullptr) throw std::runtime_error("SQLite has no disk");
    vfs_ = *real_;  // the rest does nothing with what it is called on
    vfs_.zName = "faulty";
    vfs_.pAppData = this;
    vfs_.szOsFile = static_cast<int>(sizeof(File)) + real_->szOsFile;
    vfs_.xOpen = open;
    vfs_.xDelete = remove;
    vfs_.xAccess = access;
    if (sqlite3_vfs_register(&vfs_, 1) != SQLITE_OK) throw std::runtime_error("SQLite takes no other disk");
}

FaultyDisk::Disk::~Disk() {
    sqlite3_vfs_unregister(&vfs_);
    if (openFiles_ == 0) return;
    std::cerr << "the faulty disk has gone from under " << openFiles_ << " open files" << std::endl;
    std::abort();
}

int FaultyDisk::Disk::refuse(int error, bool takesRoom) {
    if (!power) return error;
    const bool isCounted = trouble == Trouble::error || takesRoom;
    if (paused || !isCounted || callsToFailure == 0) return SQLITE_OK;
    if (callsToFailure > 1) {
        --callsToFailure;
        return SQLITE_OK;
    }
    if (lasting == Lasting::once) callsToFailure = 0;
    failed = true;
    return trouble == Trouble::full && error == SQLITE_IOERR_WRITE ? SQLITE_FULL : error;
}

int FaultyDisk::Disk::refuseChange(const std::filesystem::path& path, int error, bool takesRoom) {
    if (power) ++changesMade;
    const bool isCounted = changesToCut != 0 && (changesOf.empty() || path.filename() == changesOf);
    if (power && isCounted && --changesToCut == 0) {
        power = false;
        changedAtTheCut = path;
    }
    return refuse(error, takesRoom);
}

int FaultyDisk::Disk::open(sqlite3_vfs* vfs, const char* name, sqlite3_file* opened, int flags, int* flagsOut) {
    Disk& disk = diskOf(vfs);
    opened->pMethods = nullptr;  // so that nobody closes one that was not opened
    const std::filesystem::path path = name != nullptr ? name : "";
    const bool isMade = !path.empty() && (flags & SQLITE_OPEN_CREATE) != 0 && !std::filesystem::exists(path);
    if (const int refused = disk.refuse(SQLITE_CANTOPEN, isMade)) return refused;

    File* const file = new (opened) File;
    file->real()->pMethods = nullptr;
    if (const int failed = disk.real_->xOpen(disk.real_, name, file->real(), flags, flagsOut)) {
        if (file->real()->pMethods != nullptr) file->realMethods().xClose(file->real());
        file->~File();
        opened->pMethods = nullptr;
        return failed;
    }
    file->pMethods = &methods;
    file->disk = &disk;
    file->path = path;
    if (!path.empty()) disk.log.open(path, isMade);
    ++disk.openFiles_;
    return SQLITE_OK;
}

int FaultyDisk::Disk::remove(sqlite3_vfs* vfs, const char* name, int syncFolder) {
    Disk& disk = diskOf(vfs);
    if (const int refused = disk.refuseChange(name, SQLITE_IOERR_DELETE)) return refused;
    const int result = disk.real_->xDelete(disk.real_, name, syncFolder);
    if (result == SQLITE_OK) disk.log.remove(name, syncFolder != 0);
    return result;
}

int FaultyDisk::Disk::access(sqlite3_vfs* vfs, const char* name, int flags, int* result) {
    Disk& disk = diskOf(vfs);
    if (const int refused = disk.refuse(SQLITE_IOERR_ACCESS)) return refused;
    return disk.real_->xAccess(disk.real_, name, flags, result);
}

int FaultyDisk::Disk::close(sqlite3_file* closed) {
    File& file = fileOf(closed);
    const int result = file.realMethods().xClose(file.real());
    --file.disk->openFiles_;
    file.~File();
    return result;
}

int FaultyDisk::Disk::read(sqlite3_file* from, void* bytes, int count, sqlite3_int64 offset) {
    File& file = fileOf(from);
    if (const int refused = file.disk->refuse(SQLITE_IOERR_READ)) return refused;
    return file.realMethods().xRead(file.real(), bytes, count, offset);
}

int FaultyDisk::Disk::write(sqlite3_file* to, const void* bytes, int count, sqlite3_int64 offset) {
    File& file = fileOf(to);
    Disk& disk = *file.disk;
    const bool hadPower = disk.power;
    const int refused = disk.refuseChange(file.path, SQLITE_IOERR_WRITE, true);
    if (hadPower) {
        disk.log.write(file.path, static_cast<std::uint64_t>(offset),
                       {static_cast<const char*>(bytes), static_cast<std::size_t>(count)});
    }
    if (refused == SQLITE_OK) return file.realMethods().xWrite(file.real(), bytes, count, offset);
    if (disk.power) file.realMethods().xWrite(file.real(), bytes, count / 2, offset);
    return refused;
}

int FaultyDisk::Disk::truncate(sqlite3_file* truncated, sqlite3_int64 size) {
    File& file = fileOf(truncated);
    if (const int refused = file.disk->refuseChange(file.path, SQLITE_IOERR_TRUNCATE)) return refused;
    file.disk->log.truncate(file.path, static_cast<std::uint64_t>(size));
    return file.realMethods().xTruncate(file.real(), size);
}

int FaultyDisk::Disk::sync(sqlite3_file* synced, int /*flags*/) {
    File& file = fileOf(synced);
    if (const int refused = file.disk->refuseChange(file.path, SQLITE_IOERR_FSYNC)) return refused;
    file.disk->log.sync(file.path);
    return SQLITE_OK;
}

int FaultyDisk::Disk::size(sqlite3_file* asked, sqlite3_int64* bytes) {
    File& file = fileOf(asked);
    if (const int refused = file.disk->refuse(SQLITE_IOERR_FSTAT)) return refused;
    return file.realMethods().xFileSize(file.real(), bytes);
}

int FaultyDisk::Disk::map(sqlite3_file* mapped, int region, int bytes, int extend, void volatile** memory) {
    File& file = fileOf(mapped);
    *memory = nullptr;
    if (const int refused = file.disk->refuse(SQLITE_IOERR_SHMMAP, extend != 0)) return refused;
    return file.realMethods().xShmMap(file.real(), region, bytes, extend, memory);
}

FaultyDisk::FaultyDisk() : disk_(std::make_unique<Disk>()) {}

FaultyDisk::~FaultyDisk() = default;

void FaultyDisk::failAt(long call, Trouble trouble, Lasting lasting) {
    disk_->callsToFailure = call;
    disk_->trouble = trouble;
    disk_->lasting = lasting;
    disk_->paused = false;
    disk_->failed = false;
}

void FaultyDisk::pause() {
    disk_->paused = true;
}

void FaultyDisk::resume() {
    disk_->paused = false;
}

bool FaultyDisk::hasFailed() const {
    return disk_->failed;
}

void FaultyDisk::cutPowerAt(long change, const std::string& fileName) {
    disk_->changesToCut = change;
    disk_->changesOf = fileName;
}

bool FaultyDisk::hasPower() const {
    return disk_->power;
}

const std::filesystem::path& FaultyDisk::changedAtTheCut() const {
    return disk_->changedAtTheCut;
}

long FaultyDisk::changes() const {
    return disk_->changesMade;
}

void FaultyDisk::leaveIn(const std::filesystem::path& folder, Unsynced unsynced, std::mt19937& random) const {
    disk_->log.leaveIn(folder, unsynced, random);
}

}  // namespace testing_support
