#pragma once

namespace tsm {

/// Factors by which reading from tape weakens a recording of one wavelength. `wavenumber` is
/// 2 pi / wavelength, in radians a metre; lengths are in metres.

/// Spacing between head and coating: 54.6 dB for each wavelength of distance (Wallace, "The
/// Reproduction of Magnetically Recorded Signals", Bell System Technical Journal 30, 1951). The
/// same law holds for the transition parameter of the recording (Bertram, "Theory of Magnetic
/// Recording", 1994).
[[nodiscard]] double spacingLoss(double wavenumber, double distance);

/// Depth of the recorded layer: what lies deeper has more spacing (Wallace, 1951).
[[nodiscard]] double thicknessLoss(double wavenumber, double depth);

/// Length of the replay gap: the mean over the gap, which acts as if it was 1.136 times as long
/// (Westmijze, "Studies on Magnetic Recording", Philips Research Reports 8, 1953). Not negative.
[[nodiscard]] double gapLoss(double wavenumber, double gap);

/// Gap of the replay head turned by an angle (radians) against that of the record head: the mean
/// over the track's width (Camras, "Magnetic Recording Handbook", 1988). Not negative.
[[nodiscard]] double azimuthLoss(double wavenumber, double trackWidth, double angle);

/// Length of the head's face: a face of finite length reads with its outer edges too, in opposite
/// phase, which raises and lowers long wavelengths by turns and loses the longest ("head bumps").
///
/// By reciprocity the response is the Fourier transform of the head's field along the tape. Two
/// coplanar pole faces from -a to a, a = length / 2, with a short gap have outside of them the
/// field a / (pi x sqrt(x^2 - a^2)), from the conformal map of the slit plane; its transform makes
/// the response the integral of J0(u) from 0 to k a. It overshoots to 1.47 at k a = 2.405. Where
/// the tape leaves the face, the edges' share, which is 1 less that integral, has the spacing loss
/// of `lift` (Camras, 1988, tells the effect of the wrap).
[[nodiscard]] double contourEffect(double wavenumber, double lift, double besselIntegral);

/// The integral of J0 from 0 to points that ascend.
class CBesselIntegral {
public:
    /// `x` is not below that of the call before.
    [[nodiscard]] double advanceTo(double x);

private:
    double at = 0.0;
    double sum = 0.0;
};

} // namespace tsm
