#pragma once

#include <memory>
#include <string>

#include "Settings.h"
#include "tessera/phonebook/PhoneBookDBMgr.h"

namespace Tool {

/// The phone book, open while this lives.
class Store {
public:
    enum class WhenMissing { fail, make };

    /// Throws a Failure that names the file when it cannot be opened, or when it is missing and not to be made.
    Store(const Settings& settings, WhenMissing whenMissing);
    ~Store();
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;

    PhoneBook::PhoneBookDBMgr& manager() { return *manager_; }
    const std::string& path() const { return path_; }
    /// There was no phone book before.
    bool wasMade() const { return wasMade_; }

private:
    void mount();
    void makePhoneBook();

    std::string path_;
    std::unique_ptr<PhoneBook::PhoneBookDBMgr> manager_;
    bool wasMade_ = false;
};

/// Why the store failed: its own sentence, with the file's name in it.
std::string storeErrorText(const std::string& path);

}  // namespace Tool
