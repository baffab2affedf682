#include "FileContent.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "Failure.h"
#include "System.h"

namespace Tool {

namespace {

constexpr std::size_t longestFile = std::size_t{1} << 30;
constexpr const char* inputPath = "-";

/// Answers why the path cannot be read as a file at all; empty when it can.
std::string whyNotReadable(const std::string& path) {
    std::error_code error;
    const auto type = port::typeOf(pathOf(path), error);
    switch (type) {
        case std::filesystem::file_type::regular:
        case std::filesystem::file_type::fifo:
            return {};
        case std::filesystem::file_type::not_found:
            return "there is no such file";
        case std::filesystem::file_type::directory:
            return "is a folder, not a file";
        default:
            return error ? messageOf(error) : "is no regular file";
    }
}

void requireLength(const std::string& name, const std::string& bytes) {
    if (bytes.size() > longestFile) throw Failure(name + ": is larger than 1 GiB");
}

std::string contentOfFile(const std::string& path) {
    if (const std::string why = whyNotReadable(path); !why.empty()) throw Failure(path + ": " + why);
    std::ifstream file(pathOf(path), std::ios::binary);
    if (!file) throw Failure(path + ": cannot be read: " + std::strerror(errno));
    std::error_code unknown;  // of a pipe
    const auto size = std::filesystem::file_size(pathOf(path), unknown);
    std::string bytes;
    if (!unknown) bytes.reserve(std::min<std::size_t>(size, longestFile) + 1);
    char block[1 << 16];
    while (file.read(block, sizeof block), file.gcount() > 0) {
        bytes.append(block, static_cast<std::size_t>(file.gcount()));
        requireLength(path, bytes);
    }
    if (file.bad()) throw Failure(path + ": cannot be read to its end");
    return bytes;
}

std::string contentOfInput() {
    const std::string name = nameOfSource(inputPath);
    std::string bytes;
    if (!readInput(bytes, longestFile)) throw Failure(name + ": cannot be read: " + std::strerror(errno));
    requireLength(name, bytes);
    return bytes;
}

}  // namespace

std::string contentOf(const std::string& path) {
    return path == inputPath ? contentOfInput() : contentOfFile(path);
}

std::string nameOfSource(const std::string& path) {
    return path == inputPath ? "standard input" : path;
}

}  // namespace Tool
