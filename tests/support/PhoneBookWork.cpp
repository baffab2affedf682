#include "tests/support/PhoneBookWork.h"

#include <array>
#include <exception>
#include <span>

#include "tests/support/operations/Kinds.h"

namespace testing_support {

namespace {

std::array<std::span<const work::Kind>, 4> allKinds() {
    return {work::kindsOnContacts(), work::kindsOnSlots(), work::kindsOnGroupsAndCalls(), work::kindsOfOthers()};
}

unsigned totalWeight() {
    unsigned total = 0;
    for (const auto& kinds : allKinds()) {
        for (const work::Kind& kind : kinds)
            total += kind.weight;
    }
    return total;
}

const work::Kind& kindAt(unsigned place) {
    for (const auto& kinds : allKinds()) {
        for (const work::Kind& kind : kinds) {
            if (place < kind.weight) return kind;
            place -= kind.weight;
        }
    }
    return allKinds().front().front();
}

/// What the steps of a kind throw is a failure like any other.
HRESULT performOrFail(const PhoneBookOperation& operation, PhoneBook::PhoneBookDBMgr& manager) {
    try {
        return operation.perform(manager);
    } catch (const std::exception&) {
        return E_FAIL;
    }
}

}  // namespace

unsigned InputChoices::byte() {
    if (rest_.empty()) return 0;
    const auto first = static_cast<unsigned char>(rest_.front());
    rest_.remove_prefix(1);
    return first;
}

unsigned InputChoices::below(unsigned count) {
    if (count <= 1) return 0;
    if (count <= 256) return byte() % count;
    const unsigned high = byte();
    return (high << 8 | byte()) % count;
}

PhoneBookOperation anyPhoneBookOperation(Choices& choices) {
    static const unsigned total = totalWeight();
    const work::Kind& kind = kindAt(choices.below(total));
    work::Parameters parameters(choices);
    PhoneBookOperation chosen = kind.choose(parameters);
    return {chosen.description,
            [chosen](PhoneBook::PhoneBookDBMgr& manager) { return performOrFail(chosen, manager); }};
}

PhoneBookDeed doAnyPhoneBookOperation(PhoneBook::PhoneBookDBMgr& manager, Choices& choices) {
    const PhoneBookOperation operation = anyPhoneBookOperation(choices);
    return {operation.description, operation.perform(manager)};
}

}  // namespace testing_support
