#include "Output.h"

#include <array>
#include <iostream>

#include "Colour.h"
#include "DisplayText.h"
#include "Numbers.h"
#include "TextTable.h"
#include "tessera/platform/base/Unicode.h"

namespace Tool {

namespace {

constexpr std::size_t labelWidth = 16;

constexpr std::array tableAttributes = {PhoneBook::PBDBATTR_NAME,        PhoneBook::PBDBATTR_GROUP,
                                        PhoneBook::PBDBATTR_MOBILETEL,   PhoneBook::PBDBATTR_HOMETEL,
                                        PhoneBook::PBDBATTR_BUSINESSTEL, PhoneBook::PBDBATTR_PAGER,
                                        PhoneBook::PBDBATTR_BUSINESSFAX};

Row headings() {
    Row row{"Oid"};
    for (const auto attribute : tableAttributes)
        row.emplace_back(fieldOf(attribute).label);
    return row;
}

/// The number with all that matches the digits marked.
Cell cellOfNumber(WStringView number, const CString& digits) {
    const auto displayed = [number](std::size_t end) { return displayable(utf8Of(number.substr(0, end))); };
    Cell cell = displayed(number.size());
    for (const TextRange& range : placesOf(digits.view(), number))
        cell.marked.push_back({displayed(range.begin).size(), displayed(range.end).size()});
    return cell;
}

Row rowOf(const Contact& contact, const CString& digits) {
    Row row{std::to_string(contact.oid)};
    for (const auto attribute : tableAttributes) {
        const Field& field = fieldOf(attribute);
        const bool isNumber = PhoneBook::PhoneBookDBMgr::isTelNoAttr(attribute) && contact.has(field);
        row.push_back(isNumber ? cellOfNumber((contact.record.*field.model().text).view(), digits)
                               : Cell(displayable(fieldText(contact, field))));
    }
    return row;
}

void writeContactTable(const Settings& settings, std::span<const Contact> contacts, const CString& digits) {
    std::vector<Row> rows{headings()};
    rows.reserve(contacts.size() + 1);
    for (const Contact& contact : contacts)
        rows.push_back(rowOf(contact, digits));
    writeTable(settings, rows);
}

std::string jsonArrayText(std::span<const Json> elements) {
    std::string text;
    for (const Json& element : elements) {
        text += text.empty() ? "[\n" : ",\n";
        text += jsonLine(element);
    }
    return elements.empty() ? "[]\n" : text + "\n]\n";
}

}  // namespace

Json jsonOf(const Contact& contact) {
    Json object{{"oid", contact.oid}};
    for (const Field& field : fields) {
        if (!contact.has(field)) continue;
        if (field.model().number != nullptr) {
            object[field.key] = contact.record.*field.model().number;
        } else {
            object[field.key] = fieldText(contact, field);
        }
    }
    return object;
}

std::string jsonLine(const Json& document) {
    constexpr int onOneLine = -1;
    return displayableJson(document.dump(onOneLine, ' ', false, Json::error_handler_t::replace));
}

void writeJson(const Json& document) {
    std::cout << jsonLine(document) << '\n';
}

void writeJsonArray(std::span<const Json> elements) {
    std::cout << jsonArrayText(elements);
}

std::string jsonText(std::span<const Contact> contacts) {
    std::vector<Json> objects;
    objects.reserve(contacts.size());
    for (const Contact& contact : contacts)
        objects.push_back(jsonOf(contact));
    return jsonArrayText(objects);
}

void writeContact(const Settings& settings, const Contact& contact) {
    if (settings.json) return writeJson(jsonOf(contact));
    writeLine("Oid", std::to_string(contact.oid));
    for (const Field& field : fields) {
        // A row without speed-dial slots says so with a 0, which tells people nothing.
        const bool noSlots = field.attribute == PhoneBook::PBDBATTR_PRIVATE && contact.record.dwPrivate == 0;
        if (contact.has(field) && !noSlots) writeLine(field.label, fieldText(contact, field));
    }
}

void writeContacts(const Settings& settings, std::span<const Contact> contacts, const CString& digits) {
    if (!settings.json) return writeContactTable(settings, contacts, digits);
    std::cout << jsonText(contacts);
}

ExitStatus nothingFound(const Settings& settings, const std::string& what, const Json& document) {
    if (settings.json) writeJson(document);
    complain(settings, what);
    return ExitStatus::nothingFound;
}

void complain(const Settings& settings, const std::string& what) {
    std::cout.flush();
    std::cerr << accented("tessera:", Accent::error, errorHasColour(settings)) << ' ' << displayable(what) << '\n';
}

void writeLine(const std::string& label, const std::string& value) {
    std::cout << label << std::string(labelWidth - label.size(), ' ') << displayable(value) << '\n';
}

void writeMatch(const Settings& settings, const std::string& label, const std::string& value) {
    std::cout << label << std::string(labelWidth - label.size(), ' ')
              << accented(displayable(value), Accent::match, outputHasColour(settings)) << '\n';
}

}  // namespace Tool
