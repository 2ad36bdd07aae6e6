#pragma once

#include "Audio/Processes/CTapeCoefficients.h"

#include <cmath>
#include <cstdint>
#include <stdexcept>
#include <vector>

namespace tsm::test {

/// The tape stages written down from their formulas, one sample after another, on a ring in which
/// each sample stands twice. In double it is what the generic kernels must equal to the last bit;
/// in long double it bounds the rounding of both.
template <class T>
class CTapeReference {
public:
    explicit CTapeReference(double sampleRate) : rate(std::fmax(sampleRate, 8000.0))
    {
        length = static_cast<int>(std::floor(T(0.001) * rate + T(0.5)));
        center = static_cast<int>(std::ceil(static_cast<double>(rate) * 4.5351473922902495e-05));
        clear();
    }

    void clear()
    {
        ring.assign(2 * static_cast<std::size_t>(length), T(0));
        position = length - 1;
        s0 = s1 = s2 = s3 = hp = w1 = w2 = 0;
        envelope = 1;
    }

    T onepole(T f) const
    {
        const T pi = T(3.141592653589793);
        const T w = std::fmin(2 * pi * f / rate, pi);
        const T q = 2 - std::cos(w);
        return 1 - q + std::sqrt(q * q - 1);
    }

    static T sigma(T u)
    {
        const T a = std::fabs(u);
        const T n = u * (u * u * (T(0.8785524976458703) * a + T(0.9403501925936697)) +
                         (T(2.423509618411691) * a + T(2.395631787739572)));
        const T d = std::fabs(u + T(0.8766349762624457) * u * a) * (u * u + T(2.3636579090766805)) +
                    T(2.397102514234356);
        return n / d;
    }

    static T curve(T x, T hardness)
    {
        if (x >= 0) {
            const T t = T(0.999999) * hardness;
            return t >= x ? x : sigma((x - t) / (1 - t)) * (1 - t) + t;
        }
        const T t = T(-0.999999) * hardness;
        const T z = x / T(0.98);
        return z >= t ? z * T(0.98) : T(0.98) * (sigma((z - t) / (t + 1)) * (1 + t) + t);
    }

    void setShelf(double gainDb)
    {
        const T A = std::sqrt(std::exp(T(gainDb) / T(8.685889638065037)));
        const T w0 = T(6283.185307179586) / rate;
        const T alpha = std::sin(w0) * std::sinh(T(1.3862943611198906) * w0 / std::sin(w0));
        const T v = 2 * std::sqrt(A) * alpha;
        const T C = std::cos(w0);
        const T a0 = (A + 1) - (A - 1) * C + v;
        b0 = A * ((A + 1) + (A - 1) * C + v) / a0;
        b1 = -2 * A * ((A - 1) + (A + 1) * C) / a0;
        b2 = A * ((A + 1) + (A - 1) * C - v) / a0;
        na1 = -2 * ((A - 1) - (A + 1) * C) / a0;
        na2 = -((A + 1) - (A - 1) * C - v) / a0;
    }

    void setFlutter(double amount, int mode)
    {
        const T r = rate / 44100;
        depth =
            std::exp((24 * T(amount) - 12) / T(8.685889638065037)) * T(1.1025) * std::sqrt(r) * r;
        if (mode == 0) {
            c0 = onepole(200);
            c1 = onepole(400);
            c2 = onepole(800);
            c3 = onepole(40);
        } else {
            c0 = c1 = c2 = onepole(110);
            c3 = onepole(50);
            depth = depth * T(2.5);
        }
    }

    T stepShelf(T v)
    {
        const T wn = v + na1 * w1 + na2 * w2;
        const T y = b0 * wn + b1 * w1 + b2 * w2;
        w2 = w1;
        w1 = wn;
        return y;
    }

    T stepRollOff(T y, T c)
    {
        hp += (y - hp) * c;
        return y - hp;
    }

