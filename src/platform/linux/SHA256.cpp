#include "platform/SHA256.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <nettle/sha2.h>
#include <new>
#include <span>

namespace quorvantis::platform {

namespace {

sha256_ctx* context(std::array<std::byte, 128>& state) {
    static_assert(sizeof(sha256_ctx) <= sizeof state && alignof(sha256_ctx) <= 8);
    return std::launder(reinterpret_cast<sha256_ctx*>(state.data()));
}

}  // namespace

SHA256::SHA256() {
    sha256_init(new (state_.data()) sha256_ctx);
}

void SHA256::update(std::span<const std::byte> bytes) {
    sha256_update(context(state_), bytes.size(), reinterpret_cast<const std::uint8_t*>(bytes.data()));
}

SHA256::Digest SHA256::finish() {
    Digest digest;
    sha256_digest(context(state_), digest.size(), digest.data());
    return digest;
}

}  // namespace quorvantis::platform
