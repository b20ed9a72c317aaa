#include "json/JSON.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "json/NumberText.h"

namespace quorvantis {

namespace {

constexpr JSONNode nullNode;

}  // namespace

JSON::JSON() : node_(&nullNode) {}

std::optional<bool> JSON::boolean() const {
    return kind() == Kind::boolean ? std::optional(node_->size == 1) : std::nullopt;
}

std::optional<std::string_view> JSON::string() const {
    return kind() == Kind::string ? std::optional(node_->view()) : std::nullopt;
}

std::optional<std::int64_t> JSON::integer() const {
    return kind() == Kind::number ? integerFromNumberText(node_->view()) : std::nullopt;
}

std::optional<double> JSON::number() const {
    return kind() == Kind::number ? doubleFromNumberText(node_->view()) : std::nullopt;
}

std::optional<std::string_view> JSON::numberText() const {
    return kind() == Kind::number ? std::optional(node_->view()) : std::nullopt;
}

JSON::Elements JSON::elements() const {
    return {node_ + 1, kind() == Kind::array ? node_->next() : node_ + 1};
}

JSON::Members JSON::members() const {
    return {node_ + 1, kind() == Kind::object ? node_->next() : node_ + 1};
}

std::optional<JSON> JSON::find(std::string_view key) const {
    for (const Member member : members())
        if (member.key == key) return member.value;
    return std::nullopt;
}

JSON JSON::operator[](std::string_view key) const {
    return find(key).value_or(JSON());
}

std::size_t JSON::Elements::count() const {
    std::size_t count = 0;
    for (auto element = begin(); element != end(); ++element) ++count;
    return count;
}

bool JSON::isArrayOf(Kind elementKind) const {
    if (kind() != Kind::array) return false;
    for (const JSON element : elements())
        if (element.kind() != elementKind) return false;
    return true;
}

}  // namespace quorvantis
