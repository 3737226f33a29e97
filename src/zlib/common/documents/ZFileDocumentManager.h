// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/documents/ZDocumentManager.h"
#include "zlib/common/objects/ZFiletype.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <optional>

namespace orvane
{

class ZFile;

/// A document manager whose documents are opened from files. [interface thread]
class ZFileDocumentManager : public ZDocumentManager
{
public:
    /// Reads a `documentmanager` with `filetypes`. Throws ZException kGeneral for a wrong tag.
    /// [setup]
    ZFileDocumentManager(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// ZFILEOPEN ("doctype", a type's name; "file"): opens the file; without one, asks the user for
    /// it. Throws ZException kGeneral without "doctype". Other messages go to ZDocumentManager.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;
    [[nodiscard]] bool Answers(std::int32_t messageId) const override;

    /// Creates a document of the first type; null when there are no types.
    virtual boost::shared_ptr<ZDocument> OpenDefault();
    /// Creates a document of the type that fits the file, else of the given type, and lets it read
    /// the file. When it cannot, closes the document and shows a message box. Throws ZException
    /// kGeneral when there is no window manager.
    virtual void OpenDocument(const boost::shared_ptr<ZFile>& file, const ZDocumentType& type);
    /// Asks the user for a file of the manager's file types; null when the user cancels.
    [[nodiscard]] virtual boost::shared_ptr<ZFile> OpenDialog();

    /// Returns the first document type whose class the file's type names; no value when the file is
    /// of none of the manager's types, or no document type has that class.
    [[nodiscard]] std::optional<ZDocumentType> FindType(const ZFile& file) const;

private:
    void AddFileTypes(const ZXMLElement& xml);
    void OpenFile(const ZMessage& message);

    ZFiletypeList mFileTypes{"file types"};
};

}  // namespace orvane
