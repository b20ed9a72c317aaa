#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace quorvantis {

/// The maximum nesting of containers, both for reading and for writing.
inline constexpr std::size_t maximumJSONDepth = 512;

/// One value in a document's list of nodes. A container's node is followed by those of its content: an
/// array's elements, or an object's keys and values in turn.
struct JSONNode {
    enum class Kind : std::uint8_t { null, boolean, number, string, array, object };

    const char* text = nullptr;  // of a string, or of a number as written
    // Of a string or number, the size of the text in bytes; of a container, its number of nodes, including
    // this one; of a boolean, 1 for true and 0 for false.
    std::size_t size = 1;
    Kind kind = Kind::null;

    std::string_view view() const { return {text, size}; }
    bool isContainer() const { return kind == Kind::array || kind == Kind::object; }
    /// The node after this value.
    const JSONNode* next() const { return this + (isContainer() ? size : 1); }
};

/// A view of a JSON value (RFC 8259) in a JSONDocument, which must outlive it.
///
/// The accessors return an empty optional unless the value has their type, so that the reader supplies the
/// default: `params["clientInfo"]["name"].string().value_or("MCP client")`.
class JSON {
  public:
    using Kind = JSONNode::Kind;
    struct Member;
    class Elements;
    class Members;

    /// A null.
    JSON();
    explicit JSON(const JSONNode* node) : node_(node) {}

    Kind kind() const { return node_->kind; }
    std::optional<bool> boolean() const;
    /// Valid UTF-8.
    std::optional<std::string_view> string() const;
    /// A number whose value is an integer of 64 bits, in any notation: 20, 20.0 and 2e1 are all 20.
    std::optional<std::int64_t> integer() const;
    /// A number within the range of double.
    std::optional<double> number() const;
    /// A number of any size and precision, as written in the document.
    std::optional<std::string_view> numberText() const;

    /// The elements of an array; empty unless this is an array.
    Elements elements() const;
    /// The members of an object in document order, with unique keys; empty unless this is an object.
    Members members() const;
    /// The value of the member with this key; empty if there is none. Searches linearly.
    std::optional<JSON> find(std::string_view key) const;
    /// Like `find`, but returns a null if there is none.
    JSON operator[](std::string_view key) const;

    /// Whether this is an array and all its elements are of that kind.
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
    /// Takes linear time.
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
