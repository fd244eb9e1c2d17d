#include "tools/text/Json.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <type_traits>

namespace qmv40::text {

namespace {

using Library = nlohmann::ordered_json;

// NOLINTNEXTLINE(misc-no-recursion): values contain values
Library ToLibrary(const Json& json) {
    const auto convert = [](const auto& value) -> Library { // NOLINT(misc-no-recursion)
        using Type = std::remove_cvref_t<decltype(value)>;
        if constexpr (std::is_same_v<Type, Json::Members>) {
            Library::object_t object;
            for (const Json::Member& member : value) object.emplace_back(member.name, ToLibrary(member.value));
            return object;
        } else if constexpr (std::is_same_v<Type, Json::Elements>) {
            Library::array_t array;
            std::ranges::transform(value, std::back_inserter(array), ToLibrary);
            return array;
        } else {
            return value;
        }
    };
    return std::visit(convert, json.Content());
}

std::string Dumped(const Library& value, int indent) {
    return value.dump(indent, ' ', false, Library::error_handler_t::replace);
}

bool IsNamedPair(const Json& value) {
    return value.AllElements().size() == 2 && value.AllElements()[0].Text() != nullptr;
}

/// Builds the value from the parser's events.
class Builder final : public nlohmann::json_sax<Library> {
public:
    Builder(const std::string& fileName, const std::string& theContent) : file(fileName), content(theContent) {}

    Json Result() && { return std::move(result); }

    bool null() override { return Add({}); }
    bool boolean(bool value) override { return Add(value); }
    bool number_integer(number_integer_t value) override { return Add(value); }
    bool number_unsigned(number_unsigned_t value) override { return Add(value); }
    bool number_float(number_float_t value, const string_t& /*text*/) override { return Add(value); }
    bool string(string_t& value) override { return Add(value); }
    bool binary(binary_t& /*value*/) override { return false; }
    bool start_object(std::size_t /*size*/) override { return Open(Json::Object()); }
    bool start_array(std::size_t /*size*/) override { return Open(Json::Array()); }
    bool end_object() override { return Close(); }
    bool end_array() override { return Close(); }
    bool key(string_t& name) override {
        if (open.back()->Find(name) != nullptr) throw InputError{file, {}, "the member " + name + " stands twice"};
        nextName = name;
        return true;
    }
    bool parse_error(std::size_t position, const std::string& /*token*/,
                     const nlohmann::detail::exception& error) override {
        constexpr int numberOutOfRange = 406;
        if (error.id == numberOutOfRange) throw InputError{file, {}, "holds a number that is too large"};
        const auto end = content.begin() + static_cast<std::ptrdiff_t>(std::min(position, content.size()));
        const auto line = static_cast<std::size_t>(std::count(content.begin(), end, '\n')) + 1;
        throw InputError{file, line, "is not JSON from here on"};
    }

private:
    Json& Place(Json value) {
        if (open.empty()) return result = std::move(value);
        if (open.back()->IsArray()) return open.back()->PushBack(std::move(value));
        return (*open.back())[nextName] = std::move(value);
    }
    bool Add(Json value) {
        Place(std::move(value));
        return true;
    }
    bool Open(Json value) {
        open.push_back(&Place(std::move(value)));
        return true;
    }
    bool Close() {
        open.pop_back();
        return true;
    }

    const std::string& file;
    const std::string& content;
    Json result;
    std::vector<Json*> open; ///< outermost first
    std::string nextName;
};

} // namespace

Json::Json(std::nullptr_t) noexcept : value(nullptr) {}
Json::Json(bool flag) : value(flag) {}
Json::Json(double number) : value(number) {}
Json::Json(const char* text) : value(std::string(text)) {}
Json::Json(std::string text) : value(std::move(text)) {}
Json::Json(std::string_view text) : value(std::string(text)) {}
Json::Json(const std::vector<double>& numbers) : value(Elements(numbers.begin(), numbers.end())) {}
Json::Json(const std::vector<std::string>& texts) : value(Elements(texts.begin(), texts.end())) {}

Json::Json(std::initializer_list<Json> values) {
    if (!std::ranges::all_of(values, IsNamedPair)) {
        value = Elements(values);
        return;
    }
    Members members;
    members.reserve(values.size());
    for (const Json& pair : values) members.push_back({*pair.AllElements()[0].Text(), pair.AllElements()[1]});
    value = std::move(members);
}

Json Json::Array() {
    Json array;
    array.value = Elements();
    return array;
}

Json Json::Object() {
    Json object;
    object.value = Members();
    return object;
}

std::optional<double> Json::Number() const {
    if (const auto* const number = std::get_if<double>(&value)) return *number;
    if (const auto* const number = std::get_if<std::int64_t>(&value)) return static_cast<double>(*number);
    if (const auto* const number = std::get_if<std::uint64_t>(&value)) return static_cast<double>(*number);
    return std::nullopt;
}

const Json* Json::Find(std::string_view name) const {
    const auto member = std::ranges::find(AllMembers(), name, &Member::name);
    return member == AllMembers().end() ? nullptr : &member->value;
}

Json& Json::operator[](std::string_view name) {
    auto& members = std::get<Members>(value);
    const auto member = std::ranges::find(members, name, &Member::name);
    if (member != members.end()) return member->value;
    members.push_back({std::string(name), {}});
    return members.back().value;
}

void Json::Update(const Json& other) {
    for (const Member& member : other.AllMembers()) (*this)[member.name] = member.value;
}

Json& Json::PushBack(Json element) { return std::get<Elements>(value).emplace_back(std::move(element)); }

const Json::Members& Json::AllMembers() const {
    static const Members none;
    const auto* const members = std::get_if<Members>(&value);
    return members == nullptr ? none : *members;
}

const Json::Elements& Json::AllElements() const {
    static const Elements none;
    const auto* const elements = std::get_if<Elements>(&value);
    return elements == nullptr ? none : *elements;
}

std::string Json::Dump(std::optional<int> indent) const { return Dumped(ToLibrary(*this), indent.value_or(-1)); }

Json ParseJson(const std::string& fileName, const std::string& content) {
    Builder builder(fileName, content);
    Library::sax_parse(content, &builder);
    return std::move(builder).Result();
}

Json PointJson(const model::Vector3& point) { return {{"X", point.x}, {"Y", point.y}, {"Z", point.z}}; }

Json DirectionJson(const model::Vector3& direction) {
    return {{"i", direction.x}, {"j", direction.y}, {"k", direction.z}};
}

Json ErrorJson(const InputError& error) {
    return {{"error", {{"file", error.file}, {"line", error.line}, {"description", error.reason}}}};
}

Json ErrorJson(const std::string& description) {
    return {{"error", {{"file", nullptr}, {"line", nullptr}, {"description", description}}}};
}

void PrintDocument(std::string_view command, const Json& content, std::ostream& out) {
    constexpr int version = 1;
    constexpr int indent = 2;
    Json document{{"format", "qmv40/" + std::string(command)}, {"version", version}};
    document.Update(content);
    out << document.Dump(indent) << '\n';
}

std::string ValidUtf8(const std::string& text) { return Library::parse(Dumped(text, -1)).get<std::string>(); }

} // namespace qmv40::text
