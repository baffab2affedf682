// Opens a floor's file, looks a number up, and ends: 0 when somebody has it.
//   tessera_floor FILE NUMBER

#include <exception>
#include <iostream>
#include <string>

#include "benchmarks/ContactsFloor.h"

int main(int argc, char** argv) {
    if (argc != 3) return 2;
    try {
        benchmarks::ContactsFloor floor(argv[1]);
        const std::string number = argv[2];
        const benchmarks::FloorRecord record = floor.lookUp(std::u16string(number.begin(), number.end()));
        std::cout << record.id << '\n';
        return record.id == 0 ? 1 : 0;
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << '\n';
        return 3;
    }
}
