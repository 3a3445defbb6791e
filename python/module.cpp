// The module `kestrix._kestrix`: packages, graphs and all that is in them as objects of Python.
#include "objects.h"
#include <ctime>

PYBIND11_MODULE(_kestrix, module)
{
    using namespace Ksx::Python;
    module.doc() = "The part of the module kestrix that is compiled.";
    module.attr("__version__") = KESTRIX_VERSION;
    module.def(
        "_fix_uids",
        [](std::time_t seconds, Ksx::Core::Uid count) {
            Ksx::Core::UidSource::setClock([seconds] { return seconds; });
            Ksx::Core::UidSource::shared().setCounter(count);
        },
        pybind11::arg("seconds"), pybind11::arg("count"),
        "For tests: lets uids begin at that time and number.");
    declareClasses(module);
    bindSessions(module);
    bindPackages(module);
    bindGraphs(module);
    bindNodes(module);
    bindInterfaces(module);
    bindParameters(module);
    bindFunctions(module);
    bindResources(module);
}
