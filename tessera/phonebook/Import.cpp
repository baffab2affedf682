#include <algorithm>
#include <chrono>
#include <optional>
#include <vector>

#include "tessera/common/CommaSepValList.h"
#include "tessera/phonebook/Operation.h"
#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tessera/phonebook/model/NumberText.h"
#include "tessera/platform/base/CFile.h"
#include "tessera/platform/base/COleDateTime.h"

namespace PhoneBook {

namespace {

constexpr int rowsMode = 1;

/// The text of a UTF-16LE file up to its first zero character; nothing when the file cannot be opened.
std::optional<std::vector<WCHAR>> readText(const CString& path) {
    CFile file;
    if (!file.Open(path, CFile::modeRead | CFile::shareDenyWrite | CFile::typeBinary)) return std::nullopt;
    std::vector<WCHAR> text(static_cast<std::size_t>(file.GetLength() / sizeof(WCHAR)));
    const std::size_t read = file.Read(text.data(), text.size() * sizeof(WCHAR));
    text.resize(read / sizeof(WCHAR));
    text.erase(std::ranges::find(text, u'\0'), text.end());
    return text;
}

/// Takes the next line off the text, without its line feed.
WStringView takeLine(WStringView& text) {
    const std::size_t end = text.find(u'\n');
    const WStringView line = text.substr(0, end);
    text.remove_prefix(end == WStringView::npos ? text.size() : end + 1);
    return line;
}

/// The managed table that a file is named for; -1 when none is.
int tableNamedBy(const CString& path) {
    const CString fileName = path.Mid(path.ReverseFind(u'/') + 1);
    for (int id = 0; id < nNumTables_; ++id) {
        if (fileName == CString(aszTableName_[static_cast<std::size_t>(id)]) + TEXT(".csv")) return id;
    }
    return -1;
}

CCeDBProp valueOfColumn(const Database::AttrDef& attr, const CString& text) {
    // What a block column receives, whatever the file holds: meant so.
    static constexpr WStringView filler = TEXT("한글이다. ");
    switch (attr.getType()) {
        case CCeDBProp::typeI2:
            return CCeDBProp::ofI2(attr.getIdent(), static_cast<std::int16_t>(wcstolText(text)));
        case CCeDBProp::typeBool:
            return CCeDBProp::ofBool(attr.getIdent(), wcstolText(text) != 0);
        case CCeDBProp::typeUI4:
            return CCeDBProp::ofUI4(attr.getIdent(), wcstoulText(text));
        case CCeDBProp::typeText:
            return CCeDBProp::ofText(attr.getIdent(), text);
        case CCeDBProp::typeBlob:
            return CCeDBProp::ofBlob(attr.getIdent(), filler.data(), filler.size() * sizeof(WCHAR));
        default:
            return CCeDBProp(attr.getType(), attr.getIdent());
    }
}

/// Commits as an import goes along: often enough that other writers get their turn, seldom enough that
/// the import runs at the speed of the disk.
class ImportBatches {
public:
    explicit ImportBatches(ImportListener* listener) : listener_(listener) {}

    /// False when the store cannot be had for writing.
    bool beginLine() {
        if (batch_.has_value()) return true;
        began_ = std::chrono::steady_clock::now();
        lines_ = 0;
        batch_.emplace();
        return batch_->begun();
    }
    /// False when what was inserted could not be made durable.
    bool endLine(int line) {
        lastLine_ = line;
        const bool full = ++lines_ >= linesPerBatch || std::chrono::steady_clock::now() - began_ >= timePerBatch;
        return !full || commit();
    }
    bool commit() {
        if (!batch_.has_value()) return true;
        const bool durable = batch_->end();
        batch_.reset();
        if (durable && listener_ != nullptr) listener_->linesCommitted(lastLine_);
        return durable;
    }

private:
    static constexpr int linesPerBatch = 1'000;
    static constexpr std::chrono::milliseconds timePerBatch{250};

    ImportListener* listener_;
    std::optional<ObjectStoreBatch> batch_;
    std::chrono::steady_clock::time_point began_;
    int lines_ = 0;
    int lastLine_ = 0;
};

}  // namespace

HRESULT PhoneBookDBMgr::buildDBFromFile(CString& path, int mode, ImportListener* listener) {
    return operation([&]() -> HRESULT {
        const int tableId = mode == 0 ? PBDBTBL_POLCONTACTS : tableNamedBy(path);
        if (tableId < 0) return E_FAIL;
        const auto text = readText(path);
        if (!text.has_value()) return E_FAIL;

        WStringView rest(text->data(), text->size());
        takeLine(rest);  // the header, whatever it holds
        ImportBatches batches(listener);
        CStringArray values;
        for (int line = 2; !rest.empty(); ++line) {
            common::CommaSepValList(CString(takeLine(rest))).getList(values);
            if (!batches.beginLine()) return E_FAIL;
            DWORD oid = 0;
            // A line that makes no entry is passed over.
            const HRESULT result =
                mode == rowsMode ? importRow(static_cast<UINT>(tableId), values) : importEntry(values, oid);
            if (listener != nullptr) listener->lineTried(line, result, oid);
            if (!batches.endLine(line)) return E_FAIL;
        }
        return batches.commit() ? S_OK : E_FAIL;
    });
}

HRESULT PhoneBookDBMgr::importEntry(CStringArray& values, DWORD& oid) {
    PBRecord record;
    getPBRecord(values, record);
    return insertPBRecord(record, &oid);
}

HRESULT PhoneBookDBMgr::importRow(UINT tableId, const CStringArray& values) {
    const Database::RecordDef& schema = aRecDef_[tableId];
    if (tables_[tableId] == nullptr) return E_FAIL;
    if (schema.getNumAttrs() > values.GetSize()) return E_INVALIDARG;
    std::vector<CCeDBProp> props;
    props.reserve(static_cast<std::size_t>(schema.getNumAttrs()));
    for (int i = 0; i < schema.getNumAttrs(); ++i)
        props.push_back(valueOfColumn(*schema.getAttrDef(i), values[i]));
    DWORD oid = 0;
    return tables_[tableId]->insertRecord(props.data(), oid);
}

HRESULT PhoneBookDBMgr::getPBRecord(CStringArray& values, PBRecord& record) {
    DWORD filled = 0;
    for (int i = 0; i < values.GetSize() && i + 1 < nNumPBAttrs_; ++i) {
        const CString& text = values[i];
        const PBAttribute& attribute = aPBAttribute_[static_cast<std::size_t>(i) + 1];
        if (text.IsEmpty()) continue;
        filled |= attribute.mask;
        if (attribute.text != nullptr) record.*attribute.text = text;
        if (attribute.number != nullptr) record.*attribute.number = static_cast<DWORD>(wcstolText(text));
        if (attribute.date != nullptr) {
            COleDateTime date;
            date.ParseDateTime(text);
            record.*attribute.date = date.date();
        }
    }
    record.dwCITypeMask = filled;
    return S_OK;
}

}  // namespace PhoneBook
