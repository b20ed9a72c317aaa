#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace quorvantis {

/// Containers nested deeper than this are refused on reading and on writing.
inline constexpr std::size_t maximumJSONDepth = 512;

/// One value of a parsed document, in the document's list of nodes: a container is followed by what it holds.
struct JSONNode {
    enum class Kind : std::uint8_t { null, boolean, number, string, array, object };

    const char* text = nullptr;  // of a string, or a number as it was written
    std::size_t size = 1;  // of the text in bytes; of a container in nodes, its own included; 1 for true
    Kind kind = Kind::null;

    std::string_view view() const { return {text, size}; }
    bool isContainer() const { return kind == Kind::array || kind == Kind::object; }
    /// The node after this value.
    const JSONNode* next() const { return this + (isContainer() ? size : 1); }
};

/// A JSON value (RFC 8259) that was read. It looks into its JSONDocument and is valid as long as that is.
///
/// The reading operations answer nothing when the value is of another type, so that each default stands where
/// the value is read: `params["clientInfo"]["name"].string().value_or("MCP client")`.
class JSON {
  public:
    using Kind = JSONNode::Kind;
    struct Member;
    class Elements;
    class Members;

    /// A JSON null.
    JSON();
    explicit JSON(const JSONNode* node) : node_(node) {}

    Kind kind() const { return node_->kind; }
    std::optional<bool> boolean() const;
    /// Valid UTF-8.
    std::optional<std::string_view> string() const;
    /// Any number whose value is integral and fits 64 bits, however it is written: 20, 20.0 and 2e1 are 20.
    std::optional<std::int64_t> integer() const;
    /// Any number within the range of double.
    std::optional<double> number() const;
    /// Any number, as the text that it was read from: every digit of 1e400 or of 30 digits is there.
    std::optional<std::string_view> numberText() const;

    /// An array's elements; none when this is no array.
    Elements elements() const;
    /// An object's members in their order, no key twice; none when this is no object.
    Members members() const;
    /// The member with this key; nothing when there is none, or this is no object.
    std::optional<JSON> find(std::string_view key) const;
    /// The same, with a null in the place of a missing member.
    JSON operator[](std::string_view key) const;

    /// Whether this is an array with elements of that kind alone.
    bool isArrayOf(Kind kind) const;

  private:
    const JSONNode* node_;
};

struct JSON::Member {
    std::string_view key;
    JSON value;
};

class JSON::Elements {
  public:
    struct Iterator {
        const JSONNode* node;
        JSON operator*() const { return JSON(node); }
        Iterator& operator++() { return node = node->next(), *this; }
        bool operator==(const Iterator&) const = default;
    };

    Elements(const JSONNode* first, const JSONNode* end) : first_(first), end_(end) {}
    Iterator begin() const { return {first_}; }
    Iterator end() const { return {end_}; }
    bool empty() const { return first_ == end_; }
    JSON front() const { return JSON(first_); }
    /// Counts them one by one.
    std::size_t count() const;

  private:
    const JSONNode* first_;
    const JSONNode* end_;
};

class JSON::Members {
  public:
    struct Iterator {
        const JSONNode* node;
        Member operator*() const { return {node->view(), JSON(node + 1)}; }
        Iterator& operator++() { return node = (node + 1)->next(), *this; }
        bool operator==(const Iterator&) const = default;
    };

    Members(const JSONNode* first, const JSONNode* end) : first_(first), end_(end) {}
    Iterator begin() const { return {first_}; }
    Iterator end() const { return {end_}; }

  private:
    const JSONNode* first_;
    const JSONNode* end_;
};

}  // namespace quorvantis
