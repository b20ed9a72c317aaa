#include "decoder/picture/MatrixConversion.h"

#include <functional>
#include <gtest/gtest.h>
#include <memory>

namespace quorvantis::decoder {

using Profile = std::shared_ptr<void>;

/// RGB with this curve for all channels, as it is read from a file.
static Profile profileWith(cmsToneCurve* curve, double redX, double greenX, double version) {
    const cmsCIExyY white = {0.3127, 0.3290, 1};
    const cmsCIExyYTRIPLE primaries = {{redX, 0.32, 1}, {greenX, 0.69, 1}, {0.15, 0.06, 1}};
    const std::array<cmsToneCurve*, 3> curves = {curve, curve, curve};
    const cmsHPROFILE made = cmsCreateRGBProfile(&white, &primaries, curves.data());
    cmsSetProfileVersion(made, version);
    cmsUInt32Number size = 0;
    cmsSaveProfileToMem(made, nullptr, &size);
    std::string file(size, '\0');
    cmsSaveProfileToMem(made, file.data(), &size);
    cmsCloseProfile(made);
    cmsFreeToneCurve(curve);
    return {cmsOpenProfileFromMem(file.data(), size), &cmsCloseProfile};
}

static cmsToneCurve* table(const std::function<double(double)>& value) {
    std::vector<cmsUInt16Number> entries;
    for (int i = 0; i < 1024; ++i) entries.push_back(static_cast<cmsUInt16Number>(65535 * value(i / 1023.0)));
    return cmsBuildTabulatedToneCurve16(nullptr, 1024, entries.data());
}

/// Every third value of each channel.
static std::vector<std::uint8_t> manyColours() {
    std::vector<std::uint8_t> rgba;
    for (int red = 0; red < 256; red += 3)
        for (int green = 0; green < 256; green += 3)
            for (int blue = 0; blue < 256; blue += 3)
                for (const int value : {red, green, blue, 77})
                    rgba.push_back(static_cast<std::uint8_t>(value));
    return rgba;
}

TEST(MatrixConversionTest, IsThatOfLcmsToTheBit) {
    const std::array sRGBCurve = {2.4, 1 / 1.055, 0.055 / 1.055, 1 / 12.92, 0.04045};
    const Profile sRGB(cmsCreate_sRGBProfile(), &cmsCloseProfile);
    const auto colours = manyColours();
    for (const auto& [name, profile] :
         {std::pair("Display P3",
                    profileWith(cmsBuildParametricToneCurve(nullptr, 4, sRGBCurve.data()), 0.68, 0.265, 4.3)),
          {"wide, 2.2", profileWith(cmsBuildGamma(nullptr, 2.2), 0.72, 0.17, 2.1)},
          {"narrow, 1.8", profileWith(cmsBuildGamma(nullptr, 1.8), 0.6, 0.3, 4.3)},
          {"a table", profileWith(table([](double x) { return x * x; }), 0.68, 0.265, 2.1)}}) {
        const auto conversion = MatrixConversion::from(profile.get(), sRGB.get());
        ASSERT_TRUE(conversion) << name;
        auto converted = colours, expected = colours;
        conversion->convert(converted);
        const auto transform =
            cmsCreateTransform(profile.get(), TYPE_RGBA_8, sRGB.get(), TYPE_RGBA_8, INTENT_PERCEPTUAL, 0);
        cmsDoTransform(transform, colours.data(), expected.data(),
                       static_cast<cmsUInt32Number>(colours.size() / 4));
        cmsDeleteTransform(transform);
        EXPECT_TRUE(converted == expected) << name;
    }
}

TEST(MatrixConversionTest, LeavesOtherProfilesToLcms) {
    const Profile sRGB(cmsCreate_sRGBProfile(), &cmsCloseProfile);
    const auto lifted = profileWith(table([](double x) { return 0.1 + 0.9 * x; }), 0.68, 0.265, 4.3);
    const auto withTable = profileWith(cmsBuildGamma(nullptr, 2.2), 0.68, 0.265, 4.3);
    cmsLinkTag(withTable.get(), cmsSigAToB0Tag, cmsSigRedTRCTag);
    const Profile gray(cmsCreateLab4Profile(nullptr), &cmsCloseProfile);
    for (const Profile& profile : {lifted, withTable, gray})
        EXPECT_FALSE(MatrixConversion::from(profile.get(), sRGB.get()));
}

}  // namespace quorvantis::decoder
