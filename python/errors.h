// The exceptions of Python, which are declared in kestrix/errors.py.
#pragma once

#include <cmath>
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

// Raises KeyError for a key of which there is nothing.
[[noreturn]] inline void raiseMissing(const pybind11::object& key)
{
    PyErr_SetObject(PyExc_KeyError, key.ptr());
    throw pybind11::error_already_set();
}

// Raises EditError unless an edit was made.
inline void require(bool isDone, const char* otherwise)
{
    if (!isDone)
        raise("EditError", otherwise);
}

// Raises EditError unless a number can be written. A number has the range of a float.
inline void requireFinite(double number)
{
    require(std::isfinite(static_cast<float>(number)), "a finite number is wanted");
}

} // namespace Ksx::Python
