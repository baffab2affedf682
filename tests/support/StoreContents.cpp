#include "tests/support/StoreContents.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <memory>
#include <set>
#include <sstream>
#include <stdexcept>

#include "tessera/phonebook/model/Schemas.h"
#include "tessera/platform/base/Unicode.h"
#include "tessera/platform/contacts/ContactProperties.h"
#include "tessera/platform/objectstore/CeDB.h"
#include "tessera/platform/objectstore/ObjectStore.h"

namespace testing_support {

namespace {

/// An open database, from its first record on.
class OpenDatabase {
public:
    explicit OpenDatabase(const WCHAR* name, CEPROPID order = 0)
        : handle_(CeOpenDatabaseEx2(&oid_, name, order, 0, CEDB_AUTOINCREMENT, nullptr)) {
        if (!isThere() && GetLastError() != ERROR_FILE_NOT_FOUND) fail("open a database");
    }
    ~OpenDatabase() {
        if (isThere()) CloseHandle(handle_);
        if (buffer_ != nullptr) CeFreeBuffer(buffer_);
    }
    OpenDatabase(const OpenDatabase&) = delete;
    OpenDatabase& operator=(const OpenDatabase&) = delete;

    bool isThere() const { return handle_ != INVALID_HANDLE_VALUE; }
    CEOID oid() const { return oid_; }
    CEOIDINFOEX info() const {
        CEOIDINFOEX info{};
        if (!CeOidGetInfoEx2(oid_, &info)) fail("ask a database");
        return info;
    }
    /// False behind the last one.
    bool readNext(StoredRecord& record) {
        WORD count = 0;
        record.oid = CeReadRecordPropsEx(handle_, CEDB_ALLOWREALLOC, &count, &buffer_, &size_);
        if (record.oid == 0 && GetLastError() == ERROR_NO_MORE_ITEMS) return false;
        if (record.oid == 0) fail("read a record");
        record.properties.removeAll();
        const auto* values = reinterpret_cast<const CEPROPVAL*>(buffer_);
        for (WORD i = 0; i < count; ++i)
            record.properties.addProp(CCeDBProp::ofPropVal(values[i]));
        return true;
    }

private:
    [[noreturn]] static void fail(const std::string& what) {
        throw std::runtime_error("cannot " + what + ": error " + std::to_string(GetLastError()));
    }

