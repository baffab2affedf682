// Runs a fuzz target once over every file of its corpus: what fuzzing found stays found, in every test run.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::vector<std::filesystem::path> filesOf(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    std::error_code unreadable;
    for (const auto& entry : std::filesystem::directory_iterator(folder, unreadable)) {
        if (entry.is_regular_file()) files.push_back(entry.path());
    }
    std::ranges::sort(files);
    return files;
}

bool replay(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (!file) return false;
    std::fprintf(stderr, "%s\n", path.c_str());  // the last line before a crash names the input
    // A copy of exactly this size, so that the address sanitizer sees a read past its end.
    const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(input.data(), input.size());
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s CORPUS-FOLDER\n", argv[0]);
        return 2;
    }
    const std::vector<std::filesystem::path> files = filesOf(argv[1]);
    if (files.empty()) {
        std::fprintf(stderr, "no inputs in %s\n", argv[1]);
        return 1;
    }
    return std::ranges::all_of(files, replay) ? 0 : 1;
}
