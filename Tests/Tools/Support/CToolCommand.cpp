#include "Tests/Tools/Support/CToolCommand.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>

#include <fcntl.h>
#include <sndfile.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tsm {

namespace {

std::string readText(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

void redirect(const std::string& path, int descriptor)
{
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    dup2(file, descriptor);
}

} // namespace

CTestSound makeSound(int rate, int channels, std::size_t frames,
                     const std::function<double(std::size_t, int)>& generator)
{
    CTestSound sound{rate, channels, {}};
    for (std::size_t frame = 0; frame < frames; ++frame)
        for (int channel = 0; channel < channels; ++channel)
            sound.samples.push_back(generator(frame, channel));
    return sound;
}

CTestSound makeMusic(int rate, int channels, std::size_t frames)
{
    std::uint32_t noise = 1;
    return makeSound(rate, channels, frames, [&](std::size_t frame, int channel) {
        const double t = static_cast<double>(frame) / rate;
        noise = noise * 1664525U + 1013904223U;
        const double hiss = static_cast<double>(noise >> 8) * 0x1p-24 - 0.5;
        const double fall = std::exp(-4.0 * std::fmod(t, 0.25));
        return 0.7 * fall * std::sin(2.0 * M_PI * (110.0 + 37.0 * channel) * t) +
               0.3 * std::sin(2.0 * M_PI * 1000.0 * t) + 0.2 * hiss;
    });
}

CToolCommand::CToolCommand(std::string programPath, std::vector<std::string> fixedArgs)
    : program(std::move(programPath)), prefix(std::move(fixedArgs))
{
    std::string pattern = std::filesystem::temp_directory_path() / "reelpath-tool-XXXXXX";
    folder = mkdtemp(pattern.data());
}

CToolCommand::~CToolCommand()
{
    std::error_code ignored; // a test's folder that stays behind fails no test
    std::filesystem::remove_all(folder, ignored);
}

void CToolCommand::writeSound(const std::string& name, const CTestSound& sound) const
{
    SF_INFO info = {};
    info.samplerate = sound.rate;
    info.channels = sound.channels;
    info.format = SF_FORMAT_WAV | SF_FORMAT_DOUBLE;
    SNDFILE* file = sf_open(path(name).c_str(), SFM_WRITE, &info);
    ASSERT_NE(file, nullptr) << sf_strerror(nullptr);
    sf_write_double(file, sound.samples.data(), static_cast<sf_count_t>(sound.samples.size()));
    sf_close(file);
}

void CToolCommand::writeBytes(const std::string& name, const std::string& bytes) const
{
    std::ofstream(path(name), std::ios::binary) << bytes;
}

CTestSound CToolCommand::readSound(const std::string& name) const
{
    SF_INFO info = {};
    SNDFILE* file = sf_open(path(name).c_str(), SFM_READ, &info);
    if (!file) {
        ADD_FAILURE() << name << ": " << sf_strerror(nullptr);
        return {};
    }
    CTestSound sound{info.samplerate, info.channels, {}};
    sound.samples.resize(static_cast<std::size_t>(info.frames * info.channels));
    sf_readf_double(file, sound.samples.data(), info.frames);
    sf_close(file);
    return sound;
}

std::vector<std::string> CToolCommand::listFiles() const
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
}

CCommandResult CToolCommand::run(const std::vector<std::string>& args) const
{
    return run(args, [](int) {});
}

CCommandResult CToolCommand::run(const std::vector<std::string>& args,
                                 const std::function<void(int)>& interfere) const
{
    // Beside the folder, so that listFiles() sees what the program leaves and nothing else.
    const std::string outPath = folder.string() + ".out";
    const std::string errPath = folder.string() + ".err";
    const pid_t child = fork();
    if (child == 0) {
        if (chdir(folder.c_str()) != 0)
            _exit(126);
        redirect(outPath, STDOUT_FILENO);
        redirect(errPath, STDERR_FILENO);
        std::vector<char*> argv{const_cast<char*>(program.c_str())};
        for (const auto& part : {prefix, args})
            for (const std::string& arg : part)
                argv.push_back(strdup(arg.c_str())); // the process ends or is replaced
        argv.push_back(nullptr);
        execv(program.c_str(), argv.data());
        _exit(127);
    }
    interfere(child);
    int status = 0;
    waitpid(child, &status, 0);
    CCommandResult result;
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    result.out = readText(outPath);
    result.err = readText(errPath);
    std::filesystem::remove(outPath);
    std::filesystem::remove(errPath);
    return result;
}

CTestSound CToolCommand::render(const CTestSound& sound,
                                const std::vector<std::string>& options) const
{
    writeSound("in.wav", sound);
    std::vector<std::string> args = options;
    args.insert(args.end(), {"--format", "f64", "in.wav", "out.wav"});
    const CCommandResult result = run(args);
    EXPECT_EQ(result.status, 0) << result.err;
    return readSound("out.wav");
}

} // namespace tsm
