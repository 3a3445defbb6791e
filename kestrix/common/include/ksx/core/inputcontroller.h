// The base of the controllers of inputs of a graph.
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

// Shows a ParamInput and edits its default value. EntryInputController shows an input of images and
// TweakInputController an input of values; use dynamic_cast to find out which.
//
// The InputsController of the graph owns it. It dies when the input leaves the list of the graph.
// An undo makes another controller. Main thread.
//
// Texts are in the 8-bit form of the document. References to them hold until the next edit. If the
// input has died already, texts are empty and edits are refused.
//
//     if (InputController* input = graph.inputsController()->inputByIdentifier("strength"))
//         input->setDefaultValue(Orv::Data::Float1{{0.5F}});
class InputController
{
public:
    InputController(const InputController&) = delete;
    InputController& operator=(const InputController&) = delete;
    virtual ~InputController();

    // For InputsController: returns an EntryInputController for a type of images, and a
    // TweakInputController for all others. The type is not looked at again later.
    static std::unique_ptr<InputController> make(const Data::Content::ParamInput& input);

    // Returns the input in the document. Returns null once it has died.
    const Data::Content::ParamInput* input() const;
    // Returns the uid of the input. Returns NoUid once the input has died.
    Uid uid() const;
    // Returns the identifier, by which functions and instances name the input.
    const std::string& identifier() const;
    // Returns the text for users. May be empty.
    const std::string& label() const;
    // Returns the longer text for users. May be empty.
    const std::string& description() const;
    // Returns the type as a ValueType. Returns 0 once the input has died.
    unsigned type() const;

    // Returns the value in the shape of the type: bool, Int1 to Int4, Float1 to Float4 or
    // std::string. Returns an empty value for an image, for an input without a default, and for a
    // default of another shape.
    boost::any defaultValue() const;

    // Writes a value of that shape. The value is brought into the range that the options "min" and
    // "max" of the widget give. Overloads of the former value are dropped. This is one undoable
    // command, also if nothing changes. No signal of this class is sent.
    //
    // Returns false and runs no command for a value of another shape, for nan and for the
    // infinities.
    bool setDefaultValue(const boost::any& value);

    // Sent when the identifier has been written, by an edit, an undo or a redo.
    LazySignal<> identifierChanged;
    // Sent when the label has been written.
    LazySignal<> labelChanged;
    // Sent when the description has been written.
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
