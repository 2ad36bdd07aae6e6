#pragma once

#include "Audio/VST/Interfaces/FUnknown.h"

#include <string>
#include <vector>

namespace tsm {

/// An interface by its name.
struct CInterfaceName {
    const char* name;
    Steinberg::CInterfaceId id;
};

/// Those that hosts ask plug-ins' objects for.
[[nodiscard]] const std::vector<CInterfaceName>& knownInterfaces();

/// Finds where the object breaks the rules of FUnknown: one identity, the same set of interfaces
/// from each of them, no interface of an unknown identifier, references in balance.
/// Each text tells one fault; none when the object keeps the rules.
struct CInterfaceFault {
    std::string what;
    std::string expected;
    std::string came;
};
[[nodiscard]] std::vector<CInterfaceFault> findInterfaceFaults(Steinberg::FUnknown& object);

/// The count of an object's references, as its functions tell it.
[[nodiscard]] Steinberg::uint32 countReferences(Steinberg::FUnknown& object);

} // namespace tsm
