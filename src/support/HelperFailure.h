#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace quorvantis {

/// A failure that this program itself detects. Thrown by cli/, mcp/, broker/, integration/ and, when a mode
/// cannot be set, json/JSONFiles.
///
/// The other exceptions that the program throws are:
/// - FileError (support/Files.h): the system refused to read, write or start a file;
/// - DecodingError (json/CodingErrors.h): a text is not the JSON that it should be;
/// - EncodingError (json/CodingErrors.h): a value cannot be written as JSON;
/// - std::system_error, from platform/: a pipe or a process cannot be created. integration/ rethrows it as
///   FileError; in imaging/ the picture gets no pixel hash.
///
/// `what()` of the first four is one line for the user or the agent.
class HelperFailure : public std::runtime_error {
  public:
    enum class Case { invalidArguments, invalidRequest, configuration, unavailable, denied, timedOut };

    // One factory function per case.

    /// A command line or a tool call lacks a required argument.
    static HelperFailure invalidArguments(std::string_view message) {
        return {Case::invalidArguments, "Invalid arguments: ", message};
    }
    /// The caller is not the registered client.
    static HelperFailure invalidRequest(std::string_view message) {
        return {Case::invalidRequest, "Invalid pairing request: ", message};
    }
    /// A file of the integration cannot be set up as required.
    static HelperFailure configuration(std::string_view message) {
        return {Case::configuration, "Agent configuration failed: ", message};
    }
    /// The desktop application cannot be reached, refuses, or does not have what was asked for.
    static HelperFailure unavailable(std::string_view message) { return {Case::unavailable, "", message}; }
    /// The user denied a pairing request.
    static HelperFailure denied() { return {Case::denied, "The Quorvantis pairing request was denied.", ""}; }
    /// A pairing request was not decided in time.
    static HelperFailure timedOut() {
        return {Case::timedOut, "The Quorvantis pairing request timed out.", ""};
    }

    Case failureCase() const { return case_; }
    /// As given to the factory function; empty for `denied` and `timedOut`.
    const std::string& message() const { return message_; }
    /// The text for the user or the agent. Complete, whereas `what()` ends at the first U+0000.
    const std::string& errorDescription() const { return description_; }

  private:
    HelperFailure(Case which, std::string_view prefix, std::string_view message)
        : std::runtime_error(std::string(prefix).append(message)),
          case_(which),
          message_(message),
          description_(std::string(prefix).append(message)) {}

    Case case_;
    std::string message_;
    std::string description_;
};

}  // namespace quorvantis
