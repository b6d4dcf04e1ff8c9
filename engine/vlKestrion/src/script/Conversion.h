#pragma once
#include <vlGraphics/Camera.h>
#include <vlGraphics/Compositor.h>
#include <vlGraphics/Enumerations.h>
#include <vlGraphics/Handle.h>
#include <vlGraphics/Mesh.h>
#include <vlGraphics/Node.h>
#include <vlGraphics/Program.h>
#include <vlGraphics/Sampler.h>
#include <vlGraphics/Shader.h>
#include <vlGraphics/Texture.h>
#include <vlKestrion/Material.h>
#include <vlScripts/Value.h>

#include <cmath>
#include <limits>
#include <type_traits>

namespace vlKestrion {

using vlCommon::Result;
using vlMemory::String;
using vlScripts::Value;

/// Three numbers of a position, a scale, a colour.
struct Triple {
    vlMaths::Vector vector;
};

/// What scripts call a kind that others refer to, and who owns it.
template <class T> struct Referred;
#define VL_REFERRED(type, manager, text)                                                           \
    template <> struct Referred<type> {                                                            \
        using Manager = manager;                                                                   \
        static constexpr const char* name = text;                                                  \
    }
VL_REFERRED(vlGraphics::Node, vlGraphics::NodeManager, "node");
VL_REFERRED(vlGraphics::Camera, vlGraphics::CameraManager, "camera");
VL_REFERRED(vlGraphics::Mesh, vlGraphics::MeshManager, "mesh");
VL_REFERRED(vlGraphics::Shader, vlGraphics::ShaderManager, "shader");
VL_REFERRED(vlGraphics::Program, vlGraphics::ProgramManager, "program");
VL_REFERRED(vlGraphics::Texture, vlGraphics::TextureManager, "texture");
VL_REFERRED(vlGraphics::Sampler, vlGraphics::SamplerManager, "sampler");
VL_REFERRED(vlGraphics::Compositor, vlGraphics::CompositorManager, "compositor");
VL_REFERRED(Material, MaterialManager, "material");
#undef VL_REFERRED

/// The names of an enumeration's values.
std::vector<std::pair<std::uint32_t, String>> namesOf(vlGraphics::BLEND);
std::vector<std::pair<std::uint32_t, String>> namesOf(vlGraphics::BLEND_OP);
std::vector<std::pair<std::uint32_t, String>> namesOf(vlGraphics::COLOR_WRITE_ENABLE);
std::vector<std::pair<std::uint32_t, String>> namesOf(vlGraphics::FILL_MODE);
std::vector<std::pair<std::uint32_t, String>> namesOf(vlGraphics::CULL_MODE);
std::vector<std::pair<std::uint32_t, String>> namesOf(vlGraphics::COMPARISON_FUNCTION);
std::vector<std::pair<std::uint32_t, String>> namesOf(vlGraphics::DEPTH_WRITE_MASK);
std::vector<std::pair<std::uint32_t, String>> namesOf(vlGraphics::STENCIL_OP);
std::vector<std::pair<std::uint32_t, String>> namesOf(vlGraphics::TEXTURE_ADDRESS_MODE);
std::vector<std::pair<std::uint32_t, String>> namesOf(vlGraphics::FILTER);
std::vector<std::pair<std::uint32_t, String>> namesOf(vlGraphics::FORMAT);
std::vector<std::pair<std::uint32_t, String>> namesOf(vlGraphics::PRIMITIVE_TOPOLOGY);
std::vector<std::pair<std::uint32_t, String>> namesOf(vlGraphics::RENDER_FLAG);
std::vector<std::pair<std::uint32_t, String>> namesOf(vlGraphics::PROGRAM_TYPE);

Value nameOrNumber(const std::vector<std::pair<std::uint32_t, String>>& names, std::uint32_t value);
Result<std::uint32_t> valueNamed(const std::vector<std::pair<std::uint32_t, String>>& names,
                                 const Value& value);
/// "one of SOLID, WIREFRAME"
String listNames(const std::vector<std::pair<std::uint32_t, String>>& names);

/// A number that a float can hold.
Result<float> finiteFrom(const Value& value);
Result<vlScripts::Numbers> finiteNumbersFrom(const Value& value, std::uint8_t count);

/** How a C++ value of a field looks to scripts: what it is called, and its ways there and back. */
template <class V, class = void> struct Conversion;

template <> struct Conversion<bool> {
    static String type() { return "true or false"; }
    static Value write(bool value) { return value; }
    static Result<bool> read(const Value& value) {
        if (const auto boolean = value.asBool()) return *boolean;
        return vlCommon::fail("expected true or false, not " + value.describeKind());
    }
};

template <class V>
struct Conversion<V, std::enable_if_t<std::is_integral_v<V> && !std::is_same_v<V, bool>>> {
    static String type() { return "whole number"; }
    static Value write(V value) { return static_cast<std::int64_t>(value); }
    static Result<V> read(const Value& value) {
        constexpr auto low = static_cast<std::int64_t>(std::numeric_limits<V>::min());
        constexpr auto high = static_cast<std::int64_t>(std::numeric_limits<V>::max());
        const auto whole = value.asInteger();
        if (whole && *whole >= low && *whole <= high) return static_cast<V>(*whole);
        return vlCommon::fail("expected a whole number from " + std::to_string(low) + " to " +
                              std::to_string(high));
    }
};

template <> struct Conversion<float> {
    static String type() { return "number"; }
    static Value write(float value) { return static_cast<double>(value); }
    static Result<float> read(const Value& value) { return finiteFrom(value); }
};

template <> struct Conversion<String> {
    static String type() { return "text"; }
    static Value write(const String& value) { return value; }
    static Result<String> read(const Value& value) {
        if (const String* text = value.asText()) return *text;
        return vlCommon::fail("expected a text, not " + value.describeKind());
    }
};

template <> struct Conversion<Triple> {
    static String type() { return "{x, y, z}"; }
    static Value write(const Triple& value) {
        return vlScripts::Numbers{{value.vector.x, value.vector.y, value.vector.z, 0}, 3};
    }
    static Result<Triple> read(const Value& value);
};

template <> struct Conversion<vlMaths::Quaternion> {
    static String type() { return "{x, y, z, w}"; }
    static Value write(const vlMaths::Quaternion& value) {
        return vlScripts::Numbers{{value.x, value.y, value.z, value.w}, 4};
    }
    static Result<vlMaths::Quaternion> read(const Value& value);
};

template <> struct Conversion<std::array<float, 4>> {
    static String type() { return "{x, y, z, w}"; }
    static Value write(const std::array<float, 4>& value) {
        return vlScripts::Numbers{{value[0], value[1], value[2], value[3]}, 4};
    }
    static Result<std::array<float, 4>> read(const Value& value);
};

template <class V> struct Conversion<V, std::enable_if_t<std::is_enum_v<V>>> {
    static String type() { return listNames(namesOf(V{})); }
    static Value write(V value) {
        return nameOrNumber(namesOf(V{}), static_cast<std::uint32_t>(value));
    }
    static Result<V> read(const Value& value) {
        return valueNamed(namesOf(V{}), value).map([](auto number) {
            return static_cast<V>(number);
        });
    }
};

/// The name of a thing of that kind: given as text or as the thing itself. Empty for nil.
Result<String> referredName(const Value& value, const char* kind);

template <class T> struct Conversion<T*> {
    static String type() { return String(Referred<T>::name) + " or nil"; }
    static Value write(const T* value) {
        if (value == nullptr) return {};
        return vlScripts::Object{Referred<T>::name, value->getName()};
    }
    static Result<T*> read(const Value& value) {
        const auto name = referredName(value, Referred<T>::name);
        if (!name) return tl::unexpected(name.error());
        if (name->empty()) return nullptr;
        auto* manager = Referred<T>::Manager::getInstance();
        if (T* found = manager == nullptr ? nullptr : manager->get(*name)) return found;
        return vlCommon::fail(String("there is no ") + Referred<T>::name + " '" + *name + "'");
    }
};

template <class T> struct Conversion<vlGraphics::Handle<T>> {
    static String type() { return Conversion<T*>::type(); }
    static Value write(vlGraphics::Handle<T> value) {
        auto* manager = Referred<T>::Manager::getInstance();
        // Also while nothing bears the name: what is told then is that it does not exist.
        const String name(manager == nullptr ? "" : manager->nameOf(value));
        return name.empty() ? Value() : Value(vlScripts::Object{Referred<T>::name, name});
    }
    static Result<vlGraphics::Handle<T>> read(const Value& value) {
        return Conversion<T*>::read(value).map([](const T* found) {
            return found == nullptr ? vlGraphics::Handle<T>{}
                                    : Referred<T>::Manager::getInstance()->handleOf(found);
        });
    }
};

template <class V> struct Conversion<std::vector<V>> {
    static String type() {
        const String each = Conversion<V>::type();
        return "list of " + each.substr(0, each.find(" or nil"));
    }
    static Value write(const std::vector<V>& values) {
        vlScripts::Table table;
        for (const V& value : values)
            table.items.push_back(Conversion<V>::write(value));
        return table;
    }
};

template <> struct Conversion<vlScripts::Object> {
    static String type() { return "entity"; }
    static Value write(const vlScripts::Object& value) { return value; }
};

} // namespace vlKestrion
