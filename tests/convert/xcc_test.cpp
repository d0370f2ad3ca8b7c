// The XCC reader: fractional to Cartesian coordinates checked against the
// distances of the cell metric, the records it writes, its atom bound and
// broken files.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

#include "support/test_program.hpp"

namespace ravelo {
namespace {

using test::TestProgram;

struct Vec {
    double x, y, z;
};
struct Crystal {
    double a, b, c, alpha, beta, gamma;  // angstrom, degrees
    std::vector<Vec> fractional;
};

constexpr double kPi = 3.14159265358979323846;

// Converts an XCC text from the command line; returns the XXS text.
std::string ConvertXcc(const std::string& xcc, int* status = nullptr) {
    TestProgram t;
    t.Install();
    t.Write("C:\\d\\s.xcc", xcc);
    const int result = t.Run("fileconv C:\\d\\s.xcc");
    if (status) *status = result;
    return t.Read("C:\\d\\s.xxs");
}

std::string XccOf(const Crystal& cr) {
    char line[200];
    std::snprintf(line, sizeof line, "%.6f,%.6f,%.6f,\"s.cif\"\r\n%.6f,%.6f,%.6f,\"+\"\r\n", cr.a, cr.b, cr.c,
                  cr.alpha, cr.beta, cr.gamma);
    std::string text = line;
    for (const Vec& f : cr.fractional) {
        std::snprintf(line, sizeof line, "%.6f,%.6f,%.6f,\"C\"\r\n", f.x, f.y, f.z);
        text += line;
    }
    return text;
}

// The atom records of an XXS text, up to the closing record.
std::vector<Vec> Positions(const std::string& xxs) {
    std::vector<Vec> atoms;
    std::istringstream lines(xxs);
    for (std::string line; std::getline(lines, line) && line.rfind("0,0,0,", 0) != 0;) {
        Vec v{};
        std::sscanf(line.c_str(), "%lf,%lf,%lf", &v.x, &v.y, &v.z);
        atoms.push_back(v);
    }
    return atoms;
}

double Distance(const Vec& p, const Vec& q) { return std::hypot(p.x - q.x, p.y - q.y, p.z - q.z); }

// The true distance between two fractional positions: sqrt(d' G d) with
// the metric tensor of the cell.
double MetricDistance(const Crystal& cr, const Vec& p, const Vec& q) {
    const double u = p.x - q.x, v = p.y - q.y, w = p.z - q.z, r = kPi / 180;
    const double d2 = cr.a * cr.a * u * u + cr.b * cr.b * v * v + cr.c * cr.c * w * w +
                      2 * cr.a * cr.b * std::cos(cr.gamma * r) * u * v +
                      2 * cr.a * cr.c * std::cos(cr.beta * r) * u * w +
                      2 * cr.b * cr.c * std::cos(cr.alpha * r) * v * w;
    return std::sqrt(d2);
}

// Every interatomic distance of the XXS text against `expected`.
template <class Expected>
void ExpectDistances(const std::vector<Vec>& xxs, const Crystal& cr, Expected expected, double tolerance) {
    ASSERT_EQ(xxs.size(), cr.fractional.size());
    for (std::size_t i = 0; i < xxs.size(); ++i)
        for (std::size_t j = i + 1; j < xxs.size(); ++j)
            EXPECT_NEAR(Distance(xxs[i], xxs[j]), expected(cr.fractional[i], cr.fractional[j]), tolerance)
                << i << "-" << j;
}

// A number from CIF text, its uncertainty in brackets dropped.
double CifNumber(const std::string& text) { return std::stod(text.substr(0, text.find('('))); }

TEST(XccReader, TheRealCifKeepsItsDistancesThroughXccAndXxs) {
    const std::string cif = test::ReadHostFile(std::string(RAVELO_TEST_DATA) + "/corpus/1544173.cif");
    // The cell and the atoms as the file itself gives them (label, type,
    // x, y, z in the atom loop that ends with the refinement flags column).
    Crystal cr{};
    std::istringstream lines(cif);
    bool inAtoms = false;
    for (std::string line; std::getline(lines, line);) {
        std::istringstream items(line);
        std::string key, type, x, y, z;
        items >> key >> type;
        if (key == "_cell_length_a") cr.a = CifNumber(type);
        if (key == "_cell_length_b") cr.b = CifNumber(type);
        if (key == "_cell_length_c") cr.c = CifNumber(type);
        if (key == "_cell_angle_alpha") cr.alpha = CifNumber(type);
        if (key == "_cell_angle_beta") cr.beta = CifNumber(type);
        if (key == "_cell_angle_gamma") cr.gamma = CifNumber(type);
        if (key == "loop_") inAtoms = false;
        if (inAtoms && items >> x >> y >> z)
            cr.fractional.push_back({CifNumber(x), CifNumber(y), CifNumber(z)});
        if (key == "_atom_site_refinement_flags") inAtoms = true;
    }
    ASSERT_EQ(cr.fractional.size(), 50u);

    TestProgram first;
    first.Install();
    first.Write("C:\\d\\1544173.cif", cif);
    EXPECT_EQ(first.Run("fileconv C:\\d\\1544173.cif"), 0);
    const std::string xxs = ConvertXcc(first.Read("C:\\d\\1544173.xcc"));
    // A monoclinic cell: the three shears are exact.
    ExpectDistances(
        Positions(xxs), cr, [&](const Vec& p, const Vec& q) { return MetricDistance(cr, p, q); }, 1e-4);
    EXPECT_NE(xxs.find("0,0,0,\"#1544173.cif\",51\r\nR_Factor = 0.0353\r\n"), std::string::npos);
}

TEST(XccReader, RightAngledCellsAreExactAndTriclinicOnesTheShearApproximation) {
    const std::vector<Vec> atoms = {{0.1, 0.2, 0.3}, {0.9, 0.05, 0.5}, {0.45, 0.75, 0.15}, {-0.2, 1.1, 0.95}};
    const Crystal orthorhombic{5.5, 7.25, 9.125, 90, 90, 90, atoms};
    const Crystal monoclinic{6.1, 8.3, 10.7, 90, 105.3, 90, atoms};
    for (const Crystal& cr : {orthorhombic, monoclinic})
        ExpectDistances(
            Positions(ConvertXcc(XccOf(cr))), cr,
            [&](const Vec& p, const Vec& q) { return MetricDistance(cr, p, q); }, 1e-4);

    // Triclinic: X = a fx sin(beta) sin(gamma), Y = b fy sin(alpha) + a fx
    // sin(beta) cos(gamma), Z = c fz + b fy cos(alpha) + a fx cos(beta).
    const Crystal triclinic{10.4022, 11.0302, 14.179, 76.829, 73.331, 63.47, atoms};
    const double r = kPi / 180, sa = std::sin(triclinic.alpha * r), ca = std::cos(triclinic.alpha * r);
    const double sb = std::sin(triclinic.beta * r), cb = std::cos(triclinic.beta * r);
    const double sg = std::sin(triclinic.gamma * r), cg = std::cos(triclinic.gamma * r);
    auto shear = [&](const Vec& f) {
        const double ax = triclinic.a * f.x, by = triclinic.b * f.y;
        return Vec{ax * sb * sg, by * sa + ax * sb * cg, triclinic.c * f.z + by * ca + ax * cb};
    };
    const std::vector<Vec> xxs = Positions(ConvertXcc(XccOf(triclinic)));
    ExpectDistances(
        xxs, triclinic, [&](const Vec& p, const Vec& q) { return Distance(shear(p), shear(q)); }, 1e-4);
    // ... which is not the true geometry of such a cell.
    EXPECT_GT(std::fabs(Distance(xxs[0], xxs[3]) - MetricDistance(triclinic, atoms[0], atoms[3])), 0.01);
}

TEST(XccReader, WritesRoundedRecordsTheMarkedNameAndTheRFactor) {
    // A cube of 10 maps 0.1, 0.2, 0.3 to 1, 2, 3; a monoclinic beta of 100
    // maps (1, 0, 0) to (sin 100, 0, cos 100), rounded to 6 places.
    EXPECT_EQ(ConvertXcc("10,10,10,\"cube.cif\"\r\n90,90,90,\"0.05\"\r\n.1,.2,.3,\"C\"\r\n.5,.5,.5,\"Na\"\r\n"
                         "0,0,.12345678,\"Cl\"\r\n"),
              "1,2,3,\"C\",1\r\n5,5,5,\"Na\",2\r\n0,0,1.234568,\"Cl\",3\r\n0,0,0,\"#cube.cif\",4\r\n"
              "R_Factor = 0.05\r\n");
    EXPECT_EQ(ConvertXcc("1,1,1,\"m\"\r\n90,100,90,\"+\"\r\n1,0,0,\"C\"\r\n0,1,0,\"O\"\r\n0,0,1,\"N\"\r\n"),
              ".984808,0,-.173648,\"C\",1\r\n0,1,0,\"O\",2\r\n0,0,1,\"N\",3\r\n0,0,0,\"#m\",4\r\n");
    // No atoms: one atom of zeros is written, and the short file deleted.
    int status = -1;
    EXPECT_EQ(ConvertXcc("10,10,10,\"e\"\r\n90,90,90,\"0.1\"\r\n", &status), "");
    EXPECT_EQ(status, 0);
}

TEST(XccReader, TenThousandAtomsFitAndOneMoreIsOutOfRange) {
    std::string xcc = "10,10,10,\"big\"\r\n90,90,90,\"+\"\r\n";
    for (int i = 0; i < 10000; ++i) xcc += ".1,.2,.3,\"C\"\r\n";
    int status = -1;
    const std::string xxs = ConvertXcc(xcc, &status);
    EXPECT_EQ(status, 0);
    EXPECT_NE(xxs.find("1,2,3,\"C\",10000\r\n0,0,0,\"#big\",10001\r\n"), std::string::npos);

    TestProgram t;
    t.Install();
    t.Write("C:\\d\\s.xxs", "an old output\r\n");
    t.Write("C:\\d\\s.xcc", xcc + ".1,.2,.3,\"C\"\r\n");
    EXPECT_EQ(t.Run("fileconv C:\\d\\s.xcc"), 3);
    EXPECT_NE(t.Output().find("Run-time error '9'"), std::string::npos);
    EXPECT_FALSE(t.Exists("C:\\d\\s.xxs"));
}

TEST(XccReader, ATruncatedFileEndsInTheInputErrorAndKeepsTheFile) {
    for (const std::string xcc :
         {"10,10,10,\"cut\"\r\n", "10,10,10,\"cut\"\r\n90,90,90,\"+\"\r\n.1,.2,.3,\"C\"\r\n.4,.5"}) {
        TestProgram t;
        t.Install();
        t.Write("C:\\d\\s.xcc", xcc);
        EXPECT_EQ(t.Run("fileconv C:\\d\\s.xcc"), 3);
        EXPECT_NE(t.Output().find("Run-time error '62'"), std::string::npos) << xcc;
        EXPECT_EQ(t.Read("C:\\d\\s.xcc"), xcc.back() == '\n' ? xcc : xcc + "\r\n");
        EXPECT_FALSE(t.Exists("C:\\d\\s.xxs"));
    }
}

TEST(XccWindow, ConvertsATypedName) {
    TestProgram t("text XCC.Text1 C:\\d\\s.xcc\nclick XCC.Command1\ndump XCC\n", 0);
    t.Install();
    t.Write("C:\\d\\s.xcc",
            "10,10,10,\"w\"\r\n90,90,90,\"+\"\r\n.1,.2,.3,\"C\"\r\n.4,.5,.6,\"O\"\r\n.7,.8,.9,\"N\"\r\n");
    EXPECT_EQ(t.Run("", "XCC"), 0);
    EXPECT_EQ(t.Read("C:\\d\\s.xxs"),
              "1,2,3,\"C\",1\r\n4,5,6,\"O\",2\r\n7,8,9,\"N\",3\r\n0,0,0,\"#w\",4\r\n");
    EXPECT_NE(t.Output().find("XCC.Label5\t1\t-\tConvert another XCC file?\n"), std::string::npos)
        << t.Output();
}

}  // namespace
}  // namespace ravelo
