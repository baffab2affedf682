#include <stdexcept>
#include <sys/mman.h>
#include <unistd.h>

#include "tests/support/FileInMemory.h"

namespace testing_support {

FileInMemory::FileInMemory(std::span<const std::byte> bytes)
    : file_(::memfd_create("in memory", MFD_CLOEXEC)), path_("/proc/self/fd/" + std::to_string(file_)) {
    if (::write(file_, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()))
        throw std::runtime_error("no file");
}

FileInMemory::~FileInMemory() {
    ::close(file_);
}

}  // namespace testing_support
