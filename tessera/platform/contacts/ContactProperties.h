#pragma once

#include "tessera/platform/objectstore/CeDB.h"

/// @file
/// The records of the object store's "Contacts Database".

/// The properties of a contact's record. A property that a contact does not have is absent. Whoever reads that database
/// directly finds a contact's fields under these.
namespace ContactProperty {

inline constexpr CEPROPID fileAs = makePropId(0x4013, CEVT_LPWSTR);     ///< The display name.
inline constexpr CEPROPID firstName = makePropId(0x3A06, CEVT_LPWSTR);  ///< The given name.
inline constexpr CEPROPID lastName = makePropId(0x3A11, CEVT_LPWSTR);   ///< The family name.
/// Separated by commas, kept exactly as put.
inline constexpr CEPROPID categories = makePropId(0x0016, CEVT_LPWSTR);
/// @{
/// As typed.
inline constexpr CEPROPID mobileTelephoneNumber = makePropId(0x3A1C, CEVT_LPWSTR);
inline constexpr CEPROPID homeTelephoneNumber = makePropId(0x3A09, CEVT_LPWSTR);
inline constexpr CEPROPID businessTelephoneNumber = makePropId(0x3A08, CEVT_LPWSTR);
/// @}
inline constexpr CEPROPID email1Address = makePropId(0x4083, CEVT_LPWSTR);  ///< The e-mail address.
/// The notes.
inline constexpr CEPROPID body = makePropId(0x0017, CEVT_LPWSTR);
/// A FILETIME here; the contacts model shows it as a DATE.
inline constexpr CEPROPID birthday = makePropId(0x4001, CEVT_FILETIME);
/// @{
/// As typed.
inline constexpr CEPROPID pagerNumber = makePropId(0x4009, CEVT_LPWSTR);
inline constexpr CEPROPID businessFaxNumber = makePropId(0x3A24, CEVT_LPWSTR);
/// @}

}  // namespace ContactProperty

/// The name of the object store's database of contacts.
inline constexpr const WCHAR* szContactsDatabase = TEXT("Contacts Database");
