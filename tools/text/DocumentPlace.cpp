#include "tools/text/DocumentPlace.h"

#include <algorithm>

namespace qmv40::text {

void DocumentPlace::Refuse(const std::string& problem) const {
    throw InputError{file, {}, (path.empty() ? "the document" : path) + " " + problem};
}

void DocumentPlace::RequireObject() const {
    if (!value.IsObject()) Refuse("is not an object");
}

void DocumentPlace::AcceptOnly(std::initializer_list<std::string_view> names) const {
    RequireObject();
    for (const Json::Member& member : value.AllMembers()) {
        if (std::ranges::find(names, member.name) == names.end()) {
            Refuse("has a member " + member.name + ", which means nothing here");
        }
    }
}

std::optional<DocumentPlace> DocumentPlace::Find(const std::string& name) const {
    RequireObject();
    const Json* const found = value.Find(name);
    if (found == nullptr) return std::nullopt;
    return DocumentPlace{file, path + (path.empty() ? "" : ".") + name, *found};
}

DocumentPlace DocumentPlace::Member(const std::string& name) const {
    const auto found = Find(name);
    if (!found) Refuse("has no member " + name);
    return *found;
}

std::vector<DocumentPlace> DocumentPlace::Elements() const {
    if (!value.IsArray()) Refuse("is not a list");
    std::vector<DocumentPlace> elements;
    for (const Json& element : value.AllElements()) {
        elements.push_back({file, path + "[" + std::to_string(elements.size()) + "]", element});
    }
    return elements;
}

double DocumentPlace::Number() const {
    const std::optional<double> number = value.Number();
    if (!number) Refuse("is not a number");
    return *number;
}

std::string DocumentPlace::Text() const {
    if (value.Text() == nullptr) Refuse("is not a text");
    return *value.Text();
}

} // namespace qmv40::text
