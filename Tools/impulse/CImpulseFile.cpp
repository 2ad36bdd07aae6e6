#include "Tools/impulse/CImpulseFile.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>

#include <sndfile.h>

namespace tsm {
namespace {

/// A file of libsndfile in memory.
class CMemoryFile {
public:
    explicit CMemoryFile(std::string& bytes) : content(bytes) {}

    SNDFILE* open(SF_INFO& info)
    {
        static SF_VIRTUAL_IO calls{getSize, seek, read, write, tell};
        return sf_open_virtual(&calls, SFM_WRITE, &info, this);
    }

private:
    static CMemoryFile& of(void* user) { return *static_cast<CMemoryFile*>(user); }
    static sf_count_t getSize(void* user)
    {
        return static_cast<sf_count_t>(of(user).content.size());
    }
    static sf_count_t tell(void* user) { return static_cast<sf_count_t>(of(user).place); }
    static sf_count_t seek(sf_count_t offset, int origin, void* user)
    {
        CMemoryFile& file = of(user);
        const sf_count_t base =
            origin == SEEK_SET ? 0 : (origin == SEEK_CUR ? tell(user) : getSize(user));
        file.place = static_cast<std::size_t>(std::max<sf_count_t>(base + offset, 0));
        return tell(user);
    }
    static sf_count_t read(void* to, sf_count_t count, void* user)
    {
        CMemoryFile& file = of(user);
        const std::size_t from = std::min(file.place, file.content.size());
        const std::size_t size =
            file.content.copy(static_cast<char*>(to), static_cast<std::size_t>(count), from);
        file.place = from + size;
        return static_cast<sf_count_t>(size);
    }
    static sf_count_t write(const void* from, sf_count_t count, void* user)
    {
        CMemoryFile& file = of(user);
        const auto size = static_cast<std::size_t>(count);
        if (file.content.size() < file.place + size)
            file.content.resize(file.place + size);
        file.content.replace(file.place, size, static_cast<const char*>(from), size);
        file.place += size;
        return count;
    }

    std::string& content;
    std::size_t place = 0;
};

/// Integers of 24 bits at the top of those of 32. The library would scale by 2^23 - 1, and read by
/// 2^23.
std::vector<int> toIntegers(const std::vector<double>& samples)
{
    std::vector<int> integers;
    for (const double sample : samples) {
        const double steps = std::clamp(std::round(sample * 0x1p23), -0x1p23, 0x1p23 - 1.0);
        integers.push_back(static_cast<int>(steps) * 256);
    }
    return integers;
}

bool writeSamples(SNDFILE* file, CImpulseSpec::EFormat format, const std::vector<double>& samples)
{
    const auto count = static_cast<sf_count_t>(samples.size());
    return (format == CImpulseSpec::EFormat::Float32
                ? sf_writef_double(file, samples.data(), count)
                : sf_writef_int(file, toIntegers(samples).data(), count)) == count;
}

} // namespace

bool CImpulseFile::make(const CImpulseSpec& spec, const std::vector<double>& samples,
                        std::string& bytes, std::string& error)
{
    bytes.clear();
    CMemoryFile target(bytes);
    SF_INFO info{};
    info.samplerate = static_cast<int>(spec.rate);
    info.channels = 1;
    info.format =
        SF_FORMAT_WAV |
        (spec.format == CImpulseSpec::EFormat::Float32 ? SF_FORMAT_FLOAT : SF_FORMAT_PCM_24);
    SNDFILE* file = target.open(info);
    bool isWritten = false;
    if (file) {
        // The chunk with the peak has the time of day in it.
        sf_command(file, SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
        isWritten = writeSamples(file, spec.format, samples);
    }
    if (!isWritten)
        error = "impulse '" + spec.name + "': " + sf_strerror(file);
    return (!file || sf_close(file) == 0) && isWritten;
}

} // namespace tsm
