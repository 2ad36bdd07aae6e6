#pragma once

#include "Core/CError.h"
#include "Tools/Support/CNamedText.h"

#include <functional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace tsm {

/// Parses a command line with the program's options. `isDone` is set when a help text was asked for
/// and has been written to standard output. Errors: those of the options.
[[nodiscard]] CError* parseCommandLine(int argc, const char* const* argv, const char* tool,
                                       const char* purpose,
                                       const std::function<void(CLI::App&)>& describe,
                                       bool& isDone);

/// Enters an option that may be given several times; `texts` gets one value of each mention.
void addRepeatable(CLI::App& app, const char* name, std::vector<std::string>& texts,
                   const char* help);

/// Cuts each text at its first "=" and appends the parts to `out`. Errors: a text, given behind
/// `option`, without "=" or without a name.
[[nodiscard]] CError* splitNamedTexts(const std::vector<std::string>& texts, const char* option,
                                      std::vector<CNamedText>& out);

} // namespace tsm
