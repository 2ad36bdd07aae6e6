#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace tsm {

/// A compiled document read by the shortest code that follows its layout, as a second opinion on
/// the compiler's own reader.
struct CPlainNode {
    std::string tag;
    std::string name;
    std::string templateClass; // empty when the node is no template
    std::vector<std::pair<std::string, std::string>> attributes;
    std::vector<CPlainNode> children;

    static CPlainNode decode(const std::string& data)
    {
        std::size_t cursor = 8 + number(data, 4, 4);
        CPlainNode root = decodeNode(data, cursor);
        if (cursor != data.size())
            throw std::runtime_error("data behind the root");
        return root;
    }

    bool has(const std::string& key) const
    {
        for (const auto& [k, value] : attributes)
            if (k == key)
                return true;
        return false;
    }

    std::string attr(const std::string& key) const
    {
        for (const auto& [k, value] : attributes)
            if (k == key)
                return value;
        throw std::runtime_error(name + " has no attribute " + key);
    }

    /// The first descendant at a path of names divided by dots.
    const CPlainNode& at(const std::string& path) const
    {
        const std::size_t dot = path.find('.');
        for (const CPlainNode& child : children)
            if (child.name == path.substr(0, dot))
                return dot == std::string::npos ? child : child.at(path.substr(dot + 1));
        throw std::runtime_error(name + " has no child " + path);
    }

    std::vector<const CPlainNode*> childrenOf(const std::string& wantedTag) const
    {
        std::vector<const CPlainNode*> found;
        for (const CPlainNode& child : children)
            if (child.tag == wantedTag)
                found.push_back(&child);
        return found;
    }

    /// Calls `visit(node, path)` for this node's descendants in the order of the document.
    template <typename F>
    void walk(const F& visit, const std::string& path = "") const
    {
        for (const CPlainNode& child : children) {
            const std::string below = path + (path.empty() ? "" : ".") + child.name;
            visit(child, below);
            child.walk(visit, below);
        }
    }

private:
    static std::size_t number(const std::string& data, std::size_t at, std::size_t count)
    {
        std::size_t value = 0;
        for (std::size_t i = 0; i < count; ++i)
            value |= static_cast<std::size_t>(static_cast<unsigned char>(data.at(at + i)))
                     << (8 * i);
        return value;
    }

    static std::size_t take(const std::string& data, std::size_t& cursor, std::size_t count)
    {
        cursor += count;
        return number(data, cursor - count, count);
    }

    static std::string takeText(const std::string& data, std::size_t& cursor)
    {
        const std::size_t index = take(data, cursor, 2);
        return data.c_str() + 8 + number(data, 8 + 4 * index, 4);
    }

    static CPlainNode decodeNode(const std::string& data, std::size_t& cursor)
    {
        CPlainNode node;
        node.tag = takeText(data, cursor);
        node.name = takeText(data, cursor);
        if (take(data, cursor, 1) == 1) {
            const std::string className = takeText(data, cursor);
            const std::size_t end = take(data, cursor, 4) + cursor;
            CPlainNode body = decodeNode(data, cursor);
            if (cursor != end || body.tag != className || !body.name.empty())
                throw std::runtime_error("template body does not fit");
            body.tag = node.tag;
            body.name = node.name;
            body.templateClass = className;
            return body;
        }
        for (std::size_t left = take(data, cursor, 2); left > 0; --left) {
            const std::string key = takeText(data, cursor);
            node.attributes.emplace_back(key, takeText(data, cursor));
        }
        for (std::size_t left = take(data, cursor, 2); left > 0; --left)
            node.children.push_back(decodeNode(data, cursor));
        return node;
    }
};

} // namespace tsm
