#pragma once

#include "Core/CError.h"
#include "Core/CMap.h"
#include "Core/CString.h"

#include <cstdint>

namespace tsm {

class CAttrValue;
class CObject;

/// What runs when an attribute of a class has been written.
using CAttrHandler = CError* (CObject::*)(CAttrValue&);

/// The kinds of values that an attribute holds.
enum class EAttrType : std::uint8_t { Boolean, Double, Integer, String, Pointer, None };

/// The value of one attribute, with its conversions made on demand and kept.
///
/// | from    | to boolean           | to double | to integer         | to string          |
/// |---------|----------------------|-----------|--------------------|--------------------|
/// | boolean | same                 | fails     | 1 or 0             | "true" or "false"  |
/// | double  | fails                | same      | half away from 0   | with 4 decimals    |
/// | integer | is not 0             | exact     | same               | decimal            |
/// | string  | "0" "false" "1" "true" | parsed  | parsed             | same               |
/// | pointer | fails                | fails     | fails              | fails              |
/// | none    | false                | 0.0       | 0                  | empty              |
///
/// A conversion that fails gives false, 0, 0.0 or the empty text. No locking: a value belongs to
/// the thread of its tree.
class CAttrValue : public CCheckedObject {
public:
    CAttrValue() = default;
    explicit CAttrValue(const CString& newText) { setText(newText); }
    /// Copies hold the value alone: links into a pending list and handlers stay behind.
    CAttrValue(const CAttrValue& other) { *this = other; }
    CAttrValue& operator=(const CAttrValue& other);

    /// Takes a text by its form: empty is none; what reads the same as a decimal integer is an
    /// integer; "true" and "false" are boolean; all else is a string.
    void setText(const CString& newText);
    void setBool(bool value);
    void setInt(std::int32_t value);
    void setDouble(double value);
    /// The value borrows what it points to.
    void setPointer(void* value);

    [[nodiscard]] EAttrType getType() const noexcept { return type; }
    [[nodiscard]] bool asBool() const;
    [[nodiscard]] std::int32_t asInt() const;
    [[nodiscard]] double asDouble() const;
    [[nodiscard]] const CString& asString() const;
    [[nodiscard]] void* asPointer() const;

    /// The conversions with their success, for those who tell a bad value from a default; `out` is
    /// left alone on failure.
    [[nodiscard]] bool toBool(bool& out) const;
    [[nodiscard]] bool toInt(std::int32_t& out) const;
    [[nodiscard]] bool toDouble(double& out) const;

private:
    friend class CObject;

    enum : std::uint8_t {
        kBooleanValid = 1,
        kDoubleValid = 2,
        kIntegerValid = 4,
        kStringValid = 8,
        kPointerValid = 16,
        kPending = 32,
        kHandlerKnown = 64,
        kSpreading = 128, // dependents are being told; ends a ring of links
        kKept = kPending | kHandlerKnown | kSpreading
    };

    void begin(EAttrType newType, std::uint8_t validBit) noexcept;
    [[nodiscard]] bool convertBool() const;
    [[nodiscard]] bool convertInt() const;
    [[nodiscard]] bool convertDouble() const;
    [[nodiscard]] bool convertString() const;

    CAttrValue* nextPending = nullptr;
    CAttrHandler handler = nullptr;
    void* pointer = nullptr;
    mutable double real = 0.0;
    mutable CString text;
    mutable std::int32_t integer = 0;
    mutable bool boolean = false;
    mutable std::uint8_t flags = 0;
    EAttrType type = EAttrType::None;
};

/// Attributes by name; also the parameters of an event.
class CAttrMap : public CMap<CString, CAttrValue> {
public:
    /// The value converted, or the type's default when the name is missing.
    [[nodiscard]] const CString& getString(const char* name) const;
    [[nodiscard]] std::int32_t getInt(const char* name) const;
    [[nodiscard]] bool getBool(const char* name) const;
    [[nodiscard]] double getDouble(const char* name) const;
    void setText(const char* name, const CString& text) { (*this)[name].setText(text); }
    void setInt(const char* name, std::int32_t value) { (*this)[name].setInt(value); }
};

} // namespace tsm
