#include "Tools/Support/CSoundFileReader.h"

#include "Core/CByteOrder.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>

#include <sys/stat.h>

namespace tsm {

namespace {

/// Tells apart what the library reports with one text: no file, no right to it, a folder.
CError* checkReadable(const std::string& path, const CString& name)
{
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0)
        TSM_FAIL("can't open '%1': %2", name, std::strerror(errno));
    if (!S_ISREG(status.st_mode))
        TSM_FAIL("can't open '%1': not a regular file", name);
    if (status.st_size == 0)
        TSM_FAIL("'%1' is empty", name);
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> probe(std::fopen(path.c_str(), "rb"),
                                                          std::fclose);
    if (!probe)
        TSM_FAIL("can't open '%1': %2", name, std::strerror(errno));
    return nullptr;
}

/// Whether a RIFF file holds all the samples its header states. The library takes what is there and
/// says nothing, so that a broken copy would become a shorter sound. A size of all ones, or of 0,
/// is what recorders leave that can't go back to the header.
bool isRiffDataComplete(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    in.seekg(0, std::ios::end);
    const auto fileSize = static_cast<std::uint64_t>(in.tellg());
    std::array<std::uint8_t, 12> head{};
    in.seekg(0);
    in.read(reinterpret_cast<char*>(head.data()), head.size());
    if (!in || std::memcmp(head.data(), "RIFF", 4) != 0 ||
        std::memcmp(head.data() + 8, "WAVE", 4) != 0)
        return true;
    for (std::uint64_t at = head.size(); at + 8 <= fileSize;) {
        in.seekg(static_cast<std::streamoff>(at));
        in.read(reinterpret_cast<char*>(head.data()), 8);
        const std::uint32_t size = readU32(head.data() + 4);
        at += 8;
        if (std::memcmp(head.data(), "data", 4) == 0)
            return size == 0xffffffffU || size <= fileSize - at;
        at += size + (size & 1U);
    }
    return true; // without a data chunk the library refuses the file
}

} // namespace

CError* CSoundFileReader::open(const std::string& path)
{
    name = CString::fromUtf8(path);
    TSM_TRY(checkReadable(path, name));
    info = {};
    file.reset(sf_open(path.c_str(), SFM_READ, &info));
    if (!file)
        TSM_FAIL("can't read '%1': %2", name, CString(sf_strerror(nullptr)).trimmed());
    if (!isRiffDataComplete(path))
        TSM_FAIL("'%1' is damaged: it ends before its last sample", name);
    if (info.frames <= 0 || info.channels <= 0 || info.samplerate <= 0)
        TSM_FAIL("'%1' holds no sound", name);
    return nullptr;
}

CError* CSoundFileReader::read(double* frames, int frameCount)
{
    const sf_count_t done = sf_readf_double(file.get(), frames, frameCount);
    if (done != frameCount)
        TSM_FAIL("'%1' is damaged: it ends before its last sample", name);
    return nullptr;
}

} // namespace tsm
