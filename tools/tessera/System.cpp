#include "System.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <vector>

#include "Failure.h"
#include "port/Clock.h"
#include "port/Shell.h"
#include "tessera/platform/base/Unicode.h"

namespace Tool {

namespace {

Failure temporaryFileFailure(const std::string& folder) {
    return Failure(folder + ": cannot write a temporary file here: " + std::strerror(errno) +
                   "; name another folder with " + port::temporaryFolderVariable);
}

/// The file that a path leads to: a link stays, and what it points at is replaced.
std::filesystem::path targetOf(const std::string& path) {
    std::error_code error;
    const auto type = port::typeOf(pathOf(path), error);
    if (type == std::filesystem::file_type::not_found) return pathOf(path);
    if (type == std::filesystem::file_type::directory) throw Failure(path + ": is a folder, not a file");
    if (type != std::filesystem::file_type::regular) throw Failure(path + ": is no regular file");
    auto target = port::realPath(pathOf(path), error);
    if (error) throw Failure(path + ": " + messageOf(error));
    return target;
}

}  // namespace

std::filesystem::path pathOf(const std::string& path) {
    return std::u8string(path.begin(), path.end());
}

std::string nameOf(const std::filesystem::path& path) {
    const std::u8string utf8 = path.u8string();
    return {utf8.begin(), utf8.end()};
}

bool inputIsTerminal() {
    return port::isTerminal(port::Stream::input);
}

bool outputIsTerminal() {
    return port::isTerminal(port::Stream::output);
}

bool errorIsTerminal() {
    return port::isTerminal(port::Stream::error);
}

std::size_t terminalWidth() {
    if (const char* columns = std::getenv("COLUMNS"); columns != nullptr) {
        if (const int width = std::atoi(columns); width > 0) return static_cast<std::size_t>(width);
    }
    return port::terminalColumns().value_or(80);
}

std::string timeOfDay(const std::tm& local) {
    if (std::string time = port::timeInUserLocale(local); !time.empty() && textOfUtf8(time)) return time;
    char text[64];
    std::snprintf(text, sizeof text, "%02d:%02d:%02d", local.tm_hour, local.tm_min, local.tm_sec);
    return text;
}

bool readInput(std::string& bytes, std::size_t most) {
    std::vector<char> block(std::size_t{1} << 16);
    while (bytes.size() <= most) {
        const std::ptrdiff_t length = port::readSome(static_cast<int>(port::Stream::input), block.data(), block.size());
        if (length <= 0) return length == 0;
        bytes.append(block.data(), static_cast<std::size_t>(length));
    }
    return true;
}

PrivateFile::PrivateFile() {
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::temp_directory_path(error);
    folder_ = nameOf(folder);
    if (error) throw Failure("there is no folder for temporary files: " + messageOf(error));
    file_ = port::makeTemporaryFile(folder / "tessera-import-");
    if (file_.descriptor < 0) throw temporaryFileFailure(folder_);
    path_ = nameOf(file_.path);
}

PrivateFile::~PrivateFile() {
    port::closeTemporaryFile(file_);
}

void PrivateFile::append(std::string_view bytes) {
    if (!port::writeAll(file_.descriptor, bytes)) throw temporaryFileFailure(folder_);
}

void replaceFile(const std::string& path, std::string_view bytes) {
    const std::filesystem::path target = targetOf(path);
    std::filesystem::path beginning = target;
    beginning += ".";
    const port::NewFile beside = port::makePrivateFile(beginning);
    if (beside.descriptor < 0) throw Failure(path + ": cannot be written: " + std::strerror(errno));
    const bool written = port::writeAll(beside.descriptor, bytes) && port::flushToDisk(beside.descriptor);
    int why = written ? 0 : errno;
    if (!port::closeFile(beside.descriptor) && why == 0) why = errno;
    if (why == 0 && !port::replaceBy(target, beside.path)) why = errno;
    if (why == 0) return;
    std::error_code ignored;
    std::filesystem::remove(beside.path, ignored);
    throw Failure(path + ": cannot be written: " + std::strerror(why));
}

}  // namespace Tool
