#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace tsm {

/// A whole sound in memory, one array of samples a channel, full scale 1.0.
struct CSoundBuffer {
    int rate = 44100;
    std::vector<std::vector<double>> channels; // all of the same length

    CSoundBuffer() = default;
    CSoundBuffer(int sampleRate, std::size_t channelCount, std::size_t frameCount);

    [[nodiscard]] std::size_t getFrameCount() const
    {
        return channels.empty() ? 0 : channels.front().size();
    }

    /// The frames from `first` on, as many as there are up to `count`.
    [[nodiscard]] CSoundBuffer slice(std::size_t first, std::size_t count) const;

    /// Reads a file of any format that libsndfile knows. False, with a text for the user in
    /// `error`, when that fails or the file tells more than kMaxSamples.
    [[nodiscard]] static bool read(const std::filesystem::path& path, CSoundBuffer& sound,
                                   std::string& error);

    /// Writes a WAV file of 24-bit integers; samples beyond full scale are limited to it. False
    /// with `error` as above.
    [[nodiscard]] bool write(const std::filesystem::path& path, std::string& error) const;

    static constexpr std::size_t kMaxSamples = std::size_t{1} << 28; // 2 GiB of doubles
};

} // namespace tsm
