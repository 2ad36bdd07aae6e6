#include "Core/CAttrValue.h"

#include "Core/CRounding.h"
#include "Core/CText.h"

namespace tsm {

CAttrValue& CAttrValue::operator=(const CAttrValue& other)
{
    if (this == &other)
        return *this;
    pointer = other.pointer;
    real = other.real;
    text = other.text;
    integer = other.integer;
    boolean = other.boolean;
    type = other.type;
    flags = static_cast<std::uint8_t>((flags & kKept) | (other.flags & ~kKept));
    return *this;
}

void CAttrValue::begin(EAttrType newType, std::uint8_t validBit) noexcept
{
    type = newType;
    flags = static_cast<std::uint8_t>((flags & kKept) | validBit);
}

void CAttrValue::setText(const CString& newText)
{
    if (newText.isEmpty()) {
        begin(EAttrType::None, 0);
        return;
    }
    std::int32_t parsed = 0;
    if (parseWholeInt(newText, parsed) && toString(parsed) == newText) {
        setInt(parsed);
        return;
    }
    if (newText == "true" || newText == "false") {
        setBool(newText == "true");
        return;
    }
    text = newText;
    begin(EAttrType::String, kStringValid);
}

void CAttrValue::setBool(bool value)
{
    boolean = value;
    begin(EAttrType::Boolean, kBooleanValid);
}

void CAttrValue::setInt(std::int32_t value)
{
    integer = value;
    begin(EAttrType::Integer, kIntegerValid);
}

void CAttrValue::setDouble(double value)
{
    real = value;
    begin(EAttrType::Double, kDoubleValid);
}

void CAttrValue::setPointer(void* value)
{
    pointer = value;
    begin(EAttrType::Pointer, kPointerValid);
}

bool CAttrValue::convertBool() const
{
    switch (type) {
    case EAttrType::Integer:
        boolean = integer != 0;
        return true;
    case EAttrType::String:
        boolean = text == "1" || text == "true";
        return boolean || text == "0" || text == "false";
    case EAttrType::None:
        boolean = false;
        return true;
    default:
        return false;
    }
}

bool CAttrValue::convertDouble() const
{
    switch (type) {
    case EAttrType::Integer:
        real = integer;
        return true;
    case EAttrType::String:
        return parseDouble(text, real);
    case EAttrType::None:
        real = 0.0;
        return true;
    default:
        return false;
    }
}

bool CAttrValue::convertInt() const
{
    switch (type) {
    case EAttrType::Boolean:
        integer = boolean ? 1 : 0;
        return true;
    case EAttrType::Double:
        integer = roundToInt(real);
        return true;
    case EAttrType::String:
        return parseInt(text, integer);
    case EAttrType::None:
        integer = 0;
        return true;
    default:
        return false;
    }
}

bool CAttrValue::convertString() const
{
    switch (type) {
    case EAttrType::Boolean:
        text = boolean ? "true" : "false";
        return true;
    case EAttrType::Double:
        text = toFixed(real, 4);
        return true;
    case EAttrType::Integer:
        text = toString(integer);
        return true;
    case EAttrType::None:
        text.clear();
        return true;
    default:
        return false;
    }
}

bool CAttrValue::toBool(bool& out) const
{
    if (!(flags & kBooleanValid)) {
        if (!convertBool())
            return false;
        flags |= kBooleanValid;
    }
    out = boolean;
    return true;
}

bool CAttrValue::toInt(std::int32_t& out) const
{
    if (!(flags & kIntegerValid)) {
        if (!convertInt())
            return false;
        flags |= kIntegerValid;
    }
    out = integer;
    return true;
}

bool CAttrValue::toDouble(double& out) const
{
    if (!(flags & kDoubleValid)) {
        if (!convertDouble())
            return false;
        flags |= kDoubleValid;
    }
    out = real;
    return true;
}

bool CAttrValue::asBool() const
{
    bool value = false;
    return toBool(value) && value;
}

std::int32_t CAttrValue::asInt() const
{
    std::int32_t value = 0;
    return toInt(value) ? value : 0;
}

double CAttrValue::asDouble() const
{
    double value = 0.0;
    return toDouble(value) ? value : 0.0;
}

const CString& CAttrValue::asString() const
{
    if (!(flags & kStringValid)) {
        if (!convertString())
            return CString::getEmpty();
        flags |= kStringValid;
    }
    return text;
}

void* CAttrValue::asPointer() const
{
    return flags & kPointerValid ? pointer : nullptr;
}

const CString& CAttrMap::getString(const char* name) const
{
    const CAttrValue* value = find(name);
    return value ? value->asString() : CString::getEmpty();
}

std::int32_t CAttrMap::getInt(const char* name) const
{
    const CAttrValue* value = find(name);
    return value ? value->asInt() : 0;
}

bool CAttrMap::getBool(const char* name) const
{
    const CAttrValue* value = find(name);
    return value && value->asBool();
}

double CAttrMap::getDouble(const char* name) const
{
    const CAttrValue* value = find(name);
    return value ? value->asDouble() : 0.0;
}

} // namespace tsm
