#include "tessera/platform/engine/SqlitePages.h"

#include <algorithm>
#include <bit>
#include <fstream>
#include <iterator>
#include <optional>

#include "tessera/platform/base/Types.h"
#include "tessera/platform/engine/SqliteFormat.h"

namespace Platform {
namespace {

constexpr std::size_t headerBytes = 100;
constexpr std::size_t usualPageSize = 4'096;
constexpr std::size_t logHeaderBytes = 32;
constexpr std::size_t frameHeaderBytes = 24;
constexpr std::uint32_t logMagic = 0x377F0682;  // its last bit tells the order of the bytes that are summed up
constexpr BYTE leafOfTable = 0x0D;
constexpr BYTE leafOfIndex = 0x0A;

/// No row of a store is as long: a record's limits are far below.
constexpr std::uint64_t longestPayload = 1'000'000;

std::uint32_t word(std::string_view bytes, std::size_t at) {
    return static_cast<std::uint32_t>(bigEndian(bytes, at, 4));
}

/// A number of variable length, moved past; nothing when the bytes end in it.
std::optional<std::uint64_t> takeVarint(std::string_view bytes, std::size_t& at) {
    constexpr int longest = 9;
    std::uint64_t value = 0;
    for (int i = 1; at < bytes.size(); ++i) {
        const auto byte = static_cast<BYTE>(bytes[at++]);
        if (i == longest) return value << 8 | byte;
        value = value << 7 | (byte & 0x7F);
        if (byte < 0x80) return value;
    }
    return std::nullopt;
}

std::int64_t signedNumber(std::string_view bytes) {
    const std::uint64_t value = bigEndian(bytes, 0, bytes.size());
    const std::size_t unused = 64 - 8 * bytes.size();
    return static_cast<std::int64_t>(value << unused) >> unused;
}

/// The value of a serial type, moved past; nothing when there is no such type or the bytes end in it.
std::optional<SqliteValue> takeValue(std::uint64_t type, std::string_view bytes, std::size_t& at) {
    constexpr std::size_t widths[] = {0, 1, 2, 3, 4, 6, 8, 8, 0, 0};
    constexpr std::uint64_t real = 7;  // which no column of a store can have
    constexpr std::uint64_t zero = 8;
    constexpr std::uint64_t firstBlob = 12;
    if (type == real || (type >= std::size(widths) && type < firstBlob)) return std::nullopt;
    const std::uint64_t width = type < firstBlob ? widths[type] : (type - firstBlob) / 2;
    if (width > bytes.size() - at) return std::nullopt;
    const std::string_view value = bytes.substr(at, width);
    at += width;
    if (type == 0) return SqliteValue();
    if (type == zero || type == zero + 1) return SqliteValue(static_cast<std::int64_t>(type - zero));
    if (type < firstBlob) return SqliteValue(signedNumber(value));
    if (type % 2 == 0) return SqliteValue(std::string(value));
    return SqliteValue(SqliteText{std::string(value)});
}

/// The values of a row; nothing unless they use up the payload.
std::optional<std::vector<SqliteValue>> valuesOf(std::string_view payload) {
    std::size_t typesAt = 0;
    const auto header = takeVarint(payload, typesAt);
    if (!header || *header > payload.size()) return std::nullopt;
    std::size_t valuesAt = *header;
    std::vector<SqliteValue> values;
    while (typesAt < *header) {
        const auto type = takeVarint(payload.substr(0, *header), typesAt);
        const auto value = type ? takeValue(*type, payload, valuesAt) : std::nullopt;
        if (!value) return std::nullopt;
        values.push_back(*value);
    }
    return valuesAt == payload.size() ? std::optional(std::move(values)) : std::nullopt;
}

/// The running sums that a log's frames are guarded with.
class LogSums {
public:
    explicit LogSums(bool bigEndianWords) : bigEndianWords_(bigEndianWords) {}

