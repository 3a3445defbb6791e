// Lists the inputs of the graphs of a package, doubles each default that is one number, shows that the
// edits can be undone, and saves the result.
//   doubled PACKAGE NEW_PACKAGE
#include "data/content/types.h"
#include "ksx/core/compgraphcontroller.h"
#include "ksx/core/inputscontroller.h"
#include "ksx/core/session.h"
#include <iostream>

using Ksx::Core::CompGraphController;
using Ksx::Core::InputController;
using Ksx::Core::Session;
using Orv::Data::Float1;

namespace {

// Returns null for a default that is no single number.
const Float1* numberIn(const boost::any& value)
{
    return boost::any_cast<Float1>(&value);
}

void printInputs(const std::vector<CompGraphController*>& graphs)
{
    for (const CompGraphController* graph : graphs)
        for (const InputController* input : graph->inputsController()->inputs()) {
            const boost::any value = input->defaultValue();
            std::cout << graph->identifier().toStdString() << '.' << input->identifier();
            if (const Float1* number = numberIn(value))
                std::cout << " = " << (*number)[0];
            std::cout << '\n';
        }
}

// Returns the number of inputs that were changed.
int doubleNumbers(const std::vector<CompGraphController*>& graphs)
{
    int count = 0;
    for (CompGraphController* graph : graphs)
        for (InputController* input : graph->inputsController()->inputs()) {
            const boost::any value = input->defaultValue();
            if (const Float1* number = numberIn(value))
                count += input->setDefaultValue(Float1{{2 * (*number)[0]}}) ? 1 : 0;
        }
    return count;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::cerr << "usage: doubled PACKAGE NEW_PACKAGE\n";
        return 2;
    }
    const QString path = QString::fromLocal8Bit(argv[1]);
    Session session;
    if (!session.open({path})) {
        for (const Session::Failure& failure : session.failures())
            std::cerr << failure.filename.toStdString() << ": " << failure.reason.toStdString()
                      << '\n';
        return 1;
    }
    const auto graphs = session.graphs(path);
    printInputs(graphs);
    std::cout << doubleNumbers(graphs) << " doubled\n";
    if (session.undo())
        std::cout << "the last one is as it was\n";
    const Session::Saving saving = session.save(path, QString::fromLocal8Bit(argv[2]));
    if (!saving.isSaved)
        std::cerr << argv[2] << ": " << saving.reason.toStdString() << '\n';
    return saving.isSaved ? 0 : 1;
}
