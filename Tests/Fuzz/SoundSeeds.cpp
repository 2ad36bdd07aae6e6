#include "Core/CMemoryReader.h"
#include "Core/CResourceMap.h"
#include "Other/CFileSet.h"
#include "Tests/Fuzz/CSeedFolder.h"
#include "Tests/Fuzz/FuzzTarget.h"
#include "Tests/Support/CChunkBytes.h"

#include <algorithm>
#include <cstring>
#include <sndfile.h>

namespace tsm {
namespace {

/// The file that libsndfile writes, in memory.
class CSoundMemory {
public:
    SF_VIRTUAL_IO io{
        [](void* user) { return of(user).getSize(); },
        [](sf_count_t offset, int from, void* user) { return of(user).seek(offset, from); },
        [](void* to, sf_count_t count, void* user) { return of(user).read(to, count); },
        [](const void* from, sf_count_t count, void* user) { return of(user).write(from, count); },
        [](void* user) { return of(user).position; }};
    std::vector<std::uint8_t> bytes;

private:
    static CSoundMemory& of(void* user) { return *static_cast<CSoundMemory*>(user); }
    [[nodiscard]] sf_count_t getSize() const { return static_cast<sf_count_t>(bytes.size()); }
    sf_count_t seek(sf_count_t offset, int from)
    {
        position = offset + (from == SEEK_CUR ? position : from == SEEK_END ? getSize() : 0);
        return position;
    }
    sf_count_t read(void* to, sf_count_t count)
    {
        const sf_count_t piece = std::min(count, getSize() - position);
        if (piece <= 0)
            return 0;
        std::memcpy(to, &bytes[static_cast<std::size_t>(position)],
                    static_cast<std::size_t>(piece));
        position += piece;
        return piece;
    }
    sf_count_t write(const void* from, sf_count_t count)
    {
        if (position + count > getSize())
            bytes.resize(static_cast<std::size_t>(position + count));
        std::memcpy(&bytes[static_cast<std::size_t>(position)], from,
                    static_cast<std::size_t>(count));
        position += count;
        return count;
    }

    sf_count_t position = 0;
};

std::vector<std::uint8_t> soundFile(int format, int channelCount, bool hasTexts)
{
    CSoundMemory memory;
    SF_INFO info{};
    info.samplerate = 44100;
    info.channels = channelCount;
    info.format = format;
    SNDFILE* file = sf_open_virtual(&memory.io, SFM_WRITE, &info, &memory);
    promise(file != nullptr, "libsndfile writes the format");
    if (hasTexts) {
        sf_set_string(file, SF_STR_TITLE, "A title");
        sf_set_string(file, SF_STR_COMMENT, "A comment of odd length");
    }
    const std::vector<double> samples(static_cast<std::size_t>(20 * channelCount), 0.25);
    promise(sf_writef_double(file, samples.data(), 20) == 20, "libsndfile writes all frames");
    sf_close(file);
    return memory.bytes;
}

/// Every kind that libsndfile writes and the product reads.
void addSoundFiles(CSeedFolder& seeds)
{
    constexpr int kKinds[] = {SF_FORMAT_WAV, SF_FORMAT_WAVEX, SF_FORMAT_RF64,
                              SF_FORMAT_W64, SF_FORMAT_AIFF,  SF_FORMAT_AIFF | SF_ENDIAN_LITTLE};
    constexpr int kSamples[] = {SF_FORMAT_PCM_S8, SF_FORMAT_PCM_U8, SF_FORMAT_PCM_16,
                                SF_FORMAT_PCM_24, SF_FORMAT_PCM_32, SF_FORMAT_FLOAT,
                                SF_FORMAT_DOUBLE};
    for (const int kind : kKinds)
        for (const int sample : kSamples)
            for (const int channelCount : {1, 3}) {
                SF_INFO info{};
                info.samplerate = 44100;
                info.channels = channelCount;
                info.format = kind | sample;
                if (!sf_format_check(&info))
                    continue;
                const std::string name = std::to_string(kind) + "-" + std::to_string(sample) + "-" +
                                         std::to_string(channelCount);
                seeds.add("sound_file", name,
                          soundFile(info.format, channelCount, channelCount == 3));
            }
}

/// Metadata that no library here writes.
void addMetadata(CSeedFolder& seeds)
{
    const CBytes sound(48, 0x11);
    CChunkBytes wave;
    wave.chunk("fmt ", waveFormat(1, 2, 4, 16))
        .chunk("cue ", CChunkBytes().u32(1).zeros(24).bytes)
        .chunk("LIST", CChunkBytes()
                           .text("adtl")
                           .chunk("labl", CChunkBytes().u32(1).text("mark").zeros(1).bytes)
                           .chunk("ltxt", CChunkBytes().zeros(20).bytes)
                           .bytes)
        .chunk("LIST", CChunkBytes().text("INFO").chunk("INAM", toBytes("name")).bytes)
        .chunk("smpl", CChunkBytes().zeros(28).u32(1).u32(4).zeros(28).bytes)
        .chunk("bext", CChunkBytes().zeros(602).text("history").bytes)
        .chunk("data", sound);
    seeds.add("sound_file", "metadata-wave", wave.file("RIFF", "WAVE"));
    using EOrder = CChunkBytes::EOrder;
    CChunkBytes aiff(EOrder::Big);
    const CBytes common = CChunkBytes(EOrder::Big)
                              .u16(1)
                              .u32(20)
                              .u16(16)
                              .u16(0x400e)
                              .u64(0xac44000000000000)
                              .text("sowt")
                              .u16(0)
                              .bytes;
    aiff.chunk("FVER", CChunkBytes(EOrder::Big).u32(0xa2805140).bytes)
        .chunk("COMM", common)
        .chunk("NAME", toBytes("odd"))
        .chunk("SSND", CChunkBytes(EOrder::Big).u32(4).u32(0).raw(sound).bytes);
    seeds.add("sound_file", "metadata-aiff", aiff.file("FORM", "AIFC"));
}

void addFileSets(CSeedFolder& seeds)
{
    const auto add = [&](const char* name, const CFileSet& set) {
        seeds.add("file_set", name,
                  bytesOf([&](COutputStream& stream) { return set.writeTo(stream); }));
    };
    CFileSet small;
    add("empty", small);
    small.add(7, "Tape", CByteBuffer("abc", 3));
    small.add(2, "A longer name", CByteBuffer("", 0));
    add("small", small);
    const CResourceMap::CResource* found = CResourceMap::get().find("Impulses/ReelpathImpulses.fs");
    promise(found != nullptr, "the product carries its impulses");
    CMemoryReader reader(found->data, found->size);
    CFileSet impulses;
    promise(!hasFailed(impulses.loadFrom(reader)), "the product's impulses can be read");
    // The heads of the real items: their samples are long.
    CFileSet heads;
    for (int i = 0; i < impulses.getCount(); ++i) {
        const CFileSet::CItem& item = impulses.getByName(i);
        const CByteBuffer head(item.getData(), std::min(item.getSize(), 400));
        heads.add(item.getId(), item.getName(), head);
        seeds.add("sound_file", "impulse-" + std::to_string(item.getId()), item.getData(),
                  static_cast<std::size_t>(std::min(item.getSize(), 4000)));
    }
    add("impulses", heads);
}

} // namespace

void addSoundSeeds(CSeedFolder& seeds)
{
    addSoundFiles(seeds);
    addMetadata(seeds);
    addFileSets(seeds);
}

} // namespace tsm
