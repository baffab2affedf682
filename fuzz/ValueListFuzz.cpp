// Value lists. The first line of the input is the list's text; each further line is done to it: "+value" adds,
// "-value" deletes, "=text" puts another text, anything else joins its values anew.

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/FuzzedInput.h"
#include "tessera/common/CommaSepValList.h"

using common::CommaSepValList;
using fuzz::require;

namespace {

using Values = std::vector<std::u16string>;

/// Splits at every comma, quotes or not.
Values splitAtCommas(const std::u16string& text) {
    Values items(1);
    for (const char16_t ch : text) {
        if (ch == u',') {
            items.emplace_back();
        } else {
            items.back() += ch;
        }
    }
    return items;
}

/// Reads a list character by character.
Values plainlyRead(const std::u16string& text) {
    Values items;
    if (text.empty()) return items;
    enum { margin, plain, quoted } state = margin;
    std::u16string item;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t ch = text[i];
        if (state == margin && ch == u' ') continue;
        if (state != quoted && ch == u',') {
            items.push_back(item);
            item.clear();
            state = margin;
            continue;
        }
        const bool closes = text.find(u'"', i + 1) != std::u16string::npos;
        if (state == quoted && ch == u'"') {
            state = plain;
        } else if (state == margin) {
            state = ch == u'"' && closes ? quoted : plain;
        }
        item += ch;
    }
    items.push_back(item);
    for (std::u16string& each : items) {
        while (!each.empty() && std::u16string_view(u"\" \t").find(each.back()) != std::u16string_view::npos)
            each.pop_back();
        while (!each.empty() && each.front() == u'"')
            each.erase(each.begin());
    }
    return items;
}

int plainlyAdd(std::u16string& text, const std::u16string& value) {
    Values items = splitAtCommas(text);
    items.back().clear();
    if (std::ranges::find(items, value) != items.end()) return 0;
    if (!text.empty() && text != u"Empty") text += u',';
    text += value;
    return static_cast<int>(items.size()) + 1;
}

int plainlyDelete(std::u16string& text, const std::u16string& value) {
    const std::size_t found = text.find(value);
    if (found == std::u16string::npos) return 0;
    text.erase(found == 0 ? 0 : found - 1, value.size() + 1);
    return static_cast<int>(text.size());
}

Values valuesOf(const CommaSepValList& list) {
    CStringArray read;
    read.Add(CString(u"something from before"));
    require(list.getList(read) == read.GetSize(), "reading answers the number of values");
    Values values;
    for (const CString& value : read)
        values.emplace_back(value.view());
    return values;
}

void joinAnew(CommaSepValList& list, std::u16string& text) {
    const Values before = valuesOf(list);
    CStringArray values;
    text.clear();
    for (std::size_t i = 0; i < before.size(); ++i) {
        values.Add(CString(before[i]));
        text += (i > 0 ? u"," : u"") + before[i];
    }
    require(list.setList(values) == static_cast<int>(before.size()), "joining answers the number of values");
    require(CommaSepValList(values).getString() == list.getString(), "a list made of values is those joined");
}

void change(CommaSepValList& list, std::u16string& text, const std::u16string& line) {
    const std::u16string value = line.empty() ? line : line.substr(1);
    switch (line.empty() ? u'\0' : line[0]) {
        case u'+':
            require(list.addValue(CString(value)) == plainlyAdd(text, value), "adding answers as the rule says");
            break;
        case u'-':
            require(list.deleteValue(CString(value)) == plainlyDelete(text, value), "so does deleting");
            break;
        case u'=':
            text = value;
            list.setString(CString(value));
            break;
        default:
            joinAnew(list, text);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::FuzzedInput input(data, size);
    std::u16string text = input.line();
    CommaSepValList list{CString(text)};
    for (;;) {
        require(list.getString().view() == text, "the list's text is what the rules make of it");
        require(valuesOf(list) == plainlyRead(text), "the values are those of a plain reading");
        if (input.atEnd()) return 0;
        change(list, text, input.line());
    }
}
