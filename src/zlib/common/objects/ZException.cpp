// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZException.h"

#include "zlib/common/objects/ZMessageBox.h"
#include "zlib/common/objects/ZTrace.h"

#include <exception>
#include <string>
#include <utility>

namespace orvane
{

ZException::ZException(ZString message, const std::source_location& where)
    : ZException(kGeneral, std::move(message), where)
{
}

ZException::ZException(std::int32_t code, ZString message, const std::source_location& where)
    : mCode(code)
    , mMessage(std::move(message))
    , mFile(where.file_name())
    , mLine(static_cast<std::int32_t>(where.line()))
{
}

void ZException::Report() const
{
    const std::string body = mMessage.ToNarrow() + "\n\rCode " + std::to_string(mCode) +
                             ". You should close the plugin and remove it from any inserts before "
                             "trying to use it again";
    ZTrace::Write(mFile.ToNarrow() + ':' + std::to_string(mLine) + ' ' + mMessage.ToNarrow());
    ZMessageBox::Show(ZMessageBox::kError, "An exception has occurred", body);
}

void reportCurrentException() noexcept
try {
    try {
        throw;
    } catch (const ZException& exception) {
        exception.Report();
    } catch (const std::exception& exception) {
        ZException(exception.what()).Report();
    } catch (...) {
        ZException("Unknown exception").Report();
    }
} catch (...) {
    // There is not even memory for a message.
}

}  // namespace orvane
