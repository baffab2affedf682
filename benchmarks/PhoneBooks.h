#pragma once

#include <filesystem>

#include <benchmark/benchmark.h>

#include "benchmarks/People.h"
#include "tessera/phonebook/PhoneBookDBMgr.h"

// Phone books of a given size to measure on.

namespace benchmarks {

/// The people that a benchmark is about, by its argument: a million have contacts only.
People peopleOf(const benchmark::State& state);
/// 1,000, 10,000 and 65,000 people; and a million.
void severalSizes(benchmark::internal::Benchmark* benchmark);
void allSizes(benchmark::internal::Benchmark* benchmark);

/// A UTF-16LE import file with these people, made when first asked for.
std::filesystem::path importFile(const People& people);
/// A store that holds these people, made when first asked for.
std::filesystem::path storeOf(const People& people);
/// The one for benchmarks that change people and leave them as they were. That of a million is no other: one more
/// would only burden the disk.
std::filesystem::path storeToChange(const People& people);
/// Asks for all there is of who has that reduced number; answers the contact, 0 when nobody has exactly that number.
DWORD identify(PhoneBook::PhoneBookDBMgr& manager, const CString& number);
/// The person as an entry of the phone book.
PhoneBook::PBRecord recordOf(const Person& person);

/// A store in a file, mounted while this lives, and a manager open over it.
class OpenBook {
public:
    explicit OpenBook(const std::filesystem::path& store);
    ~OpenBook();
    OpenBook(const OpenBook&) = delete;
    OpenBook& operator=(const OpenBook&) = delete;

    PhoneBook::PhoneBookDBMgr& manager() { return manager_; }

private:
    PhoneBook::PhoneBookDBMgr manager_;
};

/// Searches all contacts for a name that nobody has.
void searchContacts(PhoneBook::PhoneBookDBMgr& manager);

/// The manager of a store whose contacts have been searched once. It stays open for the next benchmark that asks for
/// the same store, until another store is opened or `closeBook` is called: a process has one store at a time.
PhoneBook::PhoneBookDBMgr& warmBook(const std::filesystem::path& store);
void closeBook();

/// Closes the book and takes the memory that was kept of its contacts away.
void forgetContacts();

}  // namespace benchmarks
