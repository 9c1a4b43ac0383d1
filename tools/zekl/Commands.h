// The commands of zekl. Each file Cmd<Name>.cpp holds one: its help texts, its options (a
// struct the command line fills) and the function that does the work on them.
#pragma once

#include "Cli.h"

namespace zekl {

void AddVersionCommand(Cli& cli);
void AddNewCommand(Cli& cli);
void AddInfoCommand(Cli& cli);
void AddCheckCommand(Cli& cli);
void AddShowCommand(Cli& cli);
void AddConvertCommand(Cli& cli);
void AddDecodeCommand(Cli& cli);
void AddEncodeCommand(Cli& cli);
void AddLintCommand(Cli& cli);
void AddDiffCommand(Cli& cli);

// Every command, in the order 'zekl --help' lists them.
void AddCommands(Cli& cli);

}  // namespace zekl
