#include "Tools/conform/ConformText.h"

#include "Tools/hostlib/CVstString.h"

#include <charconv>
#include <cmath>

namespace tsm {

using namespace Steinberg;

std::string resultText(tresult result)
{
    struct CRow {
        tresult value;
        const char* name;
    };
    for (const CRow& row :
         {CRow{kNoInterface, "kNoInterface"}, CRow{kResultOk, "kResultOk"},
          CRow{kResultFalse, "kResultFalse"}, CRow{kInvalidArgument, "kInvalidArgument"},
          CRow{kNotImplemented, "kNotImplemented"}, CRow{kInternalError, "kInternalError"},
          CRow{kNotInitialized, "kNotInitialized"}, CRow{kOutOfMemory, "kOutOfMemory"}})
        if (row.value == result)
            return row.name + (" (" + std::to_string(result) + ")");
    return "result " + std::to_string(result);
}

std::string numberText(double value)
{
    if (std::isnan(value))
        return "nan"; // whatever its sign
    char digits[64];
    const auto result = std::to_chars(std::begin(digits), std::end(digits), value);
    return {digits, result.ptr};
}

std::string inQuotes(std::string_view text)
{
    std::string shown = "\"";
    for (const char c : text)
        shown += static_cast<unsigned char>(c) < 0x20 ? '?' : c;
    return shown + "\"";
}

std::string inQuotes(const Vst::TChar* text)
{
    return inQuotes(fromVstText(text).toUtf8());
}

} // namespace tsm
