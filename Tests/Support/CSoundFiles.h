#pragma once

#include "Tests/Support/CScratchFolder.h"
#include "Tests/Support/CTestStreams.h"

#include <random>
#include <sndfile.h>
#include <string>
#include <vector>

namespace tsm {

/// A kind of sound file that libsndfile writes.
struct CSoundFileKind {
    const char* name;
    int format;
};

/// All formats that it shares with the product's reader, by the names that it gives them.
inline const CSoundFileKind kSoundFileKinds[] = {
    {"wav-u8", SF_FORMAT_WAV | SF_FORMAT_PCM_U8},
    {"wav-16", SF_FORMAT_WAV | SF_FORMAT_PCM_16},
    {"wav-24", SF_FORMAT_WAV | SF_FORMAT_PCM_24},
    {"wav-32", SF_FORMAT_WAV | SF_FORMAT_PCM_32},
    {"wav-float", SF_FORMAT_WAV | SF_FORMAT_FLOAT},
    {"wav-double", SF_FORMAT_WAV | SF_FORMAT_DOUBLE},
    {"wavex-24", SF_FORMAT_WAVEX | SF_FORMAT_PCM_24},
    {"wavex-float", SF_FORMAT_WAVEX | SF_FORMAT_FLOAT},
    {"wavex-double", SF_FORMAT_WAVEX | SF_FORMAT_DOUBLE},
    {"rf64-u8", SF_FORMAT_RF64 | SF_FORMAT_PCM_U8},
    {"rf64-16", SF_FORMAT_RF64 | SF_FORMAT_PCM_16},
    {"rf64-24", SF_FORMAT_RF64 | SF_FORMAT_PCM_24},
    {"rf64-32", SF_FORMAT_RF64 | SF_FORMAT_PCM_32},
    {"rf64-float", SF_FORMAT_RF64 | SF_FORMAT_FLOAT},
    {"rf64-double", SF_FORMAT_RF64 | SF_FORMAT_DOUBLE},
    {"w64-u8", SF_FORMAT_W64 | SF_FORMAT_PCM_U8},
    {"w64-16", SF_FORMAT_W64 | SF_FORMAT_PCM_16},
    {"w64-24", SF_FORMAT_W64 | SF_FORMAT_PCM_24},
    {"w64-32", SF_FORMAT_W64 | SF_FORMAT_PCM_32},
    {"w64-float", SF_FORMAT_W64 | SF_FORMAT_FLOAT},
    {"w64-double", SF_FORMAT_W64 | SF_FORMAT_DOUBLE},
    {"aiff-s8", SF_FORMAT_AIFF | SF_FORMAT_PCM_S8},
    {"aiff-16", SF_FORMAT_AIFF | SF_FORMAT_PCM_16},
    {"aiff-24", SF_FORMAT_AIFF | SF_FORMAT_PCM_24},
    {"aiff-32", SF_FORMAT_AIFF | SF_FORMAT_PCM_32},
    {"aiff-float", SF_FORMAT_AIFF | SF_FORMAT_FLOAT},
    {"aifc-sowt-16", SF_FORMAT_AIFF | SF_FORMAT_PCM_16 | SF_ENDIAN_LITTLE},
};

/// The kind's name as a part of a test's.
inline std::string soundFileTestName(const testing::TestParamInfo<CSoundFileKind>& test)
{
    std::string name = test.param.name;
    std::erase(name, '-');
    return name;
}

/// Interleaved noise over the whole range, its limits included.
inline std::vector<double> soundNoise(std::size_t count)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<double> any(-1.0, 1.0);
    std::vector<double> samples(count);
    for (double& sample : samples)
        sample = any(random);
    for (std::size_t i = 0; i < count; i += 97)
        samples[i] = i % 2 ? 1.0 : -1.0;
    return samples;
}

/// Has libsndfile write noise, and with `hasTexts` some metadata in front and behind.
inline void writeSoundFile(const std::string& path, const CSoundFileKind& kind, int channelCount,
                           int frameCount, bool hasTexts = false)
{
    SF_INFO info{};
    info.samplerate = 44100;
    info.channels = channelCount;
    info.format = kind.format;
    SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
    ASSERT_NE(file, nullptr) << sf_strerror(nullptr);
    sf_command(file, SFC_SET_CLIPPING, nullptr, SF_TRUE);
    if (hasTexts) {
        sf_set_string(file, SF_STR_TITLE, "A title of odd length");
        sf_set_string(file, SF_STR_COMMENT, "A comment");
    }
    const auto samples =
        soundNoise(static_cast<std::size_t>(channelCount) * static_cast<std::size_t>(frameCount));
    ASSERT_EQ(sf_writef_double(file, samples.data(), frameCount), frameCount);
    ASSERT_EQ(sf_close(file), 0);
}

/// What libsndfile reads, interleaved.
inline std::vector<double> readBySndfile(const std::string& path, SF_INFO& info)
{
    info = {};
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
    if (!file)
        return {};
    std::vector<double> samples(static_cast<std::size_t>(info.frames * info.channels));
    EXPECT_EQ(sf_readf_double(file, samples.data(), info.frames), info.frames);
    sf_close(file);
    return samples;
}

} // namespace tsm
