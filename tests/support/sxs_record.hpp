// One record of a written SXS file read back, for tests that compare it with
// the input's own columns.
#pragma once

#include <sstream>
#include <string>

namespace ravelo::test {

struct SxsRecord {
    double x = 0, y = 0, z = 0;
    std::string symbol;
    int number = 0;
};

// The fields of `x,y,z,"symbol",number`.
inline SxsRecord ParseSxsRecord(std::string record) {
    for (char& c : record)
        if (c == ',' || c == '"') c = ' ';
    std::istringstream in(record);
    SxsRecord r;
    in >> r.x >> r.y >> r.z >> r.symbol >> r.number;
    return r;
}

}  // namespace ravelo::test
