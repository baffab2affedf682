#include "tessera/platform/contacts/Restriction.h"

#include <algorithm>
#include <compare>

#include "tessera/platform/base/COleDateTime.h"
#include "tessera/platform/base/CString.h"
#include "tessera/platform/contacts/PackedValues.h"
#include "tessera/platform/objectstore/RecordCursor.h"

namespace Platform {

/// Reads a restriction's text by recursive descent. Each step moves past what it read, and answers
/// nothing, or false, for text that is not what it expects.
class RestrictionParser {
public:
    explicit RestrictionParser(WStringView text) : rest_(text) {}

    std::optional<Restriction> whole() {
        std::optional<Restriction::Group> root = group(0);
        skipBlanks();
        if (!root || !rest_.empty()) return std::nullopt;
        return Restriction(std::move(*root));
    }

private:
    using Connective = Restriction::Connective;

    std::optional<Restriction::Group> group(int depth) {
        Restriction::Group result;
        std::optional<Connective> joinedBy = Connective::disjunction;
        while (joinedBy) {
            std::optional<Restriction::Term> next = term(depth);
            if (!next) return std::nullopt;
            next->joinedBy = *joinedBy;
            result.terms.push_back(std::move(*next));
            joinedBy = connective();
        }
        return result;
    }

    std::optional<Restriction::Term> term(int depth) {
        Restriction::Term result;
        if (!take(TEXT("("))) {
            std::optional<Restriction::Comparison> leaf = comparison();
            if (!leaf) return std::nullopt;
            result.comparison = std::move(*leaf);
            return result;
        }
        if (depth == Restriction::maxNesting) return std::nullopt;
        std::optional<Restriction::Group> inner = group(depth + 1);
        if (!inner || !take(TEXT(")"))) return std::nullopt;
        result.group = std::make_unique<const Restriction::Group>(std::move(*inner));
        return result;
    }

    std::optional<Restriction::Comparison> comparison() {
        const std::optional<WStringView> name = between(TEXT("["), u']');
        const std::optional<ContactField> field = name ? contactFieldNamed(*name) : std::nullopt;
        const std::optional<Restriction::Operator> op = field ? comparisonOperator() : std::nullopt;
        const std::optional<WStringView> value = op ? between(TEXT("\""), u'"') : std::nullopt;
        if (!value) return std::nullopt;
        Restriction::Comparison result{*field, *op, {}, 0};
        if (!setValue(result, *value)) return std::nullopt;
        return result;
    }

    static bool setValue(Restriction::Comparison& comparison, WStringView value) {
        CString text(value);
        if (comparison.field != ContactField::birthday) {
            text.MakeUpper();
            comparison.upperText = text.view();
            return true;
        }
        COleDateTime date;
        if (!date.ParseDateTime(text)) return false;
        FILETIME time;
        // A day before 1601 is a value like any other; every birthday is later than it.
        comparison.birthdayTicks = fileTimeOfDate(date.date(), time) ? static_cast<std::int64_t>(ticksOf(time)) : -1;
        return true;
    }

    std::optional<Restriction::Operator> comparisonOperator() {
        using Operator = Restriction::Operator;
        struct Spelling {
            WStringView text;
            Operator op;
        };
        // The longer ones first: each of them begins like a shorter one.
        static constexpr Spelling spellings[] = {
            {TEXT("<="), Operator::lessOrEqual}, {TEXT(">="), Operator::greaterOrEqual},
            {TEXT("<>"), Operator::notEqual},    {TEXT("<"), Operator::less},
            {TEXT(">"), Operator::greater},      {TEXT("="), Operator::equal},
        };
        for (const Spelling& spelling : spellings) {
            if (take(spelling.text)) return spelling.op;
        }
        return std::nullopt;
    }

    std::optional<Connective> connective() {
        if (takeWord(TEXT("and"))) return Connective::conjunction;
        if (takeWord(TEXT("or"))) return Connective::disjunction;
        return std::nullopt;
    }

    bool take(WStringView token) {
        skipBlanks();
        if (!rest_.starts_with(token)) return false;
        rest_.remove_prefix(token.size());
        return true;
    }

    bool takeWord(WStringView word) {
        skipBlanks();
        if (!equalInAnyCase(rest_.substr(0, word.size()), word)) return false;
        rest_.remove_prefix(word.size());
        return true;
    }

    /// What stands between the two marks, as it is: there is no way to write the closing mark inside.
    std::optional<WStringView> between(WStringView opening, WCHAR closing) {
        if (!take(opening)) return std::nullopt;
        const std::size_t length = rest_.find(closing);
        if (length == WStringView::npos) return std::nullopt;
        const WStringView inside = rest_.substr(0, length);
        rest_.remove_prefix(length + 1);
        return inside;
    }

    void skipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(TEXT(" \t\r\n")), rest_.size())); }

    WStringView rest_;
};

std::optional<Restriction> Restriction::parse(WStringView text) {
    return RestrictionParser(text).whole();
}

bool Restriction::matches(std::string_view packed) const {
    return groupMatches(root_, packed);
}

bool Restriction::groupMatches(const Group& group, std::string_view packed) {
    bool matched = false;
    for (const Term& term : group.terms) {
        // A term can only turn the outcome so far when it is joined the right way.
        if (matched == (term.joinedBy == Connective::disjunction)) continue;
        matched = term.group ? groupMatches(*term.group, packed) : comparisonMatches(term.comparison, packed);
    }
    return matched;
}

bool Restriction::comparisonMatches(const Comparison& comparison, std::string_view packed) {
    const std::optional<PropertyView> property = findProperty(packed, definitionOf(comparison.field).property);
    if (!property) return false;
    if (comparison.field != ContactField::birthday) {
        return holds(comparison.op, compareInUpperCase(property->bytes, comparison.upperText));
    }
    const auto ticks = static_cast<std::int64_t>(ticksOf(fileTimeOfPacked(property->bytes)));
    return holds(comparison.op, ticks <=> comparison.birthdayTicks);
}

bool Restriction::holds(Operator op, std::strong_ordering order) {
    switch (op) {
        case Operator::less:
            return order < 0;
        case Operator::lessOrEqual:
            return order <= 0;
        case Operator::greater:
            return order > 0;
        case Operator::greaterOrEqual:
            return order >= 0;
        case Operator::equal:
            return order == 0;
        case Operator::notEqual:
            return order != 0;
    }
    return false;
}

}  // namespace Platform
