// The stages of the opening of a package that is brought to the current format.
#pragma once

#include <functional>

class QUrl;

namespace Orv::Core::Extensions {
class IUpdater;
} // namespace Orv::Core::Extensions

namespace Orv::Data {
class LightDocument;
} // namespace Orv::Data

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// A package between two steps. Either `document` or `package` is there, and is good during the call
// alone; the pointer to the package means the opened package later on.
struct UpdateStage
{
    // The file, as it was given to the reader.
    const QUrl& url;
    // The step that has just run. Null for the document as the file has it, and for the package as
    // the importer has made it.
    const Orv::Core::Extensions::IUpdater* step = nullptr;
    const Orv::Data::LightDocument* document = nullptr;
    const Data::Content::Package* package = nullptr;
};

// Called for each stage of each file that needs steps, in the order of the stages. A file that no
// step for documents runs on has no stage with a document. Called in the thread that reads the file.
using StageFunction = std::function<void(const UpdateStage&)>;

} // namespace Ksx::Core
