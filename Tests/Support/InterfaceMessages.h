#pragma once

#include "Tests/Support/CByteList.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tsm {

/// A message of the parameter interface, written byte by byte.
struct CWrittenMessage {
    std::string name;
    std::vector<std::uint8_t> bytes;
};

inline CWrittenMessage writtenMessage(const char* name, const CByteList& fields)
{
    CByteList all;
    all.text(name);
    all.append(fields.bytes);
    return {name, all.bytes};
}

/// The listeners of the client with the number 1 that messages speak of.
struct CMessageListeners {
    std::uint32_t gain = 0;     // of modReelpath.recgain
    std::uint32_t names = 0;    // of io-params.group-names
    std::uint32_t programs = 0; // of the master registry
};

/// Writes messages from a client to the base, all of them good.
class CMessageWriter {
public:
    static constexpr std::uint32_t kUndo = 1 << 16 | 77;
    static constexpr std::uint32_t kOther = 1 << 16 | 9; // a listener that messages make
    static constexpr std::uint32_t kAll = 0xFFFFFFFF;

    /// `presetBytes` is any preset as it is saved.
    CMessageWriter(CMessageListeners ids, std::vector<std::uint8_t> presetBytes)
        : listeners(ids), preset(std::move(presetBytes))
    {
    }

    /// Place and shape of a change of group 0; single group as told, not single element.
    static CByteList changeHead(std::uint32_t count, std::uint32_t type,
                                std::uint32_t isSingleGroup)
    {
        CByteList list;
        return list.u32(0).u32(0).u32(count).u32(0).u32(1).u32(type).u32(isSingleGroup).u32(0);
    }
    [[nodiscard]] CByteList gainChange(std::uint32_t undoId) const
    {
        CByteList list;
        list.u32(listeners.gain).u32(undoId).append(changeHead(1, 0, 0).bytes);
        return list.f64(0x4000000000000000); // 2.0
    }
    [[nodiscard]] CByteList textChange() const
    {
        CByteList list;
        list.u32(listeners.names).u32(0).append(changeHead(2, 1, 1).bytes);
        return list.u32(1).u32(2).u32(2).u32(1).u32(1).text("One").u32(2).u32(1).text("Two");
    }
    [[nodiscard]] CByteList presetFields(std::uint32_t group) const
    {
        CByteList list;
        return list.u32(listeners.programs).u32(group).append(preset);
    }
    [[nodiscard]] CByteList defaultPreset() const
    {
        CByteList list;
        return list.u32(listeners.programs).append(preset);
    }
    /// One of each, in an order in which they can be sent.
    [[nodiscard]] std::vector<CWrittenMessage> all() const
    {
        const auto [gain, names, programs] = listeners;
        const auto list = [] { return CByteList(); };
        return {
            writtenMessage("create-undo-data", list().u32(kUndo).text("Edit").u32(1).u32(kAll)),
            writtenMessage("change-param", gainChange(kUndo)),
            writtenMessage("change-param", textChange()),
            writtenMessage("reset-param", list().u32(gain).u32(0).u32(0).u32(kUndo).u32(0)),
            writtenMessage("submit-undo-data", list().u32(kUndo).text("Other")),
            writtenMessage("remove-undo-data", list().u32(kUndo)),
            writtenMessage("request-undo-history", list().u32(1)),
            writtenMessage("set-undo-history-pos", list().u32(0)),
            writtenMessage("listen-param", list().text("plugin.modMain.bypass-enable").u32(kOther)),
            writtenMessage("unlisten-param", list().u32(kOther)),
            writtenMessage("listen-registry", list().text("plugin.param-registry-io").u32(kOther)),
            writtenMessage("unlisten-registry", list().u32(kOther)),
            writtenMessage("set-current-program", list().u32(programs).u32(2)),
            writtenMessage("rename-preset", list().u32(programs).u32(2).text("Mine")),
            writtenMessage("activate-factory-preset", list().u32(programs).u32(3)),
            writtenMessage("activate-preset", presetFields(kAll)),
            writtenMessage("request-preset", list().u32(programs).u32(5).u32(1).u32(0).u32(kAll)),
            writtenMessage("request-bank", list().u32(programs).u32(6).u32(0)),
            writtenMessage("set-default-preset", defaultPreset()),
            writtenMessage("activate-default-preset", list().u32(programs)),
            writtenMessage("exchange-shadow-preset", list().u32(programs)),
            writtenMessage("update-shadow-preset", list().u32(programs)),
            writtenMessage("listen-viz",
                           list().u32(kOther).text("plugin.modMain.modMeterOut").u32(kAll)),
            writtenMessage("unlisten-viz", list().u32(kOther)),
            writtenMessage("request-viz-data", list().u32(1).f64(0x403E000000000000)), // 30.0
            writtenMessage("request-export-slot-names", list().u32(1)),
            writtenMessage("request-internal-channel-count", list().u32(1)),
            writtenMessage("request-group-count", list().u32(1)),
            writtenMessage("request-io-channel-counts", list().u32(1)),
            writtenMessage("request-sample-rate", list().u32(1)),
            writtenMessage("import-channel-labels", list()),
        };
    }

private:
    CMessageListeners listeners;
    std::vector<std::uint8_t> preset;
};

} // namespace tsm
