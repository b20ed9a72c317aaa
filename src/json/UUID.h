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

    /// Generates a random UUID (version 4). Throws FileError if the system has no random bytes to give.
    static UUID random();
    /// Parses the canonical form of 36 characters, 8-4-4-4-12 hexadecimal digits in either case; empty for
    /// any other text.
    static std::optional<UUID> parse(std::string_view text);

    /// The canonical form in upper case, as written in records.
    std::string upperCaseText() const;
    std::string lowerCaseText() const;

    friend bool operator==(const UUID&, const UUID&) = default;
};

}  // namespace quorvantis
