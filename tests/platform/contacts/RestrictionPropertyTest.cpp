#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "tessera/platform/contacts/Restriction.h"
#include "tests/platform/contacts/PackedContact.h"

using Platform::ContactField;
using Platform::Restriction;
using testing_support::PackedContact;

namespace {

// A model of restrictions: trees that are written out as text for the parser under test, and judged here
// by plain recursion over texts. A birthday is judged by its ISO text, which orders as its days do.

using Fields = std::map<ContactField, WString>;

struct Node {
    ContactField field = ContactField::fileAs;
    WString op;
    WString value;
    std::vector<Node> children;     // a group when there are any
    std::vector<bool> joinedByAnd;  // how each child but the first is joined
};

constexpr ContactField usedFields[] = {ContactField::fileAs, ContactField::categories,
                                       ContactField::mobileTelephoneNumber, ContactField::birthday};
const std::vector<WString> days = {TEXT("1961-01-01"), TEXT("1990-03-05"), TEXT("1990-11-20"), TEXT("2001-10-09")};
const std::vector<WString> pieces = {TEXT("a"),      TEXT("A"),      TEXT("b"),      TEXT("Z"), TEXT("9"),
                                     TEXT("\u00e9"), TEXT("\u00c9"), TEXT("\uae40"), TEXT(" "), TEXT("and"),
                                     TEXT("OR"),     TEXT("["),      TEXT("]"),      TEXT("("), TEXT(")"),
                                     TEXT("%s"),     TEXT("<>"),     TEXT("="),      TEXT("'"), TEXT("\\")};

WString upper(WString text) {
    for (WCHAR& unit : text) {
        if ((unit >= u'a' && unit <= u'z') || unit == u'\u00e9') unit = static_cast<WCHAR>(unit - 0x20);
    }
    return text;
}

bool judge(const Node& node, const Fields& contact) {
    if (!node.children.empty()) {
        bool outcome = judge(node.children[0], contact);
        for (std::size_t i = 1; i < node.children.size(); ++i) {
            const bool next = judge(node.children[i], contact);
            outcome = node.joinedByAnd[i - 1] ? outcome && next : outcome || next;
        }
        return outcome;
    }
    const auto found = contact.find(node.field);
    if (found == contact.end()) return false;
    const int order = upper(found->second).compare(upper(node.value));
    if (node.op == TEXT("<")) return order < 0;
    if (node.op == TEXT("<=")) return order <= 0;
    if (node.op == TEXT(">")) return order > 0;
    if (node.op == TEXT(">=")) return order >= 0;
    return node.op == TEXT("=") ? order == 0 : order != 0;
}

WString inRandomCase(WString text) {
    for (WCHAR& unit : text) {
        const bool letter = (unit | 0x20) >= u'a' && (unit | 0x20) <= u'z';
        if (letter && *rc::gen::arbitrary<bool>()) unit ^= 0x20;
    }
    return text;
}

WString blanks() {
    return *rc::gen::element<WString>(TEXT(""), TEXT(" "), TEXT("  "), TEXT("\t"));
}

WString written(const Node& node, bool outermost) {
    if (node.children.empty()) {
        const WString name(Platform::definitionOf(node.field).name);
        return blanks() + TEXT("[") + inRandomCase(name) + TEXT("]") + blanks() + node.op + blanks() + TEXT("\"") +
               node.value + TEXT("\"");
    }
    WString text;
    for (std::size_t i = 0; i < node.children.size(); ++i) {
        if (i > 0) text += blanks() + inRandomCase(node.joinedByAnd[i - 1] ? TEXT("and") : TEXT("or")) + blanks();
        text += written(node.children[i], false);
    }
    return outermost ? text + blanks() : blanks() + TEXT("(") + text + blanks() + TEXT(")");
}

WString anyValue(ContactField field) {
    if (field == ContactField::birthday) return *rc::gen::elementOf(days);
    WString value;
    for (int i = *rc::gen::inRange(1, 4); i > 0; --i)
        value += *rc::gen::elementOf(pieces);
    return value;
}

Node anyNode(int depth) {
    Node node;
    if (depth == 0 || *rc::gen::arbitrary<bool>()) {
        node.field = *rc::gen::elementOf(std::vector(std::begin(usedFields), std::end(usedFields)));
        node.op = *rc::gen::element<WString>(TEXT("<"), TEXT("<="), TEXT(">"), TEXT(">="), TEXT("="), TEXT("<>"));
        node.value = anyValue(node.field);
        return node;
    }
    for (int i = *rc::gen::inRange(1, 4); i > 0; --i)
        node.children.push_back(anyNode(depth - 1));
    for (std::size_t i = 1; i < node.children.size(); ++i)
        node.joinedByAnd.push_back(*rc::gen::arbitrary<bool>());
    return node;
}

/// A contact with some of the fields; often with a value that the restriction compares with.
Fields anyContact(const Node& tree) {
    Fields contact;
    for (const ContactField field : usedFields) {
        if (*rc::gen::inRange(0, 4) > 0) contact[field] = anyValue(field);
    }
    std::vector<const Node*> open = {&tree};
    while (!open.empty()) {
        const Node& node = *open.back();
        open.pop_back();
        for (const Node& child : node.children)
            open.push_back(&child);
        if (node.children.empty() && *rc::gen::inRange(0, 3) == 0) contact[node.field] = inRandomCase(node.value);
    }
    return contact;
}

PackedContact packed(const Fields& fields) {
    PackedContact contact;
    for (const auto& [field, value] : fields) {
        if (field != ContactField::birthday) {
            contact.with(field, value);
            continue;
        }
        const std::string iso(value.begin(), value.end());
        contact.bornOn(std::stoi(iso.substr(0, 4)), std::stoi(iso.substr(5, 2)), std::stoi(iso.substr(8, 2)));
    }
    return contact;
}

}  // namespace

