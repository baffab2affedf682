#pragma once

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/Files.h"
#include "tests/support/Process.h"
#include "tests/support/TemporaryStore.h"

namespace testing_support {

/// The bytes of a text in UTF-16LE, without a byte-order mark.
inline std::string utf16Bytes(WStringView text) {
    std::string bytes;
    for (const WCHAR unit : text) {
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>(unit >> 8);
    }
    return bytes;
}

/// The tool on a store of its own, in a folder of its own.
class ToolRunner {
public:
    explicit ToolRunner(std::string program) : program_(std::move(program)) {
        std::filesystem::create_directory(temporary());
    }

    /// The command as the tool is to be started for it; TESSERA_STORE names the store.
    Command command(std::vector<std::string> arguments) const {
        return {.program = program_,
                .arguments = std::move(arguments),
                .environment = {{"TESSERA_STORE", store().string()},
                                {"TESSERA_DURABILITY", "normal"},
                                {"TMPDIR", temporary().string()},
                                {"TMP", temporary().string()},  // what Windows asks for
                                {"HOME", folder_.path().string()},
                                {"XDG_DATA_HOME", ""},
                                {"LC_ALL", "C.UTF-8"}}};
    }
    template <class... Arguments>
    Outcome operator()(Arguments... arguments) const {
        return run(command({std::string(arguments)...}));
    }

    std::filesystem::path store() const { return folder_ / "store.db"; }
    std::filesystem::path temporary() const { return folder_ / "tmp"; }
    std::filesystem::path operator/(const std::string& name) const { return folder_ / name; }

    /// A file of that content in the folder; answers its path.
    std::string file(const std::string& name, std::string_view bytes) const {
        writeFile(folder_ / name, bytes);
        return (folder_ / name).string();
    }

private:
    std::string program_;
    TemporaryFolder folder_;
};

}  // namespace testing_support
