// Buffered sequential files: lines and items are cut straight out of a
// 64 KiB buffer, so the source is called once per buffer, never per byte.
#include "runtime/sequential.hpp"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "runtime/byte_scan.hpp"
#include "runtime/error.hpp"
#include "runtime/number.hpp"

namespace ravelo {
namespace {

constexpr std::size_t kBufferSize = 64 * 1024;
constexpr char kQuote = '"';

class StringSource final : public ByteSource {
public:
    explicit StringSource(std::string bytes) : bytes_(std::move(bytes)) {}
    std::size_t Read(char* buf, std::size_t n) override {
        const std::size_t count = std::min(n, bytes_.size() - pos_);
        std::memcpy(buf, bytes_.data() + pos_, count);
        pos_ += count;
        return count;
    }

private:
    std::string bytes_;
    std::size_t pos_ = 0;
};

// Appends what is written to a text the caller keeps.
class StringSink final : public ByteSink {
public:
    explicit StringSink(std::string& bytes) : bytes_(bytes) {}
    void Write(const char* data, std::size_t n) override { bytes_.append(data, n); }
    void Flush() override {}

private:
    std::string& bytes_;
};

bool IsLineEnd(int c) { return c == '\r' || c == '\n'; }

void AppendRecord(std::string& out, std::initializer_list<Field> fields) {
    bool first = true;
    for (const Field& field : fields) {
        if (!first) out.push_back(',');
        first = false;
        switch (field.kind) {
            case Field::Kind::Text:
                out.push_back(kQuote);
                out.append(field.text);
                out.push_back(kQuote);
                break;
            case Field::Kind::Double: AppendNumTextBare(out, field.number); break;
            case Field::Kind::Integer: {
                char digits[24];
                out.append(digits, std::to_chars(digits, digits + sizeof digits, field.integer).ptr);
                break;
            }
        }
    }
}

}  // namespace

std::unique_ptr<ByteSource> MemorySource(std::string bytes) {
    return std::make_unique<StringSource>(std::move(bytes));
}

std::unique_ptr<ByteSink> MemorySink(std::string& bytes) { return std::make_unique<StringSink>(bytes); }

std::string RecordText(std::initializer_list<Field> fields) {
    std::string out;
    AppendRecord(out, fields);
    return out;
}

// ---------------------------------------------------------------- input

InputFile::InputFile(std::unique_ptr<ByteSource> source)
    : source_(std::move(source)), buffer_(kBufferSize) {}

void InputFile::Fill() {
    pos_ = 0;
    end_ = 0;
    if (exhausted_) return;
    end_ = source_->Read(buffer_.data(), buffer_.size());
    if (end_ == 0) exhausted_ = true;
}

int InputFile::Peek() {
    if (pos_ == end_) Fill();
    return pos_ == end_ ? -1 : static_cast<unsigned char>(buffer_[pos_]);
}

int InputFile::Next() {
    const int c = Peek();
    if (c >= 0) ++pos_;
    return c;
}

bool InputFile::Eof() { return Peek() < 0; }

char InputFile::GetChar() {
    const int c = Next();
    if (c < 0) Raise(kInputPastEnd);
    return static_cast<char>(c);
}

std::string_view InputFile::ReadChunk() {
    if (Peek() < 0) return {};
    const std::string_view chunk(buffer_.data() + pos_, end_ - pos_);
    pos_ = end_;
    return chunk;
}

std::string InputFile::LineInput() {
    std::string line;
    LineInput(line);
    return line;
}

void InputFile::LineInput(std::string& line) {
    if (Peek() < 0) Raise(kInputPastEnd);
    line.clear();
    while (Peek() >= 0) {
        const char* begin = buffer_.data() + pos_;
        const char* at = FindLineEnd(begin, buffer_.data() + end_);
        line.append(begin, at);
        pos_ = static_cast<std::size_t>(at - buffer_.data());
        if (pos_ != end_) {
            // CR LF, a lone CR or a lone LF ends the line; the LF of a CR LF
            // may sit at the start of the next buffer.
            if (Next() == '\r' && Peek() == '\n') ++pos_;
            break;
        }
    }
}

std::string InputFile::ReadItem(bool number) {
    if (Peek() < 0) Raise(kInputPastEnd);
    while (Peek() == ' ') ++pos_;

    std::string item;
    int c = Peek();
    if (c == kQuote) {
        ++pos_;
        // The quoted text may hold commas and line ends; what follows the
        // closing quote up to the separator is dropped.
        while ((c = Next()) >= 0 && c != kQuote) item.push_back(static_cast<char>(c));
        while ((c = Peek()) >= 0 && c != ',' && !IsLineEnd(c)) ++pos_;
    } else {
        while ((c = Peek()) >= 0 && c != ',' && !IsLineEnd(c) && !(number && c == ' ')) {
            item.push_back(static_cast<char>(c));
            ++pos_;
        }
        if (!number) {
            while (!item.empty() && item.back() == ' ') item.pop_back();  // leading ones skipped above
        }
    }

    // The separator: blanks, then one comma or one line end. Anything else
    // (the next number after a blank) is left for the next item.
    while (Peek() == ' ') ++pos_;
    c = Peek();
    if (c == ',') {
        ++pos_;
    } else if (IsLineEnd(c)) {
        ++pos_;
        if (c == '\r' && Peek() == '\n') ++pos_;
    }
    return item;
}

std::string InputFile::InputText() { return ReadItem(false); }
double InputFile::InputNumber() { return Val(ReadItem(true)); }
std::int32_t InputFile::InputLong() { return ToInt32(InputNumber()); }
std::int16_t InputFile::InputInteger() { return ToInt16(InputNumber()); }

// ---------------------------------------------------------------- output

OutputFile::OutputFile(std::unique_ptr<ByteSink> sink) : sink_(std::move(sink)) {
    buffer_.reserve(kBufferSize);
}

OutputFile::~OutputFile() {
    // Close() is the path that reports a failure; a destructor must not throw.
    try {
        Close();
    } catch (...) {
    }
}

OutputFile::OutputFile(OutputFile&& other) noexcept
    : sink_(std::move(other.sink_)), buffer_(std::move(other.buffer_)) {
    other.buffer_.clear();
}

OutputFile& OutputFile::operator=(OutputFile&& other) noexcept {
    if (this != &other) {
        try {
            Close();
        } catch (...) {
        }
        sink_ = std::move(other.sink_);
        buffer_ = std::move(other.buffer_);
        other.buffer_.clear();
    }
    return *this;
}

void OutputFile::Print(std::string_view text) {
    // Writing to a closed file is a fault of the program, not of the host;
    // it is reported rather than left undefined.
    if (!sink_) Raise(kPathFileAccess);
    if (buffer_.size() + text.size() > kBufferSize) {
        if (!buffer_.empty()) {
            sink_->Write(buffer_.data(), buffer_.size());
            buffer_.clear();
        }
        if (text.size() >= kBufferSize) {
            sink_->Write(text.data(), text.size());
            return;
        }
    }
    buffer_.append(text);
}

void OutputFile::PrintLine(std::string_view text) {
    Print(text);
    Print("\r\n");
}

void OutputFile::WriteRecord(std::initializer_list<Field> fields) {
    if (!sink_) Raise(kPathFileAccess);
    AppendRecord(buffer_, fields);
    buffer_.append("\r\n");
    if (buffer_.size() >= kBufferSize) {
        sink_->Write(buffer_.data(), buffer_.size());
        buffer_.clear();
    }
}

void OutputFile::Flush() {
    if (!sink_) Raise(kPathFileAccess);
    if (!buffer_.empty()) {
        sink_->Write(buffer_.data(), buffer_.size());
        buffer_.clear();
    }
    sink_->Flush();
}

void OutputFile::Close() {
    if (!sink_) return;
    // The sink is released even when the last write fails, so a second
    // Close (the destructor's) does not write the same bytes again.
    const std::unique_ptr<ByteSink> sink = std::move(sink_);
    std::string pending;
    pending.swap(buffer_);
    if (!pending.empty()) sink->Write(pending.data(), pending.size());
    sink->Close();
}

}  // namespace ravelo
