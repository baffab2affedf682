#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>

#include "Records.h"

namespace Tool {

class Command;

/// The fields of a contact as the command line gives them.
class ContactOptions {
public:
    /// Adds an option for each field to the command; parsing it fills this object, which must live as long.
    void define(Command& command);

    /// No field was named.
    bool empty() const;
    /// Puts what was named into the record; an empty value takes the field out of it. Throws a Failure of
    /// wrong usage for a value that the field cannot hold.
    void apply(PhoneBook::PBRecord& record) const;

private:
    static constexpr std::size_t count = 15;

    std::array<std::optional<std::string>, count> values_;
};

/// Throws a Failure of wrong usage when the record's texts are longer than a contact can be.
void requireStorable(const PhoneBook::PBRecord& record);

}  // namespace Tool
