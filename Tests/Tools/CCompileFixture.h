#pragma once

#include "Tests/Support/CScratchFolder.h"
#include "Tests/Tools/CPlainNode.h"
#include "Tools/defc/CDefCompiler.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>

namespace tsm {

/// Compiles small documents; what was wrong with the last one stands in `problems`, with file
/// names relative to the test's folder.
class CCompileFixture : public testing::Test {
protected:
    std::string compile(const std::string& text)
    {
        folder.write("doc.xml", text);
        CDefCompiler compiler({folder / "shared"});
        std::string compiled;
        const bool isGood = compiler.compile(folder / "doc.xml", compiled);
        problems.clear();
        for (const std::string& line : compiler.getProblems().getLines())
            problems.push_back(folder.shorten(line));
        EXPECT_EQ(isGood, problems.empty());
        EXPECT_EQ(isGood, !compiled.empty());
        return compiled;
    }

    /// The tree of a document that must be good.
    CPlainNode treeOf(const std::string& text)
    {
        const std::string compiled = compile(text);
        EXPECT_THAT(problems, testing::IsEmpty());
        return problems.empty() ? CPlainNode::decode(compiled) : CPlainNode{};
    }

    CScratchFolder folder;
    std::vector<std::string> problems;
};

} // namespace tsm
