#pragma once

#include <string>
#include <string_view>

namespace quorvantis::doctor {

enum class Level { ok, note, fail };

/// What a check found, in words for the user.
struct Finding {
    Level level = Level::ok;
    std::string text;
    std::string advice = {};  // what to do; empty when there is nothing to do
};

inline Finding fine(std::string text) {
    return {Level::ok, std::move(text)};
}
inline Finding note(std::string text, std::string advice = {}) {
    return {Level::note, std::move(text), std::move(advice)};
}
inline Finding failure(std::string text, std::string advice) {
    return {Level::fail, std::move(text), std::move(advice)};
}

/// A line of the report.
struct Result {
    std::string agent;  // empty when it is about all
    std::string_view check;
    Finding finding;
};

}  // namespace quorvantis::doctor
