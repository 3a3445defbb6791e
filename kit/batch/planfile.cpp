// The file of a plan.
#include "batch/linedjson.h"
#include "core/regularfile.h"
#include "ksx/core/failurereason.h"
#include "ksx/kit/batchplan.h"
#include "ksx/kit/packagehead.h"
#include <QDateTime>
#include <QDir>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <algorithm>
#include <stdexcept>

namespace Ksx::Kit {

namespace {

constexpr int PlanVersion = 1;
constexpr qint64 LargestPlan = qint64(1) << 29; // bytes, a million packages with long names
constexpr unsigned MostShards = 100000;

// The words for units.
constexpr const char* ComponentWord = "component";
constexpr const char* PlanWord = "plan";

QJsonValue wordOf(BatchUnit unit)
{
    if (unit == BatchUnit::Package)
        return {};
    return QLatin1String(unit == BatchUnit::Component ? ComponentWord : PlanWord);
}

QString timeText(qint64 milliseconds)
{
    return QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::UTC).toString(Qt::ISODateWithMs);
}

void insert(QJsonObject& object, const FileStamp& stamp)
{
    object["size"] = stamp.size;
    object["modified"] = timeText(stamp.modified);
    object["sha256"] = QString::fromLatin1(stamp.sha256);
}

QJsonObject toJson(const BatchPackage& package)
{
    QJsonObject object{{"folder", qint64(package.folder)},
                       {"input", package.input},
                       {"output", package.output},
                       {"component", qint64(package.component)},
                       {"shard", qint64(package.shard)}};
    insert(object, package.stamp);
    return object;
}

QJsonObject toJson(const BatchSource& source)
{
    QJsonObject object{{"file", source.file}};
    insert(object, source.stamp);
    return object;
}

QJsonObject toJson(const MissingDependency& missing)
{
    return {{"file", missing.file}, {"dependency", missing.dependency}, {"path", missing.path}};
}

QJsonObject toJson(const Failure& failure)
{
    return {{"file", failure.file}, {"reason", failure.reason}};
}

template <class Item>
void addList(LinedJson& writer, const char* name, const std::vector<Item>& items)
{
    writer.beginList(name);
    for (const Item& item : items)
        writer.addItem(toJson(item));
    writer.endList();
}

// A plan that is not sound. The text is a sentence.
class BadPlan : public std::runtime_error
{
public:
    explicit BadPlan(const QString& reason) : std::runtime_error(reason.toStdString()) {}
};

// A value of a plan, and its place for the reason of a failure. The value that it is in must outlive
// it.
class PlanValue
{
public:
    explicit PlanValue(const QJsonValue& root) : m_value(root) {}

    PlanValue member(const char* name) const
    {
        if (!m_value.isObject())
            fail("is no object");
        return {m_value[QLatin1String(name)], this, name, 0};
    }
    bool isNull() const { return m_value.isNull() || m_value.isUndefined(); }

    QString text() const
    {
        if (!m_value.isString() || m_value.toString().contains(QChar(0)))
            fail("is no text");
        return m_value.toString();
    }

    qint64 number(qint64 least, qint64 most) const
    {
        const double value = m_value.toDouble(-1);
        if (!(value >= static_cast<double>(least) && value <= static_cast<double>(most)) ||
            value != static_cast<double>(static_cast<qint64>(value)))
            fail("is no number of its range");
        return static_cast<qint64>(value);
    }

    // Returns a path from the root on, without steps back.
    QString absolutePath() const
    {
        QString path = text();
        if (!path.startsWith('/') || QDir::cleanPath(path) != path)
            fail("is no absolute path");
        return path;
    }

    // Returns a path that stays in its folder.
    QString innerPath(const QString& ending) const
    {
        QString path = text();
        if (path.isEmpty() || path.startsWith('/') || QDir::cleanPath(path) != path ||
            path == QLatin1String("..") || path.startsWith(QLatin1String("../")))
            fail("leads out of its folder");
        if (!isPackageName(path) || !path.endsWith(ending))
            fail("is no name of a package");
        return path;
    }

