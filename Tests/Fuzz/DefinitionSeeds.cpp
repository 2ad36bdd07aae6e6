#include "Core/CByteOrder.h"
#include "Core/CResourceEntry.h"
#include "Tests/Fuzz/CSeedFolder.h"
#include "Tests/Support/CDocumentBytes.h"

namespace tsm {
namespace {

/// Small documents, in which a changed byte matters more often than in the product's.
CTestNode smallDocument()
{
    const CTestNode text{"content", "content", {{"value", "A text of some length"}}, {}, {}};
    return {"",
            "",
            {{"x", "12"}},
            {{"core:object", "a", {{"b", "{/ x?none}"}, {"c", "false"}, {"d", ""}}, {text}, {}},
             {"", "made", {{"e", "{name?n}"}}, {{"core:object", "f", {}, {}, {}}}, "core:object"},
             {"core:attr-doubler", "g", {{"target", "a"}, {"attr", "b"}, {"value", "1"}}, {}, {}},
             {"core:shared-attribute",
              "h",
              {{"storage-type", "local"}, {"data-name", "fuzz"}, {"attr", "i"}},
              {},
              {}},
             {"core:object", "j", {{"k", "{*/a b}"}, {"l", "{*a c}"}}, {}, {}}},
            {}};
}

} // namespace

void addDefinitionSeeds(CSeedFolder& seeds)
{
    const std::vector<std::uint8_t> small = CDocumentBytes::of(smallDocument());
    seeds.add("document", "small", small);
    seeds.add("product_document", "small", small);
    seeds.add("document", "empty", CDocumentBytes::of({"", "", {}, {}, {}}));
    for (const CResourceEntry* entry = kResourceTable; entry->data; ++entry) {
        const std::string name = entry->name;
        const void* bytes = entry->data + 4;
        const std::size_t size = readU32(entry->data);
        // Too large for the target of plain documents: it would see few inputs in its time.
        if (name == "SharedData.xml")
            seeds.add("product_document", "product", bytes, size);
    }
}

} // namespace tsm
