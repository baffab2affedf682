// import: contacts from a file, of our own or as other programs and phones write them.

#include <memory>
#include <string>
#include <vector>

#include "Arguments.h"
#include "Command.h"
#include "Commands.h"
#include "DraftImport.h"
#include "DraftReport.h"
#include "FileContent.h"
#include "ImportFile.h"
#include "ImportReport.h"
#include "Store.h"
#include "exchange/CsvContact.h"
#include "exchange/Encoding.h"
#include "exchange/FileFormat.h"
#include "exchange/SourceText.h"
#include "exchange/VCardContact.h"
#include "tessera/platform/base/Results.h"

namespace Tool {

namespace {

struct ImportArguments {
    std::string path;
    std::string format;  ///< Empty: the file's content says it.
    std::string encoding;
    std::vector<std::string> mappings;
    bool isDryRun = false;
    bool keepsDuplicates = false;
};

constexpr int contactLines = 0;  // the mode in which a file's name is not looked at

Failure allBad(const SourceText& source, const std::string& units) {
    return Failure(source.path() + ": none of its " + units + " can be imported");
}

/// The library's own import reads the lines, as far as the file is one of contacts.
ExitStatus importOwn(const Settings& settings, const ImportArguments& arguments, const SourceText& source) {
    const ImportFile file(source.path(), source.utf8());  // before the store: a bad file makes none
    ImportReport report(settings, file, arguments.isDryRun);
    if (arguments.isDryRun || file.isAllBad()) {
        report.tellAll();
        report.finish();
        if (file.isAllBad()) throw allBad(source, "lines");
        return ExitStatus::done;
    }
    Store store(settings, Store::WhenMissing::make);
    CString clean = textArgument("FILE", file.cleanPath());
    if (FAILED(store.manager().buildDBFromFile(clean, contactLines, &report))) {
        throw Failure("the import stopped; " + std::to_string(report.imported()) +
                      " lines are in the phone book: " + storeErrorText(store.path()));
    }
    report.finish();
    return ExitStatus::done;
}

/// Where nothing is to be written a phone book that is missing stays so.
std::unique_ptr<Store> storeFor(const Settings& settings, bool isOnlyRead) {
    try {
        return std::make_unique<Store>(settings, isOnlyRead ? Store::WhenMissing::fail : Store::WhenMissing::make);
    } catch (const NoPhoneBook&) {
        return nullptr;
    }
}

ExitStatus importDrafts(const Settings& settings, const ImportArguments& arguments, const SourceText& source,
                        DraftedFile file) {
    refuseTooLong(file.drafts);
    const bool isAllBad = file.isAllBad();
    const std::unique_ptr<Store> store = storeFor(settings, arguments.isDryRun || isAllBad);
    Duplicates known;
    if (store && !arguments.keepsDuplicates) known.addContactsOf(store->manager());
    DraftReport report(settings, file, arguments.isDryRun);
    DraftImport import(arguments.isDryRun ? nullptr : store.get(), arguments.keepsDuplicates ? nullptr : &known,
                       report);
    import.run(file.drafts);
    report.finish();
    if (isAllBad) throw allBad(source, file.units);
    return ExitStatus::done;
}

std::vector<ColumnMapping> mappingsOf(const ImportArguments& arguments) {
    std::vector<ColumnMapping> mappings;
    for (const std::string& each : arguments.mappings)
        mappings.push_back(columnMappingOf(each));
    return mappings;
}

/// A file of which somebody says what its columns are is a table.
FileFormat formatOf(const ImportArguments& arguments, const SourceText& source) {
    if (!arguments.format.empty()) return choiceArgument("--format", arguments.format, fileFormats);
    return arguments.mappings.empty() ? recogniseFormat(source) : FileFormat::csv;
}

/// Before the file is read: what is wrong with the command line is said first.
void requireSense(const ImportArguments& arguments) {
    const bool isTable =
        arguments.format.empty() || choiceArgument("--format", arguments.format, fileFormats) == FileFormat::csv;
    if (!arguments.mappings.empty() && !isTable)
        throw wrongUsage("--map is about the columns of a table: it goes with --format csv only");
    if (!arguments.encoding.empty() && !isKnownEncoding(arguments.encoding))
        throw wrongUsage("--encoding: there is no encoding \"" + arguments.encoding + "\"");
}

ExitStatus import(const Settings& settings, const ImportArguments& arguments) {
    const std::vector<ColumnMapping> mappings = mappingsOf(arguments);
    requireSense(arguments);
    const SourceText source(nameOfSource(arguments.path), contentOf(arguments.path), arguments.encoding);
    switch (formatOf(arguments, source)) {
        case FileFormat::tessera:
            return importOwn(settings, arguments, source);
        case FileFormat::vcard:
            return importDrafts(settings, arguments, source, draftsOfVCards(source));
        case FileFormat::csv:
            return importDrafts(settings, arguments, source, draftsOfCsv(source, source.utf8(), mappings));
    }
    return ExitStatus::done;
}

}  // namespace

void defineImport(Command& program, const Settings& settings, Action& chosen) {
    Command& command = program.add(
        {.name = "import",
         .summary = "Add the contacts of a file; makes the phone book when there is none",
         .details =
             {"FILE holds cards of a phone or another program (vCard 2.1, 3.0 or 4.0), a table with headings as "
              "other programs write it, or an export of this phone book. Which it is, and the encoding of its "
              "text, is told by its content, unless '--format' and '--encoding' say it. '-' is standard input.",
              "Of a file that cannot be understood nothing is imported. A card, row or line that cannot is named "
              "with the reason, and the others are imported. What has no place in a contact is named as well.",
              "Somebody of a card or a table who is known already, from the phone book or from the file, is "
              "skipped: one with the same name and one of the same numbers in any spelling, or, without a number, "
              "with the same e-mail address. An export of this phone book comes back line for line.",
              "The fields for '--map' are the keys of a contact in JSON, and 'first-name', 'last-name', 'company', "
              "'number' (of no kind) and 'nothing'. A number such as +821023456789 gets a space behind its country "
              "calling code.",
              "Exit status: 0 what can be imported is in the phone book, 2 wrong usage, 3 none of it can be, or "
              "the import stopped."},
         .examples = {"tessera import contacts.csv", "tessera import --dry-run contacts.csv",
                      "tessera export --format vcard | tessera --store copy.db import -"}});
    const auto arguments = std::make_shared<ImportArguments>();
    command.completeWithFiles(
        command.add_option("FILE", arguments->path, "Cards, a table with headings, or an export")->required());
    command.completeWithWords(
        command.add_option("--format", arguments->format, "What the file is: vcard, csv, or tessera for an export")
            ->type_name("FORMAT"),
        {"vcard", "csv", "tessera"});
    command.add_option("--encoding", arguments->encoding, "The encoding of its text, such as CP949")->type_name("NAME");
    command.add_option("--map", arguments->mappings, "What a column of the table is about; may be repeated")
        ->type_name("COLUMN=FIELD")
        ->allow_extra_args(false);
    command.add_flag("--dry-run", arguments->isDryRun, "Tell what would be imported, and write nothing");
    command.add_flag("--keep-duplicates", arguments->keepsDuplicates, "Import also who is known already");
    command.callback(
        [&settings, &chosen, arguments] { chosen = [&settings, arguments] { return import(settings, *arguments); }; });
}

}  // namespace Tool
