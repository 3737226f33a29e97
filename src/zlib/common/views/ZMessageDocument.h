// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <optional>

namespace orvane
{

class ZApp;
class ZDocument;
class ZMessage;

/// The document in a field, which managers send shared and windows plain; it may be null. None when
/// there is no such field.
[[nodiscard]] std::optional<ZDocument*> documentOf(const ZMessage& message, const char* field);

/// The document as its manager holds it; null when it is none of the application's.
[[nodiscard]] boost::shared_ptr<ZDocument> findDocument(const ZApp& app, const ZDocument* document);

}  // namespace orvane
