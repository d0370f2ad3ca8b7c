// Converting a test's input: one reader called on a file of drive C as the
// converter window calls it, or the whole program's "fileconv" job.
#pragma once

#include <functional>
#include <string>

#include "convert/filcvrt.hpp"
#include "support/test_program.hpp"

namespace ravelo::test {

using Reader = std::function<void(Program&, const std::string&)>;

// Writes `bytes` to `path`, cleans the file as the converter window does
// (not when `clean` is false: a typed name is read as it stands), runs
// `reader` on it and returns `output` ("" when there is none).
inline std::string Convert(TestProgram& t, const Reader& reader, const std::string& path,
                           const std::string& bytes, const std::string& output, bool clean = true) {
    t.Write(path, bytes);
    if (clean) FilCvrt::PrepareInputFile(t.program(), path);
    reader(t.program(), path);
    return t.Read(output);
}

// The demo installation's atom-type table for force-field files.
inline std::string DemoAtomTable() {
    return ReadHostFile(std::string(RAVELO_TEST_DATA) + "/../../demo/drive_c/ravelo/mmatoms.dat");
}

// Installs the program, writes `bytes` to C:\d\<name> and runs "fileconv" on
// it; returns the exit status.
inline int FileConv(TestProgram& t, const std::string& name, const std::string& bytes) {
    t.Install();
    t.Write("C:\\d\\" + name, bytes);
    return t.Run("fileconv C:\\d\\" + name);
}

// The output that "fileconv" leaves for C:\d\<name> holding `bytes` in a
// fresh program (C:\d\<output>, "" when none).
inline std::string FileConvOutput(const std::string& name, const std::string& bytes, const std::string& output) {
    TestProgram t;
    FileConv(t, name, bytes);
    return t.Read("C:\\d\\" + output);
}

}  // namespace ravelo::test
