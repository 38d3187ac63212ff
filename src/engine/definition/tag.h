#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "engine/definition/model.h"
#include "engine/definition/source.h"

namespace velora::engine {

class Tag;

/// Names and values of an enumeration.
template <class Value>
using Choice = std::pair<std::string_view, Value>;

/// An attribute's value with the conversions that definitions need. What cannot be read is a warning and none.
class Attribute {
public:
    Attribute(const Tag& tag, pugi::xml_attribute attribute) : tag_(tag), attribute_(attribute) {}

    [[nodiscard]] std::string_view text() const { return attribute_.value(); }
    /// A number out of range is a warning, and the nearer end of the range.
    [[nodiscard]] std::optional<int> whole(int least = -kMostLength, int most = kMostLength) const;
    [[nodiscard]] std::optional<float> number(float least = 0, float most = kMostLength) const;
    [[nodiscard]] std::optional<bool> flag() const;
    /// "#RRGGBB", "#AARRGGBB", "red", or a whole number.
    [[nodiscard]] std::optional<Color> color() const;
    template <class Value, size_t count>
    [[nodiscard]] std::optional<Value> one_of(const std::array<Choice<Value>, count>& choices) const
    {
        for (const auto& [name, value] : choices) {
            if (name == text()) return value;
        }
        warn_unknown();
        return std::nullopt;
    }
    void warn(std::string_view what) const;

    static constexpr int kMostLength = 100'000;

private:
    void warn_unknown() const;

    const Tag& tag_;
    pugi::xml_attribute attribute_;
};

template <class Target>
struct AttributeRule {
    std::string_view name;  ///< without "is" in front
    void (*set)(Target& target, const Attribute& attribute);
};

template <class Target>
struct ChildRule {
    std::string_view name;
    void (*read)(Target& target, Tag& child);
};

/// An XML element while it is read. It remembers which attributes were taken; what nobody takes is warned about at
/// the end, so that no list of known names has to be kept beside the rules.
class Tag {
public:
    Tag(pugi::xml_node node, SourceText& source) : node_(node), source_(source) {}
    Tag(const Tag&) = delete;
    Tag& operator=(const Tag&) = delete;
    ~Tag() = default;

    [[nodiscard]] std::string_view name() const;  ///< without a namespace prefix
    [[nodiscard]] Position place() const;
    [[nodiscard]] Position place(const char* inside) const { return source_.place(inside); }
    void warn(std::string text) const { source_.warn(place(), name(), std::move(text)); }
    void warn(Position place, std::string text) const { source_.warn(place, name(), std::move(text)); }
    [[noreturn]] void fail(std::string reason) const;

    /// The text of an attribute, empty when there is none.
    [[nodiscard]] std::string_view value(std::string_view attribute);
    /// The text of an attribute that has to be there. @throws DefinitionError
    [[nodiscard]] std::string required(std::string_view attribute);
    void require(std::string_view attribute) { static_cast<void>(required(attribute)); }
    void ignore(std::string_view attribute) { static_cast<void>(value(attribute)); }
    [[nodiscard]] bool has_child(const char* name) const { return !node_.child(name).empty(); }
    void ignore_all() { ignores_all_ = true; }
    /// Warns about the attributes that nobody took. For the outermost element; those inside are finished as they are
    /// visited.
    void finish() const;

    /// Sets what the rules know; the other attributes are left for other rules.
    template <class Target>
    void read(std::span<const AttributeRule<Target>> rules, Target& target)
    {
        size_t at = 0;
        for (const auto attribute : node_.attributes()) {
            const std::string known = known_name(attribute.name());
            for (const auto& rule : rules) {
                if (rule.name != known) continue;
                take(at);
                rule.set(target, Attribute(*this, attribute));
            }
            ++at;
        }
    }

    /// Visits the child elements; `visit` answers whether it knew the child. Unknown ones are warned about.
    template <class Visit>
    void each_child(Visit visit)
    {
        for (const auto node : node_.children()) {
            if (node.type() != pugi::node_element) continue;
            Tag child(node, source_);
            if (visit(child)) {
                child.finish();
                continue;
            }
            warn(child.place(), "the element '" + std::string(child.name()) + "' is not known and passed over");
        }
    }

    [[nodiscard]] std::string text() const;
    [[nodiscard]] model::ExpressionText expression() const;

private:
    static std::string known_name(std::string_view written);
    void take(size_t attribute);

    pugi::xml_node node_;
    SourceText& source_;
    uint64_t taken_ = 0;  ///< a bit for each attribute, in their order
    bool ignores_all_ = false;
};

/// Reads a child by the rule of its name; false when there is none.
template <class Target>
bool read_child(std::span<const ChildRule<Target>> rules, Target& target, Tag& child)
{
    for (const auto& rule : rules) {
        if (rule.name != child.name()) continue;
        rule.read(target, child);
        return true;
    }
    return false;
}

// ------------------------------------------------------------------------- what rules do, made from a member

template <class Member>
struct MemberOwner;
template <class Class, class Type>
struct MemberOwner<Type Class::*> {
    using Owner = Class;
};
template <auto member>
using OwnerOf = typename MemberOwner<decltype(member)>::Owner;

template <auto member>
void set_text(OwnerOf<member>& target, const Attribute& attribute)
{
    target.*member = std::string(attribute.text());
}

template <auto member, int least = -Attribute::kMostLength, int most = Attribute::kMostLength>
void set_whole(OwnerOf<member>& target, const Attribute& attribute)
{
    if (const auto value = attribute.whole(least, most)) target.*member = *value;
}

template <auto member>
void set_length(OwnerOf<member>& target, const Attribute& attribute)
{
    set_whole<member, 0>(target, attribute);
}

template <auto member>
void set_number(OwnerOf<member>& target, const Attribute& attribute)
{
    if (const auto value = attribute.number()) target.*member = *value;
}

template <auto member>
void set_flag(OwnerOf<member>& target, const Attribute& attribute)
{
    if (const auto value = attribute.flag()) target.*member = *value;
}

template <auto member>
void set_color(OwnerOf<member>& target, const Attribute& attribute)
{
    if (const auto value = attribute.color()) target.*member = *value;
}

template <auto member, const auto& choices>
void set_choice(OwnerOf<member>& target, const Attribute& attribute)
{
    if (const auto value = attribute.one_of(choices)) target.*member = *value;
}

template <class Target>
void set_nothing(Target&, const Attribute&)
{
}

template <auto member>
void read_expression(OwnerOf<member>& target, Tag& child)
{
    target.*member = child.expression();
}

template <class Target>
void read_nothing(Target&, Tag& child)
{
    child.ignore_all();
}

}  // namespace velora::engine
