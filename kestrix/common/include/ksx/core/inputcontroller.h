// One input of a graph.
#pragma once

#include "data/datapointerbox.h"
#include "ksx/core/follow.h"
#include "ksx/core/lazysignal.h"
#include "ksx/core/uidsource.h"
#include <boost/any.hpp>
#include <memory>
#include <string>

namespace Ksx::Data::Content {
class ParamInput;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

class InputsController;

// Owned by the InputsController of the graph; lives as long as the input stands in the list. Texts
// are those of the document, in its 8-bit form. Once the input has died all of them are empty, and
// nothing can be edited.
class InputController
{
public:
    InputController(const InputController&) = delete;
    InputController& operator=(const InputController&) = delete;
    virtual ~InputController();

    // An EntryInputController for an image type, a TweakInputController for a type of values.
    static std::unique_ptr<InputController> make(const Data::Content::ParamInput& input);

    // Null once it has died.
    const Data::Content::ParamInput* input() const;
    Uid uid() const; // NoUid once the input has died
    const std::string& identifier() const;
    const std::string& label() const;
    const std::string& description() const;
    unsigned type() const; // of ValueType; 0 once the input has died

    // The value in the shape of the input's type: bool, Int1 to Int4, Float1 to Float4 or
    // std::string. Empty for an image, and for an input without a default or with one of another
    // shape.
    boost::any defaultValue() const;
    // Stores a value of that shape, clamped to the range that the input's widget gives, and drops
    // the overloads of the former one. One command even if nothing changes; false without one if
    // the value does not fit the type, or is nan or infinite.
    bool setDefaultValue(const boost::any& value);

    LazySignal<> identifierChanged;
    LazySignal<> labelChanged;
    LazySignal<> descriptionChanged;

protected:
    explicit InputController(const Data::Content::ParamInput& input);

private:
    friend class InputsController;

    void onIdentifier();
    void onUid();

    Orv::Data::DataPointerBox<Data::Content::ParamInput> m_input;
    InputsController* m_owner = nullptr; // hears of other keys first; null without one
    std::string m_knownIdentifier;       // these two are the keys that the owner knows
    Uid m_knownUid = NoUid;
    Follow<&InputController::onIdentifier> m_identifierListener{*this};
    Follow<&InputController::onUid> m_uidListener{*this};
    Follow<&InputController::labelChanged> m_labelListener{*this};
    Follow<&InputController::descriptionChanged> m_descriptionListener{*this};
};

} // namespace Ksx::Core
