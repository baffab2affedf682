#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string>

/// A fresh folder, removed with everything in it.
class ScratchFolder {
public:
    ScratchFolder() {
        std::random_device random;
        path_ = std::filesystem::temp_directory_path() / ("tessera-scratch-" + std::to_string(random()));
        if (!std::filesystem::create_directory(path_)) throw std::runtime_error("no scratch folder");
        std::filesystem::permissions(path_, std::filesystem::perms::owner_all);
    }
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const char* name) const { return path_ / name; }
    std::filesystem::path withFile(const char* name, const std::string& content) const {
        std::ofstream(path_ / name, std::ios::binary) << content;
        return path_ / name;
    }

private:
    std::filesystem::path path_;
};
