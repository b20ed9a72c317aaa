#include "json/JSONDocument.h"

#include <algorithm>
#include <array>
#include <boost/config.hpp>
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "json/JSON.h"

// Boost.JSON is compiled here, in a namespace of our own: a program that links this library may have a
// Boost.JSON itself, of another version. boost/config.hpp, above, makes names of headers from the word, and
// defines types alone.
namespace quorvantis_boost {
using namespace boost;
}
#define boost quorvantis_boost
#include <boost/json/basic_parser_impl.hpp>
#include <boost/json/src.hpp>
#undef boost

namespace quorvantis {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t maximumReservedNodes = 1024;
constexpr std::size_t maximumPairwiseMembers = 16;

using Kind = JSONNode::Kind;

bool hasRepeatedKey(JSON object) {
    const auto members = object.members();
    for (auto member = members.begin(); member != members.end(); ++member)
        for (auto earlier = members.begin(); earlier != member; ++earlier)
            if ((*earlier).key == (*member).key) return true;
    return false;
}

}  // namespace

/// Receives the parser's events and builds the list of nodes.
class JSONBuilder {
  public:
    static constexpr std::size_t max_object_size = std::numeric_limits<std::size_t>::max();
    static constexpr std::size_t max_array_size = max_object_size;
    static constexpr std::size_t max_key_size = max_object_size;
    static constexpr std::size_t max_string_size = max_object_size;

    using Error = quorvantis_boost::system::error_code;
    using Text = quorvantis_boost::json::string_view;

    /// `parsed` is what the parser reads: the text, or a copy of the same size with other digits in it.
    JSONBuilder(JSONDocument& document, std::string_view text, std::string_view parsed)
        : nodes_(document.nodes_), unescaped_(document.unescaped_), text_(text), parsed_(parsed) {
        nodes_.reserve(std::min(text.size() / 4 + 1, maximumReservedNodes));
    }

    bool on_document_begin(Error&) { return true; }
    bool on_document_end(Error&) { return true; }
    bool on_comment_part(Text, Error&) { return true; }
    bool on_comment(Text, Error&) { return true; }

    bool on_null(Error&) { return add({}); }
    bool on_bool(bool value, Error&) { return add({.size = value ? 1u : 0u, .kind = Kind::boolean}); }

    bool on_number_part(Text part, Error&) { return addPart(part); }
    bool on_int64(std::int64_t, Text last, Error&) { return addText(last, Kind::number); }
    bool on_uint64(std::uint64_t, Text last, Error&) { return addText(last, Kind::number); }
    bool on_double(double, Text last, Error&) { return addText(last, Kind::number); }

    bool on_string_part(Text part, std::size_t, Error&) { return addPart(part); }
    bool on_string(Text last, std::size_t, Error&) { return addText(last, Kind::string); }
    bool on_key_part(Text part, std::size_t, Error&) { return addPart(part); }
    bool on_key(Text last, std::size_t, Error&) { return addText(last, Kind::string); }

    bool on_array_begin(Error&) { return open(Kind::array); }
    bool on_array_end(std::size_t, Error&) {
        close();
        return true;
    }
    bool on_object_begin(Error&) { return open(Kind::object); }
    bool on_object_end(std::size_t members, Error&) {
        keepFirstOfEachKey(close(), members);
        return true;
    }

  private:
    bool add(const JSONNode& node) {
        nodes_.push_back(node);
        return true;
    }

    bool open(Kind kind) {
        opened_[depth_++] = nodes_.size();
        return add({.kind = kind});
    }

    /// Closes the innermost open container and returns its position.
    std::size_t close() {
        const std::size_t place = opened_[--depth_];
        nodes_[place].size = nodes_.size() - place;
        return place;
    }

    /// Appends a part: the parser splits a text with escapes.
    bool addPart(Text part) {
        // All parts together are shorter than the input, so the memory never moves. Untouched pages are free.
        if (!unescaped_) unescaped_ = std::make_unique_for_overwrite<char[]>(text_.size());
        std::memcpy(unescaped_.get() + partsEnd_, part.data(), part.size());
        partsEnd_ += part.size();
        return true;
    }

    bool addText(Text last, Kind kind) {
        const bool isWhole = partsStart_ == partsEnd_ && isParsed(last.data());
        if (isWhole) return add({text_.data() + (last.data() - parsed_.data()), last.size(), kind});
        addPart(last);
        const std::size_t start = std::exchange(partsStart_, partsEnd_);
        return add({unescaped_.get() + start, partsEnd_ - start, kind});
    }

