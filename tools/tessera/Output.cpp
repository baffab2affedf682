#include "Output.h"

#include <algorithm>
#include <array>
#include <iostream>

#include "DisplayText.h"

namespace Tool {

namespace {

constexpr std::size_t labelWidth = 16;
constexpr std::size_t cellWidth = 40;

using Row = std::vector<std::string>;

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

Row rowOf(const Contact& contact) {
    Row row{std::to_string(contact.oid)};
    for (const auto attribute : tableAttributes)
        row.push_back(cutToWidth(displayable(fieldText(contact, fieldOf(attribute))), cellWidth));
    return row;
}

/// The width of each column that has a value, 0 for one that has none; the headings are row 0.
std::vector<std::size_t> columnWidths(const std::vector<Row>& rows) {
    std::vector<std::size_t> widths(rows.front().size(), 0);
    for (std::size_t row = 1; row < rows.size(); ++row) {
        for (std::size_t column = 0; column < widths.size(); ++column)
            widths[column] = std::max(widths[column], displayWidth(rows[row][column]));
    }
    for (std::size_t column = 0; column < widths.size(); ++column) {
        if (widths[column] != 0) widths[column] = std::max(widths[column], displayWidth(rows.front()[column]));
    }
    return widths;
}

std::string lineOf(const Row& row, const std::vector<std::size_t>& widths) {
    std::string line;
    for (std::size_t column = 0; column < row.size(); ++column) {
        if (widths[column] == 0) continue;
        line += row[column];
        line.append(widths[column] - displayWidth(row[column]) + 2, ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

void writeTable(std::span<const Contact> contacts) {
    if (contacts.empty()) return;
    std::vector<Row> rows{headings()};
    rows.reserve(contacts.size() + 1);
    for (const Contact& contact : contacts)
        rows.push_back(rowOf(contact));
    const auto widths = columnWidths(rows);
    for (const Row& row : rows)
        std::cout << lineOf(row, widths) << '\n';
}

std::string jsonArrayText(std::span<const Json> elements) {
    std::string text;
    for (const Json& element : elements) {
        text += text.empty() ? "[\n" : ",\n";
        text += displayableJson(element.dump());
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

void writeJson(const Json& document) {
    std::cout << displayableJson(document.dump()) << '\n';
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

void writeContacts(const Settings& settings, std::span<const Contact> contacts) {
    if (!settings.json) return writeTable(contacts);
    std::cout << jsonText(contacts);
}

ExitStatus nothingFound(const Settings& settings, const std::string& what, const Json& document) {
    if (settings.json) writeJson(document);
    std::cout.flush();
    std::cerr << "tessera: " << displayable(what) << '\n';
    return ExitStatus::nothingFound;
}

void writeLine(const std::string& label, const std::string& value) {
    std::cout << label << std::string(labelWidth - label.size(), ' ') << displayable(value) << '\n';
}

}  // namespace Tool
