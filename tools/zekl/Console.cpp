#include "Console.h"

#include <algorithm>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace zekl {

void PrintError(const std::string& text) {
    std::fprintf(stderr, "zekl: %s\n", text.c_str());
}

std::string Quoted(const std::string& text) {
    return "'" + text + "'";
}

std::string HexBytes(const Korvel::ByteBuffer& bytes) {
    static const char digits[] = "0123456789ABCDEF";
    std::string text;
    for (size_t i = 0; i < bytes.size(); ++i) {
        if (i != 0) {
            text += ' ';
        }
        text += digits[bytes[i] >> 4];
        text += digits[bytes[i] & 0x0F];
    }
    return text;
}

bool WriteAll(std::FILE* stream, const std::string& text) {
    return std::fwrite(text.data(), 1, text.size(), stream) == text.size();
}

size_t DisplayWidth(const std::string& text) {
    // Continuation bytes (10xxxxxx) do not start a character.
    return static_cast<size_t>(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

TextTable::TextTable(std::vector<std::string> header) {
    rows_.push_back(std::move(header));
}

void TextTable::AddRow(std::vector<std::string> cells) {
    rows_.push_back(std::move(cells));
}

std::string TextTable::Render() const {
    std::vector<size_t> widths;
    for (const auto& row : rows_) {
        if (widths.size() < row.size()) {
            widths.resize(row.size(), 0);
        }
        for (size_t column = 0; column < row.size(); ++column) {
            widths[column] = std::max(widths[column], DisplayWidth(row[column]));
        }
    }
    std::string text;
    for (const auto& row : rows_) {
        std::string line;
        for (size_t column = 0; column < row.size(); ++column) {
            line += row[column];
            if (column + 1 < row.size()) {
                line.append(widths[column] - DisplayWidth(row[column]) + 2, ' ');
            }
        }
        while (!line.empty() && line.back() == ' ') {
            line.pop_back();
        }
        text += line;
        text += '\n';
    }
    return text;
}

bool IsTerminal(std::FILE* stream) {
#ifdef _WIN32
    return _isatty(_fileno(stream)) != 0;
#else
    return isatty(fileno(stream)) != 0;
#endif
}

}  // namespace zekl
