// Writer configuration: one unsigned setting, 0 by default, that no output depends on, and
// (additions) two switches that make a write keep every text it can.
//
// GetKLWriter().GetConfig() is the process-wide configuration that the write operations
// without a configuration argument read. Each write reads it once, when it starts, and any
// thread may change it at any time without a data race; but a change then reaches every
// other thread's next write. A program whose threads write with different settings gives
// each write its own configuration instead: IKLWriter::CreateConfig makes one, and the
// WriteToString and WriteToFile overloads that take it never look at the process-wide one.
#pragma once

#include <ZeKL/Types.h>

namespace Korvel {

class ZEKL_API IWriterConfig {
public:
    virtual ~IWriterConfig();
    virtual void SetSetting(uint32_t value) = 0;
    virtual uint32_t GetSetting() const = 0;

    // Addition. Off (the default): only the texts of the two kinds of MAP pass through the
    // encoding helper (escaped and converted to the output encoding); every other attribute
    // value is written as stored. On: every attribute value does (ids, units, values,
    // semantics, type names, conversion ids, table values), so that any text the output
    // encoding can carry reads back as it was.
    virtual void SetEncodeAllValues(bool on) = 0;
    virtual bool GetEncodeAllValues() const = 0;

    // Addition. Off (the default): a character that the output encoding cannot carry is
    // written as "?" (Windows-1252 lacks it; "iso-8859-1" carries U+0000 to U+007F and U+00A0
    // to U+00FF only). On: the write fails instead, writes nothing (a file keeps its old
    // content), and its error names the item, the attribute and the character. Applies to the
    // values that pass through the encoding helper (see SetEncodeAllValues); a value that is
    // not valid UTF-8 fails the write either way.
    virtual void SetRefuseUncarriedCharacters(bool on) = 0;
    virtual bool GetRefuseUncarriedCharacters() const = 0;
};

}  // namespace Korvel
