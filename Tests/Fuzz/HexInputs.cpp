#include "Tests/Fuzz/CSeedFolder.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace tsm {
namespace {

std::vector<std::uint8_t> readHex(const std::filesystem::path& path)
{
    std::ifstream file(path);
    std::vector<std::uint8_t> bytes;
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line.substr(0, line.find('#')));
        for (std::string word; words >> word;) {
            std::size_t end = 0;
            const unsigned long value = std::stoul(word, &end, 16);
            if (end != word.size() || value > 0xff)
                throw std::runtime_error(path.string() + ": no byte: " + word);
            bytes.push_back(static_cast<std::uint8_t>(value));
        }
    }
    return bytes;
}

} // namespace

void addHexInputs(CSeedFolder& seeds, const std::filesystem::path& folder)
{
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        const std::filesystem::path& path = entry.path();
        if (path.extension() == ".hex")
            seeds.add(path.parent_path().filename().c_str(), "kept-" + path.stem().string(),
                      readHex(path));
    }
}

} // namespace tsm