    FileStamp stamp() const
    {
        constexpr qint64 LargestFile = qint64(1) << 50;
        const auto isDigit = [](char c) {
            return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
        };
        FileStamp stamp;
        stamp.size = member("size").number(0, LargestFile);
        const PlanValue modified = member("modified");
        const QDateTime time = QDateTime::fromString(modified.text(), Qt::ISODateWithMs);
        if (!time.isValid())
            modified.fail("is no time");
        stamp.modified = time.toMSecsSinceEpoch();
        const PlanValue sum = member("sha256");
        stamp.sha256 = sum.text().toLatin1();
        if (stamp.sha256.size() != 64 ||
            !std::all_of(stamp.sha256.begin(), stamp.sha256.end(), isDigit))
            sum.fail("is no sum");
        return stamp;
    }

    // Calls `take` with each item of a list.
    template <class Take>
    void forEach(const Take& take) const
    {
        if (!m_value.isArray())
            fail("is no list");
        const QJsonArray items = m_value.toArray();
        for (int i = 0; i < items.size(); ++i)
            take(PlanValue(items.at(i), this, nullptr, i));
    }

    [[noreturn]] void fail(const char* reason) const
    {
        throw BadPlan(
            QStringLiteral("it is no sound plan: %1 %2")
                .arg(m_parent == nullptr ? QStringLiteral("it") : place(), QLatin1String(reason)));
    }

private:
    PlanValue(const QJsonValue& value, const PlanValue* parent, const char* name, int index)
        : m_value(value), m_parent(parent), m_name(name), m_index(index)
    {}

    QString place() const
    {
        const QString before = m_parent->m_parent == nullptr ? QString() : m_parent->place();
        if (m_name == nullptr)
            return QStringLiteral("%1[%2]").arg(before).arg(m_index);
        return (before.isEmpty() ? before : before + '.') + QLatin1String(m_name);
    }

    QJsonValue m_value;
    const PlanValue* m_parent = nullptr; // null for the root
    const char* m_name = nullptr;        // of the member, or null for an item of a list
    int m_index = 0;
};

BatchUnit unitIn(const PlanValue& value)
{
    if (value.isNull())
        return BatchUnit::Package;
    const QString word = value.text();
    if (word != QLatin1String(ComponentWord) && word != QLatin1String(PlanWord))
        value.fail("is no known unit");
    return word == QLatin1String(PlanWord) ? BatchUnit::Plan : BatchUnit::Component;
}

BatchOptions optionsIn(const PlanValue& root)
{
    constexpr qint64 LastSecond = 0xFFFFFFFF;
    BatchOptions options;
    options.presetsPath = root.member("presetsPath").absolutePath();
    options.target = root.member("target").absolutePath();
    root.member("folders").forEach(
        [&](const PlanValue& folder) { options.folders.append(folder.absolutePath()); });
    root.member("shared").forEach(
        [&](const PlanValue& folder) { options.shared.append(folder.absolutePath()); });
    const PlanValue clock = root.member("clock");
    if (!clock.isNull())
        options.clock = clock.number(0, LastSecond);
    options.unit = unitIn(root.member("allOrNone"));
    return options;
}

// The checks of packages against each other.
class PackageReader
{
public:
    explicit PackageReader(BatchPlan& plan) : m_plan(plan) {}

