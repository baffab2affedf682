#include "Store.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <system_error>

#include "CategoryTable.h"
#include "Failure.h"
#include "System.h"
#include "tessera/platform/base/Results.h"

namespace Tool {

namespace {

bool isMissing(const std::string& path) {
    std::error_code error;
    return std::filesystem::status(pathOf(path), error).type() == std::filesystem::file_type::not_found;
}

NoPhoneBook noPhoneBook(const std::string& path) {
    return NoPhoneBook("there is no phone book in " + path +
                       R"(; make one with "tessera init", or with "tessera import FILE" from a file of contacts)");
}

struct Advice {
    DWORD error;
    const char* text;
};

constexpr Advice advices[] = {
    {ERROR_LOCK_VIOLATION, "; try again when that is done"},
    {ERROR_REVISION_MISMATCH, "; use that version or a newer one"},
    {ERROR_BAD_FORMAT, "; name the phone book's file with --store or TESSERA_STORE"},
};

}  // namespace

std::string storePathOf(const Settings& settings) {
    return settings.storePath.empty() ? ObjectStore::environmentPath() : settings.storePath;
}

std::string storeErrorText(const std::string& path) {
    return storeErrorText(path, path);
}

std::string storeErrorText(const std::string& path, const std::string& made) {
    const std::string text = ObjectStore::errorText();
    if (text.empty()) return path + ": the store does not answer";
    const bool namesFile = text.find(path) != std::string::npos || text.find(made) != std::string::npos;
    return namesFile ? text : path + ": " + text;
}

void failStore(const std::string& path) {
    failStore(path, path);
}

void failStore(const std::string& path, const std::string& made) {
    const std::string why = storeErrorText(path, made);
    if (ObjectStore::errorText().empty()) throw Failure(why);
    if (GetLastError() == ERROR_FILE_CORRUPT) throw DamagedStore(why);
    const auto* const advice = std::ranges::find(advices, GetLastError(), &Advice::error);
    throw Failure(why + (advice != std::end(advices) ? advice->text : ""));
}

DamagedStore::DamagedStore(const std::string& why)
    : Failure(why + R"(; see how far with "tessera check", and save what can be read with "tessera recover")"),
      why_(why) {}

Store::Store(const Settings& settings, WhenMissing whenMissing) : path_(storePathOf(settings)) {
    if (whenMissing == WhenMissing::fail && isMissing(path_)) throw noPhoneBook(path_);
    mount();
    manager_ = std::make_unique<PhoneBook::PhoneBookDBMgr>();
    if (SUCCEEDED(manager_->openDB(nullptr))) return;
    // A store that another program made may be without a phone book; anything else is an error.
    if (GetLastError() != ERROR_FILE_NOT_FOUND) failStore(path_);
    if (whenMissing == WhenMissing::fail) throw noPhoneBook(path_);
    makePhoneBook();
}

Store::~Store() {
    manager_.reset();
    ObjectStore::unmount();
}

void Store::mount() {
    if (!ObjectStore::mount(path_)) failStore(path_);
}

void Store::require(bool done) const {
    if (!done) failStore(path_);
}

void Store::makePhoneBook() {
    WritingUnit unit(*this);
    addDefaultCategories();
    bringGroupsIntoStep();
    unit.end();
    wasMade_ = true;
}

/// Another program may have made categories of its own: then those are the groups.
void Store::addDefaultCategories() {
    CategoryTable categories(*this);
    if (!categories.inNameOrder().empty()) return;
    int id = 0;
    for (const WCHAR* name : PhoneBook::PhoneBookDBMgr::aszDefPBGroupName_)
        categories.add(name, ++id);
}

void Store::bringGroupsIntoStep() {
    manager_->closeDB();
    require(SUCCEEDED(manager_->initDB(false)) && SUCCEEDED(manager_->openDB(nullptr)));
}

}  // namespace Tool
