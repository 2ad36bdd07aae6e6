#pragma once

#include "Audio/CAudioInterfaceVizProcessor.h"
#include "Audio/CAudioVizData.h"
#include "Core/CMap.h"
#include "Core/COwnedArray.h"
#include "Core/CPtr.h"
#include "Core/CString.h"

namespace tsm {

class CVizListener;

/// Hands the records that a client of the parameter interface gets to those who listen to the
/// process that made them, each when the sender's clock has reached its time, and tells those whom
/// nothing reaches any more.
///
/// All operations [ui]. A listener may enter or leave while it is being called.
class CVizDelivery : public CAudioInterfaceVizProcessor {
public:
    /// Records that wait for their time; of more, the earliest are dropped.
    static constexpr int kMaxWaiting = 4096;

    /// A listener is inactive after `inactiveSeconds` (below 0.01: 0.5) without a record, counted
    /// in ticks, of which there are `ticksPerSecond`.
    CVizDelivery(double inactiveSeconds, double ticksPerSecond);
    CVizDelivery(const CVizDelivery&) = delete;
    CVizDelivery& operator=(const CVizDelivery&) = delete;
    ~CVizDelivery() override;

    /// Enters a listener, borrowed until it leaves, to a process by its full name.
    void addListener(const CString& processName, CVizListener& listener);
    /// Has a listener leave all processes.
    void removeListener(CVizListener& listener);

    /// Ages the listeners; before each request for data.
    void tick();

    void startViz() override { isActive = true; }
    void stopViz() override { isActive = false; }
    void clear() override;
    [[nodiscard]] CError* readVizData(CInputStream& stream) override;
    /// Passes over them: instances don't show each other's meters here.
    [[nodiscard]] CError* readExportSlotNames(CInputStream&) override { return nullptr; }

private:
    struct CRegistration : CTsmMemAllocator {
        CString name;
        CVizListener* listener = nullptr; // null once it has left
        int idleTicks = 0;
        bool isInactive = false; // and has been told
    };
    struct CWaiting : CTsmMemAllocator {
        CString name;
        CPtr<CAudioVizData> record;
    };

    static void makeInactive(CRegistration& registration);
    void sweep();
    void deliver(const CString& name, const CAudioVizData& record);
    void deliverDue(double now);
    void keep(const CString& name, CPtr<CAudioVizData> record);
    void dropEarliest();

    int maxIdleTicks;
    // A client that comes while sound runs hears of no start.
    bool isActive = true;
    COwnedArray<CRegistration> registrations;
    CMap<double, COwnedArray<CWaiting>> waiting; // by time
    int waitingCount = 0;
};

} // namespace tsm
