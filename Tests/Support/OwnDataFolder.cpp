// Linked into every test and benchmark: gives the process, and the programs that it starts, data
// folders of their own, so that nothing of the user's is read or written. The stores look their
// folders up at first use, which is behind this.

#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>
#include <unistd.h>

namespace {

class COwnDataFolder {
public:
    COwnDataFolder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "tsm-data-XXXXXX").string();
        if (!mkdtemp(name.data()))
            std::abort();
        path = name;
        setenv("XDG_DATA_HOME", (path / "user").c_str(), 1);
        setenv("XDG_DATA_DIRS", (path / "common").c_str(), 1);
    }
    ~COwnDataFolder()
    {
        // A forked child that ends by exit() leaves the folder to its parent.
        std::error_code ignored;
        if (getpid() == owner)
            std::filesystem::remove_all(path, ignored);
    }
    COwnDataFolder(const COwnDataFolder&) = delete;
    COwnDataFolder& operator=(const COwnDataFolder&) = delete;

private:
    std::filesystem::path path;
    pid_t owner = getpid();
};

const COwnDataFolder ownDataFolder;

} // namespace
