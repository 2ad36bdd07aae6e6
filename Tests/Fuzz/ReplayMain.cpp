// Stands in for libFuzzer where a target is built without it: hands each file of the folders that
// are named to the target, in order of their names.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::vector<std::filesystem::path> listFiles(const char* folder)
{
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

void replay(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> read{std::istreambuf_iterator<char>(file), {}};
    // A block of exactly that size, so that the sanitizer sees a step behind it.
    const std::vector<std::uint8_t> bytes(read.begin(), read.end());
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

} // namespace

int main(int argumentCount, char** arguments)
{
    int count = 0;
    for (int i = 1; i < argumentCount; ++i)
        for (const auto& path : listFiles(arguments[i])) {
            // Told before: a crash leaves the name of what caused it.
            std::printf("%s\n", path.filename().c_str());
            std::fflush(stdout);
            replay(path);
            ++count;
        }
    std::printf("%d inputs\n", count);
    return count > 0 ? 0 : 1;
}
