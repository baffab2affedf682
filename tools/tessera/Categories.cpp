#include "Categories.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "tessera/platform/base/Bstr.h"
#include "tessera/platform/base/ComPtr.h"
#include "tessera/platform/contacts/OutlookInterfaces.h"

namespace Tool {

namespace {

constexpr std::size_t npos = std::u16string_view::npos;

std::u16string_view withoutBlanks(std::u16string_view text) {
    const std::size_t first = text.find_first_not_of(u' ');
    if (first == npos) return {};
    return text.substr(first, text.find_last_not_of(u' ') - first + 1);
}

/// A comma within quotes does not separate; a quote that is never closed quotes nothing.
std::size_t endOfFirst(std::u16string_view list) {
    const bool quoted = list.starts_with(u'"');
    const std::size_t closing = quoted ? list.find(u'"', 1) : npos;
    return list.find(u',', closing == npos ? 0 : closing);
}

std::u16string_view takeFirst(std::u16string_view& list) {
    list = withoutBlanks(list);
    const std::size_t end = endOfFirst(list);
    const std::u16string_view first = withoutBlanks(list.substr(0, end));
    list.remove_prefix(end == npos ? list.size() : end + 1);
    return first;
}

/// The group as it stands in front, whole: its name may hold a comma.
bool dropFromFront(std::u16string_view& list, std::u16string_view group) {
    if (group.empty() || !list.starts_with(group)) return false;
    const std::u16string_view rest = withoutBlanks(list.substr(group.size()));
    if (!rest.empty() && rest.front() != u',') return false;
    list = rest.empty() ? rest : withoutBlanks(rest.substr(1));
    return true;
}

}  // namespace

CString asCategory(const CString& group) {
    CString category = group;
    category.Replace(u';', u',');
    return category;
}

CString shortestCategories(std::u16string_view categories, const CString& oldGroup, const CString& newGroup) {
    const CString before = asCategory(oldGroup);
    const CString after = asCategory(newGroup);
    while (dropFromFront(categories, before.view())) {
    }
    std::vector<std::u16string_view> dropped{before.view(), after.view(), {}};
    std::u16string text(after.view());
    while (!categories.empty()) {
        const std::u16string_view next = takeFirst(categories);
        if (std::find(dropped.begin(), dropped.end(), next) != dropped.end()) continue;
        dropped.push_back(next);
        if (!text.empty()) text += u", ";
        text += next;
    }
    return CString(text);
}

bool writeCategories(DWORD oid, const CString& categories) {
    void* made = nullptr;
    if (FAILED(CoCreateInstance(CLSID_Application, nullptr, CLSCTX_INPROC_SERVER, IID_IPOutlookApp, &made)))
        return false;
    const auto application = ComPtr<IPOutlookApp>::adopt(static_cast<IPOutlookApp*>(made));
    ComPtr<IDispatch> item;
    if (FAILED(application->Logon(0)) || FAILED(application->GetItemFromOid(static_cast<LONG>(oid), item.out())))
        return false;
    IContact* contact = static_cast<IContact*>(item.get());
    const Bstr text(categories);
    return SUCCEEDED(contact->put_Categories(text.get())) && SUCCEEDED(contact->Save());
}

}  // namespace Tool
