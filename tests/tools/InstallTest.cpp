// What an install of the tool holds besides the binary: the man page made from the help texts,
// the bash completion, and the Debian package that CPack makes of the whole build.
#include <gtest/gtest.h>

#include <fnmatch.h>

#include <algorithm>
#include <map>
#include <set>

#include "ToolRunner.h"

using zekl_test::Lines;
using zekl_test::RunShell;
using zekl_test::RunTool;
using zekl_test::ShellQuoted;

namespace {

bool Has(const std::string& program) {
    return RunShell("command -v " + program).exitCode == 0;
}

// The commands that 'zekl --help' lists.
std::vector<std::string> Commands() {
    std::vector<std::string> names;
    bool inside = false;
    for (const std::string& line : Lines(RunTool({"--help"}).out)) {
        if (line == "Commands:") {
            inside = true;
        } else if (inside && line.rfind("  ", 0) == 0) {
            names.push_back(zekl_test::Cells(line.substr(2))[0]);
        } else if (inside) {
            break;
        }
    }
    return names;
}

std::string Unescaped(std::string roff) {
    for (std::size_t at = roff.find("\\-"); at != std::string::npos; at = roff.find("\\-", at + 1)) {
        roff.erase(at, 1);
    }
    return roff;
}

// What the completion offers for the words of a command line; the last word is completed.
std::vector<std::string> Complete(const std::vector<std::string>& words) {
    std::string array;
    for (const std::string& word : words) {
        array += " " + ShellQuoted(word);
    }
    const std::string tool = ZEKL_TOOL;
    const std::string script =
        "PATH=" + ShellQuoted(tool.substr(0, tool.rfind('/'))) + ":$PATH; source " +
        ShellQuoted(ZEKL_BASH_COMPLETION_MAIN) + "; source " +
        ShellQuoted(std::string(ZEKL_SOURCE_DIR) + "/tools/zekl/completion/zekl") + "; COMP_WORDS=(" + array +
        "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); COMP_LINE=\"${COMP_WORDS[*]}\"; COMP_POINT=${#COMP_LINE}; "
        "_zekl; printf '%s\\n' \"${COMPREPLY[@]}\"";
    std::vector<std::string> offered = Lines(RunShell("bash -c " + ShellQuoted(script)).out);
    offered.erase(std::remove(offered.begin(), offered.end(), std::string()), offered.end());
    std::sort(offered.begin(), offered.end());
    return offered;
}

}  // namespace

TEST(ManPage, HoldsTheHelpOfEveryCommand) {
    const std::string page = ZEKL_MAN_PAGE_FILE;
    ZEKL_REQUIRE_PROGRAM(!page.empty(), "help2man (the man page was not made)");
    const auto text = RunShell((page.size() > 3 && page.substr(page.size() - 3) == ".gz" ? "zcat " : "cat ") +
                               ShellQuoted(page));
    ASSERT_EQ(text.exitCode, 0) << text.err;
    const std::string roff = Unescaped(text.out);
    EXPECT_NE(roff.find(".TH ZEKL \"1\""), std::string::npos);
    EXPECT_NE(roff.find(".SH SYNOPSIS"), std::string::npos);
    EXPECT_NE(roff.find(".SH COMMANDS"), std::string::npos);
    const std::vector<std::string> commands = Commands();
    ASSERT_EQ(commands.size(), 10u);
    for (const std::string& command : commands) {
        EXPECT_NE(roff.find(".SS \"zekl " + command + "\""), std::string::npos) << command;
        const std::string usage = Lines(RunTool({"help", command}).out)[0];
        EXPECT_NE(roff.find(usage + "\n"), std::string::npos) << usage;
    }
}

TEST(ManPage, IsReadByMan) {
    const std::string page = ZEKL_MAN_PAGE_FILE;
    ZEKL_REQUIRE_PROGRAM(!page.empty(), "help2man (the man page was not made)");
    ZEKL_REQUIRE_PROGRAM(Has("man"), "man (man-db)");
    const auto rendered = RunShell("MANWIDTH=100 man -l " + ShellQuoted(page) + " 2>&1");
    EXPECT_EQ(rendered.exitCode, 0) << rendered.out;
    EXPECT_NE(rendered.out.find("zekl decode FILE --instance ID [--response|--negative] HEX... [--json]"),
              std::string::npos)
        << rendered.out;
}

