#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

namespace tsm {

/// A folder of the running test alone, gone with it.
class CScratchFolder {
public:
    CScratchFolder()
    {
        const auto* test = testing::UnitTest::GetInstance()->current_test_info();
        path = std::filesystem::path(testing::TempDir()) /
               (std::string("tsm-") + test->test_suite_name() + "-" + test->name());
        std::filesystem::remove_all(path);
        std::filesystem::create_directories(path);
    }
    ~CScratchFolder() { std::filesystem::remove_all(path); }
    CScratchFolder(const CScratchFolder&) = delete;
    CScratchFolder& operator=(const CScratchFolder&) = delete;

    std::filesystem::path operator/(const std::string& name) const { return path / name; }

    void write(const std::string& name, const std::string& text) const
    {
        std::filesystem::create_directories((path / name).parent_path());
        std::ofstream(path / name, std::ios::binary) << text;
    }

    std::string read(const std::string& name) const
    {
        std::ifstream in(path / name, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }

    /// `text` without this folder in front of its file names.
    std::string shorten(std::string text) const
    {
        const std::string prefix = path.string() + "/";
        for (std::size_t at; (at = text.find(prefix)) != std::string::npos;)
            text.erase(at, prefix.size());
        return text;
    }

private:
    std::filesystem::path path;
};

} // namespace tsm
