#pragma once

#include "tools/text/Json.h"

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qmv40::text {

/// A value in a document that is being read, with its path for messages, such as plans[0].moves[2].record. A missing
/// member, or a value of another type, throws InputError. The document must exist as long as the place.
struct DocumentPlace {
    const std::string& file;
    std::string path; ///< empty: the whole document
    const Json& value;

    /// Throws InputError: the path, then the problem ("is empty").
    [[noreturn]] void Refuse(const std::string& problem) const;

    /// Throws InputError when the object has a member with a name that is not in `names`.
    void AcceptOnly(std::initializer_list<std::string_view> names) const;
    /// A member of an object; empty when there is none.
    std::optional<DocumentPlace> Find(const std::string& name) const;
    DocumentPlace Member(const std::string& name) const;
    /// The elements of a list.
    std::vector<DocumentPlace> Elements() const;

    double Number() const;
    std::string Text() const;

private:
    void RequireObject() const;
};

} // namespace qmv40::text
