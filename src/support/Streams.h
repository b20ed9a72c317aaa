#pragma once

#include <cstdlib>
#include <memory>
#include <optional>
#include <string_view>

namespace quorvantis {

/// Opens /dev/null for each standard stream that the parent left closed, so that no file opened later gets
/// its number. Standard input is opened for writing and the others for reading, so using them fails as if
/// closed.
void reserveStandardStreams();

/// Writes all the bytes, with a single write if the system accepts that many. Blocks even if the stream is
/// non-blocking. Returns false if the stream is closed or broken.
bool writeStream(int descriptor, std::string_view bytes);

/// Makes all further writes to the stream fail.
void breakOutput(int descriptor);

/// Splits a stream into lines of any length.
class LineReader {
  public:
    /// Does not own the descriptor.
    explicit LineReader(int descriptor) : descriptor_(descriptor) {}

    /// Blocks until there is a whole line. Returns it without its LF or CRLF, valid until the next call;
    /// empty at the end of the stream, or if reading fails. Text after the last line feed counts as a line.
    std::optional<std::string_view> next();

  private:
    bool fill();
    std::string_view take(std::size_t end);

    struct Free {
        void operator()(char* memory) const { std::free(memory); }
    };

    int descriptor_;
    std::unique_ptr<char, Free> buffer_;
    std::size_t capacity_ = 0;
    // Positions in the buffer: [start_, end_) is unread, and [start_, searched_) contains no line feed.
    std::size_t start_ = 0;
    std::size_t end_ = 0;
    std::size_t searched_ = 0;
};

}  // namespace quorvantis
