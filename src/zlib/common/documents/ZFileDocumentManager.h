// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/documents/ZDocumentManager.h"
#include "zlib/common/objects/ZFiletype.h"

#include <boost/smart_ptr/shared_ptr.hpp>

namespace orvane
{

class ZFile;

/// A document manager whose documents are opened from files. [interface thread]
class ZFileDocumentManager : public ZDocumentManager
{
public:
    /// From a `documentmanager` with `filetypes`. Throws ZException -1 for another tag. [setup]
    ZFileDocumentManager(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// ZFILEOPEN ("doctype", the name of a type; "file"): opens the file, or the one that the user
    /// chooses when there is none. Throws ZException -1 when "doctype" is missing. The rest as
    /// ZDocumentManager.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;
    [[nodiscard]] bool Answers(std::int32_t messageId) const override;

    /// A new document of the first type; null when there is none.
    virtual boost::shared_ptr<ZDocument> OpenDefault();
    /// Makes a document of the type that the file's kind names, or of the given one, and lets it
    /// read the file. A document that cannot is closed again and the user is told. Throws
    /// ZException -1 when there is no window manager to show it.
    virtual void OpenDocument(const boost::shared_ptr<ZFile>& file, const ZDocumentType& type);
    /// Lets the user choose a file of the manager's kinds; null when none is chosen.
    [[nodiscard]] virtual boost::shared_ptr<ZFile> OpenDialog();

    /// The kind of file that the file is; null when it is none of the manager's.
    [[nodiscard]] boost::shared_ptr<ZFiletype> FindFiletype(const ZFile& file) const;
    /// The document type for such a file: the first of the kind's class, else null.
    [[nodiscard]] const ZDocumentType* FindType(const ZFile& file) const;

private:
    void AddFileTypes(const ZXMLElement& xml);
    void OpenFile(const ZMessage& message);

    ZFiletypes mFileTypes;
};

}  // namespace orvane
