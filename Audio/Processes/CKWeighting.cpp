#include "Audio/Processes/CKWeighting.h"

#include <algorithm>
#include <cmath>

namespace tsm {

namespace {

constexpr double kStandardRate = 48000.0;
constexpr CKWeighting::CSection kShelf{1.53512485958697, -2.69169618940638, 1.19839281085285,
                                       -1.69065929318241, 0.73248077421585};
constexpr CKWeighting::CSection kHighPass{1.0, -2.0, 1.0, -1.99004745483398, 0.99007225036621};

/// A polynomial of s = (1 - 1/z) / (1 + 1/z), in which the bilinear transform is a rational
/// function.
struct CPrototype {
    double constant, linear, square;
};

CPrototype toPrototype(double p0, double p1, double p2)
{
    return {p0 + p1 + p2, 2.0 * (p0 - p2), p0 - p1 + p2};
}

CPrototype stretch(const CPrototype& p, double factor)
{
    return {p.constant, p.linear * factor, p.square * factor * factor};
}

CKWeighting::CSection designAt(const CKWeighting::CSection& standard, double rate)
{
    const CPrototype zeros = toPrototype(standard.b0, standard.b1, standard.b2);
    const CPrototype poles = toPrototype(1.0, standard.a1, standard.a2);
    // tan(pi f / rate) of the corner frequency at both rates.
    const double cornerThen = std::sqrt(poles.constant / poles.square);
    const double cornerNow = std::tan(std::atan(cornerThen) * kStandardRate / rate);
    const CPrototype b = stretch(zeros, cornerThen / cornerNow);
    const CPrototype a = stretch(poles, cornerThen / cornerNow);
    const double scale = 1.0 / (a.constant + a.linear + a.square);
    return {scale * (b.constant + b.linear + b.square), scale * 2.0 * (b.constant - b.square),
            scale * (b.constant - b.linear + b.square), scale * 2.0 * (a.constant - a.square),
            scale * (a.constant - a.linear + a.square)};
}

} // namespace

void CKWeighting::prepare(double sampleRate) noexcept
{
    const double rate = std::max(sampleRate, kMinRate);
    shelf.section = designAt(kShelf, rate);
    highPass.section = designAt(kHighPass, rate);
    reset();
}

void CKWeighting::reset() noexcept
{
    shelf.state1 = shelf.state2 = 0.0;
    highPass.state1 = highPass.state2 = 0.0;
}

} // namespace tsm
