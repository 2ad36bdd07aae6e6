#pragma once

#include "Tools/hostlib/CVstInstance.h"

#include <string>

namespace tsm {

/// What the tool tells of a plug-in: tables for people, one line a fact.

/// Module, classes, buses, sample sizes, counts.
[[nodiscard]] std::string tellInfo(const CVstBundle& bundle, const CVstClass& effect,
                                   const CVstInstance& instance);
/// Identifier, title, range, default, unit, present text and kind of each parameter.
[[nodiscard]] std::string tellParams(const CVstInstance& instance);
/// Index and name of each program.
[[nodiscard]] std::string tellPrograms(const CVstInstance& instance);

} // namespace tsm
