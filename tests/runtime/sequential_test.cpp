// Sequential files: lines, items, write records, the output buffer. Inputs also
// run through a one-byte-per-read source, so buffer edges fall everywhere.
#include <gtest/gtest.h>

#include <functional>

#include "runtime/error.hpp"
#include "runtime/sequential.hpp"
#include "support/error_of.hpp"

using namespace ravelo;

namespace {

using test::ErrorOf;
using Lines = std::vector<std::string>;

struct TrickleSource final : ByteSource {
    explicit TrickleSource(std::string b) : bytes(std::move(b)) {}
    std::size_t Read(char* buf, std::size_t n) override {
        if (pos == bytes.size() || n == 0) return 0;
        *buf = bytes[pos++];
        return 1;
    }
    std::string bytes;
    std::size_t pos = 0;
};

// What reached the sink, kept after the file is gone.
struct SinkLog {
    std::string bytes;
    int writes = 0, flushes = 0;
    bool fail = false;
};
struct LogSink final : ByteSink {
    explicit LogSink(SinkLog& l) : log(l) {}
    void Write(const char* data, std::size_t n) override {
        if (log.fail) Raise(kPathFileAccess);
        log.bytes.append(data, n);
        ++log.writes;
    }
    void Flush() override { ++log.flushes; }
    SinkLog& log;
};

// The items read from a whole-buffer source, the same from a one-byte one.
Lines BothWays(const std::string& text, const std::function<Lines(InputFile&)>& read) {
    InputFile whole(MemorySource(text));
    InputFile trickle(std::make_unique<TrickleSource>(text));
    Lines result = read(whole);
    EXPECT_EQ(read(trickle), result);
    return result;
}

Lines AllLines(InputFile& f) {
    Lines lines;
    while (!f.Eof()) lines.push_back(f.LineInput());
    EXPECT_EQ(ErrorOf([&] { f.LineInput(); }), 62);
    return lines;
}

}  // namespace

TEST(LineInput, EveryLineEndAnywhereAndAnUnendedLastLine) {
    const std::pair<const char*, Lines> cases[] = {
        {"A\r\nB\r\n", {"A", "B"}}, {"A\nB\rC\r\nD", {"A", "B", "C", "D"}}, {"A\r\r\nB", {"A", "", "B"}},
        {"A\n\rB\n", {"A", "", "B"}},  // LF then CR is two ends
        {"\r\n", {""}}, {" x\t \r\n", {" x\t "}} /* nothing trimmed */, {"", {}},
    };
    for (const auto& [text, lines] : cases) EXPECT_EQ(BothWays(text, AllLines), lines) << text;
    // Ends are looked for eight bytes at a time: each kind at every offset.
    for (const std::string end : {"\r", "\n", "\r\n"}) {
        for (std::size_t length = 0; length < 20; ++length) {
            const std::string a(length, 'a'), b(length + 3, 'b');
            InputFile f(MemorySource(a + end + b + end + "c"));
            EXPECT_EQ(AllLines(f), (Lines{a, b, "c"})) << length;
        }
    }
}

TEST(LineInput, LinesLongerThanTheBufferCrLfAcrossItAndTheRestInChunks) {
    // 65535 bytes, then CR at the last byte of a 64 KiB buffer and LF at the
    // first byte of the next.
    const std::string longLine(65535, 'x');
    InputFile f(MemorySource(longLine + "\r\n" + std::string(200000, 'y') + "\nz"));
    EXPECT_EQ(AllLines(f), (Lines{longLine, std::string(200000, 'y'), "z"}));

    const std::string text = "first\r\n" + std::string(150000, 'q');
    InputFile chunked(MemorySource(text));
    EXPECT_EQ(chunked.LineInput(), "first");
    std::string rest;
    for (std::string_view chunk = chunked.ReadChunk(); !chunk.empty(); chunk = chunked.ReadChunk()) {
        EXPECT_LE(chunk.size(), 64u * 1024);
        rest.append(chunk);
    }
    EXPECT_EQ(rest, text.substr(7));
    EXPECT_TRUE(chunked.Eof());

    InputFile bytes(MemorySource("a\r\xff"));
    EXPECT_EQ((std::string{bytes.GetChar(), bytes.GetChar(), bytes.GetChar()}), "a\r\xff");
    EXPECT_TRUE(bytes.Eof());
    EXPECT_EQ(ErrorOf([&] { bytes.GetChar(); }), 62);
}

