// The frame of all steps that rewrite the text of an old package file.
#pragma once

#include "data/lightdocument.h"
#include "updating/updaterbase.h"
#include <optional>

namespace Ksx::Core {

class ElementIndex;

// Parses the device, lets the derived class find and change entries, counts, reports and hands the
// document on. A device that no entry was changed in keeps its bytes. On a DocumentDevice all steps
// share one document; any other device is read and written by each step.
class OBLFormatUpdater : public UpdaterBase<Orv::Core::Extensions::IDataFormatUpdater>
{
public:
    // Returns true for an IPackageTextImporter.
    bool accepts(const Orv::Core::Extensions::IDataImporter& importer) const override;
    bool update(QIODevice& device, Orv::Core::MessageNode* log,
                const Orv::Core::Extensions::ProgressFunction& progress) const override;

protected:
    using Document = Orv::Data::LightDocument;
    using Element = Orv::Data::LightElement;
    using Elements = Orv::Data::LightElements;

    // What the step is about, found before anything changes. `index` is that of the document.
    virtual Elements find(const Document& document, const ElementIndex& index) const = 0;
    // Changes the document and answers how many entries it changed; none when the step fails. With
    // none or 0 the document must be as it was.
    virtual std::optional<int> change(Document& document, const Elements& found) const = 0;
};

} // namespace Ksx::Core
