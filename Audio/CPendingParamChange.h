#pragma once

#include "Audio/CParamListener.h"

namespace tsm {

/// A change that the listeners of its parameter are to be told.
class CPendingParamChange : public CCheckedObject, public CTsmMemAllocator {
public:
    CPendingParamChange(CUpdateNotifier& target, const void* source, std::uint64_t kind,
                        CAudioParam& param, const CAudioParamChange& madeChange);
    CPendingParamChange(const CPendingParamChange&) = delete;
    CPendingParamChange& operator=(const CPendingParamChange&) = delete;
    void deliver();

    CPendingParamChange* next = nullptr;

private:
    CUpdateNotifier& notifier;
    CAudioParamChange change;
    CParamUpdateMessage message;
};

} // namespace tsm
