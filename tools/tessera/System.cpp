#include "System.h"

#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/ioctl.h>
#include <unistd.h>
#include <vector>

#include "Failure.h"
#include "tessera/platform/base/Unicode.h"

namespace Tool {

namespace {

Failure temporaryFileFailure(const std::string& folder) {
    return Failure(folder + ": cannot write a temporary file here: " + std::strerror(errno) +
                   "; name another folder with TMPDIR");
}

/// The file that a path leads to: a link stays, and what it points at is replaced.
std::string targetOf(const std::string& path) {
    std::error_code error;
    const auto type = std::filesystem::status(pathOf(path), error).type();
    if (type == std::filesystem::file_type::not_found) return path;
    if (type == std::filesystem::file_type::directory) throw Failure(path + ": is a folder, not a file");
    if (type != std::filesystem::file_type::regular) throw Failure(path + ": is no regular file");
    const auto target = std::filesystem::canonical(pathOf(path), error);
    if (error) throw Failure(path + ": " + error.message());
    return target.string();
}

}  // namespace

std::filesystem::path pathOf(const std::string& path) {
    return std::u8string(path.begin(), path.end());
}

bool inputIsTerminal() {
    return isatty(STDIN_FILENO) == 1;
}

bool outputIsTerminal() {
    return isatty(STDOUT_FILENO) == 1;
}

bool errorIsTerminal() {
    return isatty(STDERR_FILENO) == 1;
}

std::size_t terminalWidth() {
    if (const char* columns = std::getenv("COLUMNS"); columns != nullptr) {
        if (const int width = std::atoi(columns); width > 0) return static_cast<std::size_t>(width);
    }
    winsize size{};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col != 0) return size.ws_col;
    return 80;
}

std::optional<std::tm> localTimeOf(std::time_t moment) {
    std::tm local{};
    if (localtime_r(&moment, &local) == nullptr) return std::nullopt;
    return local;
}

std::optional<std::time_t> momentOfLocalTime(std::tm local) {
    local.tm_isdst = -1;  // whether it is summer time then is to be found out
    local.tm_wday = -1;
    const std::time_t moment = std::mktime(&local);
    if (local.tm_wday == -1) return std::nullopt;  // a result of -1 alone is also a second of 1969
    return moment;
}

std::string timeOfDay(const std::tm& local) {
    char text[64];
    if (const locale_t locale = newlocale(LC_TIME_MASK, "", nullptr); locale != nullptr) {
        const std::size_t length = strftime_l(text, sizeof text, "%X", &local, locale);
        freelocale(locale);
        const std::string_view time(text, length);
        if (length != 0 && textOfUtf8(time)) return std::string(time);
    }
    std::snprintf(text, sizeof text, "%02d:%02d:%02d", local.tm_hour, local.tm_min, local.tm_sec);
    return text;
}

bool readInput(std::string& bytes, std::size_t most) {
    std::vector<char> block(std::size_t{1} << 16);
    while (bytes.size() <= most) {
        const ssize_t length = read(STDIN_FILENO, block.data(), block.size());
        if (length < 0 && errno == EINTR) continue;
        if (length <= 0) return length == 0;
        bytes.append(block.data(), static_cast<std::size_t>(length));
    }
    return true;
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

PrivateFile::PrivateFile() {
    std::error_code error;
    folder_ = std::filesystem::temp_directory_path(error).string();
    if (error) throw Failure("there is no folder for temporary files: " + error.message());
    path_ = (std::filesystem::path(folder_) / "tessera-import-XXXXXX").string();
    descriptor_ = mkostemp(path_.data(), O_CLOEXEC);
    if (descriptor_ < 0) throw temporaryFileFailure(folder_);
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
    if (!writeAll(descriptor_, bytes)) throw temporaryFileFailure(folder_);
}

void replaceFile(const std::string& path, std::string_view bytes) {
    const std::string target = targetOf(path);
    std::string beside = target + ".XXXXXX";
    const int descriptor = mkostemp(beside.data(), O_CLOEXEC);
    if (descriptor < 0) throw Failure(path + ": cannot be written: " + std::strerror(errno));
    const bool written = writeAll(descriptor, bytes) && fsync(descriptor) == 0;
    int why = written ? 0 : errno;
    if (close(descriptor) != 0 && why == 0) why = errno;
    if (why == 0 && std::rename(beside.c_str(), target.c_str()) != 0) why = errno;
    if (why == 0) return;
    unlink(beside.c_str());
    throw Failure(path + ": cannot be written: " + std::strerror(why));
}

}  // namespace Tool
