// Sequential files with the classic line and item rules, over a byte source
// or sink that the platform layer supplies (a host file) or a test supplies
// (memory). Reading is buffered: no system call per character or line.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace ravelo {

class ByteSource {
public:
    virtual ~ByteSource() = default;
    // Reads up to n bytes into buf; returns 0 only at the end.
    virtual std::size_t Read(char* buf, std::size_t n) = 0;
};

class ByteSink {
public:
    virtual ~ByteSink() = default;
    virtual void Write(const char* data, std::size_t n) = 0;
    // Makes everything written so far durable (flushes buffers to the host).
    virtual void Flush() = 0;
    // The end of writing: a sink that puts its file in place does it here,
    // and may fail as a write does.
    virtual void Close() {}
};

// A source over a text held in memory (tests, and the cleaning passes).
std::unique_ptr<ByteSource> MemorySource(std::string bytes);
// A sink that appends to `bytes`, which must outlive it.
std::unique_ptr<ByteSink> MemorySink(std::string& bytes);

// One field of a write record.
struct Field {
    enum class Kind { Text, Double, Integer };
    Kind kind;
    std::string text;
    double number = 0;
    long long integer = 0;

    static Field Text(std::string s) { return {Kind::Text, std::move(s), 0, 0}; }
    static Field Double(double d) { return {Kind::Double, {}, d, 0}; }
    static Field Integer(long long i) { return {Kind::Integer, {}, 0, i}; }
};

// The text of a write record without its line end: fields joined by ",",
// texts in double quotes (no escaping), doubles in standard number text
// without the blank, integers as digits.
std::string RecordText(std::initializer_list<Field> fields);

class InputFile {
public:
    explicit InputFile(std::unique_ptr<ByteSource> source);

    // True when no byte is left.
    bool Eof();
    // One line: ends at CR LF, a lone CR or a lone LF; a last line without an
    // end counts. Reading at the end raises 62.
    std::string LineInput();
    // The same into `line`, whose storage is kept: a pass over every line of
    // a large file reads them without an allocation per line.
    void LineInput(std::string& line);
    // One character (a byte); at the end raises 62.
    char GetChar();
    // The bytes not yet read from the current buffer (the next buffer when it
    // is used up), taken as read; empty only at the end. For passes that look
    // at every byte without a call per byte.
    std::string_view ReadChunk();

    // Sequential items: skip blanks; a double quote starts a quoted item that
    // ends at the next double quote (the rest up to the comma or line end is
    // dropped); otherwise a text item runs to the next comma or line end
    // (trimmed), a number item also ends at a blank. After an item, blanks
    // are skipped and one comma or one line end is consumed. An empty line
    // gives one empty item. Reading at the end raises 62.
    std::string InputText();
    double InputNumber();   // the item's value by Val
    // A whole-number item (rounded half to even; out of range raises 6).
    std::int32_t InputLong();
    std::int16_t InputInteger();

private:
    int Peek();            // -1 at end
    int Next();            // -1 at end
    void Fill();
    std::string ReadItem(bool number);

    std::unique_ptr<ByteSource> source_;
    std::vector<char> buffer_;
    std::size_t pos_ = 0;
    std::size_t end_ = 0;
    bool exhausted_ = false;
};

class OutputFile {
public:
    explicit OutputFile(std::unique_ptr<ByteSink> sink);
    ~OutputFile();
    OutputFile(OutputFile&&) noexcept;
    OutputFile& operator=(OutputFile&&) noexcept;

    // Text as it stands, without a line end.
    void Print(std::string_view text);
    // Text followed by CR LF.
    void PrintLine(std::string_view text = {});
    // One write record followed by CR LF.
    void WriteRecord(std::initializer_list<Field> fields);
    // Writes the buffer to the sink and flushes it to the host.
    void Flush();
    // Writes the buffer out, closes the sink and releases it (also done by the
    // destructor, which drops any failure).
    void Close();

private:
    std::unique_ptr<ByteSink> sink_;
    std::string buffer_;
};

}  // namespace ravelo
