#include "Platform/CMessageQueue.h"

#include "Platform/Linux/CMessageQueueState.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <poll.h>
#include <pthread.h>
#include <vector>

namespace tsm {
namespace {

/// The queues of all threads that have one.
///
/// A system key, not a thread_local object with a destructor: the C library keeps a module loaded
/// for as long as such an object waits for the end of its thread, which for a host's main thread is
/// the end of the process. The key goes with the module instead.
class CThreadQueues {
public:
    CThreadQueues() { isKeyMade = pthread_key_create(&key, &onThreadEnd) == 0; }
    ~CThreadQueues()
    {
        if (isKeyMade)
            pthread_key_delete(key);
        for (const auto& queue : queues)
            queue->end();
    }
    CThreadQueues(const CThreadQueues&) = delete;
    CThreadQueues& operator=(const CThreadQueues&) = delete;

    static CThreadQueues& get()
    {
        static CThreadQueues all;
        return all;
    }

    std::shared_ptr<CMessageQueueState> ofThisThread()
    {
        auto* known =
            isKeyMade ? static_cast<CMessageQueueState*>(pthread_getspecific(key)) : nullptr;
        const std::lock_guard scope(lock);
        for (const auto& queue : queues)
            if (queue.get() == known)
                return queue;
        auto made = std::make_shared<CMessageQueueState>();
        // A queue that doesn't know its thread would never be found again: nothing may reach it.
        if (!isKeyMade || pthread_setspecific(key, made.get()) != 0)
            made->end();
        else
            queues.push_back(made);
        return made;
    }

private:
    static void onThreadEnd(void* ended) { get().remove(static_cast<CMessageQueueState*>(ended)); }

    void remove(const CMessageQueueState* ended)
    {
        const std::lock_guard scope(lock);
        std::erase_if(queues, [&](const std::shared_ptr<CMessageQueueState>& queue) {
            if (queue.get() != ended)
                return false;
            queue->end();
            return true;
        });
    }

    std::mutex lock;
    std::vector<std::shared_ptr<CMessageQueueState>> queues;
    pthread_key_t key{};
    bool isKeyMade = false;
};

using CTime = std::chrono::steady_clock;

int millisecondsUntil(CTime::time_point end)
{
    using std::chrono::ceil;
    using std::chrono::milliseconds;
    return static_cast<int>(
        std::max<std::int64_t>(0, ceil<milliseconds>(end - CTime::now()).count()));
}

} // namespace

CMessageReceiver::CMessageReceiver() : queue(CThreadQueues::get().ofThisThread()) {}

CMessageReceiver::~CMessageReceiver()
{
    queue->drop(*this);
}

int CMessageReceiver::post(int message, std::int64_t parameter)
{
    return queue->post(*this, message, parameter);
}

int CMessageQueue::dispatchPending()
{
    const auto queue = CThreadQueues::get().ofThisThread();
    // What is posted from here on waits, so that a message which posts itself again ends.
    const std::uint64_t last = queue->latestNumber();
    int count = 0;
    CMessageQueueState::CMessage next{};
    while (queue->take(next, last)) {
        next.receiver->onMessage(next.message, next.parameter);
        ++count;
    }
    return count;
}

bool CMessageQueue::wait(int timeoutMs)
{
    const auto queue = CThreadQueues::get().ofThisThread();
    const auto end = CTime::now() + std::chrono::milliseconds(timeoutMs);
    pollfd wake{queue->getWakeHandle(), POLLIN, 0};
    // Nothing can arrive without a handle, and poll() would wait for it for ever.
    if (wake.fd < 0)
        return false;
    // Signals cut a wait short.
    while (poll(&wake, 1, timeoutMs < 0 ? -1 : millisecondsUntil(end)) < 0)
        if (errno != EINTR)
            break;
    return queue->hasMessages();
}

int CMessageQueue::getWakeHandle()
{
    return CThreadQueues::get().ofThisThread()->getWakeHandle();
}

} // namespace tsm
