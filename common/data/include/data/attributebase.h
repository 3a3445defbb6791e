// A leaf value that has a text form.
#pragma once

#include "data/leaf.h"
#include <string>
#include <string_view>

namespace Orv::Data {

class AttributeBase : public Leaf
{
public:
    ObjectKind kind() const override { return ObjectKind::Attribute; }
    // Is this an Attribute<Text>? Told without the cast, which walks over documents would feel.
    virtual bool isText() const = 0;

    // The value's text form, 8-bit text for strings.
    std::string toString() const
    {
        std::string text;
        appendText(text);
        return text;
    }
    // The same, behind what `out` holds: writers call this without a new string per value.
    virtual void appendText(std::string& out) const = 0;

    // Parses and stores. Throws boost::bad_lexical_cast on bad text, the value as before. Neither
    // recorded nor notified: only for a tree that is being built and has no listeners.
    virtual void fromString(std::string_view text) = 0;
};

} // namespace Orv::Data
