#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quorvantis {

/// A universally unique identifier (RFC 4122).
struct UUID {
    std::array<std::uint8_t, 16> bytes{};

    /// A new random one (version 4).
    static UUID random();
    /// Reads the canonical 36 characters, 8-4-4-4-12 hexadecimal digits in either case; nothing for another
    /// text.
    static std::optional<UUID> parse(std::string_view text);

    /// The canonical text in upper case, as records hold it.
    std::string upperCaseText() const;
    std::string lowerCaseText() const;

    friend bool operator==(const UUID&, const UUID&) = default;
};

}  // namespace quorvantis
