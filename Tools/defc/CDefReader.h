#pragma once

#include "Tools/defc/CDefArguments.h"
#include "Tools/defc/CDefClasses.h"
#include "Tools/defc/CDefNode.h"
#include "Tools/defc/CDefProblems.h"
#include "Tools/defc/CDefSource.h"

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace tsm {

/// Reads an authored document and expands its authoring layer: `include`, `defaults`, `fragment`
/// with `use` and `children`, `template`, and text content. Docs/definitions.md tells authors
/// what these mean. What comes out is the tree that is compiled.
class CDefReader {
public:
    /// `folders` are searched for included files, behind the including file's own folder.
    /// `noted` must outlive the reader.
    CDefReader(std::vector<std::filesystem::path> folders, CDefProblems& noted);
    ~CDefReader();

    /// Reads the document at `path`. The tree is whole only if no problem was noted.
    CDefNode readDocument(const std::filesystem::path& path);

    /// All files that were opened, each once, in the order of reading.
    const std::vector<std::filesystem::path>& getFiles() const { return files; }

private:
    struct CFragment {
        const CDefSource* source = nullptr;
        pugi::xml_node element;
        std::set<std::string> arguments;
    };
    struct CUse;
    /// What the text being read stands in: its file, the fragment use that it is part of (none
    /// outside of fragments) and the nesting of the nodes made so far.
    struct CScope {
        const CDefSource* source = nullptr;
        const CUse* use = nullptr;
        int depth = 0;
    };

    void readFile(const std::filesystem::path& path, int depth, CDefNode& parent);
    void readChildren(const pugi::xml_node& element, const CScope& scope, CDefNode& parent);
    void readElement(const pugi::xml_node& element, const CScope& scope, CDefNode& parent);
    void addText(const std::string& text, const CDefPlace& place, const CScope& scope,
                 CDefNode& parent);

    void readObject(const pugi::xml_node& element, const CScope& scope, CDefNode& parent);
    void readTemplate(const pugi::xml_node& element, const CScope& scope, CDefNode& parent);
    void finishNode(const pugi::xml_node& element, const CScope& scope, CDefNode& node,
                    CDefNode& parent);

    void readInclude(const pugi::xml_node& element, const CScope& scope, CDefNode& parent);
    std::optional<std::filesystem::path> findIncluded(const std::string& file,
                                                      const CScope& scope) const;

    void readDefaults(const pugi::xml_node& element, const CScope& scope);
    void readFragment(const pugi::xml_node& element, const CScope& scope);
    void readUse(const pugi::xml_node& element, const CScope& scope, CDefNode& parent);
    void readUseChildren(const pugi::xml_node& element, const CScope& scope, CDefNode& parent);
    bool isTopLevel(const pugi::xml_node& element, const CScope& scope);
    bool checkUse(const CUse& use, const CFragment& fragment, const CScope& scope);

    std::vector<CDefAttribute> readAttributes(const pugi::xml_node& element, const CScope& scope);
    std::string take(std::vector<CDefAttribute>& attributes, const std::string& key,
                     const pugi::xml_node& element, const CScope& scope, bool isRequired);
    void refuseRest(const std::vector<CDefAttribute>& rest, const pugi::xml_node& element,
                    const CScope& scope);
    void unmaskKeys(std::vector<CDefAttribute>& attributes, const pugi::xml_node& element,
                    const CScope& scope);
    std::string expand(const std::string& text, const CDefPlace& place, const CScope& scope);

    void note(const CDefPlace& place, const CScope& scope, const std::string& message);

    std::vector<std::filesystem::path> includeFolders;
    CDefProblems& problems;
    std::vector<std::unique_ptr<CDefSource>> sources;
    std::vector<std::filesystem::path> openFiles; // canonical, outermost first
    std::vector<std::filesystem::path> files;
    std::map<std::string, CFragment> fragments;
    CDefClasses classes;
};

} // namespace tsm
