#include "Tools/Support/CCommandLine.h"

#include <CLI/CLI.hpp>

#include <iostream>

namespace tsm {

namespace {

/// The commands' helps as well: CLI asks the innermost one that was given.
void parse(CLI::App& app, int argc, const char* const* argv, bool& isDone)
{
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        std::cout << app.help();
        isDone = true;
    }
}

} // namespace

CError* parseCommandLine(int argc, const char* const* argv, const char* tool, const char* purpose,
                         const std::function<void(CLI::App&)>& describe, bool& isDone)
{
    isDone = false;
    try {
        CLI::App app(purpose, tool);
        describe(app);
        parse(app, argc, argv, isDone);
    } catch (const std::exception& failure) {
        // The library reports by exceptions; this is its edge.
        TSM_FAIL("%1", CString::fromUtf8(failure.what()));
    }
    return nullptr;
}

void addRepeatable(CLI::App& app, const char* name, std::vector<std::string>& texts,
                   const char* help)
{
    // One value behind each mention, so that the files' names aren't taken for further ones.
    app.add_option(name, texts, help)->type_size(1)->allow_extra_args(false);
}

CError* splitNamedTexts(const std::vector<std::string>& texts, const char* option,
                        std::vector<CNamedText>& out)
{
    for (const std::string& text : texts) {
        const std::size_t equals = text.find('=');
        if (equals == std::string::npos || equals == 0)
            TSM_FAIL("'%1' behind %2 is not of the form NAME=TEXT", CString::fromUtf8(text),
                     option);
        out.push_back({CString::fromUtf8(std::string_view(text).substr(0, equals)),
                       CString::fromUtf8(std::string_view(text).substr(equals + 1))});
    }
    return nullptr;
}

} // namespace tsm