    CEOID oid_ = 0;
    HANDLE handle_;
    BYTE* buffer_ = nullptr;
    DWORD size_ = 0;
};

bool sameBits(const CCeDBProp& left, const CCeDBProp& right) {
    if (left.getPropId() != right.getPropId()) return false;
    if (left.getType() != CCeDBProp::typeR8) return left == right;
    return std::bit_cast<std::uint64_t>(left.getR8()) == std::bit_cast<std::uint64_t>(right.getR8());
}

void printText(std::ostream& out, WStringView text) {
    constexpr std::size_t most = 60;
    out << '"' << utf8Of(text.substr(0, most)) << '"';
    if (text.size() > most)
        out << "... (" << text.size() << " characters, hash " << std::hash<WStringView>()(text) << ")";
}

void printValue(std::ostream& out, const CCeDBProp& prop) {
    switch (prop.getType()) {
        case CCeDBProp::typeI2:
            out << prop.getI2();
            return;
        case CCeDBProp::typeUI2:
            out << prop.getUI2();
            return;
        case CCeDBProp::typeI4:
            out << prop.getI4();
            return;
        case CCeDBProp::typeUI4:
            out << prop.getUI4();
            return;
        case CCeDBProp::typeBool:
            out << prop.getBool();
            return;
        case CCeDBProp::typeR8:
            out << prop.getR8();
            return;
        case CCeDBProp::typeFileTime:
            out << ticksOf(prop.getFileTime());
            return;
        case CCeDBProp::typeText:
            printText(out, prop.getText().view());
            return;
        case CCeDBProp::typeBlob:
            for (const std::byte each : prop.getBlob())
                out << std::to_integer<unsigned>(each) << ' ';
            return;
    }
}

struct DatabaseOfTable {
    const WCHAR* name;
    const Database::RecordDef& schema;
};

/// The managed tables' databases and the platform's: the contacts table is another view of the latter.
std::vector<DatabaseOfTable> databasesOfPhoneBook() {
    std::vector<DatabaseOfTable> all = {{szContactsDatabase, PhoneBook::recdefPOlCRaw_}};
    for (std::size_t table = PhoneBook::PBDBTBL_PHONEBOOKEXT; table < PhoneBook::nNumTableSchemas_; ++table)
        all.push_back({PhoneBook::aszTableName_[table], PhoneBook::aRecDef_[table]});
    return all;
}

/// The identifiers along an order, sorted.
std::vector<CEOID> recordsAlong(const WCHAR* name, CEPROPID order) {
    OpenDatabase open(name, order);
    std::vector<CEOID> oids;
    for (StoredRecord record; open.readNext(record);)
        oids.push_back(record.oid);
    std::ranges::sort(oids);
    return oids;
}

/// The database, a line for each of its records, and the walk.
std::vector<std::string> linesOf(const StoredDatabase& database) {
    const std::string name = utf8Of(database.name);
    std::vector<std::string> lines;
    std::ostringstream head;
    head << name << ": identifier " << database.oid << ", " << database.recordCount << " records, "
         << database.byteCount << " bytes";
    lines.push_back(head.str());
    for (const StoredRecord& record : database.records) {
        std::ostringstream line;
        line << name << ' ' << record;
        lines.push_back(line.str());
    }
    std::ostringstream walk;
    walk << name << ", its walk:";
    for (const CEOID oid : database.walk)
        walk << ' ' << oid;
    lines.push_back(walk.str());
    return lines;
}

std::vector<std::string> linesOf(const StoreContents& contents) {
    std::vector<std::string> lines;
    for (const StoredDatabase& database : contents.databases)
        std::ranges::move(linesOf(database), std::back_inserter(lines));
    return lines;
}

}  // namespace

bool operator==(const StoredRecord& left, const StoredRecord& right) {
    if (left.oid != right.oid || left.properties.getNumProps() != right.properties.getNumProps()) return false;
    for (int i = 0; i < left.properties.getNumProps(); ++i) {
        if (!sameBits(left.properties.getPropAt(i), right.properties.getPropAt(i))) return false;
    }
    return true;
}

std::ostream& operator<<(std::ostream& out, const StoredRecord& record) {
    out << record.oid << ':';
    for (int i = 0; i < record.properties.getNumProps(); ++i) {
        const CCeDBProp& prop = record.properties.getPropAt(i);
        out << ' ' << std::hex << prop.getPropId() << std::dec << '=';
        printValue(out, prop);
    }
    return out;
}

StoredDatabase contentsOfDatabase(const WCHAR* name) {
    const ObjectStoreGlance glance;
    OpenDatabase open(name);
    StoredDatabase database;
    database.name = name;
    if (!open.isThere()) return database;
    const CEOIDINFOEX info = open.info();
    database.oid = open.oid();
    database.recordCount = info.dwNumRecords;
    database.byteCount = info.dwSize;
    for (StoredRecord record; open.readNext(record);) {
        database.walk.push_back(record.oid);
        database.records.push_back(record);
    }
    std::ranges::sort(database.records, {}, &StoredRecord::oid);
    return database;
}

const StoredDatabase& StoreContents::database(WStringView name) const {
    const auto found = std::ranges::find(databases, name, &StoredDatabase::name);
    if (found == databases.end()) throw std::out_of_range(utf8Of(name));
    return *found;
}

StoreContents contentsOfStore() {
    const ObjectStoreGlance glance;
    StoreContents contents;
    for (const DatabaseOfTable& database : databasesOfPhoneBook())
        contents.databases.push_back(contentsOfDatabase(database.name));
    return contents;
}

std::vector<std::string> faultsOfOrders() {
    const ObjectStoreBatch batch;  // one for all orders that are made
    std::vector<std::string> faults;
    for (const DatabaseOfTable& database : databasesOfPhoneBook()) {
        std::vector<CEOID> all = contentsOfDatabase(database.name).walk;
        std::ranges::sort(all);
        for (int i = 0; i < database.schema.getNumAttrs(); ++i) {
            const Database::AttrDef& attribute = *database.schema.getAttrDef(i);
            if (recordsAlong(database.name, attribute.getProp().getPropId()) == all) continue;
            faults.push_back(utf8Of(database.name) + " has other records by " + utf8Of(attribute.getName().view()));
        }
    }
    return faults;
}

std::ostream& operator<<(std::ostream& out, const StoreContents& contents) {
    for (const std::string& line : linesOf(contents))
        out << line << '\n';
    return out;
}

std::string differencesBetween(const StoreContents& expected, const StoreContents& found) {
    const auto missingFrom = [](const std::vector<std::string>& all, const std::vector<std::string>& those) {
        std::vector<std::string> missing;
        std::ranges::copy_if(
            those, std::back_inserter(missing),
            [held = std::set(all.begin(), all.end())](const auto& line) { return !held.contains(line); });
        return missing;
    };
    const std::vector<std::string> expectedLines = linesOf(expected);
    const std::vector<std::string> foundLines = linesOf(found);
    std::string differences;
    for (const std::string& line : missingFrom(foundLines, expectedLines))
        differences += "expected " + line + '\n';
    for (const std::string& line : missingFrom(expectedLines, foundLines))
        differences += "found    " + line + '\n';
    return differences;
}

}  // namespace testing_support
