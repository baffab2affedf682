// export: all contacts, as a file that import or other programs read, or as JSON.

#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <system_error>
#include <vector>

#include "Arguments.h"
#include "Command.h"
#include "Commands.h"
#include "ExportText.h"
#include "Output.h"
#include "Records.h"
#include "Store.h"
#include "System.h"
#include "exchange/CsvWriter.h"
#include "exchange/FileFormat.h"
#include "exchange/VCardWriter.h"

namespace Tool {

namespace {

struct ExportArguments {
    std::string path;  ///< Empty: standard output.
    std::string format;
    std::string version;
};

const std::map<std::string, VCardVersion> vcardVersions = {
    {"2.1", VCardVersion::v21}, {"3.0", VCardVersion::v30}, {"4.0", VCardVersion::v40}};

void refuseStore(const Store& store, const std::string& path) {
    std::error_code missing;
    if (std::filesystem::equivalent(pathOf(path), pathOf(store.path()), missing))
        throw wrongUsage(path + ": is the phone book itself");
}

/// Of the three the one that most programs read today, unless another is named.
VCardVersion versionOf(const ExportArguments& arguments) {
    return arguments.version.empty() ? VCardVersion::v30
                                     : choiceArgument("--vcard-version", arguments.version, vcardVersions);
}

/// Who names a version, or a file as cards are named, wants cards.
FileFormat formatOf(const ExportArguments& arguments) {
    if (!arguments.format.empty()) return choiceArgument("--format", arguments.format, fileFormats);
    const bool isNamedForCards = arguments.path.ends_with(".vcf") || arguments.path.ends_with(".vcard");
    return !arguments.version.empty() || isNamedForCards ? FileFormat::vcard : FileFormat::tessera;
}

std::string cardsOf(std::span<const Contact> contacts, VCardVersion version) {
    std::string bytes;
    for (const Contact& contact : contacts)
        bytes += vcardOf(contact, version);
    return bytes;
}

std::string tableOf(std::span<const Contact> contacts) {
    std::string bytes = csvHeader();
    for (const Contact& contact : contacts)
        bytes += csvRowOf(contact);
    return bytes;
}

std::string bytesOf(const Settings& settings, const ExportArguments& arguments, std::span<const Contact> contacts) {
    if (settings.json) return jsonText(contacts);
    const FileFormat format = formatOf(arguments);
    if (format == FileFormat::tessera) return exportText(contacts);
    for (const Contact& contact : contacts)
        requireWellFormed(contact);
    return format == FileFormat::csv ? tableOf(contacts) : cardsOf(contacts, versionOf(arguments));
}

void requireSense(const Settings& settings, const ExportArguments& arguments) {
    if (settings.json && !(arguments.format.empty() && arguments.version.empty()))
        throw wrongUsage("--json is a format of its own: it goes with neither --format nor --vcard-version");
    const FileFormat format = formatOf(arguments);
    if (!arguments.version.empty() && format != FileFormat::vcard)
        throw wrongUsage("--vcard-version goes with --format vcard only");
    static_cast<void>(versionOf(arguments));  // one that there is not is refused before all is read
    // The texts in a file stand as they are, whatever they do to a terminal.
    if (arguments.path.empty() && !settings.json && outputIsTerminal())
        throw wrongUsage("export writes no file to a terminal: it wants a FILE, or --json");
}

ExitStatus exportAll(const Settings& settings, const ExportArguments& arguments) {
    requireSense(settings, arguments);
    Store store(settings, Store::WhenMissing::fail);
    refuseStore(store, arguments.path);
    const auto contacts =
        readContacts(store.manager(), store.manager().getIterator(PhoneBook::PBDBATTR_NAME, nullptr, nullptr));
    const std::string bytes = bytesOf(settings, arguments, contacts);
    if (arguments.path.empty()) {
        std::cout << bytes;
    } else {
        replaceFile(arguments.path, bytes);
    }
    return ExitStatus::done;
}

}  // namespace

void defineExport(Command& program, const Settings& settings, Action& chosen) {
    Command& command = program.add(
        {.name = "export",
         .summary = "Write all contacts as a file that import reads, as cards, as a table, or as JSON",
         .details =
             {"The contacts are written in the order of their names. Standard output gets only JSON when "
              "it is a terminal. A FILE that exists is replaced at once when all is written; nobody else "
              "can read the new one.",
              "With '--format vcard', as for a FILE whose name ends with .vcf, they are cards of the version that "
              "most programs read, 3.0, or of the one that is named; with '--format csv' a table for other "
              "programs.",
              "Without '--format', a contact that the import format cannot hold is an error, and nothing is "
              "written. With --json the contacts are written as 'list' writes them, and that holds all of them."},
         .examples = {"tessera export contacts.csv", "tessera export people.vcf", "tessera export --json"}});
    const auto arguments = std::make_shared<ExportArguments>();
    command.completeWithFiles(
        command.add_option("FILE", arguments->path, "The file to make or replace; else standard output"));
    command.completeWithWords(
        command.add_option("--format", arguments->format, "tessera (as without it), vcard or csv")->type_name("FORMAT"),
        {"tessera", "vcard", "csv"});
    command.completeWithWords(
        command.add_option("--vcard-version", arguments->version, "2.1, 3.0 or 4.0")->type_name("VERSION"),
        {"2.1", "3.0", "4.0"});
    command.callback([&settings, &chosen, arguments] {
        chosen = [&settings, arguments] { return exportAll(settings, *arguments); };
    });
}

}  // namespace Tool
