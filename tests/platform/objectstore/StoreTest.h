#pragma once

#include <cstdint>
#include <cstring>
#include <deque>
#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tessera/platform/base/Results.h"
#include "tessera/platform/objectstore/CeDB.h"
#include "tests/support/TemporaryStore.h"

namespace objectstore_test {

enum class StoreKind { memory, disk };

inline std::ostream& operator<<(std::ostream& out, StoreKind kind) {
    return out << (kind == StoreKind::memory ? "InMemory" : "OnDisk");
}

/// A test that runs over a store in memory and over one on disk.
class StoreTest : public ::testing::TestWithParam<StoreKind> {
protected:
    StoreTest() {
        if (GetParam() == StoreKind::memory) {
            memory_.emplace();
        } else {
            disk_.emplace();
        }
    }

private:
    std::optional<testing_support::MemoryStoreMount> memory_;
    std::optional<testing_support::TemporaryStore> disk_;
};

inline std::string nameOfKind(const ::testing::TestParamInfo<StoreKind>& info) {
    return ::testing::PrintToString(info.param);
}

inline const auto bothStores = ::testing::Values(StoreKind::memory, StoreKind::disk);

// The properties that the tests use.
inline constexpr CEPROPID nameId = makePropId(1, CEVT_LPWSTR);
inline constexpr CEPROPID numberId = makePropId(2, CEVT_I4);
inline constexpr CEPROPID timeId = makePropId(3, CEVT_FILETIME);
inline constexpr CEPROPID shortId = makePropId(4, CEVT_I2);
inline constexpr CEPROPID wordId = makePropId(5, CEVT_UI2);
inline constexpr CEPROPID dwordId = makePropId(6, CEVT_UI4);
inline constexpr CEPROPID realId = makePropId(7, CEVT_R8);
inline constexpr CEPROPID boolId = makePropId(8, CEVT_BOOL);
inline constexpr CEPROPID blobId = makePropId(9, CEVT_BLOB);

/// Properties for a write, with what they point to.
class Row {
public:
    Row& name(WString text) { return text_(nameId, std::move(text)); }
    Row& text(CEPROPID id, WString value) { return text_(id, std::move(value)); }
    Row& number(std::int32_t value) {
        add(numberId).val.lVal = value;
        return *this;
    }
    Row& time(std::uint64_t ticks) {
        add(timeId).val.filetime = fileTimeOf(ticks);
        return *this;
    }
    Row& i2(std::int16_t value) {
        add(shortId).val.iVal = value;
        return *this;
    }
    Row& ui2(std::uint16_t value) {
        add(wordId).val.uiVal = value;
        return *this;
    }
    Row& ui4(std::uint32_t value) {
        add(dwordId).val.ulVal = value;
        return *this;
    }
    Row& real(double value) {
        add(realId).val.dblVal = value;
        return *this;
    }
    Row& boolean(BOOL value) {
        add(boolId).val.boolVal = value;
        return *this;
    }
    Row& blob(std::string bytes) { return blob(blobId, std::move(bytes)); }
    Row& blob(CEPROPID id, std::string bytes) {
        blobs_.push_back(std::move(bytes));
        std::string& kept = blobs_.back();
        add(id).val.blob = {static_cast<DWORD>(kept.size()), reinterpret_cast<BYTE*>(kept.data())};
        return *this;
    }
    Row& without(CEPROPID id) {
        add(id).wFlags = CEDB_PROPDELETE;
        return *this;
    }

    const CEPROPVAL* props() const { return values_.data(); }
    WORD count() const { return static_cast<WORD>(values_.size()); }
    const CEPROPVAL& only() const { return values_.front(); }

private:
    CEPROPVAL& add(CEPROPID id) {
        values_.emplace_back().propid = id;
        return values_.back();
    }
    Row& text_(CEPROPID id, WString text) {
        texts_.push_back(std::move(text));
        add(id).val.lpwstr = texts_.back().data();
        return *this;
    }

    std::vector<CEPROPVAL> values_;
    std::deque<WString> texts_;
    std::deque<std::string> blobs_;
};

/// A record as it was read, its values copied out of the buffer.
struct ReadRecord {
    CEOID oid = 0;
    std::vector<CEPROPID> ids;
    std::map<CEPROPID, CEPROPVAL> values;
    std::map<CEPROPID, WString> texts;
    std::map<CEPROPID, std::string> blobs;

