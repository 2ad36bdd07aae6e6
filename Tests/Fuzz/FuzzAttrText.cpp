// Attribute texts with references and links, in a small tree. Each line of the input is one write:
// a letter for the object, the attribute's name, "=", the text.

#include "Core/CApplication.h"
#include "Core/CAttrDoubler.h"
#include "Tests/Fuzz/FuzzTarget.h"

#include <algorithm>
#include <string_view>

namespace tsm {
namespace {

class CSmallTree {
public:
    CSmallTree()
    {
        const CCreatorRow rows[] = {creatorRow<CAttrDoubler>("core:attr-doubler"),
                                    creatorRow<CObject>("core:object")};
        promise(!hasFailed(application.start(rows, 2, nullptr, "")), "the application starts");
        promise(!hasFailed(application.initRootObject(root, CString())), "a tree begins");
        objects[0] = root.get();
        objects[1] = &make(*root, "core:object", "a");
        objects[2] = &make(*root, "core:object", "b");
        objects[3] = &make(*objects[1], "core:object", "c");
        objects[4] = &make(*objects[3], "core:object", "d");
        CAttrMap attrs;
        attrs.setText("target", "a b a.c");
        attrs.setText("attr", "x");
        CObject* doubler = nullptr;
        promise(!hasFailed(
                    root->createChild(doubler, "core:attr-doubler", "e", false, nullptr, &attrs)),
                "a doubler begins");
        objects[5] = doubler;
    }
    void write(std::string_view line)
    {
        const std::size_t sign = line.find('=');
        if (sign == std::string_view::npos || sign == 0)
            return;
        const auto index = static_cast<std::size_t>(static_cast<unsigned char>(line[0])) % 6;
        CObject& object = *objects[index];
        const CString name = CString::fromUtf8(line.substr(1, sign - 1));
        (void)hasFailed(object.setAttr(name, CString::fromUtf8(line.substr(sign + 1)), true));
        (void)object.findObject(name);
    }

private:
    static CObject& make(CObject& parent, const char* tag, const char* name)
    {
        CObject* child = nullptr;
        promise(!hasFailed(parent.createChild(child, tag, name, false)), "a child begins");
        return *child;
    }

    CApplication application;
    CTreePtr<CObject> root;
    CObject* objects[6] = {};
};

} // namespace

void fuzzOne(const std::uint8_t* data, std::size_t size)
{
    CSmallTree tree;
    std::string_view text(reinterpret_cast<const char*>(data), size);
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        tree.write(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

} // namespace tsm
