#pragma once

#include <filesystem>
#include <string>

#include "tessera/phonebook/PhoneBookDBMgr.h"

// Phone books of a given size to measure on: the same people each time, Korean and Latin names in turn,
// each with a mobile number of its own, every third with a home number and a group.

namespace benchmarks {

/// A folder that goes with the process.
const std::filesystem::path& scratchFolder();

std::u16string nameOf(int person);
/// As somebody would write it, with dashes.
std::u16string mobileOf(int person);
/// The same reduced to digits.
std::u16string reducedMobileOf(int person);

/// A UTF-16LE import file with that many people, made when first asked for.
std::filesystem::path importFile(int people);

/// A store on disk that holds that many people, mounted, and a manager open over it. Warm: the contacts have
/// been searched once.
class PhoneBookOf {
public:
    explicit PhoneBookOf(int people);
    ~PhoneBookOf();
    PhoneBookOf(const PhoneBookOf&) = delete;
    PhoneBookOf& operator=(const PhoneBookOf&) = delete;

    PhoneBook::PhoneBookDBMgr& manager() { return manager_; }
    /// The store that holds that many people; made when first asked for.
    static std::filesystem::path storeFile(int people);

private:
    PhoneBook::PhoneBookDBMgr manager_;
};

}  // namespace benchmarks
