#pragma once

namespace tsm {

class CAudioFilterGenArray;
class CAudioProcessBase;

/// What a process of filters knows beside its modules: the array of generators that its
/// definition's attribute `gen-array` names.
class CFilterGenSource {
public:
    /// Null when there is none; borrowed from the shared tree. [audio]
    [[nodiscard]] const CAudioFilterGenArray* getGenArray() const noexcept { return array; }

protected:
    /// Looks the array up, once for the process's life. One that isn't there is logged. [audio]
    void findGenArray(const CAudioProcessBase& process);

private:
    const CAudioFilterGenArray* array = nullptr;
};

} // namespace tsm
