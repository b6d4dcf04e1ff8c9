#pragma once
#include <tl/expected.hpp>

#include <string>
#include <utility>

namespace vlCommon {

/** Why an operation failed, as one line made where the facts are: it names the thing, and for a
 * file also the place in it ("gallery.vls:12: materials[3]: 'shader' expected a string"). */
struct Error {
    std::string message;
};

/** The value of an operation whose failure is expected (files, shaders, user input), or its error.
 */
template <class T = void> using Result = tl::expected<T, Error>;

inline tl::unexpected<Error> fail(std::string message) {
    return tl::unexpected<Error>(Error{std::move(message)});
}

} // namespace vlCommon
