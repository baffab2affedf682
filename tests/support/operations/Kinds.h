#pragma once

#include <span>

#include "tests/support/operations/Parameters.h"

namespace testing_support::work {

/// A kind of operation, and how often it is chosen among the others.
struct Kind {
    unsigned weight;
    PhoneBookOperation (*choose)(Parameters& parameters);
};

std::span<const Kind> kindsOnContacts();
std::span<const Kind> kindsOnSlots();
std::span<const Kind> kindsOnGroupsAndCalls();
/// What others do to contacts and categories, and the manager's following of it.
std::span<const Kind> kindsOfOthers();

}  // namespace testing_support::work
