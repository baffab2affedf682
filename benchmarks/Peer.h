#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "benchmarks/People.h"

struct _EBookSqlite;

namespace benchmarks {

/// The peer: the address book of libedata-book, in this process, in a file of its own and as durable as it is of
/// itself. Whatever fails is thrown.
class PeerBook {
public:
    enum class Indexes {
        best,      ///< A summary of names and all numbers, both indexed: set up for the questions that are asked.
        asItComes  ///< What it sets up of itself: names, no numbers.
    };

    /// Makes the book when there is none.
    PeerBook(const std::filesystem::path& file, Indexes indexes);

    /// In units of 1,000.
    void import(const std::vector<Person>& people);
    /// Adds the person, or writes it over when the book has one of that number.
    void put(int number, const Person& person);
    void remove(int number);

    /// How many have exactly that number, as it is written; their whole cards are fetched.
    int withNumber(const std::u16string& number);
    /// How many have a name with that part, or that beginning; only who they are is fetched, the names are not.
    int withNamePart(const std::u16string& part);
    int withNameBeginning(const std::u16string& beginning);

private:
    struct Unref {
        void operator()(_EBookSqlite* book) const;
    };
    std::unique_ptr<_EBookSqlite, Unref> book_;
};

}  // namespace benchmarks
