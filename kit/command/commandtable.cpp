#include "command/commandtable.h"

#include "command/command.h"

namespace Ksx::Kit {

const std::vector<Command>& commands()
{
    static const std::vector<Command> all = {
        {"info", "PACKAGE|FOLDER|-...", "Lists what is in packages", &declareInfoOptions, &runInfo},
    };
    return all;
}

} // namespace Ksx::Kit
