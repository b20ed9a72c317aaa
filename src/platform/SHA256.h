#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace quorvantis::platform {

/// Computes a SHA-256 (FIPS 180-4) incrementally.
class SHA256 {
  public:
    using Digest = std::array<std::uint8_t, 32>;

    SHA256();
    void update(std::span<const std::byte> bytes);
    /// Returns the digest of all bytes. Call it once, last.
    Digest finish();

  private:
    alignas(8) std::array<std::byte, 128> state_;
};

}  // namespace quorvantis::platform
