#pragma once

#include "Tools/hostlib/CVstInstance.h"
#include "Tools/hostlib/CVstParams.h"

#include <vector>

namespace tsm {

/// The program list that a plug-in's program parameter chooses from; empty when it has none.
class CVstPrograms {
public:
    CVstPrograms(const CVstInstance& instance, const CVstParams& params);

    [[nodiscard]] const std::vector<CString>& getNames() const { return names; }
    /// Error: no program of this name.
    [[nodiscard]] CError* find(const CString& name, int& index) const;
    /// Error: no program of this index, counted from 0.
    [[nodiscard]] CError* check(int index) const;
    /// The parameter's normalized value that stands for the program.
    [[nodiscard]] double valueOf(int index) const;

private:
    std::vector<CString> names;
};

} // namespace tsm