TEST(InputItems, QuotedTextNumbersLineEndsAndQuotesAcrossLines) {
    const auto items = BothWays(" \"x, y\",12 34,  text item  ,\"q\"junk , last", [](InputFile& f) {
        Lines got{f.InputText()};
        got.push_back(std::to_string(f.InputNumber()));
        got.push_back(std::to_string(f.InputNumber()));
        for (int i = 0; i < 3; ++i) got.push_back(f.InputText());  // the last without a line end: fine
        EXPECT_TRUE(f.Eof());
        EXPECT_EQ(ErrorOf([&] { f.InputText(); }), 62);
        return got;
    });
    EXPECT_EQ(items, (Lines{"x, y", "12.000000", "34.000000", "text item", "q", "last"}));

    // An empty line is one empty item; "a" takes its comma, leaving an empty
    // rest; a quoted item holds its line end; a tab is not skipped (Val 0).
    const auto more = BothWays("1\r2\n3\r\n\r\na,\r\n\"p\r\nq\",\t5", [](InputFile& f) {
        Lines got;
        for (int i = 0; i < 3; ++i) got.push_back(std::to_string(f.InputLong()));
        for (int i = 0; i < 4; ++i) got.push_back(f.InputText());
        got.push_back(std::to_string(f.InputNumber()));
        return got;
    });
    EXPECT_EQ(more, (Lines{"1", "2", "3", "", "a", "", "p\r\nq", "0.000000"}));

    // Whole numbers round half to even and overflow.
    InputFile f(MemorySource("2.5,3.5,-2.5\r\n2147483648,40000\r\n"));
    EXPECT_EQ(f.InputLong(), 2);
    EXPECT_EQ(f.InputInteger(), 4);
    EXPECT_EQ(f.InputLong(), -2);
    EXPECT_EQ(ErrorOf([&] { f.InputLong(); }), 6);
    EXPECT_EQ(ErrorOf([&] { f.InputInteger(); }), 6);
}

TEST(OutputFile, RecordsAndLinesEndInCrLf) {
    EXPECT_EQ(RecordText({Field::Text("H1"), Field::Double(1.5), Field::Double(-0.25), Field::Double(0),
                          Field::Double(1e-05), Field::Integer(-3), Field::Text("a\"b"), Field::Text("")}),
              "\"H1\",1.5,-.25,0,1E-05,-3,\"a\"b\",\"\"");
    SinkLog log;
    {
        OutputFile out(std::make_unique<LogSink>(log));
        out.Print("a");
        out.PrintLine();
        out.PrintLine("b c");
        out.WriteRecord({Field::Integer(7), Field::Text("x")});
        EXPECT_EQ(log.bytes, "");  // still buffered
        out.Flush();
        EXPECT_EQ(log.flushes, 1);
        out.PrintLine("end");
    }
    EXPECT_EQ(log.bytes, "a\r\nb c\r\n7,\"x\"\r\nend\r\n");
}

TEST(OutputFile, LargeOutputInFewWritesAndFailures) {
    SinkLog log;
    std::string expected;
    OutputFile moved(std::make_unique<LogSink>(log));
    {
        OutputFile out(std::make_unique<LogSink>(log));
        for (int i = 0; i < 100000; ++i) {
            out.PrintLine("abc");
            out.WriteRecord({Field::Integer(i)});
            expected += "abc\r\n" + std::to_string(i) + "\r\n";
        }
        out.Print(std::string(100000, 'z'));  // larger than the buffer
        expected += std::string(100000, 'z');
        moved = std::move(out);
    }
    moved.Close();
    moved.Close();
    EXPECT_EQ(log.bytes, expected);
    EXPECT_LT(log.writes, 40);  // about 1.2 MB in 64 KiB blocks
    EXPECT_EQ(ErrorOf([&] { moved.Print("x"); }), 75);

    // A failing write surfaces in Close, never in the destructor.
    log.fail = true;
    OutputFile failing(std::make_unique<LogSink>(log));
    failing.PrintLine("x");
    EXPECT_EQ(ErrorOf([&] { failing.Close(); }), 75);
    EXPECT_NO_THROW(OutputFile(std::make_unique<LogSink>(log)).PrintLine("y"));
}
