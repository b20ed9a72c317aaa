#include "decoder/picture/UprightPicture.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

#include "decoder/picture/GiveUp.h"
#include "decoder/picture/Layout.h"
#include "decoder/picture/Orientation.h"
#include "decoder/picture/Premultiply.h"
#include "imaging/DecodedPixels.h"
#include "imaging/PixelHasher.h"

namespace quorvantis::decoder {

namespace {

Size uprightSize(const PictureHeader& header) {
    const auto [width, height] = header.size;
    return swapsSides(header.orientation) ? Size{height, width} : Size{width, height};
}

const PictureHeader& withinBudget(const PictureHeader& header) {
    const Size declared = header.declared.value_or(header.size);
    const Size size = uprightSize(header);
    if (!isWithinPixelBudget(declared.width, declared.height) ||
        !isWithinPixelBudget(size.width, size.height))
        giveUp();
    return header;
}

}  // namespace

UprightPicture::UprightPicture(const PictureHeader& header)
    : header_(withinBudget(header)),
      conversion_(header.colours, header.layout),
      hasher_(uprightSize(header).width, uprightSize(header).height) {
    if (header.orientation == upright)
        row_.resize(width() * 4);
    else
        stored_ = PixelMemory(width() * static_cast<std::size_t>(header.size.height));
    unstored_ = stored_.pixels();
}

void UprightPicture::addRow(std::span<const std::uint8_t> row) {
    if (header_.orientation != upright) {
        if (unstored_.empty()) giveUp();
        const auto pixels = unstored_.first(width());
        unstored_ = unstored_.subspan(width());
        return convert(row, {reinterpret_cast<std::uint8_t*>(pixels.data()), pixels.size_bytes()});
    }
    const bool unchanged = conversion_.isIdentity() && !hasAlpha(header_.layout);
    if (!unchanged) convert(row, row_);
    hasher_.update(std::as_bytes(unchanged ? row : std::span<const std::uint8_t>(row_)));
}

void UprightPicture::addRows(std::span<const std::uint8_t> rows) {
    for (std::size_t at = 0; at < rows.size(); at += rowSize()) addRow(rows.subspan(at, rowSize()));
}

void UprightPicture::convert(std::span<const std::uint8_t> row, std::span<std::uint8_t> rgba) {
    if (!hasAlpha(header_.layout)) return conversion_.convert(row, rgba);
    if (header_.premultiplied) {
        straight_.assign(row.begin(), row.end());
        unpremultiply(straight_, samplesPerPixel(header_.layout));
        row = straight_;
    }
    conversion_.convert(row, rgba);
    premultiply(rgba);
}

DecodedPixels UprightPicture::finish() {
    if (header_.orientation != upright) {
        const auto height = static_cast<std::size_t>(header_.size.height);
        if (!unstored_.empty()) giveUp();
        forEachUprightRows(header_.orientation, stored_.pixels(), width(), height,
                           [&](auto rows) { hasher_.update(std::as_bytes(rows)); });
    }
    auto hash = hasher_.finish();
    if (!hash) giveUp();
    const Size declared = header_.declared.value_or(header_.size);
    return {declared.width, declared.height, std::move(*hash)};
}

}  // namespace quorvantis::decoder
