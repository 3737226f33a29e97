// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZString.h"

#include <cstdint>
#include <source_location>

namespace orvane
{

/// The framework's only exception type: thrown by value, caught by reference.
/// Codes in use: -1 general failure, -2 not implemented, 2 out of memory for signal objects,
/// 3 an end without a report, 5 a failed signature.
class ZException
{
public:
    /// The source file and line are those of the throw.
    ZException(std::int32_t code, ZString message,
               const std::source_location& where = std::source_location::current());
    ZException(const ZException&) = default;
    ZException& operator=(const ZException&) = default;
    virtual ~ZException() = default;

    /// Tells the user, in a message box. Never on the audio thread.
    virtual void Report() const;

    [[nodiscard]] std::int32_t GetCode() const { return mCode; }
    [[nodiscard]] const ZString& GetMessage() const { return mMessage; }
    [[nodiscard]] const ZString& GetFile() const { return mFile; }
    [[nodiscard]] std::int32_t GetLine() const { return mLine; }

private:
    std::int32_t mCode;
    ZString mMessage;
    ZString mFile;
    std::int32_t mLine;
};

/// Reports the exception that is being handled, whatever its type: for where one must go no
/// further. Never on the audio thread.
void reportCurrentException() noexcept;

}  // namespace orvane
