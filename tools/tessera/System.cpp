#include "System.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

#include "Failure.h"

namespace Tool {

namespace {

Failure temporaryFileFailure(const std::string& path) {
    return Failure(path + ": cannot write a temporary file: " + std::strerror(errno));
}

}  // namespace

bool outputIsTerminal() {
    return isatty(STDOUT_FILENO) == 1;
}

bool errorIsTerminal() {
    return isatty(STDERR_FILENO) == 1;
}

PrivateFile::PrivateFile() {
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::temp_directory_path(error);
    if (error) throw Failure("there is no folder for temporary files: " + error.message());
    path_ = (folder / "tessera-import-XXXXXX").string();
    descriptor_ = mkostemp(path_.data(), O_CLOEXEC);
    if (descriptor_ < 0) throw temporaryFileFailure(folder.string());
    const std::string withoutName = "/dev/fd/" + std::to_string(descriptor_);
    if (access(withoutName.c_str(), R_OK) != 0) return;
    unlink(path_.c_str());
    path_ = withoutName;
    named_ = false;
}

PrivateFile::~PrivateFile() {
    close(descriptor_);
    if (named_) unlink(path_.c_str());
}

void PrivateFile::append(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(descriptor_, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) throw temporaryFileFailure(path_);
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

}  // namespace Tool
