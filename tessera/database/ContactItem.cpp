#include "tessera/database/ContactItem.h"

#include <new>

#include "tessera/database/POlDBTable.h"
#include "tessera/phonebook/model/FieldText.h"
#include "tessera/phonebook/model/PBAttributes.h"

namespace Database {

namespace {

using PhoneBook::PBRecord;

enum ContactAttr : int { attrName = 0, attrCategories = 1, attrBirthday = 7 };

using PutText = HRESULT (IContact::*)(BSTR);
using GetText = HRESULT (IContact::*)(BSTR*);

struct PlainField {
    int attr;
    PutText put;
};

/// The attributes that go into a contact as they are.
constexpr PlainField plainFields[] = {
    {2, &IContact::put_MobileTelephoneNumber},
    {3, &IContact::put_HomeTelephoneNumber},
    {4, &IContact::put_BusinessTelephoneNumber},
    {5, &IContact::put_Email1Address},
    {8, &IContact::put_PagerNumber},
    {9, &IContact::put_BusinessFaxNumber},
};

struct TextField {
    PhoneBook::PBDBAttrID attribute;
    GetText get;
};

constexpr TextField textFields[] = {
    {PhoneBook::PBDBATTR_NAME, &IContact::get_FileAs},
    {PhoneBook::PBDBATTR_CATEGORIES, &IContact::get_Categories},
    {PhoneBook::PBDBATTR_MOBILETEL, &IContact::get_MobileTelephoneNumber},
    {PhoneBook::PBDBATTR_HOMETEL, &IContact::get_HomeTelephoneNumber},
    {PhoneBook::PBDBATTR_BUSINESSTEL, &IContact::get_BusinessTelephoneNumber},
    {PhoneBook::PBDBATTR_EMAIL, &IContact::get_Email1Address},
    {PhoneBook::PBDBATTR_BODY, &IContact::get_Body},
    {PhoneBook::PBDBATTR_PAGER, &IContact::get_PagerNumber},
    {PhoneBook::PBDBATTR_BUSINESSFAX, &IContact::get_BusinessFaxNumber},
};

/// What a contact refuses for its value is passed over; what is lost for want of memory is not.
void requireMemory(HRESULT result) {
    if (result == E_OUTOFMEMORY) throw std::bad_alloc();
}

void putText(IContact* contact, PutText put, const CString& text) {
    const Bstr value(text);
    if (value.get() == nullptr) throw std::bad_alloc();  // it would stand for the empty text
    requireMemory((contact->*put)(value.get()));
}

/// False when the contact has no birthday; the record then carries the mark for that.
bool readBirthday(IContact* contact, PBRecord& record) {
    DATE birthday = noBirthday;
    contact->get_Birthday(&birthday);
    const bool known = birthday != noBirthday && birthday != 0.0;
    record.dtBirthday = known ? birthday : noBirthday;
    return known;
}

}  // namespace

DWORD oidOf(IContact* contact) {
    LONG oid = 0;
    contact->get_Oid(&oid);
    return static_cast<DWORD>(oid);
}

ComPtr<IPOutlookItemCollection> withColumns(IPOutlookItemCollection* items, const WCHAR* columns) {
    void* hinted = nullptr;
    if (FAILED(items->QueryInterface(IID_IPOutlookItemCollection2, &hinted))) {
        return ComPtr<IPOutlookItemCollection>::share(items);
    }
    auto collection = ComPtr<IPOutlookItemCollection2>::adopt(static_cast<IPOutlookItemCollection2*>(hinted));
    collection->SetColumns(Bstr(CString(columns)).get());
    return ComPtr<IPOutlookItemCollection>::adopt(collection.detach());
}

void putRow(IContact* contact, const std::function<const CCeDBProp&(int attr)>& valueOf) {
    const CString& name = valueOf(attrName).getText();
    CString first;
    CString last;
    splitFullName(name, first, last);
    putText(contact, &IContact::put_FileAs, name);
    putText(contact, &IContact::put_FirstName, first);
    putText(contact, &IContact::put_LastName, last);

    CString categories = valueOf(attrCategories).getText();
    categories.Replace(u';', u',');
    putText(contact, &IContact::put_Categories, categories);

    for (const PlainField& field : plainFields)
        putText(contact, field.put, valueOf(field.attr).getText());

    const DATE birthday = valueOf(attrBirthday).getR8();
    contact->put_Birthday(birthday == 0.0 ? noBirthday : birthday);
}

DWORD readFields(IContact* contact, PBRecord& record) {
    DWORD found = 0;
    for (const TextField& field : textFields) {
        const PhoneBook::PBAttribute& attribute = PhoneBook::aPBAttribute_[field.attribute];
        if ((record.dwCITypeMask & attribute.mask) == 0) continue;
        Bstr text;
        requireMemory((contact->*field.get)(text.out()));
        record.*attribute.text = text.text();
        if (!text.isEmpty()) found |= attribute.mask;
    }
    const DWORD birthdayMask = PhoneBook::aPBAttribute_[PhoneBook::PBDBATTR_BIRTHDAY].mask;
    if ((record.dwCITypeMask & birthdayMask) != 0 && readBirthday(contact, record)) found |= birthdayMask;
    return found;
}

CString readAttr(POlDBTable& table, IContact* contact, int attr) {
    const int pbAttrId = PhoneBook::getPBDBAttrID(PhoneBook::PBDBTBL_POLCONTACTS, attr);
    if (pbAttrId == PhoneBook::nNumPBAttrs_) return CString();
    PBRecord record;
    record.dwCITypeMask = PhoneBook::getCITypeMaskFromPBDBAttrID(pbAttrId);
    DWORD found = 0;
    // Whether the field had a value or not, its text is the answer.
    static_cast<void>(table.getCallerInfo(contact, &record, &found));
    return PhoneBook::getPBRecordFieldStr(record, record.dwCITypeMask);
}

void splitFullName(const CString& name, CString& first, CString& last) {
    if (const int comma = name.Find(u','); comma >= 0) {
        last = name.Left(comma);
        first = name.Mid(comma + 1);
        if (!first.IsEmpty() && first[0] == u' ') first.Delete(0);
        return;
    }
    const int space = name.Find(u' ');
    if (space < 0) {
        first = name;
        last.Empty();
        return;
    }
    const bool latin = name[0] < 0x100;  // other scripts put the family name first
    const CString before = name.Left(space);
    const CString after = name.Mid(space + 1);
    first = latin ? before : after;
    last = latin ? after : before;
}

}  // namespace Database
