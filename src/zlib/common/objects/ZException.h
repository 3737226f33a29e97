// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZString.h"

#include <cstdint>
#include <source_location>

namespace orvane
{

/// The framework's only exception type: thrown by value, caught by reference.
class ZException
{
public:
    /// The number that the message box shows.
    enum Code : std::int32_t
    {
        kNotImplemented = -2,
        kGeneral = -1,          // whatever has no code of its own
        kWriteOnlyFile = 0,     // a read from a file that is open for writing only
        kOutOfMemory = 2,       // for a buffer or a signal object
        kEndWithoutReport = 3,  // ends the start of the plug-in without a message box
        kBadSignature = 5,
        kTooLarge = 6,  // a file or a host's chunk that is larger than any that is read
    };

    /// A general failure. The source file and line are those of the throw.
    explicit ZException(ZString message,
                        const std::source_location& where = std::source_location::current());
    /// A failure with a code of its own, mostly one of Code.
    ZException(std::int32_t code, ZString message,
               const std::source_location& where = std::source_location::current());
    ZException(const ZException&) = default;
    ZException& operator=(const ZException&) = default;
    virtual ~ZException() = default;

    /// Shows the failure in a message box. [any thread but the audio thread]
    virtual void Report() const;

    [[nodiscard]] std::int32_t GetCode() const { return mCode; }
    [[nodiscard]] const ZString& GetMessage() const { return mMessage; }

private:
    std::int32_t mCode;
    ZString mMessage;
    ZString mFile;
    std::int32_t mLine;
};

/// Reports the exception that is being handled, whatever its type. For a catch block beyond which
/// no exception may pass. [any thread but the audio thread]
void reportCurrentException() noexcept;

}  // namespace orvane
