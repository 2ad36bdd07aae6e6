#include "Platform/CModulePath.h"

#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <memory>

namespace tsm {
namespace {

const char kHere = 0; // its address lies in this module

struct CFreeText {
    void operator()(char* text) const noexcept { std::free(text); }
};

std::string resolved(const char* path)
{
    const std::unique_ptr<char, CFreeText> text(realpath(path, nullptr));
    return text ? text.get() : "";
}

} // namespace

std::string modulePath()
{
    Dl_info info{};
    if (dladdr(&kHere, &info) == 0 || !info.dli_fname)
        return "";
    // A program found through PATH is known by its bare name; a library always has a path.
    return resolved(std::strchr(info.dli_fname, '/') ? info.dli_fname : "/proc/self/exe");
}

} // namespace tsm
