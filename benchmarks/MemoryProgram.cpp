// Opens a store and searches its contacts; says how many bytes that has allocated, by the allocator's own account, less
// what SQLite has of them. A process of its own, in which nothing is left of other stores.
//   tessera_memory STORE

#include <exception>
#include <iostream>
#include <malloc.h>

#include <sqlite3.h>

#include "benchmarks/PhoneBooks.h"

namespace {

long long allocatedBeyondSqlite() {
    const struct mallinfo2 all = ::mallinfo2();
    return static_cast<long long>(all.uordblks + all.hblkhd) - sqlite3_memory_used();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    try {
        benchmarks::OpenBook book(argv[1]);
        const long long before = allocatedBeyondSqlite();
        benchmarks::searchContacts(book.manager());
        std::cout << allocatedBeyondSqlite() - before << '\n';
        return 0;
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << '\n';
        return 3;
    }
}
