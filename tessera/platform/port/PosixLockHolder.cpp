#include <fstream>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

#include "tessera/platform/port/LockHolder.h"

namespace Platform::port {
namespace {

/// A line of the table: "1: POSIX  ADVISORY  WRITE 4711 fe:00:131 120 120", the last number or EOF being the last byte
/// locked; "->" behind the first word marks one who waits.
struct Lock {
    std::string kind;
    long process = 0;
    std::string place;  ///< Device and inode.
    std::uint64_t first = 0;
    std::string last;
};

std::optional<Lock> readLock(const std::string& line) {
    std::istringstream words(line);
    Lock lock;
    std::string number;
    std::string family;
    std::string strength;
    words >> number >> family >> strength >> lock.kind >> lock.process >> lock.place >> lock.first >> lock.last;
    return words.fail() ? std::nullopt : std::optional(lock);
}

bool isOn(const Lock& lock, ino_t inode, std::uint64_t offset) {
    // The device is not compared: some file systems show another one here.
    const std::size_t colon = lock.place.rfind(':');
    if (colon == std::string::npos || lock.place.substr(colon + 1) != std::to_string(inode)) return false;
    if (lock.kind != "WRITE" || offset < lock.first) return false;
    return lock.last == "EOF" || offset <= std::strtoull(lock.last.c_str(), nullptr, 10);
}

std::string programOf(long process) {
    std::string name;
    std::ifstream file("/proc/" + std::to_string(process) + "/comm");
    std::getline(file, name);
    return name;
}

}  // namespace

std::optional<Process> lockHolder(const std::filesystem::path& file, std::uint64_t offset) {
    struct stat status {};
    if (::stat(file.c_str(), &status) != 0) return std::nullopt;
    std::ifstream table("/proc/locks");
    for (std::string line; std::getline(table, line);) {
        const std::optional<Lock> lock = readLock(line);
        if (!lock || !isOn(*lock, status.st_ino, offset)) continue;
        // Of a process outside our own view of processes the table says 0, or less.
        if (lock->process <= 0) return std::nullopt;
        return Process{lock->process, programOf(lock->process), lock->process == ::getpid()};
    }
    return std::nullopt;
}

}  // namespace Platform::port
