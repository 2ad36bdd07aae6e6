#include "Platform/CDataFolders.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <pwd.h>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace tsm {
namespace {

constexpr const char* kDefaultCommonFolder = "/usr/local/share";
constexpr std::size_t kLargestRecord = 1 << 20;

bool isAbsolute(std::string_view path)
{
    return path.starts_with('/');
}

std::string withoutEndSlash(std::string_view path)
{
    while (path.ends_with('/'))
        path.remove_suffix(1);
    return std::string(path);
}

std::string variable(const char* name)
{
    const char* value = std::getenv(name);
    return value ? value : "";
}

/// The home folder in the password database, for processes that are started without a session.
std::string homeOfRecord()
{
    for (std::vector<char> text(1024); text.size() <= kLargestRecord;
         text.resize(2 * text.size())) {
        passwd record{};
        passwd* found = nullptr;
        const int code = getpwuid_r(getuid(), &record, text.data(), text.size(), &found);
        if (code == 0)
            return found && found->pw_dir ? found->pw_dir : "";
        if (code != ERANGE)
            break;
    }
    return "";
}

} // namespace

// Both by the XDG Base Directory Specification, which has relative paths ignored.

std::string userDataFolder()
{
    if (const std::string folder = variable("XDG_DATA_HOME"); isAbsolute(folder))
        return withoutEndSlash(folder);
    std::string home = variable("HOME");
    if (!isAbsolute(home))
        home = homeOfRecord();
    return isAbsolute(home) ? withoutEndSlash(home) + "/.local/share" : "";
}

std::string commonDataFolder()
{
    const std::string folders = variable("XDG_DATA_DIRS");
    std::string_view rest = folders;
    while (!rest.empty()) {
        const std::string_view entry = rest.substr(0, rest.find(':'));
        if (isAbsolute(entry))
            return withoutEndSlash(entry);
        rest.remove_prefix(std::min(entry.size() + 1, rest.size()));
    }
    return kDefaultCommonFolder;
}

} // namespace tsm
