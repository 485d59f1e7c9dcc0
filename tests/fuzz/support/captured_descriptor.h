#pragma once

#include <string>

/// Takes what is written to a file descriptor while it lives.
class CapturedDescriptor
{
public:
    explicit CapturedDescriptor(int descriptor);
    ~CapturedDescriptor();
    CapturedDescriptor(const CapturedDescriptor&) = delete;
    CapturedDescriptor& operator=(const CapturedDescriptor&) = delete;

    /// What was written so far.
    std::string text() const;

private:
    int m_descriptor;
    int m_original;
};
