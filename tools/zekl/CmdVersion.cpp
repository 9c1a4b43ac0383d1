#include <ZeKL/ZeKL.h>

#include <cstdio>

#include "Commands.h"

#ifndef ZEKL_TOOL_VERSION
#define ZEKL_TOOL_VERSION "unknown"
#endif

namespace zekl {

namespace {

const CommandHelp kVersionHelp = {
    "version", "print the tool's and the library's version", "zekl version",
    "Prints the version of the tool, then the library's version text and its numeric\n"
    "version (major.minor.patch.build). The library's numeric version reports patch 0\n"
    "while its text says 3.0.1; both are shown as the library gives them.\n",
    ""};

struct VersionOptions {};

void DefineVersion(CLI::App& /*app*/, VersionOptions& /*options*/) {}

int Version(const VersionOptions& /*options*/) {
    uint32_t major = 0;
    uint32_t minor = 0;
    uint32_t patch = 0;
    uint32_t build = 0;
    Korvel::GetVersion(major, minor, patch, build);
    std::printf("zekl %s (library %s, numeric %u.%u.%u.%u)\n", ZEKL_TOOL_VERSION, Korvel::GetVersionString(),
                static_cast<unsigned>(major), static_cast<unsigned>(minor), static_cast<unsigned>(patch),
                static_cast<unsigned>(build));
    return ExitSuccess;
}

}  // namespace

void AddVersionCommand(Cli& cli) {
    cli.Add(kVersionHelp, DefineVersion, Version);
}

}  // namespace zekl
