#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

// Files by their descriptors. Where one of these cannot be done, errno says why.

namespace Tool::port {

/// What people are told of an error, in UTF-8.
std::string messageOf(const std::error_code& error);

/// What a path leads to. The name of a device leads to that, whatever else is there.
std::filesystem::file_type typeOf(const std::filesystem::path& path, std::error_code& error);

/// The file that a path leads to, by its own name: links are followed. It is there.
std::filesystem::path realPath(const std::filesystem::path& path, std::error_code& error);

/// A new file that is open for writing; its descriptor is -1 when it could not be made.
struct NewFile {
    std::filesystem::path path;
    int descriptor = -1;
};

/// Makes a file that nobody else can read, under a name that begins so and that nobody has.
NewFile makePrivateFile(const std::filesystem::path& beginning);

/// Such a file that is gone once it is closed. Wherever the system can do without, it has no name by which it could be
/// left behind when the process is killed. The path is the one under which this process can open it.
NewFile makeTemporaryFile(const std::filesystem::path& beginning);
void closeTemporaryFile(const NewFile& file);

/// The environment variable that names the folder for temporary files.
extern const char* const temporaryFolderVariable;

/// Reads what there is, waiting for it, no more than `count` bytes. Answers how many, 0 at the end, or -1. Of standard
/// input the bytes come as they are.
std::ptrdiff_t readSome(int descriptor, char* buffer, std::size_t count);

/// Writes all of it, or answers false.
bool writeAll(int descriptor, std::string_view bytes);

bool flushToDisk(int descriptor);
bool closeFile(int descriptor);

/// Gives a file the name of another, in whose place it then stands. Whoever looks sees one or the other.
bool replaceBy(const std::filesystem::path& target, const std::filesystem::path& made);

}  // namespace Tool::port
