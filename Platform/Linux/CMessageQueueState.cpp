#include "Platform/Linux/CMessageQueueState.h"

#include <cerrno>
#include <new>
#include <sys/eventfd.h>
#include <unistd.h>

namespace tsm {

CMessageQueueState::CMessageQueueState()
    : wakeHandle(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)), creationError(wakeHandle < 0 ? errno : 0)
{
}

int CMessageQueueState::post(CMessageReceiver& receiver, int message, std::int64_t parameter)
{
    const std::lock_guard scope(lock);
    if (isEnded)
        return ESRCH;
    // Without a handle nobody would ever wake up for the message.
    if (creationError != 0)
        return creationError;
    try {
        messages.push_back({&receiver, parameter, latest + 1, message});
    } catch (const std::bad_alloc&) {
        return ENOMEM;
    }
    ++latest;
    if (messages.size() == 1 && eventfd_write(wakeHandle, 1) != 0) {
        const int code = errno;
        messages.pop_back();
        return code;
    }
    return 0;
}

void CMessageQueueState::drop(const CMessageReceiver& receiver)
{
    const std::lock_guard scope(lock);
    if (messages.empty())
        return;
    std::erase_if(messages, [&](const CMessage& entry) { return entry.receiver == &receiver; });
    lowerWakeIfEmpty();
}

std::uint64_t CMessageQueueState::latestNumber()
{
    const std::lock_guard scope(lock);
    return latest;
}

bool CMessageQueueState::take(CMessage& message, std::uint64_t lastNumber)
{
    const std::lock_guard scope(lock);
    if (messages.empty() || messages.front().number > lastNumber)
        return false;
    message = messages.front();
    messages.pop_front();
    lowerWakeIfEmpty();
    return true;
}

bool CMessageQueueState::hasMessages()
{
    const std::lock_guard scope(lock);
    return !messages.empty();
}

void CMessageQueueState::end()
{
    const std::lock_guard scope(lock);
    isEnded = true;
    messages.clear();
    if (wakeHandle >= 0)
        ::close(wakeHandle);
    wakeHandle = -1;
}

void CMessageQueueState::lowerWakeIfEmpty() noexcept
{
    eventfd_t ignored = 0;
    if (messages.empty() && wakeHandle >= 0)
        (void)eventfd_read(wakeHandle, &ignored);
}

} // namespace tsm
