#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace quorvantis {

/// The program's one error type: `what()` is the text that the user or the agent reads. One maker per case.
class HelperFailure : public std::runtime_error {
  public:
    /// A command line or a tool call that lacks what it needs.
    static HelperFailure invalidArguments(std::string_view message) {
        return {"Invalid arguments: ", message};
    }
    /// A caller that is not the registered client.
    static HelperFailure invalidRequest(std::string_view message) {
        return {"Invalid pairing request: ", message};
    }
    /// A file of the integration that cannot be set up as it must be.
    static HelperFailure configuration(std::string_view message) {
        return {"Agent configuration failed: ", message};
    }
    /// The desktop application cannot be reached, refuses, or does not have what was asked for.
    static HelperFailure unavailable(std::string_view message) { return {"", message}; }
    /// The user refused a pairing request.
    static HelperFailure denied() { return {"The Quorvantis pairing request was denied.", ""}; }
    /// Nobody answered a pairing request.
    static HelperFailure timedOut() { return {"The Quorvantis pairing request timed out.", ""}; }

    /// The whole text, where `what()` ends at the first U+0000.
    const std::string& errorDescription() const { return description_; }

  private:
    HelperFailure(std::string_view prefix, std::string_view message)
        : HelperFailure(std::string(prefix).append(message)) {}
    explicit HelperFailure(const std::string& description)
        : std::runtime_error(description), description_(description) {}

    std::string description_;
};

}  // namespace quorvantis
