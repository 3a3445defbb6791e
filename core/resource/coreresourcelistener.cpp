#include "ksx/core/resourcelistener.h"

#include "content/nodekind.h"
#include "core/descriptor.h"
#include "core/regularfile.h"
#include "data/content/compfilter.h"
#include "data/content/graph.h"
#include "data/content/resourcemanipulators.h"
#include "data/diagnosticlog.h"
#include "data/filename.h"
#include "data/latin1.h"
#include "ksx/core/edit.h"
#include "ksx/core/listenerof.h"
#include "ksx/core/objecturl.h"
#include "resource/linkedfile.h"
#include <cmath>
#include <unistd.h>

namespace Ksx::Core {

namespace {

using namespace Data::Content;
using Orv::Core::ManipulatorAttribute;
using Orv::Core::RegularFile;
using Orv::Data::Attribute;
using Orv::Data::DataPointerBox;
using Orv::Data::DataPointerBoxMasterKey;

constexpr const char* ClassName = "Ksx::Core::ResourceListener";
// By these lines the two reports are known.
constexpr int UnreachableLine = 127;
constexpr int NotImplementedLine = 132;

void report(int line, const char* text)
{
    Orv::DiagnosticLog::write(Orv::LogLevel::Inconsistency, "core\\coreresourcelistener", line,
                              text);
}

template <class T>
bool applyValue(ManipulatorAttribute<T> attribute, const DataPointerBoxMasterKey&, const T& value)
{
    attribute.set(value);
    return true;
}

template <class T>
void runTransaction(const Attribute<T>& attribute, const T& value, const char* key)
{
    const Transaction transaction(historyText(ClassName, key));
    runEdit(DataPointerBox<Attribute<T>>(&attribute), value, &applyValue<T>, QString());
}

struct LinkedFile
{
    std::string path;
    std::string format;
    std::string lastModification;
    std::string checksum;
};

bool applyFile(Orv::Core::ManipulatorStruct<Resource> resource, const DataPointerBoxMasterKey&,
               const LinkedFile& file)
{
    resource.filepath().set(file.path);
    resource.format().set(file.format);
    resource.lastModif().set(file.lastModification);
    resource.checksum().set(file.checksum);
    return true;
}

bool uses(const CompNode& node, const std::string& url)
{
    const auto* filter = dynamic_cast<const CompFilter*>(node.compImplementation().get());
    if (filter == nullptr)
        return false;
    const std::string name = resourceParameterOf(filter->filter().get());
    if (name.empty())
        return false;
    for (const Parameter& parameter : filter->parameters()) {
        if (parameter.name().get() != name)
            continue;
        const auto* text = dynamic_cast<const ConstantValueString*>(parameter.paramValue().get());
        return text != nullptr && text->value().get() == url;
    }
    return false;
}

} // namespace

ResourceListener& ResourceListener::of(const Resource& resource)
{
    return listenerOf<ResourceListener>(resource);
}

ResourceListener::ResourceListener(const Resource& resource) : m_resource(&resource) {}

ResourceListener::~ResourceListener() = default;

const Data::Content::Resource* ResourceListener::resource() const
{
    return m_resource.get();
}

bool ResourceListener::isReachable() const
{
    return open() != nullptr;
}

QString ResourceListener::filePath() const
{
    return m_resource ? Orv::fromBytes(m_resource->filepath().get()) : QString();
}

bool ResourceListener::setFile(const QString& filePath, const QString& format)
{
    if (!m_resource || !m_resource->source().isEmpty())
        return false;
    return runEdit(m_resource,
                   LinkedFile{Orv::toBytes(filePath), Orv::toLatin1(format),
                              Orv::toLatin1(linkedFileTime(filePath)),
                              Orv::toLatin1(linkedFileChecksum(filePath))},
                   &applyFile, historyText(ClassName, "SET_FILE"))
        .has_value();
}

void ResourceListener::setCookedFormat(std::uint32_t format)
{
    if (m_resource)
        runTransaction<UInt>(m_resource->cookedFormat(), format, "SET_COOKED_FORMAT");
}

void ResourceListener::setCookedQuality(float quality)
{
    if (m_resource && std::isfinite(quality))
        runTransaction(m_resource->cookedQuality(), Float1{{quality}}, "SET_COOKED_QUALITY");
}

std::vector<DataPointerBox<CompNode>> ResourceListener::users(const Graph& graph) const
{
    return resourceUsers(m_resource ? objectUrl(*m_resource) : std::string(), graph);
}

std::unique_ptr<RegularFile> ResourceListener::open() const
{
    if (!m_resource)
        return nullptr;
    if (!m_resource->source().isEmpty()) {
        report(NotImplementedLine, "Not implemented yet");
        return nullptr;
    }
    std::unique_ptr<RegularFile> file = openLinkedFile(filePath());
    if (file == nullptr)
        report(UnreachableLine, "Unreachable resource");
    return file;
}

std::optional<QByteArray> ResourceListener::data() const
{
    const std::unique_ptr<RegularFile> file = open();
    if (file == nullptr)
        return std::nullopt;
    QByteArray bytes = file->readAll();
    if (!file->hasFailed())
        return bytes;
    report(UnreachableLine, "Unreachable resource");
    return std::nullopt;
}

std::unique_ptr<RegularFile> openLinkedFile(const QString& path)
{
    auto file = std::make_unique<RegularFile>(path);
    if (!file->open(QIODevice::ReadOnly))
        return nullptr;
    // Some files can be opened and not be read, such as those on a damaged disk. Files that the
    // kernel makes up announce no size, and some of them have no end.
    char first = 0;
    const auto count =
        Orv::Core::uninterrupted([&] { return pread(file->handle(), &first, 1, 0); });
    return count == (file->size() == 0 ? 0 : 1) ? std::move(file) : nullptr;
}

std::vector<DataPointerBox<CompNode>> resourceUsers(const std::string& url, const Graph& graph)
{
    std::vector<DataPointerBox<CompNode>> users;
    if (url.empty()) // that of no resource, and the path of filters that have none
        return users;
    for (const CompNode& node : graph.compNodes())
        if (uses(node, url))
            users.emplace_back(&node);
    return users;
}

} // namespace Ksx::Core
