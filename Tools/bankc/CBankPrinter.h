#pragma once

#include "Tools/bankc/CBankFile.h"
#include "Tools/bankc/CBankParams.h"

#include <set>
#include <string>

namespace tsm {

/// Writes banks in the form that CBankReader reads: the same presets come out of it again, but for
/// items that no parameter could take, which only stand as comments.
class CBankPrinter {
public:
    explicit CBankPrinter(const CBankParams& definitions) : params(definitions) {}

    [[nodiscard]] std::string print(const CBankContent& content);

private:
    void findPath(const CAudioPresetBank& bank);
    void declareBare(const CAudioPresetBank& bank);
    void printPreset(const CAudioPreset& preset);
    void printItem(const std::string& key, const CByteBuffer& bytes);

    const CBankParams& params;
    std::string out;
    std::string path; // of the parameters, as their definitions' names say
    std::set<std::string> bareKeys;
};

} // namespace tsm
