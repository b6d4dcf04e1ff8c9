#pragma once
#include <vlCommon/Result.h>
#include <vlScripts/Value.h>

#include <functional>
#include <span>
#include <string>
#include <vector>

namespace vlScripts {

/** What scripts can do with the things of one kind, said once: reading, writing, listing and the
 *  documentation's table come from it. A thing is looked up by its name each time, so one that is
 *  gone gives an error. */
struct ObjectKind {
    struct Field {
        std::string name;
        std::string type;        ///< for people: "number", "{x, y, z}", "text or nil"
        std::string description; ///< with unit and range
        std::function<vlCommon::Result<Value>(const std::string& object)> get;
        /// Empty for a field that cannot be written. An error leaves the thing as it was.
        std::function<vlCommon::Result<>(const std::string& object, const Value& value)> set;
    };
    struct Method {
        std::string name;
        std::string arguments; ///< for people: "target, up"
        std::string description;
        std::function<vlCommon::Result<Values>(const std::string& object,
                                               std::span<const Value> arguments)>
                call;
    };

    std::string name;
    std::vector<Field> fields;
    std::vector<Method> methods;
};

} // namespace vlScripts
