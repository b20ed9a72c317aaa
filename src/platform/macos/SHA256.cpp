#include "platform/SHA256.h"

#include <CommonCrypto/CommonDigest.h>
#include <algorithm>
#include <new>

namespace quorvantis::platform {

namespace {

constexpr std::size_t maximumPieceSize = std::size_t{1} << 30;  // CC_LONG has 32 bits

CC_SHA256_CTX* context(std::array<std::byte, 128>& state) {
    static_assert(sizeof(CC_SHA256_CTX) <= sizeof state && alignof(CC_SHA256_CTX) <= 8);
    return std::launder(reinterpret_cast<CC_SHA256_CTX*>(state.data()));
}

}  // namespace

SHA256::SHA256() {
    CC_SHA256_Init(new (state_.data()) CC_SHA256_CTX);
}

void SHA256::update(std::span<const std::byte> bytes) {
    while (!bytes.empty()) {
        const auto piece = bytes.first(std::min(bytes.size(), maximumPieceSize));
        CC_SHA256_Update(context(state_), piece.data(), static_cast<CC_LONG>(piece.size()));
        bytes = bytes.subspan(piece.size());
    }
}

SHA256::Digest SHA256::finish() {
    Digest digest;
    static_assert(sizeof digest == CC_SHA256_DIGEST_LENGTH);
    CC_SHA256_Final(digest.data(), context(state_));
    return digest;
}

}  // namespace quorvantis::platform
