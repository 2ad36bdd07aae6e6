#pragma once

#include "Audio/CAudioParamChange.h"

#include <cstdint>

namespace tsm {

class CAudioParam;

/// A change on its way to the audio thread.
struct CAudioParamRecord : CTsmMemAllocator {
    CAudioParam* param = nullptr;
    std::uint64_t serial = 0; // which change of its parameter this was
    CAudioParamChange change;
    CAudioParamRecord* next = nullptr;
};

/// A chain of changes in order, owned. Handing all of it over moves two pointers. No locking.
class CAudioParamBatch : public CCheckedObject {
public:
    CAudioParamBatch() = default;
    CAudioParamBatch(const CAudioParamBatch&) = delete;
    CAudioParamBatch& operator=(const CAudioParamBatch&) = delete;
    ~CAudioParamBatch() { clear(); }

    [[nodiscard]] bool isEmpty() const noexcept { return !head; }
    [[nodiscard]] CAudioParamRecord* first() const noexcept { return head; }
    /// Appends a record, owned from here on.
    void add(CAudioParamRecord* record) noexcept;
    /// Takes the first record out; null when there is none.
    [[nodiscard]] CAudioParamRecord* takeFirst() noexcept;
    /// Appends all records of `other`, which becomes empty.
    void takeAll(CAudioParamBatch& other) noexcept;
    /// Appends a record, or merges it into the latest one that makes this possible, so that a queue
    /// that nobody drains stays bounded. Takes `record` in both cases; what became needless goes
    /// into `spent`.
    void merge(CAudioParamRecord* record, CAudioParamBatch& spent);
    void clear() noexcept;

private:
    void removeRecordsOf(const CAudioParam* param, CAudioParamBatch& spent) noexcept;
    [[nodiscard]] CAudioParamRecord* findMergeable(const CAudioParamRecord& record) const noexcept;

    CAudioParamRecord* head = nullptr;
    CAudioParamRecord* tail = nullptr;
};

} // namespace tsm
