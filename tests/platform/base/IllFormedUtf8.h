#pragma once

// Bytes that are no UTF-8.
inline constexpr const char* illFormedUtf8[] = {
    "\x80",  // a byte that continues nothing
    "\xC0\x80",
    "\xC1\xBF",  // overlong
    "\xE0\x80\x80",
    "\xE0\x9F\xBF",
    "\xF0\x80\x80\x80",
    "\xF0\x8F\xBF\xBF",
    "\xED\xA0\x80",
    "\xED\xBF\xBF",  // halves of a pair
    "\xF4\x90\x80\x80",
    "\xF5\x80\x80\x80",  // beyond the last character
    "\xFE",
    "\xFF",
    "\xC3",
    "\xE2\x82",
    "\xF0\x9F\x93",  // cut off
    "\xC3"
    "a",
    "\xE2\x82"
    "a",
    "a\xFF",
};
