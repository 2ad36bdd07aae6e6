#pragma once

#include "Core/CByteBuffer.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tsm {

/// The folder that the inputs of all fuzz targets begin in: one folder a target below it.
class CSeedFolder {
public:
    /// Takes the place of what was there.
    explicit CSeedFolder(const std::filesystem::path& folder);

    /// Writes one input; with `choice` above -1 that byte stands in front of it.
    void add(const char* target, const std::string& name, const void* bytes, std::size_t size,
             int choice = -1);
    void add(const char* target, const std::string& name, const CByteBuffer& bytes,
             int choice = -1);
    void add(const char* target, const std::string& name, std::string_view text, int choice = -1);
    void add(const char* target, const std::string& name, const std::vector<std::uint8_t>& bytes,
             int choice = -1);

private:
    std::filesystem::path base;
};

/// What the folder is filled with: the product's own data wherever there are some. The product's
/// application has been started.
void addDefinitionSeeds(CSeedFolder& seeds);
void addInterfaceSeeds(CSeedFolder& seeds);
void addPresetSeeds(CSeedFolder& seeds);
void addSoundSeeds(CSeedFolder& seeds);
void addStoredSeeds(CSeedFolder& seeds);
void addTextSeeds(CSeedFolder& seeds);
/// Adds the inputs that are kept as readable files, `target/name.hex`: digits of bytes, with
/// comments behind "#".
void addHexInputs(CSeedFolder& seeds, const std::filesystem::path& folder);

} // namespace tsm
