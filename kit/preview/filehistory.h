// The changes of one file on its way through an update.
#pragma once

#include "preview/treecomparison.h"
#include <QByteArray>
#include <cstddef>
#include <string_view>
#include <vector>

namespace Ksx::Core {
struct UpdateStage;
} // namespace Ksx::Core

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Kit {

// Follows the stages of one file. One thread at a time.
class FileHistory
{
public:
    // A step with its changes.
    struct StepChanges
    {
        QString version;
        UpdateStepKind kind = UpdateStepKind::Document;
        std::vector<TreeChange> changes;
    };

    // Takes a stage of the opening of the file.
    void add(const Core::UpdateStage& stage);
    // Begins with the bytes of a file that had no stages.
    void addFile(const QByteArray& bytes);
    // Takes the bytes that are written in the end.
    void addOutput(const QByteArray& bytes);

    // Returns the package that came of the file. Null before it is read.
    const Data::Content::Package* package() const { return m_package; }

    // Returns the last state.
    const DocumentTree& tree() const { return m_tree; }
    // Returns the number of a name of its elements.
    DocumentTree::Index nameOf(std::string_view name) { return m_names.idOf(name); }

    const std::vector<StepChanges>& steps() const { return m_steps; }
    const std::vector<TreeChange>& reading() const { return m_reading; }
    const std::vector<TreeChange>& writing() const { return m_writing; }

private:
    void addDocument(const Core::UpdateStage& stage);
    void addPackage(const Core::UpdateStage& stage);
    std::vector<TreeChange> changesTo(DocumentTree tree);

    ElementNames m_names;
    DocumentTree m_tree;           // the last state
    std::size_t m_changeCount = 0; // of the document
    std::size_t m_objectsHash = 0;
    const Data::Content::Package* m_package = nullptr;
    std::vector<StepChanges> m_steps;
    std::vector<TreeChange> m_reading;
    std::vector<TreeChange> m_writing;
};

} // namespace Ksx::Kit
