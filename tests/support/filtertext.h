// Graphs as filters have them, as text: inputs and outputs, and no nodes.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace TestSupport {

// An element of a package that is put together member by member.
class InputText
{
public:
    InputText(std::string identifier, unsigned type);

    InputText& labelled(const std::string& label);
    InputText& described(const std::string& description);
    InputText& inGroup(const std::string& group);
    // The name of the class of constant, such as "Float1", and its value.
    InputText& byDefault(const std::string& constant, const std::string& value);
    InputText& editedBy(const std::string& widget);
    InputText& withOption(const std::string& name, const std::string& value);

    std::string text(unsigned uid) const;
    // All behind the uid.
    std::string body() const;
    const std::string& identifier() const { return m_identifier; }

private:
    std::string m_identifier;
    unsigned m_type;
    std::string m_label;
    std::string m_description;
    std::string m_group;
    std::string m_default;
    std::string m_widget;
    std::string m_options;
};

InputText aColorInput(const std::string& identifier);
InputText aGrayscaleInput(const std::string& identifier);
InputText aFloatInput(const std::string& identifier);

class OutputText
{
public:
    explicit OutputText(std::string identifier);

    OutputText& usedAs(const std::string& name, const std::string& components);
    // Written only where they differ from 0.
    OutputText& ofFormat(unsigned format);
    OutputText& withMipmaps(unsigned mipmaps);
    // The output then stands for nothing that is rendered.
    OutputText& withoutRoot();

    std::string text(unsigned uid) const;
    std::string rootText(unsigned uid) const;

private:
    std::string m_identifier;
    std::string m_usages;
    unsigned m_format = 0;
    unsigned m_mipmaps = 0;
    bool m_hasRoot = true;
};

class FilterText
{
public:
    explicit FilterText(std::string identifier);

    // Inputs have the uids 101, 102 and so on, outputs 201, 202.
    FilterText& taking(const InputText& input);
    FilterText& giving(const OutputText& output);
    FilterText& giving(const std::string& identifier) { return giving(OutputText(identifier)); }

    std::string text() const;

private:
    std::string m_identifier;
    std::vector<InputText> m_inputs;
    std::vector<OutputText> m_outputs;
};

} // namespace TestSupport
