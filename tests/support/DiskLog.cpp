#include "tests/support/DiskLog.h"

#include <algorithm>
#include <fstream>
#include <utility>

namespace testing_support {

namespace {

constexpr std::size_t sectorBytes = 512;

bool toss(std::mt19937& random) {
    return random() % 2 == 0;
}

/// As often a whole number of sectors as any number of bytes.
std::size_t anyPieceOf(std::size_t bytes, std::mt19937& random) {
    const std::size_t piece = random() % (bytes + 1);
    return toss(random) ? piece : piece / sectorBytes * sectorBytes;
}

}  // namespace

void DiskLog::open(const Path& path, bool isMade) {
    const auto [entry, isFirst] = files_.try_emplace(path);
    entry->second.isNew |= isMade;
    if (isMade || !isFirst) return;
    std::string& content = entry->second.synced.emplace();
    content.resize(std::filesystem::file_size(path));
    std::ifstream(path, std::ios::binary).read(content.data(), static_cast<std::streamsize>(content.size()));
}

void DiskLog::write(const Path& path, std::uint64_t offset, std::string_view bytes) {
    files_[path].unsynced.push_back({offset, std::string(bytes)});
    lastWritten_ = path;
}

void DiskLog::truncate(const Path& path, std::uint64_t size) {
    files_[path].unsynced.push_back({size, std::nullopt});
}

void DiskLog::sync(const Path& path) {
    File& file = files_[path];
    if (!file.synced) file.synced.emplace();
    for (const Change& change : std::exchange(file.unsynced, {}))
        apply(change, *file.synced, '\0');
    if (std::exchange(file.isNew, false)) forgetRemovedIn(path.parent_path());
}

void DiskLog::remove(const Path& path, bool folderIsSynced) {
    File& file = files_[path];
    if (file.synced) file.removed = std::exchange(file.synced, std::nullopt);
    file.unsynced.clear();
    file.isNew = false;
    if (folderIsSynced) forgetRemovedIn(path.parent_path());
}

void DiskLog::forgetRemovedIn(const Path& folder) {
    for (auto& [path, file] : files_) {
        if (path.parent_path() == folder) file.removed.reset();
    }
}

void DiskLog::apply(const Change& change, std::string& content, char filler) {
    if (!change.bytes || content.size() < change.end()) content.resize(change.end(), filler);
    if (change.bytes) content.replace(change.offset, change.bytes->size(), *change.bytes);
}

void DiskLog::addSectors(const Change& change, std::vector<Change>& sectors) {
    for (std::uint64_t from = change.offset; from < change.end();) {
        const std::uint64_t length = std::min(sectorBytes - from % sectorBytes, change.end() - from);
        sectors.push_back({from, change.bytes->substr(from - change.offset, length)});
        from += length;
    }
}

std::vector<DiskLog::Change> DiskLog::anySectorsOf(const std::vector<Change>& changes, std::mt19937& random) {
    std::vector<Change> sectors;
    for (const Change& change : changes) {
        if (change.bytes) {
            addSectors(change, sectors);
        } else {
            sectors.push_back(change);
        }
    }
    constexpr unsigned all = 8;
    const auto lost = random() % (all + 1);
    std::erase_if(sectors, [&](const Change&) { return random() % all < lost; });
    std::ranges::shuffle(sectors, random);
    return sectors;
}

/// Nothing when there is no such file.
std::optional<std::string> DiskLog::anyContentOf(File file, bool isLast, Unsynced unsynced, std::mt19937& random) {
    if (!file.synced && file.removed && toss(random)) return file.removed;
    const bool mayBeThere = file.isNew && unsynced == Unsynced::scattered;
    if (!file.synced && !(mayBeThere && toss(random))) return std::nullopt;

    std::vector<Change>& changes = file.unsynced;
    const bool isTorn = isLast && !changes.empty() && changes.back().bytes;
    if (isTorn) changes.back().bytes->resize(anyPieceOf(changes.back().bytes->size(), random));
    if (unsynced == Unsynced::lost) changes.erase(changes.begin(), changes.end() - (isTorn ? 1 : 0));

    std::string content = file.synced.value_or(std::string());
    const char anything = toss(random) ? '\0' : static_cast<char>(random());
    if (unsynced == Unsynced::scattered) {
        std::uint64_t end = content.size();
        for (const Change& change : changes)
            end = std::max(end, change.end());
        if (toss(random)) content.resize(end, anything);
        changes = anySectorsOf(changes, random);
    }
    for (const Change& change : changes)
        apply(change, content, anything);
    return content;
}

void DiskLog::leaveIn(const Path& folder, Unsynced unsynced, std::mt19937& random) const {
    for (const auto& [path, file] : files_) {
        const auto content = anyContentOf(file, path == lastWritten_, unsynced, random);
        if (!content) continue;
        std::ofstream out(folder / path.filename(), std::ios::binary);
        out.write(content->data(), static_cast<std::streamsize>(content->size()));
    }
}

}  // namespace testing_support
