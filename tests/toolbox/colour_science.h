// How far apart two colours look, to usual eyes and to colour-blind ones, and how well text reads on a ground.
// Tests: leans on the standard library.
// Called by the palette's tests.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace colour {

using rgb = std::array<double, 3>; // linear light, 0..1
using lab = std::array<double, 3>;

enum class eyes { usual, protanopia, deuteranopia, tritanopia };
inline constexpr std::array<eyes, 4> ALL_EYES = {eyes::usual, eyes::protanopia, eyes::deuteranopia,
                                                 eyes::tritanopia};

inline double to_linear(int byte) {
    double c = byte / 255.0;
    return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

inline rgb linear(int r, int g, int b) {
    return {to_linear(r), to_linear(g), to_linear(b)};
}

inline double luminance(const rgb& c) {
    return 0.2126 * c[0] + 0.7152 * c[1] + 0.0722 * c[2];
}

// Contrast ratio as web pages are judged by: 1 to 21.
inline double contrast(const rgb& a, const rgb& b) {
    double la = luminance(a), lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

// What complete dichromats see, after Machado, Oliveira and Fernandes (2009), severity 1.
inline rgb seen_by(eyes who, const rgb& c) {
    static constexpr double M[3][9] = {
        {0.152286, 1.052583, -0.204868, 0.114503, 0.786281, 0.099216, -0.003882, -0.048116, 1.051998},
        {0.367322, 0.860646, -0.227968, 0.280085, 0.672501, 0.047413, -0.011820, 0.042940, 0.968881},
        {1.255528, -0.076749, -0.178779, -0.078411, 0.930809, 0.147602, 0.004733, 0.691367, 0.303900}};
    if (who == eyes::usual) return c;
    const double* m = M[static_cast<int>(who) - 1];
    rgb out;
    for (size_t i = 0; i < 3; i++) {
        out[i] = std::clamp(m[3 * i] * c[0] + m[3 * i + 1] * c[1] + m[3 * i + 2] * c[2], 0.0, 1.0);
    }
    return out;
}

inline lab to_lab(const rgb& c) {
    double x = (0.4124564 * c[0] + 0.3575761 * c[1] + 0.1804375 * c[2]) / 0.95047;
    double y = 0.2126729 * c[0] + 0.7151522 * c[1] + 0.0721750 * c[2];
    double z = (0.0193339 * c[0] + 0.1191920 * c[1] + 0.9503041 * c[2]) / 1.08883;
    auto f = [](double t) {
        return t > 216.0 / 24389.0 ? std::cbrt(t) : (24389.0 / 27.0 * t + 16.0) / 116.0;
    };
    return {116.0 * f(y) - 16.0, 500.0 * (f(x) - f(y)), 200.0 * (f(y) - f(z))};
}

inline double degrees(double b, double a) {
    double h = std::atan2(b, a) * 180.0 / std::numbers::pi;
    return h < 0 ? h + 360.0 : h;
}

// CIEDE2000 with all weights 1.
inline double difference(const lab& p, const lab& q) {
    auto rad = [](double d) { return d * std::numbers::pi / 180.0; };
    double c_mean = (std::hypot(p[1], p[2]) + std::hypot(q[1], q[2])) / 2;
    double g = 0.5 * (1 - std::sqrt(std::pow(c_mean, 7) / (std::pow(c_mean, 7) + std::pow(25.0, 7))));
    double a1 = p[1] * (1 + g), a2 = q[1] * (1 + g);
    double c1 = std::hypot(a1, p[2]), c2 = std::hypot(a2, q[2]);
    double h1 = c1 == 0 ? 0 : degrees(p[2], a1), h2 = c2 == 0 ? 0 : degrees(q[2], a2);
    double dh = c1 * c2 == 0 ? 0 : h2 - h1;
    if (dh > 180) dh -= 360;
    if (dh < -180) dh += 360;
    double dl = q[0] - p[0], dc = c2 - c1, dH = 2 * std::sqrt(c1 * c2) * std::sin(rad(dh / 2));
    double l = (p[0] + q[0]) / 2, c = (c1 + c2) / 2, h = h1 + h2;
    if (c1 * c2 != 0) {
        if (std::abs(h1 - h2) <= 180)
            h /= 2;
        else
            h = h < 360 ? (h + 360) / 2 : (h - 360) / 2;
    }
    double t = 1 - 0.17 * std::cos(rad(h - 30)) + 0.24 * std::cos(rad(2 * h)) +
               0.32 * std::cos(rad(3 * h + 6)) - 0.20 * std::cos(rad(4 * h - 63));
    double sl = 1 + 0.015 * (l - 50) * (l - 50) / std::sqrt(20 + (l - 50) * (l - 50));
    double sc = 1 + 0.045 * c, sh = 1 + 0.015 * c * t;
    double turn = -std::sin(rad(60 * std::exp(-std::pow((h - 275) / 25, 2)))) * 2 *
                  std::sqrt(std::pow(c, 7) / (std::pow(c, 7) + std::pow(25.0, 7)));
    double x = dl / sl, y = dc / sc, z = dH / sh;
    return std::sqrt(x * x + y * y + z * z + turn * y * z);
}

} // namespace colour
