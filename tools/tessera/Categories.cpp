#include "Categories.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "Records.h"
#include "exchange/CategoryTexts.h"
#include "tessera/platform/base/Bstr.h"
#include "tessera/platform/base/ComPtr.h"
#include "tessera/platform/contacts/OutlookInterfaces.h"

namespace Tool {

namespace {

constexpr std::size_t npos = WStringView::npos;

WStringView withoutBlanks(WStringView text) {
    const std::size_t first = text.find_first_not_of(u' ');
    if (first == npos) return {};
    return text.substr(first, text.find_last_not_of(u' ') - first + 1);
}

/// A comma within quotes does not separate; a quote that is never closed quotes nothing.
std::size_t endOfFirst(WStringView list) {
    const bool quoted = list.starts_with(u'"');
    const std::size_t closing = quoted ? list.find(u'"', 1) : npos;
    return list.find(u',', closing == npos ? 0 : closing);
}

WStringView takeFirst(WStringView& list) {
    list = withoutBlanks(list);
    const std::size_t end = endOfFirst(list);
    const WStringView first = withoutBlanks(list.substr(0, end));
    list.remove_prefix(end == npos ? list.size() : end + 1);
    return first;
}

/// The group as it stands in front, whole: its name may hold a comma.
bool dropFromFront(WStringView& list, WStringView group) {
    if (group.empty() || !list.starts_with(group)) return false;
    const WStringView rest = withoutBlanks(list.substr(group.size()));
    if (!rest.empty() && rest.front() != u',') return false;
    list = rest.empty() ? rest : withoutBlanks(rest.substr(1));
    return true;
}

/// Categories one behind the other, none of them empty and none twice.
class CategoryList {
public:
    void add(WStringView category) {
        if (category.empty() || isKnown(category)) return;
        known_.push_back(category);
        if (!text_.empty()) text_ += TEXT(", ");
        text_ += category;
    }
    /// Lets a category be added no more.
    void bar(WStringView category) { known_.push_back(category); }

    CString text() const { return CString(text_); }

private:
    bool isKnown(WStringView category) const {
        return std::find(known_.begin(), known_.end(), category) != known_.end();
    }

    std::vector<WStringView> known_;
    WString text_;
};

WStringView withoutQuotes(WStringView category) {
    const bool quoted = category.size() >= 2 && category.front() == u'"' && category.back() == u'"';
    return quoted ? category.substr(1, category.size() - 2) : category;
}

}  // namespace

CString shortestCategories(WStringView categories, const CString& oldGroup, const CString& newGroup) {
    const CString before = asCategory(oldGroup);
    const CString after = asCategory(newGroup);
    while (dropFromFront(categories, before.view())) {
    }
    CategoryList list;
    list.add(after.view());
    list.bar(before.view());
    while (!categories.empty())
        list.add(takeFirst(categories));
    return list.text();
}

std::optional<CString> renamedCategory(WStringView categories, const CString& oldName, const CString& newName) {
    const CString before = asCategory(oldName);
    if (categories.find(before.view()) == npos) return std::nullopt;
    CategoryList list;
    bool carried = false;
    while (dropFromFront(categories, before.view())) {
        carried = true;
        list.add(newName.view());
    }
    while (!categories.empty()) {
        const WStringView next = takeFirst(categories);
        const bool renamed = withoutQuotes(next) == before.view();
        carried = carried || renamed;
        list.add(renamed ? newName.view() : next);
    }
    return carried ? std::optional(list.text()) : std::nullopt;
}

bool writeCategories(DWORD oid, const CString& categories, const CString* notes) {
    void* made = nullptr;
    if (FAILED(CoCreateInstance(CLSID_Application, nullptr, CLSCTX_INPROC_SERVER, IID_IPOutlookApp, &made)))
        return false;
    const auto application = ComPtr<IPOutlookApp>::adopt(static_cast<IPOutlookApp*>(made));
    ComPtr<IDispatch> item;
    if (FAILED(application->Logon(0)) || FAILED(application->GetItemFromOid(static_cast<LONG>(oid), item.out())))
        return false;
    IContact* contact = static_cast<IContact*>(item.get());
    if (FAILED(contact->put_Categories(Bstr(categories).get()))) return false;
    if (notes != nullptr && FAILED(contact->put_Body(Bstr(*notes).get()))) return false;
    return SUCCEEDED(contact->Save());
}

bool hasRoomForUpdate(const PhoneBook::PBRecord& before, const CString& newGroup) {
    return before.strCategories.GetLength() + newGroup.GetLength() + 2 <= longestText;
}

bool restoreCategories(DWORD oid, const PhoneBook::PBRecord& before, const CString& newGroup) {
    return writeCategories(oid, shortestCategories(before.strCategories.view(), before.strGroup, newGroup));
}

}  // namespace Tool
