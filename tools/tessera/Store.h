#pragma once

#include <memory>
#include <string>

#include "Failure.h"
#include "Settings.h"
#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tessera/platform/objectstore/ObjectStore.h"

namespace Tool {

/// There is no phone book where one is wanted.
class NoPhoneBook : public Failure {
public:
    using Failure::Failure;
};

/// The store is damaged.
class DamagedStore : public Failure {
public:
    explicit DamagedStore(const std::string& why);

    /// The same without what the user can do about it.
    const std::string& why() const { return why_; }

private:
    std::string why_;
};

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

    /// Throws a Failure that says why the store failed unless `done`.
    void require(bool done) const;
    /// Makes a group of each category that has none, and gives the others their category's name.
    void bringGroupsIntoStep();

private:
    void mount();
    void makePhoneBook();
    void addDefaultCategories();

    std::string path_;
    std::unique_ptr<PhoneBook::PhoneBookDBMgr> manager_;
    bool wasMade_ = false;
};

/// Makes all that is written while it lives one unit, which others see whole or not at all. It takes nothing back:
/// what can be refused is to be refused before the first write.
class WritingUnit {
public:
    /// Throws a Failure when the store cannot be had for writing.
    explicit WritingUnit(const Store& store) : store_(store) { store_.require(batch_.begun()); }

    /// Throws a Failure when the unit could not be kept.
    void end() { store_.require(batch_.end()); }

private:
    const Store& store_;
    ObjectStoreBatch batch_;
};

/// The file that the command line names, else the environment.
std::string storePathOf(const Settings& settings);

/// Why the store failed: its own sentence, with the file's name in it.
std::string storeErrorText(const std::string& path);
/// The same where another file was made of it: the sentence can be about that one.
std::string storeErrorText(const std::string& path, const std::string& made);
/// Throws the same as a Failure, with what the user can do about it: a DamagedStore if it is that.
[[noreturn]] void failStore(const std::string& path);
[[noreturn]] void failStore(const std::string& path, const std::string& made);

}  // namespace Tool
