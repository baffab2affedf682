#include "tessera/database/Table.h"

namespace Database {

Table::Table(const WCHAR* tableName, const RecordDef* def) : name_(tableName), recordDef_(def) {}

Table::~Table() {
    recordDef_ = nullptr;
}

DWORD Table::create() {
    return 0;
}

BOOL Table::open(CWnd* /*notifyWnd*/) {
    return FALSE;
}

BOOL Table::close() {
    return FALSE;
}

BOOL Table::drop() {
    return FALSE;
}

bool Table::isOpen() {
    return false;
}

DWORD Table::getSize() {
    return 0;
}

DWORD Table::getNumRecords() {
    return 0;
}

DWORD Table::getCEOID() {
    return 0;
}

CString& Table::getName() {
    return name_;
}

RecordDef* Table::getRecordDef() {
    return const_cast<RecordDef*>(recordDef_);  // the interface hands the schema out so; nobody changes it
}

// The schema accessors ask the virtual getRecordDef, so that a table may supply its schema differently.

int Table::getNumAttrs() {
    return getRecordDef()->getNumAttrs();
}

AttrDef* Table::getAttrDef(int i) {
    return getRecordDef()->getAttrDef(i);
}

CString& Table::getAttrName(int i) {
    return getRecordDef()->getAttrName(i);
}

WORD Table::getAttrIdent(int i) {
    return getRecordDef()->getAttrIdent(i);
}

Iterator* Table::getIterator(int /*sortIdx*/, CCeDBProp* /*p1*/, CCeDBProp* /*p2*/) {
    return nullptr;
}

Iterator* Table::getIterator(CCeDBProp* /*p1*/, CCeDBProp* /*p2*/) {
    return nullptr;
}

HRESULT Table::insertRecord(CCeDBRecord* /*rec*/, DWORD& /*newOid*/) {
    return E_NOTIMPL;
}

HRESULT Table::insertRecord(CCeDBProp[] /*props*/, DWORD& /*newOid*/) {
    return E_NOTIMPL;
}

HRESULT Table::insertRecord() {
    return E_NOTIMPL;
}

HRESULT Table::deleteRecord(CCeDBProp& /*key*/) {
    return E_NOTIMPL;
}

HRESULT Table::deleteRecord(DWORD& /*oid*/) {
    return E_NOTIMPL;
}

HRESULT Table::deleteAllRecords() {
    return E_NOTIMPL;
}

HRESULT Table::updateRecord(DWORD /*oid*/, CCeDBRecord* /*rec*/, int /*attrIdx*/, CCeDBProp* /*prop*/) {
    return E_NOTIMPL;
}

HRESULT Table::queryRecord(CCeDBProp& /*key*/, DWORD* /*oid*/, CCeDBRecord* /*rec*/) {
    return E_NOTIMPL;
}

HRESULT Table::queryRecord(CCeDBProp& /*key*/, CCeDBRecord* /*rec*/) {
    return E_NOTIMPL;
}

HRESULT Table::insertRecord(CCeDBProp props[]) {
    DWORD dropped = 0;
    return insertRecord(props, dropped);
}

HRESULT Table::insertRecord(CCeDBRecord* rec) {
    DWORD dropped = 0;
    return insertRecord(rec, dropped);
}

}  // namespace Database
