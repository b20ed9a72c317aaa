#pragma once

#include <cstdlib>
#include <memory>
#include <optional>
#include <string_view>

namespace quorvantis {

/// Opens each standard stream that the parent left closed onto the null device, the wrong way round, so that
/// no file or socket opened later is taken for it: reading then fails as at end of input, and writing fails.
void reserveStandardStreams();

/// Writes all the bytes, in one write as far as the system takes them. Waits where a stream does not block.
/// False when the stream takes no more.
bool writeStream(int descriptor, std::string_view bytes);

/// Cuts a stream into lines of any length at its line feeds.
class LineReader {
  public:
    explicit LineReader(int descriptor) : descriptor_(descriptor) {}

    /// The next line without its LF or CRLF, valid until the next call. Nothing at the end of the stream, or
    /// when reading fails; what stands after the last line feed is a line too.
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
    std::size_t start_ = 0;     // of the bytes not yet taken
    std::size_t end_ = 0;       // of the bytes read
    std::size_t searched_ = 0;  // up to here, from start_ on, no line feed
};

}  // namespace quorvantis
