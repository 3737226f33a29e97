// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZFileChooser.h"

#include "zlib/common/objects/ZFile.h"
#include "zlib/common/objects/ZInterfaceThread.h"
#include "zlib/common/objects/ZMessageBox.h"
#include "zlib/common/objects/ZNeverDestroyed.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <cassert>
#include <utility>

namespace orvane
{

namespace
{

ZFileChooser::Presenter& replacement()
{
    static const ZNeverDestroyed<ZFileChooser::Presenter> presenter;
    return *presenter;
}

// Initialised before any constructor runs: the row of the controls sets it at library load.
constinit ZFileChooser::PlainDialog plainDialog = nullptr;

/// Marks the desktop's dialog as open for a scope. [interface thread]
class OpenDialogScope
{
public:
    OpenDialogScope()
        : mIsFirst(!std::exchange(isOpen, true))
    {
    }
    OpenDialogScope(const OpenDialogScope&) = delete;
    OpenDialogScope& operator=(const OpenDialogScope&) = delete;
    ~OpenDialogScope()
    {
        if (mIsFirst)
            isOpen = false;
    }
    [[nodiscard]] bool IsFirst() const { return mIsFirst; }

private:
    static inline bool isOpen = false;
    const bool mIsFirst;
};

/// Returns the path with the first type's extension when it is to be saved and fits no type. Not
/// every file dialog adds the extension, and the dialog for loading lists only matching files.
std::string withExtension(const std::string& path, const ZFileRequest& request)
{
    const auto file = ZFileChooser::MakeFile(path);
    const bool isWhole = request.purpose == ZFileRequest::kOpen || request.types.empty() ||
                         file->GetName().IsEmpty() ||
                         std::any_of(request.types.begin(), request.types.end(),
                                     [&](const auto& type) { return file->IsOfFiletype(type); });
    return isWhole ? path : path + "." + request.types.front()->extension;
}

boost::shared_ptr<ZFile> refuse(const ZString& reason)
{
    ZMessageBox::Show(ZMessageBox::kError, "File Error", reason);
    return nullptr;
}

}  // namespace

boost::shared_ptr<ZFile> ZFileChooser::MakeFile(const std::filesystem::path& path)
{
    std::string extension = path.extension().string();
    extension.erase(0, 1);  // the dot
    return boost::make_shared<ZFile>(path.stem().string(), path.string(), extension);
}

boost::shared_ptr<ZFile> ZFileChooser::ChooseFile(const ZFileRequest& request)
{
    const auto chosen = Choose(request);
    if (!chosen)
        return nullptr;
    const std::string path = withExtension(*chosen, request);
    const auto file = MakeFile(path);
    // Refuses a folder, and a name with bytes that are no UTF-8, which ZString cannot hold.
    if (file->GetName().IsEmpty() || file->GetPath().ToNarrow() != path)
        return refuse(file->GetPath());
    // The dialog asked before replacing the file as typed, not the one with the extension.
    if (path != *chosen && file->Exists())
        return refuse(path + " exists already.");
    return file;
}

std::optional<std::string> ZFileChooser::Choose(const ZFileRequest& request)
{
    assert(request.owner);  // else nobody could end the dialog with its application
    if (replacement())
        return replacement()(request);
    if (!ZInterfaceThread::IsCurrent())
        return std::nullopt;
    const OpenDialogScope dialog;
    if (dialog.IsFirst())
        return AskDesktop(request);
    // Modal runs nest: the first dialog could not return before the second.
    ZMessageBox::Show(ZMessageBox::kNotice, request.title, "Another file dialog is open.");
    return std::nullopt;
}

ZFileChooser::Presenter ZFileChooser::SetPresenter(Presenter presenter)
{
    return std::exchange(replacement(), std::move(presenter));
}

ZFileChooser::PlainDialog ZFileChooser::SetPlainDialog(PlainDialog dialog)
{
    return std::exchange(plainDialog, dialog);
}

std::optional<std::string> ZFileChooser::AskPlainly(const ZFileRequest& request)
{
    return plainDialog ? plainDialog(request) : std::nullopt;
}

std::string ZFileChooser::WindowTitle(const ZFileRequest& request)
{
    const std::string title = request.title.ToNarrow();
    const std::string prompt = request.prompt.ToNarrow();
    return prompt.empty() || prompt == title ? title : title + " - " + prompt;
}

std::string ZFileChooser::FilterName(const ZFiletype& type)
{
    return type.description.ToNarrow() + " (" + FilterPattern(type) + ")";
}

std::string ZFileChooser::FilterPattern(const ZFiletype& type)
{
    return "*." + type.extension;
}

}  // namespace orvane
