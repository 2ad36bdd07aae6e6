#pragma once

#include "Core/CResourceEntry.h"
#include "Core/CResourceMap.h"

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace tsm {

/// A node of a definition document, as tests write it down.
struct CTestNode {
    std::string tag;
    std::string name;
    std::vector<std::pair<std::string, std::string>> attrs;
    std::vector<CTestNode> children;
    std::string templateClass = {}; // not empty: a template of that class
};

/// Writes compiled documents byte by byte from the layout, without the compiler's help.
class CDocumentBytes {
public:
    static std::vector<std::uint8_t> of(const CTestNode& root)
    {
        CDocumentBytes writer;
        writer.index("");
        writer.node(root);
        std::vector<std::uint8_t> pool;
        std::vector<std::uint8_t> out;
        const auto count = static_cast<std::uint32_t>(writer.strings.size());
        std::vector<std::uint32_t> offsets;
        for (const std::string& text : writer.strings) {
            offsets.push_back(4 * count + static_cast<std::uint32_t>(pool.size()));
            pool.insert(pool.end(), text.begin(), text.end());
            pool.push_back(0);
        }
        put(out, count, 4);
        put(out, 4 * count + static_cast<std::uint32_t>(pool.size()), 4);
        for (const std::uint32_t offset : offsets)
            put(out, offset, 4);
        out.insert(out.end(), pool.begin(), pool.end());
        out.insert(out.end(), writer.nodes.begin(), writer.nodes.end());
        return out;
    }

private:
    static void put(std::vector<std::uint8_t>& out, std::uint32_t value, int bytes)
    {
        for (int i = 0; i < bytes; ++i)
            out.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
    std::uint32_t index(const std::string& text)
    {
        const auto [place, isNew] =
            known.try_emplace(text, static_cast<std::uint32_t>(strings.size()));
        if (isNew)
            strings.push_back(text);
        return place->second;
    }
    void node(const CTestNode& from)
    {
        const bool isTemplate = !from.templateClass.empty();
        put(nodes, index(isTemplate ? "template" : from.tag), 2);
        put(nodes, index(from.name), 2);
        if (isTemplate) {
            put(nodes, 1, 1);
            put(nodes, index(from.templateClass), 2);
            std::vector<std::uint8_t> outer = std::exchange(nodes, {});
            put(nodes, index(from.templateClass), 2);
            put(nodes, 0, 2);
            body(from);
            std::vector<std::uint8_t> inner = std::exchange(nodes, std::move(outer));
            put(nodes, static_cast<std::uint32_t>(inner.size()), 4);
            nodes.insert(nodes.end(), inner.begin(), inner.end());
        } else {
            body(from);
        }
    }
    void body(const CTestNode& from)
    {
        put(nodes, 0, 1);
        put(nodes, static_cast<std::uint32_t>(from.attrs.size()), 2);
        for (const auto& [key, value] : from.attrs) {
            put(nodes, index(key), 2);
            put(nodes, index(value), 2);
        }
        put(nodes, static_cast<std::uint32_t>(from.children.size()), 2);
        for (const CTestNode& child : from.children)
            node(child);
    }

    std::map<std::string, std::uint32_t> known;
    std::vector<std::string> strings;
    std::vector<std::uint8_t> nodes;
};

/// A document that stands among the resources under its name while this object lives. Its bytes
/// end exactly where the memory does, so that a read beyond them is found.
class CTestResource {
public:
    CTestResource(const char* resourceName, const std::vector<std::uint8_t>& content)
        : name(resourceName), bytes(new std::uint8_t[content.size() + 4])
    {
        for (int i = 0; i < 4; ++i)
            bytes[i] = static_cast<std::uint8_t>(content.size() >> (8 * i));
        std::copy(content.begin(), content.end(), bytes + 4);
        const CResourceEntry table[] = {{bytes, name}, {nullptr, nullptr}};
        CResourceMap::get().addAll(table);
    }
    ~CTestResource()
    {
        CResourceMap::get().remove(name);
        delete[] bytes;
    }
    CTestResource(const CTestResource&) = delete;
    CTestResource& operator=(const CTestResource&) = delete;

private:
    const char* name;
    std::uint8_t* bytes;
};

} // namespace tsm
