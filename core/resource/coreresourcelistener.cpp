#include "ksx/core/resourcelistener.h"

#include "data/content/compfilter.h"
#include "data/content/graph.h"
#include "data/content/resourcemanipulators.h"
#include "data/diagnosticlog.h"
#include "data/filename.h"
#include "ksx/core/edit.h"
#include "ksx/core/listenerof.h"
#include "ksx/core/objecturl.h"
#include <QFile>
#include <cmath>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Ksx::Core {

namespace {

using namespace Data::Content;
using Orv::Core::ManipulatorAttribute;
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

// The filters that can have a resource, and the parameter that leads to it.
struct ResourceParameter
{
    const char* filter;
    const char* parameter;
};
constexpr ResourceParameter ResourceParameters[] = {
    {"bitmap", "bitmapresourcepath"},
    {"svg", "vectorresourcepath"},
    {"blend", "maskvectorresourcepath"},
};

const char* resourceParameterOf(const CompFilter& filter)
{
    for (const ResourceParameter& row : ResourceParameters)
        if (filter.filter().get() == row.filter)
            return row.parameter;
    return nullptr;
}

bool uses(const CompNode& node, const std::string& url)
{
    const auto* filter = dynamic_cast<const CompFilter*>(node.compImplementation().get());
    const char* const name = filter == nullptr ? nullptr : resourceParameterOf(*filter);
    if (name == nullptr)
        return false;
    for (const Parameter& parameter : filter->parameters()) {
        if (parameter.name().get() != name)
            continue;
        const auto* text = dynamic_cast<const ConstantValueString*>(parameter.paramValue().get());
        return text != nullptr && text->value().get() == url;
    }
    return false;
}

// Returns a descriptor of a regular file, or -1. A pipe would keep us waiting if it was opened in
// the usual way, and a device may have no end.
int openRegular(const std::string& path)
{
    if (path.find('\0') != std::string::npos)
        return -1;
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    struct stat state = {};
    if (descriptor < 0 || (fstat(descriptor, &state) == 0 && S_ISREG(state.st_mode)))
        return descriptor;
    ::close(descriptor);
    return -1;
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

std::unique_ptr<QFile> ResourceListener::open() const
{
    if (!m_resource)
        return nullptr;
    if (!m_resource->source().isEmpty()) {
        report(NotImplementedLine, "Not implemented yet");
        return nullptr;
    }
    std::unique_ptr<QFile> file = openLinkedFile(filePath());
    if (file == nullptr)
        report(UnreachableLine, "Unreachable resource");
    return file;
}

std::optional<QByteArray> ResourceListener::data() const
{
    const std::unique_ptr<QFile> file = open();
    if (file == nullptr)
        return std::nullopt;
    QByteArray bytes = file->readAll();
    if (file->error() == QFileDevice::NoError)
        return bytes;
    report(UnreachableLine, "Unreachable resource");
    return std::nullopt;
}

std::unique_ptr<QFile> openLinkedFile(const QString& path)
{
    const int descriptor = openRegular(Orv::toBytes(path));
    if (descriptor < 0)
        return nullptr;
    auto file = std::make_unique<QFile>();
    if (!file->open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(descriptor);
        return nullptr;
    }
    // Some files can be opened and not be read, such as those on a damaged disk. Files that the
    // kernel makes up announce no size, and some of them have no end.
    const bool isEmpty = file->peek(1).isEmpty();
    const bool isReadable = file->error() == QFileDevice::NoError;
    return isReadable && isEmpty == (file->size() == 0) ? std::move(file) : nullptr;
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