RC_GTEST_PROP(RestrictionProperties, AnyTreeMeansWhatPlainRecursionSays, ()) {
    const Node tree = anyNode(3);

    const auto restriction = Restriction::parse(written(tree, true));

    RC_ASSERT(restriction.has_value());
    for (int i = 0; i < 10; ++i) {
        const Fields contact = anyContact(tree);
        const bool expected = judge(tree, contact);
        RC_ASSERT(restriction->matches(packed(contact).packed()) == expected);
    }
}

RC_GTEST_PROP(RestrictionProperties, AnyTextIsEitherAccordingToTheGrammarOrRefused, ()) {
    const std::vector<WString> tokens = {TEXT("[FileAs]"),
                                         TEXT("[Birthday]"),
                                         TEXT("["),
                                         TEXT("]"),
                                         TEXT("="),
                                         TEXT("<"),
                                         TEXT(">"),
                                         TEXT("\"x\""),
                                         TEXT("\""),
                                         TEXT("("),
                                         TEXT(")"),
                                         TEXT(" and "),
                                         TEXT("or"),
                                         TEXT(" "),
                                         TEXT("x"),
                                         TEXT("[x]"),
                                         TEXT("[FileAs] = \"x\""),
                                         TEXT("\u00e9"),
                                         TEXT("\xd800")};
    WString text;
    for (int i = *rc::gen::inRange(0, 30); i > 0; --i) {
        text += *rc::gen::inRange(0, 8) > 0 ? *rc::gen::elementOf(tokens)
                                            : WString(1, static_cast<WCHAR>(*rc::gen::arbitrary<WORD>()));
    }

    const auto restriction = Restriction::parse(text);

    const auto quotes = std::ranges::count(text, u'"');
    if (quotes == 0 || quotes % 2 != 0) RC_ASSERT(!restriction.has_value());
    const PackedContact nobody;
    if (restriction) RC_ASSERT(!restriction->matches(nobody.packed()));
}
