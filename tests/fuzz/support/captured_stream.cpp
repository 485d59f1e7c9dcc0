#include "captured_stream.h"

#include "require.h"

CapturedStream::CapturedStream(FILE** stream)
    : m_stream(stream)
    , m_original(*stream)
{
    cookie_io_functions_t functions{};
    functions.write = &CapturedStream::take;
    FILE* own = fopencookie(this, "w", functions);
    require(own != nullptr && std::setvbuf(own, nullptr, _IONBF, 0) == 0, "a stream can be made");
    *m_stream = own;
}

CapturedStream::~CapturedStream()
{
    std::fclose(*m_stream);
    *m_stream = m_original;
}

const std::string& CapturedStream::text() const
{
    return m_text;
}

ssize_t CapturedStream::take(void* self, const char* bytes, std::size_t size)
{
    static_cast<CapturedStream*>(self)->m_text.append(bytes, size);
    return static_cast<ssize_t>(size);
}