    WString name() const { return texts.count(nameId) != 0 ? texts.at(nameId) : TEXT("(none)"); }
    std::int32_t number() const { return values.at(numberId).val.lVal; }
};

/// A handle that closes itself.
class OpenDatabase {
public:
    explicit OpenDatabase(const WCHAR* name, CEPROPID sort = 0, DWORD sortFlags = 0, DWORD flags = 0)
        : handle_(CeOpenDatabaseEx2(&oid_, name, sort, sortFlags, flags, nullptr)) {
        EXPECT_NE(handle_, INVALID_HANDLE_VALUE) << "last error " << GetLastError();
    }
    ~OpenDatabase() { CloseHandle(handle_); }
    OpenDatabase(const OpenDatabase&) = delete;
    OpenDatabase& operator=(const OpenDatabase&) = delete;

    HANDLE handle() const { return handle_; }
    CEOID oid() const { return oid_; }

    CEOID add(const Row& row) { return write(0, row); }
    CEOID write(CEOID record, const Row& row) { return CeWriteRecordProps(handle_, record, row.count(), row.props()); }
    bool erase(CEOID record) { return CeDeleteRecord(handle_, record) != FALSE; }

    CEOID seek(DWORD type, std::uintptr_t value, DWORD* index = nullptr) {
        return CeSeekDatabaseEx(handle_, type, value, index);
    }
    CEOID to(DWORD index) { return seek(CEDB_SEEK_BEGINNING, index); }
    CEOID toLast() { return seek(CEDB_SEEK_END, 0); }
    CEOID by(std::int32_t steps) { return seek(CEDB_SEEK_CURRENT, static_cast<DWORD>(steps)); }
    CEOID next() { return by(1); }
    CEOID previous() { return by(-1); }
    CEOID toRecord(CEOID oid) { return seek(CEDB_SEEK_CEOID, oid); }
    CEOID firstEqual(const Row& row) { return seekValue(CEDB_SEEK_VALUEFIRSTEQUAL, row); }
    CEOID nextEqual(const Row& row) { return seekValue(CEDB_SEEK_VALUENEXTEQUAL, row); }
    CEOID smaller(const Row& row) { return seekValue(CEDB_SEEK_VALUESMALLER, row); }
    CEOID greater(const Row& row) { return seekValue(CEDB_SEEK_VALUEGREATER, row); }

    std::optional<ReadRecord> read() {
        WORD count = 0;
        BYTE* buffer = nullptr;
        DWORD size = 0;
        ReadRecord record;
        record.oid = CeReadRecordPropsEx(handle_, CEDB_ALLOWREALLOC, &count, &buffer, &size);
        if (record.oid == 0) {
            EXPECT_EQ(buffer, nullptr);
            return std::nullopt;
        }
        const auto* values = reinterpret_cast<const CEPROPVAL*>(buffer);
        for (WORD i = 0; i < count; ++i) {
            const CEPROPVAL& value = values[i];
            record.ids.push_back(value.propid);
            record.values[value.propid] = value;
            const WORD kind = static_cast<WORD>(value.propid);
            if (kind == CEVT_LPWSTR) record.texts[value.propid] = value.val.lpwstr;
            if (kind == CEVT_BLOB) {
                record.blobs[value.propid].assign(reinterpret_cast<const char*>(value.val.blob.lpb),
                                                  value.val.blob.dwCount);
            }
        }
        CeFreeBuffer(buffer);
        return record;
    }
    ReadRecord readRecord(CEOID oid) {
        EXPECT_EQ(toRecord(oid), oid);
        return read().value_or(ReadRecord{});
    }

    /// All records from the first on.
    std::vector<CEOID> walk() {
        std::vector<CEOID> met;
        for (CEOID oid = to(0); oid != 0; oid = next()) {
            met.push_back(oid);
        }
        EXPECT_EQ(GetLastError(), ERROR_SEEK);
        return met;
    }

    CEOIDINFOEX info() const {
        CEOIDINFOEX info = {};
        EXPECT_TRUE(CeOidGetInfoEx2(oid_, &info));
        return info;
    }

private:
    CEOID seekValue(DWORD type, const Row& row) { return seek(type, reinterpret_cast<std::uintptr_t>(row.props())); }

    CEOID oid_ = 0;
    HANDLE handle_;
};

inline CEOID makeDatabase(const WCHAR* name, std::vector<SORTORDERSPEC> orders = {}) {
    const CEOID made = CeCreateDatabaseEx2(name, 0, static_cast<WORD>(orders.size()), orders.data());
    EXPECT_NE(made, 0u) << "last error " << GetLastError();
    return made;
}

using Oids = std::vector<CEOID>;

}  // namespace objectstore_test
