#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace quorvantis::standin {

/// Part of a picture's file. It may be asked for any position: beyond its end stand zeros.
class Bytes {
  public:
    explicit Bytes(std::span<const std::uint8_t> bytes, std::endian order = std::endian::big)
        : bytes_(bytes), order_(order) {}

    std::size_t size() const { return bytes_.size(); }
    std::span<const std::uint8_t> span() const { return bytes_; }
    std::string_view text() const { return {reinterpret_cast<const char*>(bytes_.data()), size()}; }

    std::uint32_t byte(std::size_t at) const { return at < size() ? bytes_[at] : 0U; }
    /// The unsigned number of `size` bytes, 1 to 4.
    std::uint32_t number(std::size_t at, std::size_t size) const {
        std::uint32_t number = 0;
        for (std::size_t i = 0; i < size; ++i)
            number = number << 8 | byte(order_ == std::endian::big ? at + i : at + size - 1 - i);
        return number;
    }

    /// At most `size` bytes, fewer where these end.
    Bytes part(std::size_t at, std::size_t size = std::string_view::npos) const {
        const auto rest = bytes_.subspan(std::min(at, bytes_.size()));
        return Bytes(rest.first(std::min(size, rest.size())), order_);
    }

    /// As text up to the first zero or the end, each number of `unitSize` bytes, 1 or 2, a Unicode code
    /// point (Latin-1, or UTF-16 without pairs: those give ill-formed UTF-8).
    std::string characters(std::size_t unitSize) const;

  private:
    std::span<const std::uint8_t> bytes_;
    std::endian order_;
};

}  // namespace quorvantis::standin
