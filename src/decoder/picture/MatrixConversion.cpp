#include "decoder/picture/MatrixConversion.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace quorvantis::decoder {

namespace {

using Matrix = std::array<std::array<double, 3>, 3>;
using FixedMatrix = std::array<std::array<int, 3>, 3>;
using Curve = std::unique_ptr<cmsToneCurve, decltype(&cmsFreeToneCurve)>;

constexpr std::array colorants = {cmsSigRedColorantTag, cmsSigGreenColorantTag, cmsSigBlueColorantTag};
constexpr std::array curves = {cmsSigRedTRCTag, cmsSigGreenTRCTag, cmsSigBlueTRCTag};
constexpr double maximumFactor = 2.5;
constexpr int maximumRange = 7 << 14;  // so that sums of products are within int, in fixed point

const cmsToneCurve* curve(cmsHPROFILE profile, std::size_t channel) {
    return static_cast<const cmsToneCurve*>(cmsReadTag(profile, curves[channel]));
}

/// The matrix from linear RGB to XYZ.
std::optional<Matrix> toXYZ(cmsHPROFILE profile) {
    Matrix matrix;
    for (std::size_t c = 0; c < 3; ++c) {
        const auto* xyz = static_cast<const cmsCIEXYZ*>(cmsReadTag(profile, colorants[c]));
        if (!xyz || !curve(profile, c)) return std::nullopt;
        matrix[0][c] = xyz->X;
        matrix[1][c] = xyz->Y;
        matrix[2][c] = xyz->Z;
    }
    return matrix;
}

std::optional<Matrix> inverse(const Matrix& m) {
    const auto minor = [&](std::size_t row, std::size_t column) {
        const std::size_t r1 = (row + 1) % 3, r2 = (row + 2) % 3;
        const std::size_t c1 = (column + 1) % 3, c2 = (column + 2) % 3;
        return m[r1][c1] * m[r2][c2] - m[r1][c2] * m[r2][c1];
    };
    const double determinant = m[0][0] * minor(0, 0) + m[0][1] * minor(0, 1) + m[0][2] * minor(0, 2);
    if (std::abs(determinant) < 0.0001) return std::nullopt;
    Matrix result;
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t j = 0; j < 3; ++j) result[i][j] = minor(j, i) / determinant;
    return result;
}

int fixedPoint(double value) {
    return static_cast<int>(std::floor(value * (1 << 14) + 0.5));
}

/// Rounds by way of 16 bits, as lcms2 does.
std::uint8_t sample(double value) {
    const auto wide = static_cast<std::uint32_t>(std::floor(std::clamp(value, 0.0, 1.0) * 65535 + 0.5));
    return static_cast<std::uint8_t>((wide * 65281 + 8388608) >> 24);
}

bool isMatrixProfile(cmsHPROFILE profile) {
    return cmsGetColorSpace(profile) == cmsSigRgbData && cmsGetPCS(profile) == cmsSigXYZData &&
           !cmsIsTag(profile, cmsSigAToB0Tag) && !cmsIsTag(profile, cmsSigDToB0Tag);
}

/// The samples of sRGB, by linear values in fixed point from 0 to `one`.
std::vector<std::uint8_t> samplesOf(cmsHPROFILE sRGB, int one) {
    const Curve reversed(cmsReverseToneCurve(curve(sRGB, 0)), &cmsFreeToneCurve);
    const auto sampleOf = [&](int value) {
        return sample(
            cmsEvalToneCurveFloat(reversed.get(), static_cast<float>(value) / static_cast<float>(one)));
    };
    std::vector<std::uint8_t> samples;
    for (int sample = 0; sample < 256; ++sample) {
        int end = one + 1;  // of the values that give this sample or a lower one
        for (int start = static_cast<int>(samples.size()); start < end;) {
            const int middle = (start + end) / 2;
            if (sampleOf(middle) <= sample)
                start = middle + 1;
            else
                end = middle;
        }
        samples.resize(static_cast<std::size_t>(end), static_cast<std::uint8_t>(sample));
    }
    return samples;
}

/// The matrix from the profile's linear RGB to that of sRGB, in fixed point.
std::optional<FixedMatrix> toLinearSRGB(cmsHPROFILE profile, cmsHPROFILE sRGB) {
    const auto there = toXYZ(profile);
    const auto back = inverse(toXYZ(sRGB).value());
    if (!there || !back) return std::nullopt;
    FixedMatrix matrix;
    for (std::size_t c = 0; c < 3; ++c)
        for (std::size_t j = 0; j < 3; ++j) {
            double sum = 0;
            for (std::size_t k = 0; k < 3; ++k) sum += (*back)[c][k] * (*there)[k][j];
            if (!(std::abs(sum) <= maximumFactor)) return std::nullopt;
            matrix[c][j] = fixedPoint(sum);
        }
    return matrix;
}

/// The linear values of the samples, in fixed point.
std::optional<std::array<int, 256>> linearValues(const cmsToneCurve* curve) {
    std::array<int, 256> values;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const float value = cmsEvalToneCurveFloat(curve, static_cast<float>(i) / 255);
        if (!(value >= 0 && value <= 1) || (i == 0 && value != 0)) return std::nullopt;
        values[i] = fixedPoint(value);
    }
    return values;
}

/// The least and the greatest linear value of sRGB that a row of the matrix makes of values from 0 to 1.
std::pair<int, int> range(const std::array<int, 3>& factors) {
    std::pair<int, int> range;
    for (const int factor : factors) (factor < 0 ? range.first : range.second) += factor;
    return range;
}

}  // namespace

std::optional<MatrixConversion> MatrixConversion::from(cmsHPROFILE profile, cmsHPROFILE sRGB) {
    if (!isMatrixProfile(profile)) return std::nullopt;
    const auto matrix = toLinearSRGB(profile, sRGB);
    if (!matrix) return std::nullopt;
    MatrixConversion conversion;
    for (std::size_t j = 0; j < 3; ++j) {
        const auto linear = linearValues(curve(profile, j));
        if (!linear) return std::nullopt;
        for (std::size_t i = 0; i < 256; ++i)
            for (std::size_t c = 0; c < 3; ++c) conversion.parts_[j][i][c] = (*matrix)[c][j] * (*linear)[i];
    }
    int least = 0, most = one;
    for (const auto& row : *matrix) {
        least = std::min(least, range(row).first);
        most = std::max(most, range(row).second);
    }
    if (most - least > maximumRange) return std::nullopt;
    for (auto& part : conversion.parts_[0])
        for (int& value : part) value += (1 << 13) - least * (1 << 14);
    conversion.samples_ = samplesOf(sRGB, one);
    conversion.samples_.insert(conversion.samples_.begin(), static_cast<std::size_t>(-least), 0);
    conversion.samples_.resize(static_cast<std::size_t>(most - least) + 1, 255);
    return conversion;
}

void MatrixConversion::convert(std::span<std::uint8_t> rgba) const {
    const std::uint8_t* const samples = samples_.data();
    std::uint8_t* pixel = rgba.data();
    for (std::size_t left = rgba.size() / 4; left > 0; --left, pixel += 4) {
        const auto& red = parts_[0][pixel[0]];
        const auto& green = parts_[1][pixel[1]];
        const auto& blue = parts_[2][pixel[2]];
        std::array<int, 4> linear;
        for (std::size_t c = 0; c < 4; ++c) linear[c] = (red[c] + green[c] + blue[c]) >> 14;
        pixel[0] = samples[linear[0]];
        pixel[1] = samples[linear[1]];
        pixel[2] = samples[linear[2]];
    }
}

}  // namespace quorvantis::decoder