    void read(const PlanValue& value)
    {
        BatchPackage package;
        package.folder = static_cast<std::size_t>(
            value.member("folder").number(0, m_plan.options.folders.size() - 1));
        package.input = value.member("input").innerPath({});
        package.output = value.member("output").innerPath(QStringLiteral(".obl"));
        package.component = static_cast<unsigned>(value.member("component").number(1, 0x7FFFFFFF));
        package.shard = static_cast<unsigned>(value.member("shard").number(1, m_plan.shardCount));
        package.stamp = value.stamp();
        if (m_outputs.contains(package.output))
            value.member("output").fail("is the output of another package as well");
        m_outputs.insert(package.output);
        const QString input = m_plan.inputPath(package);
        if (m_inputs.contains(input))
            value.member("input").fail("is there twice");
        m_inputs.insert(input);
        unsigned& shard = m_shards[package.component];
        if (shard != 0 && shard != package.shard)
            value.member("shard").fail("differs within the component");
        shard = package.shard;
        m_plan.packages.push_back(std::move(package));
    }

private:
    BatchPlan& m_plan;
    QSet<QString> m_outputs;
    QSet<QString> m_inputs;
    QHash<unsigned, unsigned> m_shards; // by component
};

BatchPlan planIn(const PlanValue& root)
{
    root.member("ksx").number(PlanVersion, PlanVersion);
    if (root.member("plan").text() != QLatin1String("update"))
        root.member("plan").fail("is no known kind");
    BatchPlan plan;
    plan.options = optionsIn(root);
    plan.shardCount = static_cast<unsigned>(root.member("shards").number(1, MostShards));
    PackageReader packages(plan);
    root.member("packages").forEach([&](const PlanValue& value) { packages.read(value); });
    root.member("sources").forEach([&](const PlanValue& value) {
        plan.sources.push_back({value.member("file").absolutePath(), value.stamp()});
    });
    root.member("missing").forEach([&](const PlanValue& value) {
        plan.missing.push_back({value.member("file").text(), value.member("dependency").text(),
                                value.member("path").text()});
    });
    root.member("failures").forEach([&](const PlanValue& value) {
        plan.failures.push_back({value.member("file").text(), value.member("reason").text()});
    });
    return plan;
}

} // namespace

bool BatchOptions::isShared(const QString& file) const
{
    return std::any_of(shared.begin(), shared.end(), [&](const QString& folder) {
        return file == folder || file.startsWith(folder.endsWith('/') ? folder : folder + '/');
    });
}

QString BatchPlan::inputPath(const BatchPackage& package) const
{
    return QDir::cleanPath(options.folders[static_cast<int>(package.folder)] + '/' + package.input);
}

QString BatchPlan::outputPath(const BatchPackage& package) const
{
    return QDir::cleanPath(options.target + '/' + package.output);
}

bool writePlan(QIODevice& device, const BatchPlan& plan)
{
    LinedJson writer(device);
    writer.add("ksx", PlanVersion);
    writer.add("plan", QStringLiteral("update"));
    writer.add("folders", QJsonArray::fromStringList(plan.options.folders));
    writer.add("target", plan.options.target);
    writer.add("presetsPath", plan.options.presetsPath);
    writer.add("shared", QJsonArray::fromStringList(plan.options.shared));
    writer.add("clock", plan.options.clock ? QJsonValue(*plan.options.clock) : QJsonValue());
    writer.add("allOrNone", wordOf(plan.options.unit));
    writer.add("shards", qint64(plan.shardCount));
    addList(writer, "packages", plan.packages);
    addList(writer, "sources", plan.sources);
    addList(writer, "missing", plan.missing);
    addList(writer, "failures", plan.failures);
    return writer.finish();
}

std::optional<BatchPlan> readPlan(const QString& file, QString& reason)
{
    Orv::Core::RegularFile device(file);
    if (!device.open(QIODevice::ReadOnly)) {
        reason = Core::failureReason(file, QStringLiteral("ERROR_FAIL_TO_OPEN_URL_"));
        return std::nullopt;
    }
    if (device.size() > LargestPlan) {
        reason = QStringLiteral("it is too large for a plan");
        return std::nullopt;
    }
    QJsonParseError error = {};
    const QJsonDocument document = QJsonDocument::fromJson(device.readAll(), &error);
    try {
        if (device.hasFailed() || error.error != QJsonParseError::NoError)
            throw BadPlan(QStringLiteral("it is no sound plan: %1 at byte %2")
                              .arg(error.errorString())
                              .arg(error.offset));
        return planIn(PlanValue(document.object()));
    } catch (const BadPlan& bad) {
        reason = QString::fromUtf8(bad.what());
        return std::nullopt;
    }
}

} // namespace Ksx::Kit
