#include "values.h"

#include "data/attribute.h"
#include "data/desc/parameter.h"
#include "data/desc/valuetype.h"
#include "data/filename.h"
#include "data/latin1.h"

namespace Ksx::Python {

namespace py = pybind11;
namespace ValueType = Data::Desc::ValueType;

namespace {

struct TypeRow
{
    const char* name;
    unsigned type;
};

constexpr TypeRow Types[] = {
    {"bool", ValueType::Bool},
    {"int1", ValueType::Int1},
    {"int2", ValueType::Int2},
    {"int3", ValueType::Int3},
    {"int4", ValueType::Int4},
    {"float1", ValueType::Float1},
    {"float2", ValueType::Float2},
    {"float3", ValueType::Float3},
    {"float4", ValueType::Float4},
    {"text", ValueType::Text},
    {"string", ValueType::String},
    {"color", ValueType::ColorImage},
    {"grayscale", ValueType::GrayscaleImage},
    {"image", ValueType::Image},
};

py::object checked(PyObject* made)
{
    if (made == nullptr)
        throw py::error_already_set();
    return py::reinterpret_steal<py::object>(made);
}

template <class Number>
Number numberFrom(const py::handle& value)
{
    // A truth value is no number here, and a number no truth value.
    if (py::isinstance<py::bool_>(value))
        throw py::type_error("a number is wanted, and not a truth value");
    // A whole number never comes from a fraction, whose rest would be lost.
    const bool canFit = !std::is_integral_v<Number> || PyIndex_Check(value.ptr()) != 0;
    try {
        if (canFit)
            return value.cast<Number>();
    } catch (const py::cast_error&) { // raised below
    }
    throw py::type_error("a number that fits is wanted, and not " +
                         py::repr(value).cast<std::string>());
}

// The readers of values. A vector of one is a number.

template <class Vector>
py::object readVector(const boost::any& value)
{
    const auto& elements = boost::any_cast<const Vector&>(value).elements;
    if (elements.size() == 1)
        return py::cast(elements[0]);
    py::tuple tuple(elements.size());
    for (std::size_t i = 0; i < elements.size(); ++i)
        tuple[i] = elements[i];
    return std::move(tuple);
}

template <class Vector>
boost::any writeVector(const py::handle& value)
{
    Vector vector;
    using Number = std::decay_t<decltype(vector.elements[0])>;
    if (vector.elements.size() == 1) {
        vector.elements[0] = numberFrom<Number>(value);
        return vector;
    }
    if (!py::isinstance<py::sequence>(value) || py::isinstance<py::str>(value) ||
        py::isinstance<py::bytes>(value) || py::len(value) != vector.elements.size())
        throw py::type_error(std::to_string(vector.elements.size()) +
                             " numbers are wanted, and not " + py::repr(value).cast<std::string>());
    const auto sequence = py::reinterpret_borrow<py::sequence>(value);
    for (std::size_t i = 0; i < vector.elements.size(); ++i)
        vector.elements[i] = numberFrom<Number>(sequence[i]);
    return vector;
}

boost::any writeBool(const py::handle& value)
{
    if (!py::isinstance<py::bool_>(value))
        throw py::type_error("True or False is wanted, and not " +
                             py::repr(value).cast<std::string>());
    return value.cast<bool>();
}

std::string textIn(const py::handle& value)
{
    if (!py::isinstance<py::str>(value))
        throw py::type_error("a text is wanted, and not " + py::repr(value).cast<std::string>());
    return textFrom(py::reinterpret_borrow<py::str>(value));
}

boost::any writeText(const py::handle& value)
{
    return textIn(value);
}

struct ShapeRow
{
    unsigned type;
    boost::any (*write)(const py::handle&);
};

constexpr ShapeRow Shapes[] = {
    {ValueType::Bool, &writeBool},
#define VALUE_TYPE(...)
#define VECTOR_TYPE(name, bit, value, ...) {ValueType::name, &writeVector<Orv::Data::value>},
#define TEXT_TYPE(name, ...)               {ValueType::name, &writeText},
#include "data/desc/valuetypes.inc"
};

struct ReaderRow
{
    const std::type_info& type;
    py::object (*read)(const boost::any&);
};

template <class T>
py::object readPlain(const boost::any& value)
{
    return py::cast(boost::any_cast<T>(value));
}

py::object readText(const boost::any& value)
{
    return textOf(boost::any_cast<const std::string&>(value));
}

const ReaderRow Readers[] = {
    {typeid(bool), &readPlain<bool>}, {typeid(Orv::Data::UInt), &readPlain<Orv::Data::UInt>},
    {typeid(int), &readPlain<int>},   {typeid(float), &readPlain<float>},
    {typeid(std::string), &readText},
#define VALUE_TYPE(...)
#define VECTOR_TYPE(name, bit, value, ...)                                                         \
    {typeid(Orv::Data::value), &readVector<Orv::Data::value>},
#define TEXT_TYPE(...)
#include "data/desc/valuetypes.inc"
};

} // namespace

py::str textOf(const std::string& text)
{
    return checked(
        PyUnicode_DecodeLatin1(text.data(), static_cast<Py_ssize_t>(text.size()), nullptr));
}

py::str textOf(const QString& text)
{
    return textOf(Orv::toLatin1(text));
}

std::string textFrom(const py::str& text)
{
    return checked(PyUnicode_AsLatin1String(text.ptr())).cast<py::bytes>();
}

py::str messageOf(const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    return checked(PyUnicode_DecodeUTF8(bytes.constData(), bytes.size(), "replace"));
}

QString wideTextFrom(const py::str& text)
{
    return QString::fromLatin1(textFrom(text).c_str());
}

py::object pathOf(const QString& path)
{
    const std::string bytes = Orv::toBytes(path);
    const py::object name = checked(
        PyUnicode_DecodeFSDefaultAndSize(bytes.data(), static_cast<Py_ssize_t>(bytes.size())));
    return py::module_::import("pathlib").attr("Path")(name);
}

QString pathFrom(const py::handle& path)
{
    PyObject* bytes = nullptr;
    if (PyUnicode_FSConverter(path.ptr(), &bytes) == 0)
        throw py::error_already_set();
    return Orv::fromBytes(std::string(py::reinterpret_steal<py::bytes>(bytes)));
}

QStringList pathsFrom(const py::iterable& paths)
{
    if (py::isinstance<py::str>(paths))
        throw py::type_error("a list of paths is wanted, and not a text");
    QStringList list;
    for (const py::handle path : paths)
        list << pathFrom(path);
    return list;
}

std::string typeName(unsigned type)
{
    for (const TypeRow& row : Types)
        if (row.type == type)
            return row.name;
    return std::to_string(type);
}

unsigned typeFrom(const std::string& name)
{
    for (const TypeRow& row : Types)
        if (row.name == name)
            return row.type;
    throw py::value_error("no type is called \"" + name + '"');
}

py::object valueOf(const boost::any& value)
{
    for (const ReaderRow& row : Readers)
        if (row.type == value.type())
            return row.read(value);
    return py::none();
}

boost::any valueFrom(const py::handle& value, unsigned type)
{
    for (const ShapeRow& row : Shapes)
        if (row.type == ValueType::plain(type))
            return row.write(value);
    throw py::value_error("the type " + typeName(type) + " has no values");
}

boost::any parameterValueFrom(const py::handle& value, const Data::Desc::Parameter& parameter)
{
    if (py::isinstance<py::str>(value))
        for (const Data::Desc::ValueEntry& entry : parameter.entries)
            if (entry.identifier == textFrom(py::reinterpret_borrow<py::str>(value)))
                return entry.value;
    // The single integer of a parameter is the index of an item.
    if (ValueType::plain(parameter.type) == ValueType::Int1)
        return numberFrom<Orv::Data::UInt>(value);
    return valueFrom(value, parameter.type);
}

py::list usagesOf(const std::vector<Core::InterfaceUsage>& usages)
{
    py::list list;
    for (const Core::InterfaceUsage& usage : usages)
        list.append(py::make_tuple(textOf(usage.name), textOf(usage.components)));
    return list;
}

std::vector<Core::InterfaceUsage> usagesFrom(const py::iterable& usages)
{
    std::vector<Core::InterfaceUsage> list;
    for (const py::handle usage : usages) {
        if (!py::isinstance<py::tuple>(usage) || py::len(usage) != 2)
            throw py::type_error("a pair of a name and of components is wanted, and not " +
                                 py::repr(usage).cast<std::string>());
        const auto pair = py::reinterpret_borrow<py::tuple>(usage);
        list.push_back({textIn(pair[0]), textIn(pair[1])});
    }
    return list;
}

} // namespace Ksx::Python
