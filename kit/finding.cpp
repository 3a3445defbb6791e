#include "ksx/kit/finding.h"

namespace Ksx::Kit {

QString wordOf(Severity severity)
{
    return severity == Severity::Error ? QStringLiteral("error") : QStringLiteral("warning");
}

const std::vector<FindingKind>& findingKinds()
{
    using Code = FindingCode;
    constexpr Severity Error = Severity::Error;
    constexpr Severity Warning = Severity::Warning;
    static const std::vector<FindingKind> kinds = {
        {Code::UnreadablePackage, "unreadable-package", Error,
         "Take a copy of the package that can be opened"},
        {Code::OldFormat, "old-format", Warning, "Run 'kestrix update' on the package"},
        {Code::MissingElement, "missing-element", Error,
         "Add the element, since no package opens without it"},
        {Code::UnknownElement, "unknown-element", Warning,
         "Remove the element, which is lost when the package is saved"},
        {Code::UnknownItem, "unknown-item", Error,
         "Remove the element, since the reader stops at it and loses what is behind"},
        {Code::DoubleElement, "double-element", Warning, "Remove all but one of the elements"},
        {Code::BadValue, "bad-value", Error, "Write a value of that type"},
        {Code::DoubleUid, "double-uid", Error,
         "Give one of the objects another uid, and connect it again"},
        {Code::DoubleIdentifier, "double-identifier", Error,
         "Rename one of the objects, since names lead to the first one"},
        {Code::DanglingUid, "dangling-uid", Error,
         "Connect it to an object that is there, or remove it"},
        {Code::NodeCycle, "node-cycle", Error, "Remove one of the connections of the cycle"},
        {Code::GraphCycle, "graph-cycle", Error, "Remove one of the instances of the cycle"},
        {Code::UnknownFilter, "unknown-filter", Error,
         "Replace the node by one of a filter that exists"},
        {Code::UnknownFunction, "unknown-function", Error,
         "Replace the node by one of a function that exists"},
        {Code::UnknownParameter, "unknown-parameter", Warning,
         "Remove the parameter, which has no effect"},
        {Code::OutOfRange, "out-of-range", Warning,
         "Set a default between the bounds of the widget, or widen the bounds"},
        {Code::UnknownDependency, "unknown-dependency", Error,
         "Add a dependency of that uid, or let the path lead elsewhere"},
        {Code::DanglingPath, "dangling-path", Error,
         "Let the path lead to an object that is there"},
        {Code::MissingDependency, "missing-dependency", Error,
         "Put the file there, or correct the name or the folder of the presets library"},
        {Code::UnreadableDependency, "unreadable-dependency", Error, "Check the other package"},
        {Code::UnusedDependency, "unused-dependency", Warning, "Remove the dependency"},
        {Code::MissingResource, "missing-resource", Error,
         "Put the file there, or correct its path"},
    };
    return kinds;
}

} // namespace Ksx::Kit