TEST(BashCompletion, CompletesCommandsOptionsAndValues) {
    ZEKL_REQUIRE_PROGRAM(std::string(ZEKL_BASH_COMPLETION_MAIN) != "" && Has("bash"), "bash-completion");
    std::vector<std::string> commands = Commands();
    commands.insert(commands.end(), {"--help", "--version", "help"});
    std::sort(commands.begin(), commands.end());
    EXPECT_EQ(Complete({"zekl", ""}), commands);
    EXPECT_EQ(Complete({"zekl", "co"}), (std::vector<std::string>{"convert"}));
    EXPECT_EQ(Complete({"zekl", "check", "--l"}), (std::vector<std::string>{"--level"}));
    EXPECT_EQ(Complete({"zekl", "decode", "--"}),
              (std::vector<std::string>{"--help", "--instance", "--json", "--negative", "--response"}));
    EXPECT_EQ(Complete({"zekl", "help", "en"}), (std::vector<std::string>{"encode"}));
    const std::string uds = zekl_test::ExamplePath("uds_ecu.xml");
    EXPECT_EQ(Complete({"zekl", "show", uds, "--instance", "ReadDataByIdentifier_Eng"}),
              (std::vector<std::string>{"ReadDataByIdentifier_EngineSpeed"}));
    EXPECT_EQ(Complete({"zekl", "encode", uds, "EcuRes"}), (std::vector<std::string>{"EcuReset_HardReset"}));
    EXPECT_EQ(Complete({"zekl", "info", uds.substr(0, uds.size() - 6)}), (std::vector<std::string>{uds}));
}

// Each value the completion offers is one the tool takes.
TEST(BashCompletion, OffersOnlyValuesTheToolTakes) {
    ZEKL_REQUIRE_PROGRAM(std::string(ZEKL_BASH_COMPLETION_MAIN) != "" && Has("bash"), "bash-completion");
    const std::string kwp = zekl_test::ExamplePath("kwp_ecu.xml");
    const auto encodings = Complete({"zekl", "convert", kwp, "-", "--encoding", ""});
    EXPECT_EQ(encodings.size(), 3u);
    for (const std::string& encoding : encodings) {
        EXPECT_EQ(RunTool({"convert", kwp, "-", "--encoding", encoding, "--force"}).exitCode, 0) << encoding;
    }
    const auto levels = Complete({"zekl", "check", kwp, "--level", ""});
    EXPECT_EQ(levels.size(), 10u);
    for (const std::string& level : levels) {
        EXPECT_EQ(RunTool({"check", kwp, "--level", level}).exitCode, 0) << level;
    }
    for (const std::string& protocol : Complete({"zekl", "new", "--protocol", ""})) {
        EXPECT_EQ(RunTool({"new", "--protocol", protocol}).exitCode, 0) << protocol;
    }
}

// The package CPack makes holds the library, its headers, the CMake package, zekl.pc, the tool,
// its man page and its completion, and depends on what they need.
TEST(DebianPackage, HoldsEverythingAndNamesItsDependencies) {
    ZEKL_REQUIRE_PROGRAM(Has("dpkg-deb") && Has("dpkg-shlibdeps"), "dpkg-dev");
    zekl_test::TempDir dir;
    const auto made = RunShell("cd " + ShellQuoted(ZEKL_BINARY_DIR) + " && " + ShellQuoted(ZEKL_CPACK) +
                                   " -G DEB -B " + ShellQuoted(dir.Path("out")),
                               600);
    ASSERT_EQ(made.exitCode, 0) << made.out << made.err;
    const auto found = RunShell("ls " + ShellQuoted(dir.Path("out")) + "/zekl_*.deb");
    ASSERT_EQ(Lines(found.out).size(), 1u) << found.out;
    const std::string package = Lines(found.out)[0];
    EXPECT_NE(package.find("/zekl_3.0.1_"), std::string::npos) << package;

    std::set<std::string> files;
    for (const std::string& line : Lines(RunShell("dpkg-deb -c " + ShellQuoted(package)).out)) {
        const std::size_t path = line.find(" ./");
        if (path != std::string::npos) {
            files.insert(line.substr(path + 3, line.find(" -> ") == std::string::npos
                                                   ? std::string::npos
                                                   : line.find(" -> ") - path - 3));
        }
    }
    const auto holds = [&files](const std::string& pattern) {
        return std::any_of(files.begin(), files.end(), [&pattern](const std::string& file) {
            return ::fnmatch(pattern.c_str(), file.c_str(), 0) == 0;
        });
    };
    for (const char* pattern :
         {"usr/bin/zekl", "usr/lib/*libZeKL.so", "usr/lib/*libZeKL.so.3", "usr/include/ZeKL/ZeKL.h",
          "usr/include/ZeKL/ZeKLExport.h", "usr/include/ZeKL/IWriterConfig.h",
          "usr/lib/*cmake/ZeKL/ZeKLConfig.cmake", "usr/lib/*cmake/ZeKL/ZeKLConfigVersion.cmake",
          "usr/lib/*cmake/ZeKL/ZeKLTargets.cmake", "usr/lib/*pkgconfig/zekl.pc",
          "usr/share/bash-completion/completions/zekl", "usr/share/man/man1/zekl.1*"}) {
        EXPECT_TRUE(holds(pattern)) << pattern;
    }
    EXPECT_FALSE(holds("*Impl.h")) << "implementation headers are in the package";

    const std::string depends = RunShell("dpkg-deb -f " + ShellQuoted(package) + " Depends").out;
    for (const char* dependency : {"libxerces-c3.2", "libxerces-c-dev", "libstdc++6", "libc6"}) {
        EXPECT_NE(depends.find(dependency), std::string::npos) << depends;
    }
    EXPECT_EQ(RunShell("dpkg-deb -f " + ShellQuoted(package) + " Package").out, "zekl\n");
}
