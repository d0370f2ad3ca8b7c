// One error type for the failures the program does not trap itself, with the
// classic run-time error numbers and texts, and one way to raise them.
#pragma once

#include <exception>
#include <string>
#include <string_view>

namespace ravelo {

// An untrapped run-time error: the entry shows "Run-time error 'N':" and the
// description, and the program exits with status 3.
struct RuntimeError : std::exception {
    int number = 0;
    std::string description;

    RuntimeError(int n, std::string text) : number(n), description(std::move(text)) {}
    const char* what() const noexcept override { return description.c_str(); }
};

// Error numbers used throughout the program.
enum ErrorNumber : int {
    kInvalidCall = 5,        // "Invalid procedure call or argument"
    kOverflow = 6,           // "Overflow"
    kSubscript = 9,          // "Subscript out of range"
    kDivisionByZero = 11,    // "Division by zero"
    kTypeMismatch = 13,      // "Type mismatch"
    kFileNotFound = 53,      // "File not found"
    kBadRecordLength = 59,   // "Bad record length"
    kInputPastEnd = 62,      // "Input past end of file"
    kDiskFull = 61,          // "Disk full"
    kPathFileAccess = 75,    // "Path/File access error"
    kPathNotFound = 76,      // "Path not found"
};

// The classic description of an error number ("Application-defined or
// object-defined error" for numbers outside the table).
std::string_view ErrorDescription(int number);

[[noreturn]] void Raise(int number);

// The end of the program from inside a routine (the BASIC "End" statement):
// every window closes and the process exits with `status`.
struct ProgramEnd {
    int status = 0;
};

[[noreturn]] void EndProgram(int status = 0);

}  // namespace ravelo
