#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace tsm {

/// A whole sound in memory, channels side by side.
struct CTestSound {
    int rate = 44100;
    int channels = 1;
    std::vector<double> samples;

    [[nodiscard]] std::size_t getFrameCount() const
    {
        return samples.size() / static_cast<std::size_t>(channels);
    }
    [[nodiscard]] double at(std::size_t frame, int channel = 0) const
    {
        return samples[frame * static_cast<std::size_t>(channels) +
                       static_cast<std::size_t>(channel)];
    }
};

/// A sound of `frames` frames whose samples come from `generator(frame, channel)`.
[[nodiscard]] CTestSound makeSound(int rate, int channels, std::size_t frames,
                                   const std::function<double(std::size_t, int)>& generator);
/// Fading sines and noise at a level that saturates; different in each channel.
[[nodiscard]] CTestSound makeMusic(int rate, int channels, std::size_t frames);

/// What a run of the program came to.
struct CCommandResult {
    int status = -1; // exit status, or 128 plus the signal that ended it
    std::string out;
    std::string err;
};

/// Runs a tool that sends sound files through something, in a folder of its own, which goes with
/// the object.
class CToolCommand {
public:
    /// `fixedArgs` come before those of each run.
    explicit CToolCommand(std::string programPath, std::vector<std::string> fixedArgs = {});
    ~CToolCommand();
    CToolCommand(const CToolCommand&) = delete;
    CToolCommand& operator=(const CToolCommand&) = delete;

    [[nodiscard]] std::string path(const std::string& name) const { return folder / name; }
    void writeSound(const std::string& name, const CTestSound& sound) const;
    void writeBytes(const std::string& name, const std::string& bytes) const;
    [[nodiscard]] CTestSound readSound(const std::string& name) const;
    /// The names in the folder, sorted.
    [[nodiscard]] std::vector<std::string> listFiles() const;

    /// Runs with these arguments, the folder as the working one.
    [[nodiscard]] CCommandResult run(const std::vector<std::string>& args) const;
    /// Starts it; `interfere` gets the process id while it runs.
    [[nodiscard]] CCommandResult run(const std::vector<std::string>& args,
                                     const std::function<void(int)>& interfere) const;
    /// Renders `sound` with these options as 64-bit samples; the run must succeed.
    [[nodiscard]] CTestSound render(const CTestSound& sound,
                                    const std::vector<std::string>& options) const;

private:
    std::string program;
    std::vector<std::string> prefix;
    std::filesystem::path folder;
};

} // namespace tsm
