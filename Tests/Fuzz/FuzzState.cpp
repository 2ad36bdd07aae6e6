// What a host or a user hands to an instance: state chunks through the host's stream, presets for
// all groups or one, banks, and a default preset. The first byte says which.

#include "Audio/CAudioParamRegistry.h"
#include "Audio/CPresetDataIds.h"
#include "Audio/VST/CInputStreamVST.h"
#include "Core/CMemoryReader.h"
#include "Tests/Fuzz/CFuzzWrapper.h"

#include <algorithm>
#include <cstring>
#include <memory>

namespace tsm {
namespace {

/// A host's stream that gives a few bytes at a time, and claims more than it gave.
class CHostStream : public Steinberg::IBStream {
public:
    explicit CHostStream(const CByteBuffer& bytes) : data(bytes) {}
    virtual ~CHostStream() = default;

    Steinberg::tresult queryInterface(const Steinberg::TUID, void** object) override
    {
        *object = nullptr;
        return Steinberg::kNoInterface;
    }
    Steinberg::uint32 addRef() override { return 1; }
    Steinberg::uint32 release() override { return 1; }
    Steinberg::tresult read(void* buffer, Steinberg::int32 count, Steinberg::int32* gotten) override
    {
        const int piece = std::min({count, data.getSize() - position, 1000});
        if (piece > 0)
            std::memcpy(buffer, data.data() + position, static_cast<std::size_t>(piece));
        position += piece;
        *gotten = piece == count ? piece + 5 : piece;
        return Steinberg::kResultOk;
    }
    Steinberg::tresult write(void*, Steinberg::int32, Steinberg::int32*) override
    {
        return Steinberg::kResultFalse;
    }
    Steinberg::tresult seek(Steinberg::int64, Steinberg::int32, Steinberg::int64*) override
    {
        return Steinberg::kResultFalse;
    }
    Steinberg::tresult tell(Steinberg::int64*) override { return Steinberg::kResultFalse; }

private:
    const CByteBuffer& data;
    int position = 0;
};

/// The instance that inputs go to. It is made anew now and then, since each name that a preset
/// brings stays with it.
CFuzzWrapper& instance()
{
    constexpr int kInputsEach = 500;
    static std::unique_ptr<CFuzzWrapper> wrapper;
    static int used = kInputsEach;
    if (used++ >= kInputsEach) {
        (void)fuzzProduct();
        used = 0;
        wrapper = std::make_unique<CFuzzWrapper>();
        promise(!hasFailed(wrapper->init()), "an instance begins");
        wrapper->afterInit();
    }
    return *wrapper;
}

CByteBuffer stateOf(CFuzzWrapper& wrapper)
{
    return bytesOf([&](COutputStream& stream) { return wrapper.saveState(stream); });
}

CError* loadChunk(CFuzzWrapper& wrapper, const CByteBuffer& chunk)
{
    CHostStream host(chunk);
    CInputStreamVST stream(host);
    return wrapper.loadState(stream);
}

CError* load(CFuzzWrapper& wrapper, const CFuzzChoice& choice, const std::uint8_t* data,
             std::size_t size)
{
    const CByteBuffer bytes(data, static_cast<int>(size));
    CGuardedInput plain(data, size);
    CAudioParamRegistry& registry = wrapper.getParamRegistry();
    switch (choice.below(8)) {
    case 0:
        return loadChunk(wrapper, bytes);
    case 1:
        return registry.activatePreset(plain, true, -1);
    case 2:
        return registry.activatePreset(plain, false, 3);
    case 3:
        return registry.loadBank(plain, nullptr);
    case 4:
        return registry.setDefaultPreset(plain);
    default:
        return loadChunk(wrapper, bytesOf([&](COutputStream& stream) {
                             return stream.writeCompressedData(bytes, kPresetDataId);
                         }));
    }
}

} // namespace

void fuzzOne(const std::uint8_t* data, std::size_t size)
{
    CFuzzWrapper& wrapper = instance();
    const CFuzzChoice choice(data, size);
    const bool isWrong = hasFailed(load(wrapper, choice, data, size));
    if (choice.bit(3))
        wrapper.run();
    // Most inputs are no presets and change nothing: they are looked at behind every second one.
    if (isWrong && choice.bit(4))
        return;
    // Whatever came of it is a state like any other.
    const CByteBuffer state = stateOf(wrapper);
    promise(!hasFailed(loadChunk(wrapper, state)), "a saved state loads");
    promise(stateOf(wrapper) == state, "a saved state loads equal");
}

} // namespace tsm
