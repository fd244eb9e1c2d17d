#pragma once

#include "tools/model/Vector3.h"
#include "tools/text/Failures.h"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace qmv40::text {

/// A JSON value. Members of an object keep the order in which they were added.
///
/// In braces, a list of pairs that each begin with a text is an object, and every other list is an array:
/// {{"X", 1.0}, {"Y", 2.0}} is an object with two members, {1.0, 2.0} an array.
class Json {
public:
    struct Member;
    using Members = std::vector<Member>;
    using Elements = std::vector<Json>;
    using Value =
        std::variant<std::nullptr_t, bool, std::int64_t, std::uint64_t, double, std::string, Elements, Members>;

    // NOLINTBEGIN(google-explicit-constructor): so that values can be written in braces
    Json(std::nullptr_t = nullptr) noexcept;
    Json(bool flag);
    Json(std::signed_integral auto number);
    Json(std::unsigned_integral auto number);
    Json(double number);
    Json(const char* text);
    Json(std::string text);
    Json(std::string_view text);
    Json(const std::vector<double>& numbers);
    Json(const std::vector<std::string>& texts);
    Json(std::initializer_list<Json> values);
    /// Null when there is no value.
    template <typename Inner> Json(const std::optional<Inner>& maybe);
    // NOLINTEND(google-explicit-constructor)
    static Json Array();
    static Json Object();

    bool IsNull() const { return std::holds_alternative<std::nullptr_t>(value); }
    bool IsObject() const { return std::holds_alternative<Members>(value); }
    bool IsArray() const { return std::holds_alternative<Elements>(value); }
    /// The number; nothing when it is none.
    std::optional<double> Number() const;
    const bool* Flag() const { return std::get_if<bool>(&value); }
    const std::string* Text() const { return std::get_if<std::string>(&value); }

    /// The member of that name of an object; null when there is none.
    const Json* Find(std::string_view name) const;
    /// The member of that name of an object, added at its end when there is none.
    Json& operator[](std::string_view name);
    /// Adds the members of another object, or replaces those of the same names.
    void Update(const Json& other);
    Json& PushBack(Json element);
    // Of an object or an array; empty for any other value.
    const Members& AllMembers() const;
    const Elements& AllElements() const;
    const Value& Content() const { return value; }

    /// With `indent` blanks for each level; without it, in one line. Doubles read back to the same bits. A number that
    /// is not finite is written as null. Bytes that are not UTF-8 become the replacement character.
    std::string Dump(std::optional<int> indent = std::nullopt) const;

private:
    Value value;
};

struct Json::Member {
    std::string name;
    Json value;
};

Json::Json(std::signed_integral auto number) : value(std::int64_t{number}) {}
Json::Json(std::unsigned_integral auto number) : value(std::uint64_t{number}) {}
template <typename Inner> Json::Json(const std::optional<Inner>& maybe) : Json(maybe ? Json(*maybe) : Json()) {}

/// The JSON document in `content`. Throws InputError, with the file's name, for a text that is not JSON, and for an
/// object that names a member twice.
Json ParseJson(const std::string& fileName, const std::string& content);

Json PointJson(const model::Vector3& point);
Json DirectionJson(const model::Vector3& direction);

// What a document says when a command could not do its work: {"error":{"file","line","description"}}
Json ErrorJson(const InputError& error);
Json ErrorJson(const std::string& description);

/// Prints the one document of a command, indented, with a line end. It begins with "format", which is qmv40/<command>,
/// and "version"; the members of `content` follow. docs/schema/<command>.json describes it.
void PrintDocument(std::string_view command, const Json& content, std::ostream& out);

/// The text with every byte that is not UTF-8 replaced, as documents have it.
std::string ValidUtf8(const std::string& text);

} // namespace qmv40::text
