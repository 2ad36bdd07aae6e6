#pragma once

#include "Core/CError.h"

#include <string>
#include <vector>

namespace tsm {

/// What a user does in one go.
struct CMonitorStep {
    enum class EAction { Set, Gesture, Reset, Undo, Redo, Preset, Program, Exchange, Copy };

    double seconds = 0.0; // of the sound
    EAction action = EAction::Undo;
    CString name;               // of a parameter or preset, or a number
    std::vector<CString> texts; // values in display form
};

/// Edits to be made while sound runs, in order of their times.
class CMonitorScript {
public:
    /// Adds the steps of a text, one a line; blank lines and those that begin with "#" are none.
    /// A preset's name may hold blanks. Errors, with the line: no time, an unknown action, too few
    /// or too many words.
    [[nodiscard]] CError* add(const std::string& text);
    /// Ends the additions; steps of one time keep the order in which they came.
    void sort();

    /// The next step that is due, or null.
    [[nodiscard]] const CMonitorStep* takeDue(double seconds);

private:
    std::vector<CMonitorStep> steps;
    std::size_t next = 0;
};

} // namespace tsm
