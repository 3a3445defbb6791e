// The exceptions of Python, which are declared in kestrix/errors.py.
#pragma once

#include <pybind11/pybind11.h>
#include <utility>

namespace Ksx::Python {

// Raises an exception of the module kestrix.errors, made with the arguments.
template <class... Arguments>
[[noreturn]] void raise(const char* name, Arguments&&... arguments)
{
    const pybind11::object type = pybind11::module_::import("kestrix.errors").attr(name);
    const pybind11::object error = type(std::forward<Arguments>(arguments)...);
    PyErr_SetObject(type.ptr(), error.ptr());
    throw pybind11::error_already_set();
}

// Raises EditError unless an edit was made.
inline void require(bool isDone, const char* otherwise)
{
    if (!isDone)
        raise("EditError", otherwise);
}

} // namespace Ksx::Python
