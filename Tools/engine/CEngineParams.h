#pragma once

#include "Audio/CAudioParamCollector.h"
#include "Tools/Support/CNamedText.h"

#include <string>
#include <vector>

namespace tsm {

/// The parameters of an instance under the names that users write: relative to the main process, as
/// in "modReelpath.recgain". Values are texts in display form.
class CEngineParams {
public:
    /// The collector is borrowed.
    explicit CEngineParams(CAudioParamCollector& instanceParams) : collector(instanceParams) {}

    /// Sets a parameter: a text one takes the text, one of several numbers takes them divided by
    /// commas. Errors: unknown name, text that its converter rejects or that lies outside of the
    /// limits, a parameter of binary data.
    [[nodiscard]] CError* set(const CNamedText& setting);
    /// Finds a parameter of numbers that changes may come to while sound runs, and notes it as set.
    /// Errors: unknown name, no numbers.
    [[nodiscard]] CError* findNumeric(CAudioParam*& param, const CString& name);
    /// Reads one number in display form. Errors: as set().
    [[nodiscard]] CError* parse(double& value, const CAudioParam& param, const CString& name,
                                const CString& text) const;

    /// The names of all parameters that users and hosts can reach.
    [[nodiscard]] std::vector<CString> getNames() const;
    /// The same parameters as a table: name, visual name, range, default, unit, present text.
    [[nodiscard]] std::string list() const;
    /// Every parameter that was set, with its present text.
    [[nodiscard]] std::vector<CNamedText> getTextsOfSet() const;

private:
    [[nodiscard]] CError* find(CAudioParam*& param, const CString& name) const;
    [[nodiscard]] CError* setNumbers(CAudioParam& param, const CNamedText& setting) const;
    void noteSet(const CString& name);

    CAudioParamCollector& collector;
    std::vector<CString> setNames; // each once, in the order of the first mention
};

} // namespace tsm
