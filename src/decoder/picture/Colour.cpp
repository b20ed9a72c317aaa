#include "decoder/picture/Colour.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <lcms2.h>
#include <memory>
#include <span>

#include "decoder/picture/Layout.h"
#include "decoder/picture/MatrixConversion.h"

namespace quorvantis::decoder {

namespace {

using Profile = std::shared_ptr<void>;

Profile owned(cmsHPROFILE profile) {
    return {profile, [](cmsHPROFILE p) {
                if (p) cmsCloseProfile(p);
            }};
}

cmsUInt32Number pixelFormat(Layout layout) {
    switch (layout) {
        case Layout::gray: return TYPE_GRAY_8;
        case Layout::grayAlpha: return TYPE_GRAYA_8;
        case Layout::rgb: return TYPE_RGB_8;
        case Layout::cmyk: return TYPE_CMYK_8;
        default: return TYPE_RGBA_8;
    }
}

/// Whether two profiles are equivalent at a precision of 8 bits.
bool areEquivalent(cmsHPROFILE one, cmsHPROFILE other) {
    for (const auto tag : {cmsSigRedColorantTag, cmsSigGreenColorantTag, cmsSigBlueColorantTag}) {
        const auto* a = static_cast<const cmsCIEXYZ*>(cmsReadTag(one, tag));
        const auto* b = static_cast<const cmsCIEXYZ*>(cmsReadTag(other, tag));
        if (!a || !b) return false;
        if (std::abs(a->X - b->X) + std::abs(a->Y - b->Y) + std::abs(a->Z - b->Z) > 0.003) return false;
    }
    for (const auto tag : {cmsSigRedTRCTag, cmsSigGreenTRCTag, cmsSigBlueTRCTag}) {
        const auto* a = static_cast<const cmsToneCurve*>(cmsReadTag(one, tag));
        const auto* b = static_cast<const cmsToneCurve*>(cmsReadTag(other, tag));
        if (!a || !b) return false;
        for (int i = 0; i <= 32; ++i) {
            const float x = static_cast<float>(i) / 32;
            if (std::abs(cmsEvalToneCurveFloat(a, x) - cmsEvalToneCurveFloat(b, x)) > 0.001F) return false;
        }
    }
    return true;
}

bool isSRGB(cmsHPROFILE profile, cmsHPROFILE sRGB) {
    // If a profile has lookup tables, they are used and its curves are not.
    return !cmsIsTag(profile, cmsSigAToB0Tag) && areEquivalent(profile, sRGB);
}

/// Creates a profile from a calibration; null if its numbers are invalid.
Profile calibratedProfile(const Calibration& calibration) {
    const auto& c = calibration.whiteAndPrimaries;
    const cmsCIExyY white = {c[0], c[1], 1};
    const cmsCIExyYTRIPLE primaries = {{c[2], c[3], 1}, {c[4], c[5], 1}, {c[6], c[7], 1}};
    const std::array sRGBCurve = {2.4, 1 / 1.055, 0.055 / 1.055, 1 / 12.92, 0.04045};
    const std::shared_ptr<cmsToneCurve> curve(calibration.exponent
                                                  ? cmsBuildGamma(nullptr, *calibration.exponent)
                                                  : cmsBuildParametricToneCurve(nullptr, 4, sRGBCurve.data()),
                                              &cmsFreeToneCurve);
    const std::array<cmsToneCurve*, 3> curves = {curve.get(), curve.get(), curve.get()};
    return owned(cmsCreateRGBProfile(&white, &primaries, curves.data()));
}

/// A gamma of 1/2.2 with the primaries of sRGB stands for sRGB (PNG 1.2, 4.2.2.3).
bool isSRGB(const Calibration& calibration) {
    const auto far = [](double a, double b) { return std::abs(a - b) > 0.002; };
    return !far(calibration.exponent.value_or(2.2) / 2.2, 1) &&
           std::equal(calibration.whiteAndPrimaries.begin(), calibration.whiteAndPrimaries.end(),
                      Calibration().whiteAndPrimaries.begin(), std::not_fn(far));
}

std::uint8_t withoutInk(int ink, int black) {
    return static_cast<std::uint8_t>(((255 - ink) * (255 - black) + 127) / 255);
}

template <Layout layout>
void expandAs(const std::uint8_t* s, std::span<std::uint8_t> rgba) {
    for (std::size_t i = 0; i < rgba.size(); i += 4, s += samplesPerPixel(layout)) {
        if constexpr (layout == Layout::cmyk) {
            for (std::size_t c = 0; c < 3; ++c) rgba[i + c] = withoutInk(s[c], s[3]);
        } else {
            constexpr std::size_t step = layout == Layout::rgb ? 1 : 0;
            for (std::size_t c = 0; c < 3; ++c) rgba[i + c] = s[c * step];
        }
        rgba[i + 3] = layout == Layout::grayAlpha ? s[1] : 255;
    }
}

void expand(Layout layout, std::span<const std::uint8_t> samples, std::span<std::uint8_t> rgba) {
    switch (layout) {
        case Layout::gray: return expandAs<Layout::gray>(samples.data(), rgba);
        case Layout::grayAlpha: return expandAs<Layout::grayAlpha>(samples.data(), rgba);
        case Layout::rgb: return expandAs<Layout::rgb>(samples.data(), rgba);
        case Layout::cmyk: return expandAs<Layout::cmyk>(samples.data(), rgba);
        case Layout::rgba:
        case Layout::rgbx: std::copy_n(samples.data(), samples.size(), rgba.data());
    }
}

}  // namespace

ColourConversion::ColourConversion(const ColourSpace& space, Layout layout) : layout_(layout) {
    const bool calibrated = space.calibration && !isSRGB(*space.calibration);
    if (space.profile.empty() && !calibrated) return;
    const auto sRGB = owned(cmsCreate_sRGBProfile());
    const auto format = pixelFormat(layout);
    auto profile = owned(
        cmsOpenProfileFromMem(space.profile.data(), static_cast<cmsUInt32Number>(space.profile.size())));
    if (profile &&
        static_cast<int>(T_COLORSPACE(format)) != _cmsLCMScolorSpace(cmsGetColorSpace(profile.get())))
        return;
    if (!profile && calibrated) {
        profile = calibratedProfile(*space.calibration);
        fromRGBA_ = true;
    }
    if (!profile || isSRGB(profile.get(), sRGB.get())) return;
    if (fromRGBA_ || T_COLORSPACE(format) == PT_RGB)
        matrix_ = MatrixConversion::from(profile.get(), sRGB.get());
    if (matrix_) return;
    transform_ = {cmsCreateTransform(profile.get(), fromRGBA_ ? TYPE_RGBA_8 : format, sRGB.get(), TYPE_RGBA_8,
                                     INTENT_PERCEPTUAL, 0),
                  [](cmsHTRANSFORM transform) {
                      if (transform) cmsDeleteTransform(transform);
                  }};
}

bool ColourConversion::isIdentity() const {
    return !matrix_ && !transform_ && (layout_ == Layout::rgba || layout_ == Layout::rgbx);
}

void ColourConversion::convert(std::span<const std::uint8_t> samples, std::span<std::uint8_t> rgba) const {
    expand(layout_, samples, rgba);
    if (matrix_) return matrix_->convert(rgba);
    if (!transform_) return;
    // lcms2 does not write alpha, so that of the expanded pixels remains.
    cmsDoTransform(transform_.get(), fromRGBA_ ? rgba.data() : samples.data(), rgba.data(),
                   static_cast<cmsUInt32Number>(rgba.size() / 4));
}

}  // namespace quorvantis::decoder