    T stepFlutter()
    {
        std::uint32_t sum = 0;
        for (int i = 0; i < 3; ++i) {
            noise = noise * 30013 + 30011;
            sum += noise & 0xffffff;
        }
        const T white = T(sum) * T(5.960464477539063e-08) - T(1.5);
        s0 += (white - s0) * c0;
        s1 += (s0 - s1) * c1;
        s2 += (s1 - s2) * c2;
        s3 += (s2 - s3) * c3;
        return s2 - s3;
    }

    T stepDelay(T in, T fl)
    {
        ring[static_cast<std::size_t>(position)] = in;
        ring[static_cast<std::size_t>(position) + static_cast<std::size_t>(length)] = in;
        const T p = center + position + fl * depth;
        const int k = static_cast<int>(p);
        // The claim that lets the kernels keep so little of the past.
        if (k < position || k > position + 2 * center)
            throw std::out_of_range("flutter beyond the nominal delay");
        const T t = p - k;
        const T* x = &ring[static_cast<std::size_t>(k)];
        position = position == 0 ? length - 1 : position - 1;
        return x[1] + t * (T(0.5) * (x[2] - x[0]) +
                           t * (x[0] - T(2.5) * x[1] + 2 * x[2] - T(0.5) * x[3] +
                                t * (T(0.5) * (x[3] - x[0]) + T(1.5) * (x[1] - x[2]))));
    }

    std::uint32_t noise = 0;
    T envelope = 1;
    T depth = 0;

protected:
    T rate;
    int length;
    int center;

private:
    std::vector<T> ring;
    int position = 0;
    T s0, s1, s2, s3, hp, w1, w2;
    T c0 = 0, c1 = 0, c2 = 0, c3 = 0;
    T b0 = 1, b1 = 0, b2 = 0, na1 = 0, na2 = 0;
};

template <class T>
class CTapeStageReference : public CTapeReference<T> {
public:
    explicit CTapeStageReference(const CTapeSettings& from)
        : CTapeReference<T>(from.sampleRate), settings(from)
    {
        this->setShelf(from.emphasisDb);
        this->setFlutter(from.flutter, from.flutterMode);
        c5 = this->onepole(5);
        const T seconds[] = {1, T(0.025), T(0.05), T(0.1), T(0.15)};
        ce = from.feedbackMode > 0 ? this->onepole(1 / (2 * seconds[from.feedbackMode])) : T(0);
        T sum = 0;
        for (const double level : {0.05, 0.2, 0.7, 0.95}) {
            const T x = T(level) * T(from.recGain);
            sum += T(level) / (this->curve(x, T(from.hardness)) * T(from.wet) + x * dry());
        }
        makeup = T(0.25) * sum;
    }

    T step(T x)
    {
        const T fl = this->stepFlutter();
        const T d = this->stepRollOff(this->stepShelf(x * this->envelope), c5);
        const T g = this->stepDelay(d, fl) * T(settings.recGain);
        const T o = this->curve(g, T(settings.hardness)) * T(settings.wet) + g * dry();
        if (settings.feedbackMode > 0) {
            const T ratio = (T(1e-10) + std::fabs(o)) / (T(1e-10) + std::fabs(g));
            this->envelope += (ratio - this->envelope) * ce;
        }
        return o * makeup;
    }

    T makeup;

private:
    T dry() const { return 1 - T(settings.wet); }

    CTapeSettings settings;
    T c5;
    T ce;
};

template <class T>
class CTapePostReference : public CTapeReference<T> {
public:
    explicit CTapePostReference(const CTapePostSettings& from) : CTapeReference<T>(from.sampleRate)
    {
        this->setShelf(from.highGainDb - from.emphasisDb);
        this->setFlutter(from.flutter, from.flutterMode);
        c20 = this->onepole(20);
        this->noise = 1000000;
    }

    T step(T x)
    {
        const T fl = this->stepFlutter();
        return this->stepShelf(this->stepRollOff(this->stepDelay(x, fl), c20));
    }

private:
    T c20;
};

} // namespace tsm::test
