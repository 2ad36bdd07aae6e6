#pragma once

#include "Core/COwnedArray.h"
#include "Core/CString.h"

#include <cstdint>

namespace tsm {

class CAudioParam;

/// What the parameter interface asks an instance about its host: channels, rate, edit gestures.
class CAudioInterfaceDataProvider : public CCheckedObject {
public:
    virtual ~CAudioInterfaceDataProvider() = default;

    /// Internal channels of a group, and channel groups, as the product is built. [any]
    [[nodiscard]] virtual std::int32_t getIntChannelCount() = 0;
    [[nodiscard]] virtual std::int32_t getGroupCount() = 0;
    /// The host's present channels; inputs without those of the side-chain. [any]
    [[nodiscard]] virtual std::int32_t getInChannelCount() = 0;
    [[nodiscard]] virtual std::int32_t getOutChannelCount() = 0;
    [[nodiscard]] virtual std::int32_t getSidechainChannelCount() = 0;
    /// The host's rate in Hz. [any]
    [[nodiscard]] virtual double getSampleRate() = 0;
    /// A gesture on one value of a parameter begins or ends. [ui]
    virtual void beginParamEdit(CAudioParam& param, std::int32_t group, std::int32_t element) = 0;
    virtual void endParamEdit(CAudioParam& param, std::int32_t group, std::int32_t element) = 0;
    /// Takes over the names of the channels; without any, those that the host gives them. [ui]
    virtual void importChannelLabels(const COwnedArray<CString>& names) = 0;

protected:
    CAudioInterfaceDataProvider() = default;
    CAudioInterfaceDataProvider(const CAudioInterfaceDataProvider&) = default;
    CAudioInterfaceDataProvider& operator=(const CAudioInterfaceDataProvider&) = default;
};

} // namespace tsm
