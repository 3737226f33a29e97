// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <optional>

namespace orvane
{

class ZApp;
class ZDocument;
class ZMessage;

/// Returns the document in a field, which managers send as a shared pointer and windows as a plain
/// one; it may be null. No value without such a field.
[[nodiscard]] std::optional<ZDocument*> documentOf(const ZMessage& message, const char* field);

/// Returns the document as the application's manager holds it; null when it does not.
[[nodiscard]] boost::shared_ptr<ZDocument> findDocument(const ZApp& app, const ZDocument* document);

}  // namespace orvane
