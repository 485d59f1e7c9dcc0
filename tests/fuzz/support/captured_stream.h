#pragma once

#include <cstdio>
#include <string>

/// Takes what is written to a standard stream of the C library while it lives. Its descriptor stays: there
/// the sanitizers and the fuzzer report.
class CapturedStream
{
public:
    /// stream is stdout or stderr.
    explicit CapturedStream(FILE** stream);
    ~CapturedStream();
    CapturedStream(const CapturedStream&) = delete;
    CapturedStream& operator=(const CapturedStream&) = delete;

    /// What was written so far.
    const std::string& text() const;

private:
    static ssize_t take(void* self, const char* bytes, std::size_t size);

    FILE** m_stream;
    FILE* m_original;
    std::string m_text;
};