    void add(std::string_view bytes) {
        for (std::size_t at = 0; at + 8 <= bytes.size(); at += 8) {
            first_ += number(bytes, at) + second_;
            second_ += number(bytes, at + 4) + first_;
        }
    }
    bool match(std::string_view bytes, std::size_t at) const {
        return first_ == word(bytes, at) && second_ == word(bytes, at + 4);
    }

private:
    std::uint32_t number(std::string_view bytes, std::size_t at) const {
        const std::uint32_t high = word(bytes, at);
        if (bigEndianWords_) return high;
        return high >> 24 | (high >> 8 & 0xFF00) | (high << 8 & 0xFF'0000) | high << 24;
    }

    bool bigEndianWords_;
    std::uint32_t first_ = 0;
    std::uint32_t second_ = 0;
};

std::string contentOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::size_t pageSizeOf(std::string_view header) {
    constexpr std::size_t smallest = 512;
    const std::uint64_t written = bigEndian(header, 16, 2);
    const std::size_t size = written == 1 ? 65'536 : written;
    return std::has_single_bit(size) && size >= smallest ? size : usualPageSize;
}

}  // namespace

SqlitePages::SqlitePages(SqliteConnection& connection) : connection_(connection) {
    const std::string header = connection.read(0, headerBytes);
    pageSize_ = pageSizeOf(header);
    const std::uint64_t reserved = bigEndian(header, 20, 1);
    usable_ = pageSize_ - (reserved < pageSize_ / 4 ? reserved : 0);
    count_ = static_cast<std::uint32_t>((connection.fileSize() + pageSize_ - 1) / pageSize_);
    readLog();
    readFreeList();
}

/// Takes from the log what its sums show to be whole, up to the last commit.
void SqlitePages::readLog() {
    log_ = contentOf(connection_.file().string() + "-wal");
    const std::uint32_t magic = word(log_, 0);
    if (log_.size() < logHeaderBytes || (magic & ~1U) != logMagic || word(log_, 8) != pageSize_) return;
    const std::string_view log = log_;
    LogSums sums((magic & 1) != 0);
    sums.add(log.substr(0, logHeaderBytes - 8));
    if (!sums.match(log, logHeaderBytes - 8)) return;

    std::unordered_map<std::uint32_t, std::size_t> open;  // not committed so far
    for (std::size_t at = logHeaderBytes; at + frameHeaderBytes + pageSize_ <= log.size();
         at += frameHeaderBytes + pageSize_) {
        const bool sameSalt = log.substr(at + 8, 8) == log.substr(16, 8);
        sums.add(log.substr(at, 8));
        sums.add(log.substr(at + frameHeaderBytes, pageSize_));
        if (!sameSalt || !sums.match(log, at + 16)) return;
        open[word(log, at)] = at + frameHeaderBytes;
        const std::uint32_t pagesAfterCommit = word(log, at + 4);
        if (pagesAfterCommit == 0) continue;
        count_ = pagesAfterCommit;
        for (const auto& [number, place] : open)
            logged_[number] = place;
        open.clear();
    }
}

/// A list that does not add up is not believed: better a row too many than one too few.
void SqlitePages::readFreeList() {
    const std::string first = page(1);
    const std::uint64_t expected = word(first, 36);
    for (std::uint32_t trunk = word(first, 32); trunk != 0 && trunk <= count_;) {
        if (!free_.insert(trunk).second) break;
        const std::string list = page(trunk);
        const std::uint32_t leaves = std::min<std::uint32_t>(word(list, 4), static_cast<std::uint32_t>(usable_ / 4));
        for (std::uint32_t i = 0; i < leaves; ++i)
            free_.insert(word(list, 8 + std::size_t{4} * i));
        trunk = word(list, 0);
    }
    if (free_.size() != expected) free_.clear();
}

/// Empty when the disk does not give it.
std::string SqlitePages::page(std::uint32_t number) {
    if (const auto found = logged_.find(number); found != logged_.end()) return log_.substr(found->second, pageSize_);
    try {
        return connection_.read(std::uint64_t{number - 1} * pageSize_, pageSize_);
    } catch (const SqliteFailure&) {
        unreadable_.insert(number);
        return {};
    }
}

void SqlitePages::forEachRow(const Visit& visit) {
    for (std::uint32_t number = 1; number <= count_; ++number) {
        if (!free_.contains(number)) rowsOfPage(number, visit);
    }
}

void SqlitePages::rowsOfPage(std::uint32_t number, const Visit& visit) {
    constexpr std::size_t leafHeaderBytes = 8;
    const std::size_t start = number == 1 ? headerBytes : 0;
    const std::string bytes = page(number);
    if (bytes.size() <= start) return;
    const auto kind = static_cast<BYTE>(bytes[start]);
    if (kind != leafOfTable && kind != leafOfIndex) return;
    const std::uint64_t cells = bigEndian(bytes, start + 3, 2);
    for (std::uint64_t i = 0; i < cells; ++i) {
        const std::size_t pointer = start + leafHeaderBytes + 2 * i;
        if (pointer + 2 > bytes.size()) return;
        rowAt(bytes, bigEndian(bytes, pointer, 2), kind == leafOfTable, visit);
    }
}

/// Visits nothing when no row can be read there.
void SqlitePages::rowAt(const std::string& page, std::size_t at, bool ofTable, const Visit& visit) {
    const auto size = takeVarint(page, at);
    const auto id = ofTable ? takeVarint(page, at) : 0;
    if (!size || !id || *size > longestPayload) return;
    const std::size_t mostHere = ofTable ? usable_ - 35 : (usable_ - 12) * 64 / 255 - 23;
    std::size_t here = *size;
    if (here > mostHere) {
        const std::size_t least = (usable_ - 12) * 32 / 255 - 23;
        here = least + (*size - least) % (usable_ - 4);
        if (here > mostHere) here = least;
    }
    if (at > page.size() || here > page.size() - at) return;
    std::string payload = page.substr(at, here);
    if (here < *size && !appendOverflow(word(page, at + here), *size, payload)) return;
    const auto values = valuesOf(payload);
    if (values) visit(static_cast<std::int64_t>(*id), *values);
}

bool SqlitePages::appendOverflow(std::uint32_t number, std::uint64_t size, std::string& payload) {
    while (payload.size() < size) {
        if (number == 0 || number > count_) return false;
        const std::string next = page(number);
        const std::size_t wanted = std::min<std::size_t>(size - payload.size(), usable_ - 4);
        if (next.size() < wanted + 4) return false;
        payload.append(next, 4, wanted);
        number = word(next, 0);
    }
    return true;
}

}  // namespace Platform
