#include "Commands.h"

namespace zekl {

void AddCommands(Cli& cli) {
    AddVersionCommand(cli);
    AddNewCommand(cli);
    AddInfoCommand(cli);
    AddCheckCommand(cli);
    AddShowCommand(cli);
    AddConvertCommand(cli);
    AddDecodeCommand(cli);
    AddEncodeCommand(cli);
    AddLintCommand(cli);
    AddDiffCommand(cli);
}

}  // namespace zekl
