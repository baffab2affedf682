#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

#include "Files.h"

namespace Tool::port {

const char* const temporaryFolderVariable = "TMPDIR";

std::string messageOf(const std::error_code& error) {
    return error.message();
}

std::filesystem::file_type typeOf(const std::filesystem::path& path, std::error_code& error) {
    return std::filesystem::status(path, error).type();
}

std::filesystem::path realPath(const std::filesystem::path& path, std::error_code& error) {
    return std::filesystem::canonical(path, error);
}

NewFile makePrivateFile(const std::filesystem::path& beginning) {
    std::string name = beginning.native() + "XXXXXX";
    const int descriptor = mkostemp(name.data(), O_CLOEXEC);
    return {name, descriptor};
}

NewFile makeTemporaryFile(const std::filesystem::path& beginning) {
    NewFile made = makePrivateFile(beginning);
    const std::string withoutName = "/dev/fd/" + std::to_string(made.descriptor);
    if (made.descriptor < 0 || access(withoutName.c_str(), R_OK) != 0) return made;
    unlink(made.path.c_str());
    made.path = withoutName;
    return made;
}

void closeTemporaryFile(const NewFile& file) {
    const bool hasName = file.path.parent_path() != "/dev/fd";
    close(file.descriptor);
    if (hasName) unlink(file.path.c_str());
}

std::ptrdiff_t readSome(int descriptor, char* buffer, std::size_t count) {
    while (true) {
        const ssize_t length = read(descriptor, buffer, count);
        if (length >= 0 || errno != EINTR) return length;
    }
}

bool writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

bool flushToDisk(int descriptor) {
    return fsync(descriptor) == 0;
}

bool closeFile(int descriptor) {
    return close(descriptor) == 0;
}

bool replaceBy(const std::filesystem::path& target, const std::filesystem::path& made) {
    return std::rename(made.c_str(), target.c_str()) == 0;
}

}  // namespace Tool::port
