// Values, texts and paths of packages as objects of Python.
#pragma once

#include "ksx/core/graphinterface.h"
#include <QString>
#include <QStringList>
#include <boost/any.hpp>
#include <pybind11/pybind11.h>
#include <string>
#include <vector>

namespace Ksx::Data::Desc {
struct Parameter;
} // namespace Ksx::Data::Desc

namespace Ksx::Python {

// Texts of documents are Latin-1. Raises UnicodeEncodeError for a character outside of it.
pybind11::str textOf(const std::string& text);
pybind11::str textOf(const QString& text);
std::string textFrom(const pybind11::str& text);
QString wideTextFrom(const pybind11::str& text);
// Returns a text for users, which may name a file and keeps all of Unicode.
pybind11::str messageOf(const QString& text);

// Paths are pathlib.Path objects, and any object that names a path where one is taken. Names keep
// their bytes.
pybind11::object pathOf(const QString& path);
QString pathFrom(const pybind11::handle& path);
QStringList pathsFrom(const pybind11::iterable& paths);

// The name of a type: "bool", "int1" to "int4", "float1" to "float4", "text", "string", and "color",
// "grayscale" and "image" for images. The number as text for any other.
std::string typeName(unsigned type);
// Raises ValueError for an unknown name.
unsigned typeFrom(const std::string& name);

// Booleans, numbers, texts, and tuples of numbers. None for an empty value.
pybind11::object valueOf(const boost::any& value);

// Returns a value in the shape of a type, as inputs and function nodes take it. Raises TypeError for
// a value of another shape, and ValueError for a type without values.
boost::any valueFrom(const pybind11::handle& value, unsigned type);
// Returns a value as a parameter takes it. The text of one of its choices stands for its value.
boost::any parameterValueFrom(const pybind11::handle& value,
                              const Data::Desc::Parameter& parameter);

// The usages of an input or output: pairs of a name and of components.
pybind11::list usagesOf(const std::vector<Core::InterfaceUsage>& usages);
std::vector<Core::InterfaceUsage> usagesFrom(const pybind11::iterable& usages);

} // namespace Ksx::Python
