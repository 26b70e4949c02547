#pragma once

#include <string>
#include <type_traits>
#include <vector>

#include "arguments.h"

/// \file
/// Operations of the library as functions of the module.
namespace binding {

/// What is said of an operation; the rest of its documentation follows from its arguments.
struct Operation {
  const char* name;          ///< in Python
  const char* interface;     ///< what it calls, as in the headers; several with commas between them
  const char* summary;       ///< what it does, sentences
  const char* result = "";   ///< what it returns
  const char* refusal = "";  ///< when it raises ValueError, beyond what the arguments' types say
};

/// An argument as the documentation shows it.
struct Parameter {
  std::string name;
  std::string type;
};

/// The documentation of an operation, in NumPy's style. What each parameter means follows from its name.
std::string documentation(const Operation& operation, const std::vector<Parameter>& parameters,
                          const std::string& resultType);

/// Makes a name public, and remembers what it is in C++ (nothing for ""), for the table in the documentation.
void remember(py::module_& module, const char* name, const char* interface);

/// How the documentation calls a type.
template <class Type>
struct TypeName {
  static std::string text() {
    if constexpr (std::is_same_v<Type, bool>) return "bool";
    if constexpr (std::is_integral_v<Type>) return "int";
    if constexpr (std::is_floating_point_v<Type>) return "float";
    return "";
  }
};
template <int bits>
struct TypeName<ImageOf<bits>> {
  static std::string text() { return bits == 0 ? "Image" : "Image of " + std::to_string(bits) + " bits"; }
};
template <std::int64_t least, std::int64_t most>
struct TypeName<Number<least, most>> {
  static std::string text() {
    std::string name = "int";
    if (least > std::numeric_limits<int>::min()) name += " from " + std::to_string(least);
    if (most < std::numeric_limits<int>::max()) name += " to " + std::to_string(most);
    return name;
  }
};
#define BINDING_TYPE_NAME(Type, name)          \
  template <>                                  \
  struct TypeName<Type> {                      \
    static std::string text() { return name; } \
  }
BINDING_TYPE_NAME(Image, "Image");
BINDING_TYPE_NAME(Region, "Region");
BINDING_TYPE_NAME(POINT, "(int, int)");
BINDING_TYPE_NAME(SIZE, "(int, int)");
BINDING_TYPE_NAME(RECT, "(int, int, int, int)");
BINDING_TYPE_NAME(Colour, "(int, int, int) or \"#rrggbb\"");
BINDING_TYPE_NAME(Palette, "list of colours, or ndarray (N x 3, uint8)");
BINDING_TYPE_NAME(Mask, "ndarray (height x width, bool), optional");
BINDING_TYPE_NAME(RequiredMask, "ndarray (height x width, bool)");
BINDING_TYPE_NAME(MaskResult, "ndarray (height x width, bool) or None");
BINDING_TYPE_NAME(Coverage, "ndarray (height x width, uint8 or bool), or Image of 8 bits");
BINDING_TYPE_NAME(Points, "list of (int, int), or ndarray (N x 2)");
BINDING_TYPE_NAME(Clip, "Region, optional");
BINDING_TYPE_NAME(py::object, "object");
BINDING_TYPE_NAME(std::string, "str");
#undef BINDING_TYPE_NAME
template <class Type>
struct TypeName<std::optional<Type>> {
  static std::string text() { return TypeName<Type>::text() + ", optional"; }
};
template <class Type>
struct TypeName<std::vector<Type>> {
  static std::string text() { return "list of " + TypeName<Type>::text(); }
};
template <class... Types>
struct TypeName<std::tuple<Types...>> {
  static std::string text() {
    std::string joined;
    ((joined += (joined.empty() ? "" : ", ") + TypeName<Types>::text()), ...);
    return "tuple of " + joined;
  }
};

template <class Function>
struct Signature : Signature<decltype(&Function::operator())> {};
template <class Result, class Owner, class... Arguments>
struct Signature<Result (Owner::*)(Arguments...) const> {
  static std::string result() {
    if constexpr (std::is_void_v<Result>)
      return "";
    else
      return TypeName<Result>::text();
  }
  static std::vector<std::string> arguments() { return {TypeName<std::decay_t<Arguments>>::text()...}; }
};

inline void collect(std::vector<std::string>& names, const py::arg& argument) {
  names.emplace_back(argument.name);
}

/// Adds a function to the module. It runs without the lock of the interpreter: what it calls works on pixels.
template <class Function, class... Arguments>
void define(py::module_& module, const Operation& operation, const Function& function,
            const Arguments&... arguments) {
  std::vector<std::string> names;
  (collect(names, arguments), ...);
  const std::vector<std::string> types = Signature<Function>::arguments();
  std::vector<Parameter> parameters;
  for (std::size_t i = 0; i < names.size(); ++i) parameters.push_back({names[i], types.at(i)});
  const std::string words = documentation(operation, parameters, Signature<Function>::result());
  module.def(operation.name, function, arguments..., py::call_guard<py::gil_scoped_release>(), words.c_str());
  remember(module, operation.name, operation.interface);
}

/// What the documentation needs of an argument, and its default.
using py::arg;
inline py::arg_v origin(const char* name) { return {name, py::make_tuple(0, 0)}; }
inline py::arg_v none(const char* name) { return {name, py::none()}; }

}  // namespace binding
