// Small output helpers of the zekl tool: error lines, hex images and aligned tables.
#pragma once

#include <ZeKL/Types.h>

#include <cstdio>
#include <string>
#include <vector>

namespace zekl {

// Writes "zekl: <text>" as one line on standard error.
void PrintError(const std::string& text);

// A file name as it appears in messages: 'name'.
std::string Quoted(const std::string& text);

// Bytes as upper-case hex pairs separated by blanks ("34 12"); empty for no bytes.
std::string HexBytes(const Korvel::ByteBuffer& bytes);

// Writes the text as it is, without any line-end translation.
bool WriteAll(std::FILE* stream, const std::string& text);

// True when the stream is an interactive terminal.
bool IsTerminal(std::FILE* stream);

// Rows of cells printed as left-aligned columns two blanks apart. Widths count UTF-8
// characters, not bytes, so units such as "°C" keep the columns straight.
class TextTable {
public:
    explicit TextTable(std::vector<std::string> header);
    void AddRow(std::vector<std::string> cells);
    size_t RowCount() const { return rows_.size(); }
    std::string Render() const;

private:
    std::vector<std::vector<std::string>> rows_;
};

// Number of UTF-8 characters in the text.
size_t DisplayWidth(const std::string& text);

}  // namespace zekl