    // The parser passes a text with escapes in its own buffer.
    bool isParsed(const char* place) const {
        const std::less_equal<const char*> notAfter;
        return notAfter(parsed_.data(), place) && notAfter(place, parsed_.data() + parsed_.size());
    }

    void keepFirstOfEachKey(std::size_t place, std::size_t members) {
        // Pairwise comparison is faster for a few keys, but quadratic.
        if (members <= maximumPairwiseMembers && !hasRepeatedKey(JSON(&nodes_[place]))) return;
        const auto repeated = repeatedKeys(place);
        if (repeated.empty()) return;
        std::size_t kept = place + 1;
        auto skipped = repeated.begin();
        for (std::size_t key = place + 1; key < nodes_.size();) {
            const std::size_t next = nextKey(key);
            if (skipped != repeated.end() && *skipped == key)
                ++skipped;
            else
                for (std::size_t node = key; node < next; ++node) nodes_[kept++] = nodes_[node];
            key = next;
        }
        nodes_.resize(kept);
        nodes_[place].size = kept - place;
    }

    /// The positions of the keys that stand in the object before, in order. Found by sorting: no choice of
    /// keys makes that slow, as it would a hash table.
    std::vector<std::size_t> repeatedKeys(std::size_t place) const {
        std::vector<std::size_t> keys;
        for (std::size_t key = place + 1; key < nodes_.size(); key = nextKey(key)) keys.push_back(key);
        std::sort(keys.begin(), keys.end(), [&](std::size_t one, std::size_t other) {
            const int order = nodes_[one].view().compare(nodes_[other].view());
            return order != 0 ? order < 0 : one < other;
        });
        std::vector<std::size_t> repeated;
        for (std::size_t i = 1; i < keys.size(); ++i)
            if (nodes_[keys[i]].view() == nodes_[keys[i - 1]].view()) repeated.push_back(keys[i]);
        std::sort(repeated.begin(), repeated.end());
        return repeated;
    }

    std::size_t nextKey(std::size_t key) const {
        return static_cast<std::size_t>(nodes_[key + 1].next() - nodes_.data());
    }

    std::vector<JSONNode>& nodes_;
    std::unique_ptr<char[]>& unescaped_;
    std::string_view text_, parsed_;
    std::size_t partsStart_ = 0, partsEnd_ = 0;  // of the current text, in `unescaped_`
    std::array<std::size_t, maximumJSONDepth> opened_;
    std::size_t depth_ = 0;
};

namespace {

/// The text with zeros for the digits of all exponents.
std::string withoutExponents(std::string_view text) {
    std::string masked(text);
    bool isInString = false, isInExponent = false;
    for (std::size_t i = 0; i < masked.size(); ++i) {
        char& character = masked[i];
        if (character == '"') isInString = !isInString;
        if (isInString && character == '\\') ++i;
        const bool isDigit = character >= '0' && character <= '9';
        if (isInExponent && isDigit) character = '0';
        isInExponent = !isInString && (character == 'e' || character == 'E' ||
                                       (isInExponent && (isDigit || character == '+' || character == '-')));
    }
    return masked;
}

/// Parses `parsed` in place of the text.
quorvantis_boost::system::error_code parse(std::string_view parsed, std::string_view text,
                                           JSONDocument& document) {
    quorvantis_boost::json::parse_options options;
    options.max_depth = maximumJSONDepth;
    quorvantis_boost::json::basic_parser<JSONBuilder> parser(options, document, text, parsed);
    quorvantis_boost::system::error_code error;
    const std::size_t read = parser.write_some(false, parsed.data(), parsed.size(), error);
    if (!error && read != parsed.size()) error = quorvantis_boost::json::error::extra_data;
    return error;
}

}  // namespace

std::optional<JSONDocument> JSONDocument::parse(std::string_view text) {
    if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
    JSONDocument document;
    auto error = quorvantis::parse(text, text, document);
    // The parser computes exponents, in 32 bits; any number of digits is valid.
    if (error == quorvantis_boost::json::error::exponent_overflow) {
        document = JSONDocument();
        error = quorvantis::parse(withoutExponents(text), text, document);
    }
    return error ? std::nullopt : std::optional(std::move(document));
}

std::optional<JSONDocument> JSONDocument::parseOwned(std::string text) {
    auto kept = std::make_unique<const std::string>(std::move(text));
    auto document = parse(*kept);
    if (document) document->text_ = std::move(kept);
    return document;
}

}  // namespace quorvantis
