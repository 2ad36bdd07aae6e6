#include "Tools/Support/CToolFile.h"

#include <fstream>
#include <iterator>
#include <system_error>

namespace tsm {

bool CToolFile::read(const std::filesystem::path& path, std::string& content, std::string& error)
{
    std::error_code code;
    const bool isFolder = std::filesystem::is_directory(path, code);
    std::ifstream in(path, std::ios::binary);
    if (isFolder || !in) {
        error = "cannot open '" + path.string() + "'";
        return false;
    }
    content.assign(std::istreambuf_iterator<char>(in), {});
    if (in.bad())
        error = "cannot read '" + path.string() + "'";
    return !in.bad();
}

bool CToolFile::write(const std::filesystem::path& path, std::string_view content,
                      std::string& error)
{
    std::filesystem::path part = path;
    part += ".part";
    std::ofstream out(part, std::ios::binary | std::ios::trunc);
    out.write(content.data(), static_cast<std::streamsize>(content.size()));
    out.close();
    std::error_code code;
    if (out)
        std::filesystem::rename(part, path, code);
    if (out && !code)
        return true;
    error = "cannot write '" + path.string() + "'";
    std::filesystem::remove(part, code);
    return false;
}

} // namespace tsm
