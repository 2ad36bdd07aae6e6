#include "Tools/Support/CStopSignal.h"

#include <array>
#include <csignal>

namespace tsm {

namespace {

volatile std::sig_atomic_t raisedSignal = 0;

constexpr std::array kStopSignals{SIGINT, SIGTERM, SIGHUP};

void noteSignal(int number)
{
    raisedSignal = number;
}

void handleAll(void (*handler)(int))
{
    for (const int number : kStopSignals)
        std::signal(number, handler);
}

} // namespace

CStopSignal::CStopSignal()
{
    raisedSignal = 0;
    handleAll(noteSignal);
    // A file beyond the size limit then fails in its write, whose error cleans up.
    std::signal(SIGXFSZ, SIG_IGN);
}

CStopSignal::~CStopSignal()
{
    handleAll(SIG_DFL);
    std::signal(SIGXFSZ, SIG_DFL);
}

int CStopSignal::getRaised() noexcept
{
    return raisedSignal;
}

} // namespace tsm
