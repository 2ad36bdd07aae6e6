#include "Tools/Support/CProgressBar.h"

#include <cstdio>
#include <string>

#include <unistd.h>

namespace tsm {

CProgressBar::CProgressBar(std::int64_t total)
    : whole(total), isTerminal(isatty(STDERR_FILENO) == 1),
      nextDraw(CClock::now() + std::chrono::milliseconds(500))
{
}

CProgressBar::~CProgressBar()
{
    if (isShown)
        std::fputs("\r\033[K", stderr);
}

void CProgressBar::update(std::int64_t done)
{
    if (!isTerminal || whole <= 0)
        return;
    const CClock::time_point now = CClock::now();
    if (now < nextDraw)
        return;
    nextDraw = now + std::chrono::milliseconds(100);
    isShown = true;
    draw(done);
}

void CProgressBar::draw(std::int64_t done) const
{
    constexpr int kWidth = 40;
    const double part = static_cast<double>(done) / static_cast<double>(whole);
    const int filled = static_cast<int>(part * kWidth);
    const std::string bar = std::string(static_cast<std::size_t>(filled), '#') +
                            std::string(static_cast<std::size_t>(kWidth - filled), '.');
    std::fprintf(stderr, "\r[%s] %3d %%", bar.c_str(), static_cast<int>(part * 100.0));
    std::fflush(stderr);
}

} // namespace tsm
