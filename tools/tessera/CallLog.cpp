#include "CallLog.h"

#include <array>
#include <memory>

#include "Arguments.h"
#include "CallTimes.h"
#include "DisplayText.h"
#include "TextTable.h"
#include "tessera/platform/base/Results.h"
#include "tessera/platform/base/Unicode.h"

namespace Tool {

namespace {

using PhoneBook::CallEntry;
using PhoneBook::PhoneBookDBMgr;

struct CallType {
    DWORD number;
    const char* word;
};

/// The phone book leaves the numbers to its clients; these are the tool's.
constexpr std::array<CallType, 3> callTypes = {{{1, "incoming"}, {2, "outgoing"}, {3, "missed"}}};

const char* wordOf(DWORD type) {
    for (const CallType& known : callTypes) {
        if (known.number == type) return known.word;
    }
    return nullptr;
}

/// The number for people; what stands for a number that was withheld is no number.
std::string numberText(const CallEntry& call) {
    const bool withheld = call.strCID == PhoneBook::szWithheldCID_;
    return utf8Of((withheld ? call.strCID : PhoneBookDBMgr::makeTelNoStrFromCID(call.strCID)).view());
}

/// A text of a call for people.
struct CallLine {
    const char* label;
    std::string (*text)(const LoggedCall& call);
};

constexpr CallLine callLines[] = {
    {"Oid", [](const LoggedCall& call) { return std::to_string(call.oid); }},
    {"Time", [](const LoggedCall& call) { return localText(call.entry.ftTimestamp); }},
    {"Call", [](const LoggedCall& call) { return callTypeText(call.entry.dwCallType); }},
    {"Name", [](const LoggedCall& call) { return utf8Of(call.entry.strName.view()); }},
    {"Number", [](const LoggedCall& call) { return numberText(call.entry); }},
    {"Type",
     [](const LoggedCall& call) {
         const Field* field = numberField(call.entry.dwTelType);
         return std::string(field != nullptr ? field->key : "");
     }},
    {"Duration",
     [](const LoggedCall& call) {
         return call.entry.dwCallingTime != 0 ? durationText(call.entry.dwCallingTime) : std::string();
     }},
    {"CNAP", [](const LoggedCall& call) { return utf8Of(call.entry.strCNAP.view()); }},
    {"CDNIP", [](const LoggedCall& call) { return utf8Of(call.entry.strCDNIP.view()); }},
};

void putText(Json& object, const char* key, const CString& text) {
    if (!text.IsEmpty()) object[key] = utf8Of(text.view());
}

Json jsonOf(const LoggedCall& call) {
    const CallEntry& entry = call.entry;
    Json object{{"oid", call.oid}};
    if (const std::string time = isoTime(entry.ftTimestamp); !time.empty()) object["time"] = time;
    putText(object, "number", entry.strCID);
    putText(object, "name", entry.strName);
    if (const Field* field = numberField(entry.dwTelType); field != nullptr) object["type"] = field->key;
    if (const char* word = wordOf(entry.dwCallType); word != nullptr) {
        object["callType"] = word;
    } else {
        object["callType"] = entry.dwCallType;
    }
    if (entry.dwCallingTime != 0) object["duration"] = entry.dwCallingTime;
    putText(object, "cnap", entry.strCNAP);
    putText(object, "cdnip", entry.strCDNIP);
    return object;
}

void writeCallTable(const Settings& settings, const std::vector<LoggedCall>& calls) {
    std::vector<Row> rows(1);
    for (const CallLine& line : callLines)
        rows.front().emplace_back(line.label);
    for (const LoggedCall& call : calls) {
        Row& row = rows.emplace_back();
        for (const CallLine& line : callLines)
            row.push_back(displayable(line.text(call)));
    }
    writeTable(settings, rows);
}

}  // namespace

std::string callTypeText(DWORD type) {
    const char* word = wordOf(type);
    return word != nullptr ? word : std::to_string(type);
}

DWORD callTypeArgument(const std::string& value) {
    for (const CallType& known : callTypes) {
        if (value == known.word) return known.number;
    }
    const auto number = numberOf(value);
    if (!number) throw wrongUsage("--type wants incoming, outgoing, missed or a number, not \"" + value + "\"");
    return *number;
}

std::vector<DWORD> callOids(PhoneBookDBMgr& manager) {
    std::vector<DWORD> oids;
    const std::unique_ptr<Database::Iterator> each(
        manager.getIterator(UINT{PhoneBook::PBDBTBL_CALLHISTORY}, 0, nullptr, nullptr));
    while (each && each->next() == S_OK)
        oids.push_back(each->getCur());
    return oids;
}

std::vector<LoggedCall> readCalls(PhoneBookDBMgr& manager) {
    std::vector<LoggedCall> calls;
    for (const DWORD oid : callOids(manager)) {
        LoggedCall call{oid, {}};
        if (SUCCEEDED(manager.queryCallEntry(oid, &call.entry))) calls.push_back(call);
    }
    return calls;
}

void writeCall(const Settings& settings, const LoggedCall& call) {
    if (settings.json) return writeJson(jsonOf(call));
    for (const CallLine& line : callLines) {
        if (const std::string text = line.text(call); !text.empty()) writeLine(line.label, text);
    }
}

void writeCalls(const Settings& settings, const std::vector<LoggedCall>& calls) {
    if (!settings.json) return writeCallTable(settings, calls);
    std::vector<Json> objects;
    objects.reserve(calls.size());
    for (const LoggedCall& call : calls)
        objects.push_back(jsonOf(call));
    writeJsonArray(objects);
}

}  // namespace Tool
