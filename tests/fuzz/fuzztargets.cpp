#include "fuzztargets.h"

#include "support/paths.h"
#include <QByteArray>
#include <QDataStream>
#include <QFile>
#include <algorithm>

namespace TestSupport {

const std::vector<FuzzTarget>& fuzzTargets()
{
    static const std::vector<FuzzTarget> all = [] {
        std::vector<FuzzTarget> targets;
        for (const auto& some :
             {packageTargets(), assemblyTargets(), pictureTargets(), commandLineTargets()})
            targets.insert(targets.end(), some.begin(), some.end());
        return targets;
    }();
    return all;
}

const FuzzTarget* findFuzzTarget(const std::string& name)
{
    const std::vector<FuzzTarget>& targets = fuzzTargets();
    const auto found = std::find_if(targets.begin(), targets.end(),
                                    [&](const FuzzTarget& target) { return name == target.name; });
    return found == targets.end() ? nullptr : &*found;
}

// tests/fuzz/fuzz.py packs them: each behind its size in four bytes, all of it compressed.
std::vector<std::string> keptInputs(const std::string& target)
{
    QFile file(QString::fromStdString(sourcePath("tests/fuzz/corpus/" + target + ".corpus")));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QDataStream stream(qUncompress(file.readAll()));
    std::vector<std::string> inputs;
    while (!stream.atEnd()) {
        QByteArray input;
        stream >> input;
        inputs.push_back(input.toStdString());
    }
    return inputs;
}

} // namespace TestSupport
