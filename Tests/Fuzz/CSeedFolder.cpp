#include "Tests/Fuzz/CSeedFolder.h"

#include <fstream>
#include <stdexcept>

namespace tsm {

CSeedFolder::CSeedFolder(const std::filesystem::path& folder) : base(folder)
{
    std::filesystem::remove_all(base);
}

void CSeedFolder::add(const char* target, const std::string& name, const void* bytes,
                      std::size_t size, int choice)
{
    std::filesystem::create_directories(base / target);
    std::ofstream file(base / target / name, std::ios::binary);
    if (choice >= 0)
        file.put(static_cast<char>(choice));
    file.write(static_cast<const char*>(bytes), static_cast<std::streamsize>(size));
    if (!file.flush())
        throw std::runtime_error("cannot write the input " + name);
}

void CSeedFolder::add(const char* target, const std::string& name, const CByteBuffer& bytes,
                      int choice)
{
    add(target, name, bytes.data(), static_cast<std::size_t>(bytes.getSize()), choice);
}

void CSeedFolder::add(const char* target, const std::string& name, std::string_view text,
                      int choice)
{
    add(target, name, text.data(), text.size(), choice);
}

void CSeedFolder::add(const char* target, const std::string& name,
                      const std::vector<std::uint8_t>& bytes, int choice)
{
    add(target, name, bytes.data(), bytes.size(), choice);
}

} // namespace tsm
