#include "json/JSONDocument.h"

#include <algorithm>
#include <array>
#include <boost/config.hpp>
#include <cstddef>
#include <cstdint>
#include <forward_list>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "json/JSON.h"
#include "json/JSONEscapes.h"
#include "support/UTF8.h"

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
        : nodes_(document.nodes_), keys_(document.keys_), text_(text), parsed_(parsed) {
        nodes_.reserve(std::min(text.size() / 4 + 1, maximumReservedNodes));
    }

    bool on_document_begin(Error&) { return true; }
    bool on_document_end(Error&) { return true; }
    bool on_comment_part(Text, Error&) { return true; }
    bool on_comment(Text, Error&) { return true; }

    bool on_null(Error&) { return add({}); }
    bool on_bool(bool value, Error&) { return add({.size = value ? 1u : 0u, .kind = Kind::boolean}); }

    bool on_number_part(Text, Error& error) { return refusePart(error); }
    bool on_int64(std::int64_t, Text number, Error&) { return add(Kind::number, original(number)); }
    bool on_uint64(std::uint64_t, Text number, Error&) { return add(Kind::number, original(number)); }
    bool on_double(double, Text number, Error&) { return add(Kind::number, original(number)); }

    bool on_string_part(Text, std::size_t, Error& error) { return refusePart(error); }
    bool on_string(Text string, std::size_t, Error&) { return add(Kind::string, original(string)); }
    bool on_key_part(Text, std::size_t, Error& error) { return refusePart(error); }
    bool on_key(Text key, std::size_t, Error&) { return add(Kind::string, unmasked(original(key))); }

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

    bool add(Kind kind, std::string_view text) { return add({text.data(), text.size(), kind}); }

    /// The parser splits only what has escapes, or an end that it does not know.
    static bool refusePart(Error& error) {
        error = quorvantis_boost::json::error::incomplete;
        return false;
    }

    std::string_view original(Text parsed) const {
        return text_.substr(static_cast<std::size_t>(parsed.data() - parsed_.data()), parsed.size());
    }

    // Keys are compared at once; other strings are left for later.
    std::string_view unmasked(std::string_view key) {
        return hasMaskedEscape(key) ? unmaskEscapes(keys_.emplace_front(key)) : key;
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
    std::forward_list<std::string>& keys_;
    std::string_view text_, parsed_;
    std::array<std::size_t, maximumJSONDepth> opened_;
    std::size_t depth_ = 0;
};

namespace {

/// A text without escapes, with zeros for the digits of all exponents.
std::string withoutExponents(std::string_view text) {
    std::string masked(text);
    bool isInString = false, isInExponent = false;
    for (char& character : masked) {
        if (character == '"') isInString = !isInString;
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
    options.allow_invalid_utf8 = true;  // the text has been checked; it may have masked escapes
    quorvantis_boost::json::basic_parser<JSONBuilder> parser(options, document, text, parsed);
    quorvantis_boost::system::error_code error;
    const std::size_t read = parser.write_some(false, parsed.data(), parsed.size(), error);
    if (!error && read != parsed.size()) error = quorvantis_boost::json::error::extra_data;
    return error;
}

std::span<char> withoutByteOrderMark(std::span<char> text) {
    const bool isMarked = std::string_view(text.data(), text.size()).starts_with(byteOrderMark);
    return text.subspan(isMarked ? byteOrderMark.size() : 0);
}

}  // namespace

std::optional<JSONDocument> JSONDocument::parse(std::string_view text) {
    if (text.find('\\') != text.npos) return parseOwned(std::string(text));
    if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
    JSONDocument document;
    return isValidUTF8(text) && document.build(text) ? std::optional(std::move(document)) : std::nullopt;
}

std::optional<JSONDocument> JSONDocument::parseOwned(std::string owned) {
    JSONDocument document;
    document.text_ = std::make_unique<std::string>(std::move(owned));
    const auto text = withoutByteOrderMark(*document.text_);
    const std::string_view view(text.data(), text.size());
    if (!isValidUTF8(view)) return std::nullopt;
    const bool hasEscapes = view.find('\\') != view.npos;
    if (hasEscapes && !maskEscapes(text)) return std::nullopt;
    if (!document.build(view)) return std::nullopt;
    if (hasEscapes) document.unescape(text);
    return document;
}

bool JSONDocument::build(std::string_view text) {
    size_ = text.size();
    auto error = quorvantis::parse(text, text, *this);
    // The parser computes exponents, in 32 bits; any number of digits is valid.
    if (error == quorvantis_boost::json::error::exponent_overflow) {
        nodes_.clear();
        error = quorvantis::parse(withoutExponents(text), text, *this);
    }
    return !error;
}

void JSONDocument::unescape(std::span<char> text) {
    for (JSONNode& node : nodes_)
        if (node.kind == Kind::string && hasMaskedEscape(node.view())) {
            const auto string = text.subspan(static_cast<std::size_t>(node.text - text.data()), node.size);
            node.size = unmaskEscapes(string).size();
        }
}

}  // namespace quorvantis
