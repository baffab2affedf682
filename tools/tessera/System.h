#pragma once

#include <cstddef>
#include <ctime>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "port/Clock.h"
#include "port/Files.h"

namespace Tool {

// What the tool asks of the operating system beyond the standard library.

using port::messageOf;

/// The path of a file that is named in UTF-8.
std::filesystem::path pathOf(const std::string& path);
/// The other way round.
std::string nameOf(const std::filesystem::path& path);

bool inputIsTerminal();
bool outputIsTerminal();
bool errorIsTerminal();
/// The columns of the terminal: what COLUMNS says, else what the terminal itself does, else 80.
std::size_t terminalWidth();

using port::localTimeOf;
using port::momentOfLocalTime;
/// The time of day as the user's locale writes it, 13:05:00 where the system does not know the locale.
std::string timeOfDay(const std::tm& local);

/// Reads all that standard input has, but no more than that many bytes and a few more. False when that cannot be done;
/// errno says why.
bool readInput(std::string& bytes, std::size_t most);

/// A temporary file that nobody else can read. It has no name by which it could be left behind, wherever
/// the system can do without: then it is gone even when the process is killed.
class PrivateFile {
public:
    /// Throws a Failure when no file can be made.
    PrivateFile();
    ~PrivateFile();
    PrivateFile(const PrivateFile&) = delete;
    PrivateFile& operator=(const PrivateFile&) = delete;

    /// Throws a Failure when it cannot be written, the disk being full.
    void append(std::string_view bytes);
    /// The path under which this process can open the file while this lives.
    const std::string& path() const { return path_; }

private:
    port::NewFile file_;
    std::string folder_;
    std::string path_;
};

/// Puts a file with these bytes in the place of the one under that path, or makes it: whoever looks sees the
/// old file or the whole new one, which nobody else can read. Throws a Failure that names the path, and then
/// leaves all as it was, when that cannot be done or something other than a file stands there.
void replaceFile(const std::string& path, std::string_view bytes);

}  // namespace Tool
