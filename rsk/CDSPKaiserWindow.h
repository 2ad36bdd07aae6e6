#pragma once

namespace tsm::rsk {

/// Modified Bessel function of the first kind and order 0, by the polynomials 9.8.1 and 9.8.2 of
/// Abramowitz and Stegun, "Handbook of Mathematical Functions" (1964); relative error below 2e-7.
/// [any]
[[nodiscard]] double besselI0(double x) noexcept;

/// The window of J. F. Kaiser, I0(alpha * sqrt(1 - x^2)) / I0(alpha), raised to a power.
class CDSPKaiserWindow {
public:
    explicit CDSPKaiserWindow(double alpha, double power = 1.0) noexcept;

    /// The window's value at `x`, where -1.0 and 1.0 are its ends; 0.0 outside. [any]
    [[nodiscard]] double at(double x) const noexcept;

    /// Kaiser's alpha for an attenuation above 50 dB (Oppenheim and Schafer, "Discrete-Time Signal
    /// Processing", section 7.5.3). [any]
    [[nodiscard]] static double alphaFor(double attenuationDb) noexcept;
    /// The same source's length less one, in taps, for a transition band of `widthRadians`. [any]
    [[nodiscard]] static double spanFor(double attenuationDb, double widthRadians) noexcept;

private:
    double alpha;
    double power;
    double scale;
};

} // namespace tsm::rsk
