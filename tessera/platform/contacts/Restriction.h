#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "tessera/platform/contacts/ContactFields.h"

namespace Platform {

/// Decides which contacts a restricted collection holds. Made from its text once, then immutable.
///
/// The text is `[Property] op "value"`, op one of < <= > >= = <>, joined by `and` and `or` and grouped by
/// parentheses. A run of joined terms is taken from left to right, `and` binding no tighter than `or`.
class Restriction {
public:
    /// Parentheses may stand in each other this deep, so that no text can exhaust the stack.
    static constexpr int maxNesting = 64;

    /// Nothing when the text is malformed.
    static std::optional<Restriction> parse(WStringView text);

    /// Whether the contact in that packed record is let through.
    bool matches(std::string_view packed) const;

private:
    friend class RestrictionParser;

    enum class Operator { less, lessOrEqual, greater, greaterOrEqual, equal, notEqual };
    enum class Connective { conjunction, disjunction };
    struct Group;

    struct Comparison {
        ContactField field = ContactField::fileAs;
        Operator op = Operator::equal;
        WString upperText;               ///< What a text field is compared with.
        std::int64_t birthdayTicks = 0;  ///< What the birthday is compared with.
    };
    /// A comparison, or a group when there is one, joined to all that stands before it.
    struct Term {
        Connective joinedBy = Connective::disjunction;
        Comparison comparison;
        std::unique_ptr<const Group> group;
    };
    struct Group {
        std::vector<Term> terms;
    };

    explicit Restriction(Group root) : root_(std::move(root)) {}

    static bool groupMatches(const Group& group, std::string_view packed);
    static bool comparisonMatches(const Comparison& comparison, std::string_view packed);
    static bool holds(Operator op, std::strong_ordering order);

    Group root_;
};

}  // namespace Platform
