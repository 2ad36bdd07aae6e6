#pragma once

#include "Core/CObject.h"

#include <cstdint>

namespace tsm {

class CAudioParamInfo;

/// How much room a displayed value has, and how exact it is.
enum class EAudioParamFormat : std::int32_t {
    Normal,
    Compact, // about four characters
    Long,
    Precise
};

/// Maps between the three forms of a value: real (what the signal code uses), display (what the
/// user reads) and normalized (0 to 1, for controls and hosts). One object serves many parameters:
/// their limits come with each call, `e` being the index of the number inside an element.
///
/// This class maps plainly: the normalized form is linear in the real one. [any] Constant after the
/// tree has been loaded.
class CAudioParamConverter : public CObject {
public:
    /// Reads display text; the value is inside the limits. An unreadable text sets `ok` to false
    /// and gives the minimum.
    [[nodiscard]] virtual double parse(const CAudioParamInfo& info, int e, const CString& text,
                                       bool& ok) const;
    /// The same without limits; an unreadable text counts as 0 in display form.
    [[nodiscard]] virtual double parseUnclamped(const CAudioParamInfo& info, int e,
                                                const CString& text, bool& ok) const;
    /// Writes the display text, without the label.
    virtual void format(CString& out, const CAudioParamInfo& info, int e, double real,
                        EAudioParamFormat mode) const = 0;
    [[nodiscard]] virtual double normToReal(const CAudioParamInfo& info, int e, double x) const;
    [[nodiscard]] virtual double realToNorm(const CAudioParamInfo& info, int e, double r) const;
    [[nodiscard]] virtual double normToDisplay(const CAudioParamInfo& info, int e, double x) const;
    /// The value is brought inside the limits.
    [[nodiscard]] virtual double displayToNorm(const CAudioParamInfo& info, int e, double d) const;

    [[nodiscard]] CError* init() override;
    static void declareClass(CObjectClassInfo& info);

    [[nodiscard]] const CString& getLabel() const noexcept { return label; }
    /// True when the values between two states mean nothing.
    [[nodiscard]] bool getIsDiscrete() const noexcept { return isDiscrete; }

protected:
    /// The display number of a real value, and back. Here they are the same.
    [[nodiscard]] virtual double toDisplay(double real) const;
    [[nodiscard]] virtual double toReal(double display) const;
    /// Reads a display number, as written by format().
    [[nodiscard]] virtual bool readDisplay(const CAudioParamInfo& info, int e, const CString& text,
                                           double& display) const;
    /// `real` between the limits, whichever is the larger.
    [[nodiscard]] static double clampReal(const CAudioParamInfo& info, int e, double real);

private:
    CString label;
    bool isDiscrete = false;
};

} // namespace tsm
