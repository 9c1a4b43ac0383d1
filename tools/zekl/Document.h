// Loading description documents for the commands, with a reason when a file is refused.
#pragma once

#include <ZeKL/ZeKL.h>

#include <memory>
#include <string>

namespace zekl {

// Whether the file can be read as a description document at all: it opens as a regular file
// and its first lines hold "<ECU". False with one short text in `reason` otherwise.
bool IsReadableDocument(const std::string& path, std::string& reason);

// Reads the file through the library with the given sink. On failure gives null and sets
// `reason` to one short text: the system's error for a file that cannot be opened, a note
// for a file that is no description document, or the first FATAL/ERROR message of the read.
std::unique_ptr<Korvel::IEcu> ReadDocument(const std::string& path, Korvel::ReportCollector& collector,
                                           std::string& reason);

// The encoding named in the file's XML declaration; empty when there is none.
std::string DeclaredEncoding(const std::string& path);

// One of the writer's encoding names ("utf-8", "Windows-1252", "iso-8859-1") for a name
// given in any letter case; empty for any other name.
std::string WriterEncodingName(const std::string& name);

// Number of parameters in all messages of all instances.
uint32_t CountParameters(const Korvel::IEcu& ecu);

// The first FATAL or ERROR message the collector holds, as one line; empty when there is none.
std::string FirstError(const Korvel::ReportCollector& collector);

// A message as one line: some of the reader's texts end in a line end of their own (kept
// there on purpose), which is dropped here; inner line ends become blanks.
std::string OneLine(const std::string& text);

}  // namespace zekl
