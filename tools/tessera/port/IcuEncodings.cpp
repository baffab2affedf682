#include <array>
#include <cstdint>
#include <memory>
#include <utility>

#include <unicode/ucnv.h>
#include <unicode/ucsdet.h>

#include "Encodings.h"

namespace Tool::port {

namespace {

struct ConverterCloser {
    void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using Converter = std::unique_ptr<UConverter, ConverterCloser>;

/// Null when there is no such encoding. Stops at what means nothing instead of putting a substitute there.
Converter converterFor(const std::string& encoding) {
    if (encoding.empty()) return nullptr;  // would be the encoding of the user's locale
    UErrorCode error = U_ZERO_ERROR;
    Converter converter(ucnv_open(encoding.c_str(), &error));
    if (U_FAILURE(error)) return nullptr;
    ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
    return U_SUCCESS(error) ? std::move(converter) : nullptr;
}

}  // namespace

bool hasConverter(const std::string& encoding) {
    return converterFor(encoding) != nullptr;
}

Decoded convert(std::string_view bytes, const std::string& encoding) {
    const Converter converter = converterFor(encoding);
    if (!converter) return {};
    Decoded decoded;
    const char* source = bytes.data();
    const char* const end = bytes.data() + bytes.size();
    std::array<UChar, 4096> block;
    UErrorCode error = U_BUFFER_OVERFLOW_ERROR;
    while (error == U_BUFFER_OVERFLOW_ERROR) {
        error = U_ZERO_ERROR;
        UChar* target = block.data();
        ucnv_toUnicode(converter.get(), &target, block.data() + block.size(), &source, end, nullptr, true, &error);
        decoded.text.append(block.data(), target);
    }
    decoded.whole = U_SUCCESS(error);
    return decoded;
}

std::string likeliestEncoding(std::string_view bytes) {
    constexpr std::size_t sample = 1 << 16;
    constexpr int confident = 10;
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<UCharsetDetector, decltype(&ucsdet_close)> detector(ucsdet_open(&error), &ucsdet_close);
    const std::string_view front = bytes.substr(0, sample);
    if (U_FAILURE(error)) return {};
    ucsdet_setText(detector.get(), front.data(), static_cast<int32_t>(front.size()), &error);
    const UCharsetMatch* match = U_SUCCESS(error) ? ucsdet_detect(detector.get(), &error) : nullptr;
    if (U_FAILURE(error) || match == nullptr || ucsdet_getConfidence(match, &error) < confident) return {};
    const char* name = ucsdet_getName(match, &error);
    return U_SUCCESS(error) && name != nullptr ? name : std::string();
}

}  // namespace Tool::port
