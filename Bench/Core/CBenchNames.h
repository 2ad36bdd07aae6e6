#pragma once

#include <string>
#include <vector>

namespace tsm {

/// Names as a definition tree has them: attributes in short words, and the full names of objects
/// some levels down, which share long beginnings.
inline std::vector<std::string> attributeNames()
{
    std::vector<std::string> names;
    for (const char* subject : {"param", "zone", "frame", "value", "text", "border", "update",
                                "color", "scale", "input", "output", "channel"})
        for (const char* property :
             {"name", "start", "end", "count", "width", "height", "offset", "is-visible"})
            names.push_back(std::string(subject) + "-" + property);
    return names;
}

inline std::vector<std::string> pathNames()
{
    std::vector<std::string> names;
    for (const char* window : {"ui.main-window.", "ui.settings-window.", "plugin.audio-env."})
        for (const char* panel : {"panel-input", "panel-tape", "panel-output", "meters"})
            for (int control = 0; control < 40; ++control)
                names.push_back(std::string(window) + panel + ".control#" +
                                std::to_string(control) + ".label");
    return names;
}

} // namespace tsm
