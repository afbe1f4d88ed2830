#pragma once
// Where `zdsg features` writes: a file or standard output, buffered, with every write checked, so
// that a full disk or a closed pipe ends the run with an error instead of a silently short output.

#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace zdsg {

// Writing the output failed; the text names the output and the system's reason.
class OutputError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class OutputFile {
public:
    // An empty path or "-" is standard output; a file is created or truncated. OutputError when the
    // file cannot be opened.
    explicit OutputFile(const std::string& path);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    void Write(std::string_view text) {
        if (text.empty()) {
            return;  // an empty view may hold no pointer, which memcpy must not get
        }
        Reserve(text.size());
        std::memcpy(m_buffer.data() + m_size, text.data(), text.size());
        m_size += text.size();
    }
    void Put(char c) {
        Reserve(1);
        m_buffer[m_size++] = c;
    }
    // Room for `count` bytes that PutUnsafe then stores without checking.
    void Reserve(size_t count) {
        if (count > m_buffer.size() - m_size) {
            MakeRoom(count);
        }
    }
    void PutUnsafe(char c) { m_buffer[m_size++] = c; }
    // Hands the buffered bytes to the system; OutputError on failure.
    void Flush();
    // Flushes and closes a file (standard output stays open); OutputError on failure.
    void Close();

    const std::string& Name() const { return m_name; }
    bool bTerminal() const;

private:
    static constexpr size_t kBufferSize = 1 << 16;

    void MakeRoom(size_t count);
    [[noreturn]] void Fail(int error) const;

    std::string m_name;
    std::vector<char> m_buffer;  // its size is the capacity; m_size bytes are used
    size_t m_size = 0;
    int m_fd = -1;
    bool m_bOwned = false;
    bool m_bFailed = false;
};

// The stream interface RapidJSON's writers take, over an OutputFile.
class JsonOutputStream {
public:
    using Ch = char;
    explicit JsonOutputStream(OutputFile& out) : m_out(&out) {}
    void Put(char c) { m_out->Put(c); }
    void Flush() {}
    OutputFile& File() { return *m_out; }

private:
    OutputFile* m_out;
};

// Found by RapidJSON's writers through argument lookup: they reserve room for a whole string or
// number and then store it byte by byte without a check each.
inline void PutReserve(JsonOutputStream& stream, size_t count) { stream.File().Reserve(count); }
inline void PutUnsafe(JsonOutputStream& stream, char c) { stream.File().PutUnsafe(c); }

}  // namespace zdsg
