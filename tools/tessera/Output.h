#pragma once

#include <span>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "Failure.h"
#include "Records.h"
#include "Settings.h"

namespace Tool {

/// Keeps its keys in the order in which they were put.
using Json = nlohmann::ordered_json;

/// A contact with its fields under their keys, without those that it lacks.
Json jsonOf(const Contact& contact);

/// A document on one line, as it may be shown on a terminal. A byte that is no UTF-8, as a path may have, becomes
/// U+FFFD.
std::string jsonLine(const Json& document);

/// Writes one document, or one line of a stream, to standard output.
void writeJson(const Json& document);

/// A contact field by field, or as one JSON object.
void writeContact(const Settings& settings, const Contact& contact);

/// A table of contacts, aligned by display width, without the columns that all of them leave empty; or a
/// JSON array with an object a line. In the table the digits that were looked for stand out in all numbers.
void writeContacts(const Settings& settings, std::span<const Contact> contacts, const CString& digits = CString());
void writeJsonArray(std::span<const Json> elements);

/// Contacts as a JSON array with an object a line.
std::string jsonText(std::span<const Contact> contacts);

/// Says on standard error what was not found; in JSON, standard output gets the document for nothing.
ExitStatus nothingFound(const Settings& settings, const std::string& what, const Json& document = Json());

/// Says on standard error what is wrong, in one line, behind all that was written to standard output before.
void complain(const Settings& settings, const std::string& what);

/// A label and its value, aligned with the other lines about one contact.
void writeLine(const std::string& label, const std::string& value);
/// The same for a value that was looked for: it stands out.
void writeMatch(const Settings& settings, const std::string& label, const std::string& value);

}  // namespace Tool
