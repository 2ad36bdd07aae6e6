#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tsm {

/// The list of what to embed: one `name = file` a line, `#` starts a comment line. The text
/// behind the first ` = ` is the file's path; a relative one starts at the manifest's folder.
class CResourceManifest {
public:
    struct CItem {
        std::string name;
        std::filesystem::path file;
    };

    /// False, with `error` as `file:line: message`, for a line of another form, a name given
    /// twice, or a file that does not exist or has more than the 4 GB that its size field tells.
    bool parse(std::string_view text, const std::filesystem::path& path, std::string& error);

    const std::vector<CItem>& getItems() const { return items; }

private:
    bool addLine(const std::string& line, const std::filesystem::path& folder,
                 std::string& message);

    std::vector<CItem> items;
};

} // namespace tsm
