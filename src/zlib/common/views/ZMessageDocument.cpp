// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZMessageDocument.h"

#include "zlib/common/documents/ZApp.h"
#include "zlib/common/documents/ZDocument.h"
#include "zlib/common/documents/ZDocumentManager.h"
#include "zlib/common/objects/ZMessage.h"

namespace orvane
{

std::optional<ZDocument*> documentOf(const ZMessage& message, const char* field)
{
    boost::shared_ptr<ZDocument> shared;
    if (message.Find(field, shared))
        return shared.get();
    ZDocument* plain = nullptr;
    if (message.Find(field, plain))
        return plain;
    return std::nullopt;
}

boost::shared_ptr<ZDocument> findDocument(const ZApp& app, const ZDocument* document)
{
    if (!app.HasDocumentManager())
        return nullptr;
    const ZDocumentManager& documents = *app.GetDocumentManager();
    for (std::int32_t i = 0; i < documents.GetDocumentCount(); ++i)
        if (documents.GetDocument(i).get() == document)
            return documents.GetDocument(i);
    return nullptr;
}

}  // namespace orvane
