// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZFileDocumentManager.h"

#include "zlib/common/documents/ZApp.h"
#include "zlib/common/documents/ZDocument.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZFile.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageBox.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZXMLElement.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <cassert>
#include <string>
#include <string_view>
#include <utility>

namespace orvane
{

namespace
{

/// Packs four characters into a number, the first into the top byte; 0 for any other length.
std::uint32_t packedCode(std::string_view text)
{
    if (text.size() != 4)
        return 0;
    std::uint32_t number = 0;
    for (const char character : text)
        number = number << 8 | static_cast<unsigned char>(character);
    return number;
}

boost::shared_ptr<ZFiletype> readFiletype(const ZXMLElement& xml)
{
    auto type = boost::make_shared<ZFiletype>();
    type->docClass = xml.GetAttributeOr("docclass", "");
    type->mimeType = xml.GetAttributeOr("mimetype", "");
    type->macType = packedCode(xml.GetAttributeOr("mactype", ""));
    type->extension = xml.GetAttributeOr("winext", "");
    type->description = xml.GetAttributeOr("description", "None");
    return type;
}

void reportUnreadable(const ZString& reason)
{
    ZMessageBox::Show(ZMessageBox::kError, "Error Opening Document", reason);
}

}  // namespace

ZFileDocumentManager::ZFileDocumentManager(const boost::shared_ptr<ZXMLElement>& xml,
                                           ZApplication* application)
    : ZDocumentManager(xml, application,
                       "ZFileDocumentManager :: ZFileDocumentManager,  XML tag is not a "
                       "<documentmanager>.")
{
    if (const auto types = xml->GetChild("filetypes"))
        AddFileTypes(*types);
}

void ZFileDocumentManager::AddFileTypes(const ZXMLElement& xml)
{
    if (!xml.IsNamed("filetypes"))
        throw ZException("ZFileDocumentManager :: AddFileTypes,  XML tag is not a <filetypes>.");
    const std::int32_t count = xml.GetChildCount("filetype");
    for (std::int32_t i = 0; i < count; ++i)
        mFileTypes.Append(readFiletype(*xml.GetChild("filetype", i)));
}

bool ZFileDocumentManager::IsKindOf(std::string_view className) const
{
    return className == "ZFileDocumentManagerClass" || ZDocumentManager::IsKindOf(className);
}

const char* ZFileDocumentManager::GetClassName() const
{
    return "ZFileDocumentManagerClass";
}

bool ZFileDocumentManager::Answers(std::int32_t messageId) const
{
    return messageId == ZFILEOPEN || ZDocumentManager::Answers(messageId);
}

void ZFileDocumentManager::HandleZMessage(boost::shared_ptr<const ZMessage> message)
{
    if (message->GetId() == ZFILEOPEN)
        return OpenFile(*message);
    ZDocumentManager::HandleZMessage(std::move(message));
}

void ZFileDocumentManager::OpenFile(const ZMessage& message)
{
    ZString typeName;
    if (!message.Find("doctype", typeName))
        throw ZException("Couldn't find FileOpenName in message");
    const auto types = GetTypes();
    const auto type = std::ranges::find(types, typeName.ToNarrow(), &ZDocumentType::name);
    if (type == types.end())
        return;
    boost::shared_ptr<ZFile> file;
    if (!message.Find("file", file) || !file)
        file = OpenDialog();
    if (file)
        OpenDocument(file, *type);
}

boost::shared_ptr<ZDocument> ZFileDocumentManager::OpenDefault()
{
    const auto types = GetTypes();
    return types.empty() ? nullptr : NewDocument(types.front());
}

void ZFileDocumentManager::OpenDocument(const boost::shared_ptr<ZFile>& file,
                                        const ZDocumentType& type)
{
    assert(file);
    ZApp* const app = ZApp::Of(*this);
    if (!app || !app->GetWindowManager())
        throw ZException("Unable to open document because there is no WindowManager.");
    const auto fitting = FindType(*file);
    const auto document = NewDocument(fitting ? *fitting : type);
    try {
        if (document->ReadFile(*file))
            return document->SetTitle(file->GetName());
        reportUnreadable(file->GetPath());
    } catch (const ZException& exception) {
        reportUnreadable(exception.GetMessage());
    }
    CloseDocument(document);
}

boost::shared_ptr<ZFile> ZFileDocumentManager::OpenDialog()
{
    constexpr const char* kTitle = "Open File";
    ZApp* const app = ZApp::Of(*this);
    return app ? app->ChooseOpenFile(kTitle, kTitle, mFileTypes, 0) : nullptr;
}

std::optional<ZDocumentType> ZFileDocumentManager::FindType(const ZFile& file) const
{
    const auto filetypes = mFileTypes.Copy();
    const auto filetype = std::ranges::find_if(
        filetypes, [&](const auto& known) { return file.IsOfFiletype(known); });
    if (filetype == filetypes.end())
        return std::nullopt;
    const auto types = GetTypes();
    const auto type = std::ranges::find(types, (*filetype)->docClass, &ZDocumentType::className);
    return type != types.end() ? std::optional(*type) : std::nullopt;
}

}  // namespace orvane
