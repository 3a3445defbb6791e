#include "support/filtertext.h"

#include "support/packagetext.h"

namespace TestSupport {

namespace {

constexpr unsigned GraphUid = 4;
constexpr unsigned FirstInputUid = 101;
constexpr unsigned FirstOutputUid = 201;

std::string leaf(const std::string& name, const std::string& value)
{
    return "<" + name + " v=\"" + escaped(value) + "\"/>";
}

std::string leaf(const std::string& name, unsigned value)
{
    return leaf(name, std::to_string(value));
}

std::string holding(const std::string& name, const std::string& content)
{
    return "<" + name + ">" + content + "</" + name + ">";
}

std::string holding(const std::string& name, unsigned value)
{
    return holding(name, leaf("value", value));
}

// A list that is written also when it is empty.
std::string list(const std::string& name, const std::string& items)
{
    return items.empty() ? "<" + name + "/>" : holding(name, items);
}

// A member that is written only when it holds something.
std::string optional(const std::string& name, const std::string& content)
{
    return content.empty() ? "" : holding(name, content);
}

std::string optionalLeaf(const std::string& name, const std::string& value)
{
    return value.empty() ? "" : leaf(name, value);
}

} // namespace

InputText::InputText(std::string identifier, unsigned type)
    : m_identifier(std::move(identifier)), m_type(type)
{}

InputText& InputText::labelled(const std::string& label)
{
    m_label = label;
    return *this;
}

InputText& InputText::described(const std::string& description)
{
    m_description = description;
    return *this;
}

InputText& InputText::inGroup(const std::string& group)
{
    m_group = group;
    return *this;
}

InputText& InputText::byDefault(const std::string& constant, const std::string& value)
{
    m_default = holding("constantValue" + constant, leaf("value", value));
    return *this;
}

InputText& InputText::editedBy(const std::string& widget)
{
    m_widget = widget;
    return *this;
}

InputText& InputText::withOption(const std::string& name, const std::string& value)
{
    m_options += holding("option", leaf("name", name) + leaf("value", value));
    return *this;
}

std::string InputText::text(unsigned uid) const
{
    return holding("paraminput", leaf("identifier", m_identifier) + leaf("uid", uid) + body());
}

std::string InputText::body() const
{
    const std::string attributes =
        optionalLeaf("label", m_label) + optionalLeaf("description", m_description);
    return optional("attributes", attributes) + holding("type", m_type) +
           optional("defaultValue", m_default) +
           holding("defaultWidget", leaf("name", m_widget) + list("options", m_options)) +
           optionalLeaf("group", m_group);
}

InputText aColorInput(const std::string& identifier)
{
    return {identifier, 1};
}

InputText aGrayscaleInput(const std::string& identifier)
{
    return {identifier, 2};
}

InputText aFloatInput(const std::string& identifier)
{
    return InputText(identifier, 256).byDefault("Float1", "0.5").editedBy("slider");
}

OutputText::OutputText(std::string identifier) : m_identifier(std::move(identifier)) {}

OutputText& OutputText::usedAs(const std::string& name, const std::string& components)
{
    m_usages += holding("usage", leaf("components", components) + leaf("name", name));
    return *this;
}

OutputText& OutputText::ofFormat(unsigned format)
{
    m_format = format;
    return *this;
}

OutputText& OutputText::withMipmaps(unsigned mipmaps)
{
    m_mipmaps = mipmaps;
    return *this;
}

OutputText& OutputText::withoutRoot()
{
    m_hasRoot = false;
    return *this;
}

std::string OutputText::text(unsigned uid) const
{
    return holding("graphoutput", leaf("identifier", m_identifier) + leaf("uid", uid) +
                                      optional("usages", m_usages));
}

std::string OutputText::rootText(unsigned uid) const
{
    if (!m_hasRoot)
        return {};
    const std::string mipmaps = m_mipmaps == 0 ? "" : holding("mipmaps", m_mipmaps);
    return holding("rootOutput", leaf("output", uid) + holding("format", m_format) + mipmaps +
                                     leaf("usertag", std::string()));
}

FilterText::FilterText(std::string identifier) : m_identifier(std::move(identifier)) {}

FilterText& FilterText::taking(const InputText& input)
{
    m_inputs.push_back(input);
    return *this;
}

FilterText& FilterText::giving(const OutputText& output)
{
    m_outputs.push_back(output);
    return *this;
}

std::string FilterText::text() const
{
    std::string inputs;
    for (std::size_t i = 0; i < m_inputs.size(); ++i)
        inputs += m_inputs[i].text(FirstInputUid + static_cast<unsigned>(i));
    std::string outputs;
    std::string roots;
    for (std::size_t i = 0; i < m_outputs.size(); ++i) {
        outputs += m_outputs[i].text(FirstOutputUid + static_cast<unsigned>(i));
        roots += m_outputs[i].rootText(FirstOutputUid + static_cast<unsigned>(i));
    }
    return holding("graph", leaf("identifier", m_identifier) + leaf("uid", GraphUid) +
                                optional("paraminputs", inputs) + list("graphOutputs", outputs) +
                                "<compNodes/><baseParameters/><content/>" +
                                list("root", optional("rootOutputs", roots)));
}

} // namespace TestSupport
