#pragma once

#include "Tools/bankc/CBankFile.h"
#include "Tools/bankc/CBankParams.h"
#include "Tools/bankc/CBankValues.h"
#include "Tools/defc/CDefSource.h"

#include <map>
#include <set>
#include <string>

namespace tsm {

/// Reads banks as people write them; `Docs/definitions.md` tells the form. It goes on behind a
/// problem, so that an author sees every one of them in a single run.
class CBankReader {
public:
    explicit CBankReader(const CBankParams& definitions) : params(definitions) {}

    /// Reads a file. False, with the problems noted by file and line, when anything is wrong.
    [[nodiscard]] bool read(const std::filesystem::path& file, CBankContent& content);
    [[nodiscard]] const CDefProblems& getProblems() const noexcept { return problems; }

private:
    using CInfos = std::map<std::string, CPtr<CAudioParamInfo>>;

    void readRoot(const pugi::xml_node& node, CBankContent& content);
    void readBare(const pugi::xml_node& node);
    void readPreset(const pugi::xml_node& node, const CAudioPreset& base, CBankContent& content);
    void readItems(const pugi::xml_node& node, CAudioPreset& preset);
    void readItem(const pugi::xml_node& node, CAudioPreset& preset, std::set<std::string>& seen);
    [[nodiscard]] bool readValues(const pugi::xml_node& node, const CAudioParamInfo& info,
                                  CAudioParamStorage& values);
    void writeName(const pugi::xml_node& node, const std::string& name, CAudioPreset& preset);
    /// Notes at `place` that `count` isn't what an attribute of the bank says.
    void checkCount(const pugi::xml_node& place, const pugi::xml_attribute& wanted, int count);
    [[nodiscard]] bool checkAttributes(const pugi::xml_node& node,
                                       const std::set<std::string>& known,
                                       const std::set<std::string>& required);
    [[nodiscard]] const CAudioParamInfo* findInfo(const std::string& key) const;
    [[nodiscard]] std::string fullName(const std::string& key) const
    {
        return hierarchy + "." + key;
    }
    void complain(const pugi::xml_node& node, const std::string& message)
    {
        problems.add(source.placeOf(node), message);
    }

    const CBankParams& params;
    CDefSource source;
    CDefProblems problems;
    CInfos bareInfos; // by key
    std::string id;
    std::string hierarchy;
    std::string nameParam;
    std::set<std::string> presetNames;
};

} // namespace tsm
