// The classic run-time error table and the one way to raise its errors.
#include "runtime/error.hpp"

namespace ravelo {

std::string_view ErrorDescription(int number) {
    switch (number) {
        case kInvalidCall: return "Invalid procedure call or argument";
        case kOverflow: return "Overflow";
        case kSubscript: return "Subscript out of range";
        case kDivisionByZero: return "Division by zero";
        case kTypeMismatch: return "Type mismatch";
        case kFileNotFound: return "File not found";
        case kBadRecordLength: return "Bad record length";
        case kInputPastEnd: return "Input past end of file";
        case kDiskFull: return "Disk full";
        case kPathFileAccess: return "Path/File access error";
        case kPathNotFound: return "Path not found";
        default: return "Application-defined or object-defined error";
    }
}

void Raise(int number) {
    throw RuntimeError{number, std::string(ErrorDescription(number))};
}

void EndProgram(int status) {
    throw ProgramEnd{status};
}

}  // namespace ravelo
